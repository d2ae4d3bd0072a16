#include "ui/CommandLabel.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

namespace tallory {

namespace {

// The focus frame: the colour of the links, strong enough to find on white and on the window's
// grey surface.
const QColor kFocusColour(29, 95, 191);

}  // namespace

void CommandLabel::SetHoverUnderline(bool on) {
    hoverUnderline_ = on;
    Underline(hovered_ && on);
}

void CommandLabel::SetKeyboardCommand(bool on) {
    // Tab only: a click does not leave a frame behind.
    setFocusPolicy(on ? Qt::TabFocus : Qt::NoFocus);
    if (!on && hasFocus()) clearFocus();
}

void CommandLabel::Underline(bool on) {
    QFont shown = font();
    if (shown.underline() == on) return;
    shown.setUnderline(on);
    setFont(shown);
}

void CommandLabel::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && isEnabled()) {
        event->accept();
        emit clicked();
        return;
    }
    QLabel::mousePressEvent(event);
}

void CommandLabel::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    const bool acts = key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space;
    const bool plain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    if (acts && plain && isEnabled() && focusPolicy() != Qt::NoFocus) {
        event->accept();
        emit clicked();
        return;
    }
    QLabel::keyPressEvent(event);
}

void CommandLabel::enterEvent(QEnterEvent* event) {
    hovered_ = true;
    Underline(hoverUnderline_ && isEnabled());
    QLabel::enterEvent(event);
}

void CommandLabel::leaveEvent(QEvent* event) {
    hovered_ = false;
    Underline(false);
    QLabel::leaveEvent(event);
}

void CommandLabel::paintEvent(QPaintEvent* event) {
    QLabel::paintEvent(event);
    if (!hasFocus()) return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(kFocusColour, 2));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(rect()).adjusted(1.5, 1.5, -1.5, -1.5), 4, 4);
}

}  // namespace tallory
