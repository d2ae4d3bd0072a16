#pragma once

#include <QObject>
#include <functional>

namespace tallory {

// Sits on a text box and passes it only the characters a screen allows (key codes as typed:
// 8 backspace, 13 enter, otherwise the character), and hands page up and page down to the
// screen. Keys without a character (arrows, Delete, shortcuts such as paste) pass.
class KeyFilter : public QObject {
    Q_OBJECT
  public:
    KeyFilter(QObject* parent, std::function<bool(int)> allowed,
              std::function<void(int)> pageKey = {});

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    std::function<bool(int)> allowed_;
    std::function<void(int)> pageKey_;
};

}  // namespace tallory
