#include "ui/KeyFilter.h"

#include <QKeyEvent>

#include "housekeeping/ListPage.h"

namespace tallory {

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
