#pragma once

// Reaching the widgets of a window by their object names, and working the modal windows that a
// click opens, as a person would.

#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QWheelEvent>
#include <functional>
#include <stdexcept>
#include <utility>
#include <vector>

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

// Works the modal window named `name` once it is up, as WhenOpen does; the test fails unless it
// came before the object goes.
class Opening {
  public:
    Opening(const QString& name, std::function<void(QDialog&)> work) : name_(name) {
        WhenOpen(name, [this, work](QDialog& dialog) {
            seen_ = true;
            work(dialog);
        });
    }
    ~Opening() { EXPECT_TRUE(seen_) << name_.toStdString() << " did not open"; }
    Opening(const Opening&) = delete;
    Opening& operator=(const Opening&) = delete;

  private:
    QString name_;
    bool seen_ = false;
};

// Types `text` into the widget, a key press per character.
inline void Type(QWidget* box, const QString& text) {
    for (QChar c : text) {
        QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString(c));
        QApplication::sendEvent(box, &press);
    }
}

// Answers the next message boxes that come up, one press each, in order, and keeps what each
// showed. Boxes after the last press are left to whoever else answers them.
class MessageBoxes {
  public:
    using Press = std::function<void(QMessageBox&)>;
    struct Shown {
        QString title, text;
        QMessageBox::StandardButton defaultButton;
        Qt::WindowFlags flags;
    };

    explicit MessageBoxes(std::vector<Press> presses) : presses_(std::move(presses)) {
        QObject::connect(&timer_, &QTimer::timeout, [this] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (!box || shown.size() >= presses_.size()) return;
            shown.push_back({box->windowTitle(), box->text(),
                             box->standardButton(box->defaultButton()), box->windowFlags()});
            presses_[shown.size() - 1](*box);
        });
        timer_.start(10);
    }

    // Enter, as a person answering with the keyboard presses it.
    static void Enter(QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Return); }
    static Press Click(QMessageBox::StandardButton button) {
        return [button](QMessageBox& box) { box.button(button)->click(); };
    }

    std::vector<Shown> shown;

  private:
    std::vector<Press> presses_;
    QTimer timer_;
};

// Accepts every message box that comes up while the object lives, once `seen` has looked at it.
class AcceptingBoxes {
  public:
    explicit AcceptingBoxes(std::function<void(QMessageBox&)> seen = nullptr) {
        QObject::connect(&timer_, &QTimer::timeout, [seen] {
            if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
                if (seen) seen(*box);
                box->accept();
            }
        });
        timer_.start(20);
    }

  private:
    QTimer timer_;
};

// A key press sent straight to the widget, whether or not it has the focus.
inline void PressKey(QWidget* widget, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QKeyEvent press(QEvent::KeyPress, key, modifiers);
    QApplication::sendEvent(widget, &press);
}

// A press of the left button in the middle of the widget.
inline void Click(QWidget* widget) {
    const QPointF at(widget->width() / 2.0, widget->height() / 2.0);
    QMouseEvent press(QEvent::MouseButtonPress, at, widget->mapToGlobal(at), Qt::LeftButton,
                      Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(widget, &press);
}

// A turn of the mouse wheel over the widget, `delta` eighths of a degree (120 a notch, less than
// 0 towards the user).
inline void Wheel(QWidget* widget, int delta) {
    QWheelEvent event(QPointF(10, 10), widget->mapToGlobal(QPointF(10, 10)), QPoint(),
                      QPoint(0, delta), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(widget, &event);
}

// Goes ahead on the look before a change that rewrites the logs, once it is up.
inline void GoAheadOnPreview() {
    WhenOpen("PreviewDialog",
             [](QDialog& preview) { Find<QPushButton>(preview, "PreviewGoAhead")->click(); });
}

}  // namespace tallory::test
