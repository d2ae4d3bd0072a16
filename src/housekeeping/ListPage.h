#pragma once

#include "common/ControlState.h"

namespace tallory {

// The two housekeeping lists show nine rows at a time beside a scroll bar, VsScr.
constexpr int kListRows = 9;

// VsScr before its list is counted: it pages by the rows shown and takes no input.
constexpr ScrollBar kListScroll{.largeChange = kListRows, .enabled = false};

// VsScr for a list of `count` rows: its maximum leaves the last page full; the bar is active,
// from the top, only when the rows do not fit. A bar that is not active keeps its value.
void SetListScroll(ScrollBar& scroll, int count);

// Page up (`down` false) or page down in one of the row boxes: the value VsScr moves to, by its
// large change and within its range. An inactive bar does not move.
int PagedValue(const ScrollBar& scroll, bool down);

// Key codes of the row boxes that scroll the list.
constexpr int kKeyPageUp = 33;
constexpr int kKeyPageDown = 34;

}  // namespace tallory
