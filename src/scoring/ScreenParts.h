#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "common/Course.h"
#include "logs/SessionStore.h"

namespace tallory {

// What a widget shows and whether it takes input. Screen logic keeps one per control; the Qt
// dialog paints from them and never keeps state of its own.
struct ControlState {
    std::string text;  // text of a box, caption of a label or button, path of a picture
    bool visible = true;
    bool enabled = true;
    bool checked = false;  // tick boxes and option buttons
    int index = -1;        // drop-down lists: the selected row, -1 for none
    // Text boxes: the selection a handler asks for (start and length, in bytes).
    size_t selectionStart = 0;
    size_t selectionLength = 0;

    void SelectAll() {
        selectionStart = 0;
        selectionLength = text.size();
    }
};

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

// The grid of a program without windows: counts redraws and remembers every scroll position.
class HeadlessSessionGrid : public SessionGrid {
  public:
    explicit HeadlessSessionGrid(const Course& course) : course_(course) {}

    MainScreen& Screen() override { return screen; }
    int SessionScrollValue() const override { return screen.pageNo; }
    int SessionScrollMinimum() const override { return 0; }
    int SessionScrollMaximum() const override { return std::max(0, course_.NumSessions - 4); }
    void SetSessionScrollValue(int value) override {
        screen.pageNo = value;
        scrollValues.push_back(value);
    }

    struct CountingScreen : HeadlessScreen {
        void UpdateTable() override { ++redraws; }
        int redraws = 0;
    };

    CountingScreen screen;
    std::vector<int> scrollValues;

  private:
    const Course& course_;
};

// Full path of a session log of the course folder.
std::string SessionLogPath(const Course& course, const std::string& fileName);

// Sets hscrlSession to its lowest value, then its highest, which forces the main window to redraw
// every column whatever the value was.
void SweepSessionScroll(SessionGrid& grid);

}  // namespace tallory
