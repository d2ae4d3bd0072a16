#include "ui/ControlBinding.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QScrollBar>
#include <QSignalBlocker>
#include <algorithm>

#include "ui/QtHost.h"

namespace tallory {

namespace {

void PaintWidget(QWidget* widget, const ControlState& state) {
    if (widget->isEnabled() != state.enabled) widget->setEnabled(state.enabled);
    // A widget whose window is hidden keeps its own flag, so the window comes back as it was.
    if (widget->isVisibleTo(widget->parentWidget()) != state.visible)
        widget->setVisible(state.visible);
}

// Puts the screen's rows into a list, unless it shows them already (a refill loses the list's
// scroll position and current row).
template <class List, class TextOf>
void ShowRows(List* list, const std::vector<std::string>& rows, TextOf textOf) {
    QStringList wanted;
    for (const std::string& row : rows) wanted << DisplayString(row);
    bool same = list->count() == wanted.size();
    for (int i = 0; same && i < list->count(); ++i) same = textOf(i) == wanted[i];
    if (same) return;
    list->clear();
    list->addItems(wanted);
}

}  // namespace

void ControlBinding::Bind(QLabel* label, const ControlState& state) {
    painters_.push_back([label, &state] {
        const QString text = DisplayString(state.text);
        if (label->text() != text) label->setText(text);
        PaintWidget(label, state);
    });
}

void ControlBinding::Bind(QLineEdit* box, const ControlState& state) {
    painters_.push_back([box, &state] {
        const QString text = DisplayString(state.text);
        if (box->text() != text) box->setText(text);
        PaintWidget(box, state);
    });
}

void ControlBinding::Bind(QAbstractButton* button, const ControlState& state, bool caption) {
    painters_.push_back([button, &state, caption] {
        const QSignalBlocker block(button);
        if (caption) {
            const QString text = DisplayString(state.text);
            if (button->text() != text) button->setText(text);
        }
        if (button->isCheckable()) button->setChecked(state.checked);
        PaintWidget(button, state);
    });
}

void ControlBinding::Bind(QComboBox* list, const ControlState& state) {
    painters_.push_back([list, &state] {
        const QSignalBlocker block(list);
        list->setCurrentIndex(state.index);
        PaintWidget(list, state);
    });
}

void ControlBinding::Bind(QComboBox* list, const ControlState& state,
                          const std::vector<std::string>& rows) {
    painters_.push_back([list, &state, &rows] {
        const QSignalBlocker block(list);
        ShowRows(list, rows, [list](int i) { return list->itemText(i); });
        list->setCurrentIndex(state.index);
        PaintWidget(list, state);
    });
}

void ControlBinding::Bind(QListWidget* list, const ControlState& state,
                          const std::vector<std::string>& rows) {
    painters_.push_back([list, &state, &rows] {
        const QSignalBlocker block(list);
        ShowRows(list, rows, [list](int i) { return list->item(i)->text(); });
        list->setCurrentRow(state.index);
        PaintWidget(list, state);
    });
}

void ControlBinding::Bind(QScrollBar* bar, const ScrollBar& state, int pageStep) {
    painters_.push_back([bar, &state, pageStep] {
        const QSignalBlocker block(bar);
        bar->setRange(state.minimum, std::max(state.minimum, state.maximum));
        bar->setSingleStep(state.smallChange);
        bar->setPageStep(pageStep > 0 ? pageStep : state.largeChange);
        bar->setValue(state.value);
        bar->setVisible(state.visible);
        bar->setEnabled(state.enabled);
    });
}

void ControlBinding::Bind(QWidget* widget, const ControlState& state) {
    painters_.push_back([widget, &state] { PaintWidget(widget, state); });
}

void ControlBinding::Paint() const {
    for (const auto& paint : painters_) paint();
}

}  // namespace tallory
