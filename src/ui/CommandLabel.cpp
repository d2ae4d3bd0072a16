#include "ui/CommandLabel.h"

#include <QMouseEvent>

namespace tallory {

void CommandLabel::SetHoverUnderline(bool on) {
    hoverUnderline_ = on;
    Underline(hovered_ && on);
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

}  // namespace tallory
