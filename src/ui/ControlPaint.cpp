#include "ui/ControlPaint.h"

#include <QAbstractButton>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>

#include "housekeeping/ListPage.h"
#include "ui/QtHost.h"

namespace tallory {

void Paint(QWidget* widget, const ControlState& state) {
    if (widget->isEnabled() != state.enabled) widget->setEnabled(state.enabled);
    // A widget whose window is hidden keeps its own flag, so the window comes back as it was.
    if (widget->isVisibleTo(widget->parentWidget()) != state.visible)
        widget->setVisible(state.visible);
}

void Paint(QLabel* label, const ControlState& state) {
    const QString text = DisplayString(state.text);
    if (label->text() != text) label->setText(text);
    Paint(static_cast<QWidget*>(label), state);
}

void Paint(QLineEdit* box, const ControlState& state) {
    const QString text = DisplayString(state.text);
    if (box->text() != text) box->setText(text);
    Paint(static_cast<QWidget*>(box), state);
}

void Paint(QAbstractButton* button, const ControlState& state) {
    const QString text = DisplayString(state.text);
    if (button->text() != text) button->setText(text);
    if (button->isCheckable() && button->isChecked() != state.checked)
        button->setChecked(state.checked);
    Paint(static_cast<QWidget*>(button), state);
}

KeyFilter::KeyFilter(QObject* parent, std::function<bool(int)> allowed,
                     std::function<void(int)> pageKey)
    : QObject(parent), allowed_(std::move(allowed)), pageKey_(std::move(pageKey)) {}

bool KeyFilter::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress) return QObject::eventFilter(watched, event);
    const auto* key = static_cast<QKeyEvent*>(event);
    if (key->key() == Qt::Key_PageUp || key->key() == Qt::Key_PageDown) {
        if (pageKey_) pageKey_(key->key() == Qt::Key_PageUp ? kKeyPageUp : kKeyPageDown);
        return true;
    }
    if (!allowed_) return false;
    const QString text = key->text();
    if (text.isEmpty() || (key->modifiers() & Qt::ControlModifier)) return false;
    const char16_t code = text.at(0).unicode();
    if (code < 32 && code != 8 && code != 13) return false;
    return !allowed_(code);
}

}  // namespace tallory
