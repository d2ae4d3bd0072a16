#pragma once

#include <string>
#include <string_view>

#include "common/ControlState.h"
#include "common/Course.h"
#include "common/Host.h"
#include "scoring/SessionStore.h"

namespace tallory {

// What the session screens need of the main window: its grid, for a redraw or a full reload of
// the sessions, and the session scroll bar hscrlSession, whose movement redraws the grid.
class SessionGrid {
  public:
    virtual ~SessionGrid() = default;
    virtual MainScreen& Screen() = 0;
    virtual int SessionScrollValue() const = 0;
    virtual int SessionScrollMinimum() const = 0;
    virtual int SessionScrollMaximum() const = 0;
    virtual void SetSessionScrollValue(int value) = 0;
};

// Escape or the close box on a screen whose edits are not saved yet: asks whether to close and
// drop them. True on Yes; No, the default button, keeps the screen open with its edits.
bool DropUnsavedEdits(Host& host);

inline constexpr std::string_view kUnsavedEditsTitle = "Unsaved Changes";
inline constexpr std::string_view kUnsavedEditsText =
    "Your changes on this screen have not been saved. Close it and discard them?";

// Full path of a session log of the course folder.
std::string SessionLogPath(const Course& course, const std::string& fileName);

// Sets hscrlSession to its lowest value, then its highest, which forces the main window to redraw
// every column whatever the value was.
void SweepSessionScroll(SessionGrid& grid);

}  // namespace tallory
