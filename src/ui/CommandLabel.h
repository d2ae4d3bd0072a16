#pragma once

#include <QLabel>

namespace tallory {

// A label that acts as a command: clicked on a left press, underlined while the pointer is over
// it when it offers something. Its hand cursor and tip are set by its owner. One that takes the
// keyboard is reached with Tab, acts on Enter and Space, and draws a frame while it has the focus.
class CommandLabel : public QLabel {
    Q_OBJECT
  public:
    explicit CommandLabel(QWidget* parent = nullptr) : QLabel(parent) {}

    // Whether the pointer over the label underlines it.
    void SetHoverUnderline(bool on);
    // Whether Tab reaches the label and Enter or Space act on it.
    void SetKeyboardCommand(bool on);
    bool IsKeyboardCommand() const { return focusPolicy() != Qt::NoFocus; }
    // Acts as a click does (a screen reader's press).
    void Activate() { emit clicked(); }

  signals:
    void clicked();

  protected:
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    void Underline(bool on);

    bool hoverUnderline_ = false;
    bool hovered_ = false;
};

}  // namespace tallory
