#pragma once

#include <vector>

#include "common/Course.h"
#include "grid/GridShape.h"
#include "scoring/ScreenParts.h"
#include "scoring/SessionStore.h"

namespace tallory {

// A main screen that shows nothing, for scripts and tests. It keeps the first session column the
// grid would show.
class HeadlessScreen : public MainScreen {
  public:
    explicit HeadlessScreen(DisplayOrder order = DisplayOrder::StudentId) : order(order) {}
    void ClearTable() override {}
    void UpdateTable() override {}
    void SessionsLoaded(int numSessions, int) override { pageNo = NewestPage(numSessions); }
    DisplayOrder Order() const override { return order; }

    DisplayOrder order;
    int pageNo = 0;
};

// The grid of a program without windows: counts redraws and remembers every scroll position.
class HeadlessSessionGrid : public SessionGrid {
  public:
    explicit HeadlessSessionGrid(const Course& course) : course_(course) {}

    MainScreen& Screen() override { return screen; }
    int SessionScrollValue() const override { return screen.pageNo; }
    int SessionScrollMinimum() const override { return 0; }
    int SessionScrollMaximum() const override { return NewestPage(course_.NumSessions); }
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

}  // namespace tallory
