#pragma once

#include <functional>
#include <string>
#include <vector>

#include "common/ControlState.h"
#include "housekeeping/ListPage.h"

class QAbstractButton;
class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QScrollBar;
class QWidget;

namespace tallory {

// Ties each widget of a window to the ControlState its screen logic keeps for it, once, when the
// window is built; Paint then brings every widget in line with the logic. A window's repaint is
// this loop, not a page of assignments. Signals of buttons, lists and scroll bars are blocked
// while painting, so that showing a state is never taken for a click.
class ControlBinding {
  public:
    // Caption, visible, enabled.
    void Bind(QLabel* label, const ControlState& state);
    // Text (left alone when it already reads the same, so the cursor stays), visible, enabled.
    void Bind(QLineEdit* box, const ControlState& state);
    // Ticked, visible, enabled; with `caption` also the button's text.
    void Bind(QAbstractButton* button, const ControlState& state, bool caption = false);
    // Selected row, visible, enabled.
    void Bind(QComboBox* list, const ControlState& state);
    // A list whose rows the screen keeps beside its state: the rows are put in again only when
    // they differ from the ones shown; then the selected row, visible, enabled.
    void Bind(QComboBox* list, const ControlState& state, const std::vector<std::string>& rows);
    void Bind(QListWidget* list, const ControlState& state, const std::vector<std::string>& rows);
    // Range, steps, value, visible, enabled. `pageStep` replaces the large change for a bar whose
    // trough pages by what the window shows rather than by what the logic's keys move.
    void Bind(QScrollBar* bar, const ScrollBar& state, int pageStep = 0);
    // Visible and enabled of any other widget.
    void Bind(QWidget* widget, const ControlState& state);

    void Paint() const;

  private:
    std::vector<std::function<void()>> painters_;
};

}  // namespace tallory
