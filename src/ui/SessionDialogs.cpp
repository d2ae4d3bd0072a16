#include "ui/SessionDialogs.h"

#include "grid/ScoreGrid.h"
#include "scoring/EditSessionScreen.h"
#include "scoring/SetScoresScreen.h"
#include "ui/EditSessionDialog.h"
#include "ui/SetScoresDialog.h"

namespace tallory {

namespace {

// The main window's grid as the session screens see it.
class GridLink : public SessionGrid {
  public:
    explicit GridLink(ScoreGrid& grid) : grid_(grid) {}

    MainScreen& Screen() override { return grid_; }
    int SessionScrollValue() const override { return grid_.View().sessionScroll.value; }
    int SessionScrollMinimum() const override { return grid_.View().sessionScroll.minimum; }
    int SessionScrollMaximum() const override { return grid_.View().sessionScroll.maximum; }
    void SetSessionScrollValue(int value) override { grid_.SetSessionScroll(value); }

  private:
    ScoreGrid& grid_;
};

}  // namespace

void OpenSetScores(QWidget* parent, Course& course, Host& host, ScoreGrid& grid, int session,
                   bool largeFonts) {
    ReadSessionForScoring(course, session);
    GridLink link(grid);
    SetScoresDialog dialog(course, host, link, largeFonts, parent);
    dialog.exec();
}

void OpenEditSession(QWidget* parent, Course& course, Host& host, ScoreGrid& grid, int session) {
    GridLink link(grid);
    EditSessionScreen screen(course, host, link, session);
    EditSessionDialog dialog(screen, host, parent);
    dialog.exec();
    screen.AfterClose();
}

}  // namespace tallory
