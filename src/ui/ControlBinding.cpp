#include "ui/ControlBinding.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QSignalBlocker>

#include "ui/QtHost.h"

namespace tallory {

namespace {

void PaintWidget(QWidget* widget, const ControlState& state) {
    if (widget->isEnabled() != state.enabled) widget->setEnabled(state.enabled);
    if (widget->isVisibleTo(widget->parentWidget()) != state.visible)
        widget->setVisible(state.visible);
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
        if (caption) button->setText(DisplayString(state.text));
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

void ControlBinding::Bind(QWidget* widget, const ControlState& state) {
    painters_.push_back([widget, &state] { PaintWidget(widget, state); });
}

void ControlBinding::Paint() const {
    for (const auto& paint : painters_) paint();
}

}  // namespace tallory
