#pragma once

#include <array>
#include <string_view>

#include "housekeeping/GhostRemote.h"
#include "scoring/ScreenParts.h"

namespace tallory {

// The boxes of the search screen, in the order of its criteria.
enum class SearchBox {
    TxtAvgEqual,
    txtAvgGrater,
    TxtAvgLess,
    txtTotal,
    txtTotalGrater,
    txtTotalLess,
    TxtRemoteId,
    TxtRemoteIdContaining,
};
constexpr int kSearchBoxes = 8;

// The keys a number box takes: the digits, backspace and enter. No decimal point can be typed.
bool IsSearchNumberKey(int key);
// The keys a box takes: the number boxes as above, the two remote boxes as a remote ID.
bool IsSearchKey(SearchBox box, int key);

// frmFilterGhostRemote, "Advanced Settings Options": ticks rows of the clicker list by a remote
// ID, part of one, a total or an average.
class FilterGhostRemoteScreen {
  public:
    explicit FilterGhostRemoteScreen(GhostTable& ghostList) : ghostList_(ghostList) {}

    ControlState& Box(SearchBox box) { return boxes_[static_cast<int>(box)]; }
    const ControlState& Box(SearchBox box) const { return boxes_[static_cast<int>(box)]; }
    void BoxChange(SearchBox box, std::string_view text);

    // Ticks every row that any filled box matches, after clearing all ticks; then the screen
    // hides. A number box holding something that is not a number ends the command with a
    // run-time error before any tick changes.
    void CmdSelectClick();
    // Empties every box; the screen stays.
    void lvButtons_H1Click();

    bool Hidden() const { return hidden_; }

    static constexpr std::string_view kCaption = "Advanced Settings Options";
    static constexpr std::string_view kHelpText =
        "Remote ID = ticks the clicker with exactly this ID, as the list shows it.\n"
        "Remote ID Containing ticks every clicker whose ID contains the text.\n"
        "Total Points = ticks the clickers with exactly this total.\n"
        "Total between ... and ticks the totals in the range, both ends included.\n"
        "Points Average = and Average between ... and do the same on the average.\n"
        "Every filled box adds its clickers to the ticks; ticks made by hand are cleared.";

  private:
    GhostTable& ghostList_;
    std::array<ControlState, kSearchBoxes> boxes_;
    bool hidden_ = false;
};

}  // namespace tallory
