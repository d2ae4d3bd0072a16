#pragma once

#include <QLabel>

namespace tallory {

// A label that acts as a command: clicked on a left press, underlined while the pointer is over
// it when it offers something. Its hand cursor and tip are set by its owner.
class CommandLabel : public QLabel {
    Q_OBJECT
  public:
    explicit CommandLabel(QWidget* parent = nullptr) : QLabel(parent) {}

    // Whether the pointer over the label underlines it.
    void SetHoverUnderline(bool on);

  signals:
    void clicked();

  protected:
    void mousePressEvent(QMouseEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

  private:
    void Underline(bool on);

    bool hoverUnderline_ = false;
    bool hovered_ = false;
};

}  // namespace tallory
