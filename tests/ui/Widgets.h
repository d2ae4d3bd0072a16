#pragma once

// Reaching the widgets of a window by their object names, and working the modal windows that a
// click opens, as a person would.

#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QMouseEvent>
#include <QTimer>
#include <functional>
#include <stdexcept>

namespace tallory::test {

template <class T = QLabel>
T* Find(QWidget& window, const QString& name) {
    T* widget = window.findChild<T*>(name);
    if (!widget) throw std::runtime_error("no widget " + name.toStdString());
    return widget;
}

// Works the modal window named `name` once it is up; the test fails if it never comes.
inline void WhenOpen(const QString& name, std::function<void(QDialog&)> work, int tries = 50) {
    QTimer::singleShot(10, [name, work, tries] {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            auto* dialog = qobject_cast<QDialog*>(widget);
            if (dialog && dialog->isVisible() && dialog->objectName() == name &&
                QApplication::activeModalWidget() == dialog) {
                work(*dialog);
                return;
            }
        }
        if (tries > 0) return WhenOpen(name, work, tries - 1);
        ADD_FAILURE() << name.toStdString() << " did not open";
        if (QWidget* modal = QApplication::activeModalWidget()) modal->close();
    });
}

// A press of the left button in the middle of the widget.
inline void Click(QWidget* widget) {
    const QPointF at(widget->width() / 2.0, widget->height() / 2.0);
    QMouseEvent press(QEvent::MouseButtonPress, at, widget->mapToGlobal(at), Qt::LeftButton,
                      Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(widget, &press);
}

}  // namespace tallory::test
