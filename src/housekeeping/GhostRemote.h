#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "common/Course.h"
#include "common/Host.h"
#include "common/Table.h"
#include "housekeeping/ListPage.h"
#include "housekeeping/UnregisteredStudents.h"
#include "scoring/ScreenParts.h"
#include "scoring/SessionStore.h"

namespace tallory {

// A remote that voted in the course but belongs to nobody. A row counts when its trimmed
// RemoteId is not empty.
struct GhostRec {
    std::string RemoteId;  // without "#", padded with "0" to 8 characters
    double Total = 0;
    double Average = 0;
    int16_t Selected = 0;  // -1 when ticked
    int16_t Serial = 0;    // the row's own index
};

// GhostList: rows 0..4000, rebuilt each time the clicker list opens.
struct GhostTable : Table<GhostRec, kMaxStudents> {
    GhostTable() : Table("GhostList") {}
};

// Removes every "#" and puts "0" in front up to 8 characters. A longer remote ends the command
// with a run-time error.
std::string PadRemote(std::string_view text);

// One visible row of the list.
struct GhostRow {
    ControlState TxtSerial;
    ControlState TxtRemoteID;
    ControlState TxtTotal;
    ControlState TxtAverage;
    ControlState ChkSelect;
};

// A column heading of the list: its caption and its tip.
struct GhostHeading {
    ControlState button;
    std::string tipTitle;
    std::string tip;
};

// frmGhostRemote, "View and Select Unregistered Polvanes to be deleted": the remotes that belong
// to no student, ticked by hand or by the search, and the deletion of their votes for good.
class GhostRemoteScreen {
  public:
    // `students` is the unregistered students' list, built just before the screen opens; `screen`
    // is the main window, redrawn by the reloads of a deletion.
    GhostRemoteScreen(Course& course, Host& host, MainScreen& screen,
                      const UnregisteredTable& students);

    // Called whenever the screen hides or shows itself in the middle of a handler.
    std::function<void()> onChanged;

    // The opening of the screen: tips, the tab to the students, the list.
    void Load();
    void LoadGhostList();
    void ShowGhostRows();
    void SetGhostSelected(int serial, int16_t value);
    void SetAllGhostSelected(int16_t value);

    // The tick box of visible row r was clicked and now shows `checked`.
    void ChkSelectClick(int r, bool checked);
    void CmdSelectAllClick();
    void CmdUnSelectAllClick();
    // The search screen has closed: its ticks are shown.
    void AfterCustomSelect() { ShowGhostRows(); }
    void VsScrChange(int value);
    // A key in one of the row boxes: page up and page down move the list by a page.
    void RowKeyDown(int key);
    void CmdDeleteClick();
    // The screen was closed without a deletion.
    void Close() { closed_ = true; }

    Course& CourseData() const { return course_; }
    GhostTable& GhostList() { return ghostList_; }
    const GhostTable& GhostList() const { return ghostList_; }
    int GhostCount() const { return ghostCount_; }
    const GhostRow& Row(int r) const { return rows_[r]; }
    const ScrollBar& VsScr() const { return vsScr_; }
    // CmdSerial, CmdRemote, CmdTotal, CmdAvg, CmdSelect.
    const std::array<GhostHeading, 5>& Headings() const { return headings_; }
    const ControlState& CmdSelectAll() const { return cmdSelectAll_; }
    const ControlState& CmdUnSelectAll() const { return cmdUnSelectAll_; }
    const ControlState& CmdCustomSelect() const { return cmdCustomSelect_; }
    const ControlState& CmdDelete() const { return cmdDelete_; }
    const ControlState& CmdUnRegisteredClickers() const { return cmdUnRegisteredClickers_; }
    const ControlState& CmdUnRegisteredStudents() const { return cmdUnRegisteredStudents_; }
    // The screen itself: hidden during a deletion and while the students' tab is open.
    const ControlState& Form() const { return form_; }
    bool Closed() const { return closed_; }
    // The remotes whose votes were deleted, as the list showed them.
    const std::vector<std::string>& Purged() const { return purged_; }

    void Hide();
    void Show();

    static constexpr std::string_view kCaption =
        "View and Select Unregistered Polvanes to be deleted";
    static constexpr std::string_view kHelpTitle = "Unregistered Clicker(s)";
    static std::string_view HelpText();
    static std::string DeleteWarning();

  private:
    void Changed();

    Course& course_;
    Host& host_;
    MainScreen& screen_;
    const UnregisteredTable& students_;
    GhostTable ghostList_;
    int ghostCount_ = 0;
    std::array<GhostRow, kListRows> rows_;
    ScrollBar vsScr_ = kListScroll;
    std::array<GhostHeading, 5> headings_;
    ControlState cmdSelectAll_{"Select All"};
    ControlState cmdUnSelectAll_{"Unselect All"};
    ControlState cmdCustomSelect_{"Advanced Search"};
    ControlState cmdDelete_{"Confirm And Delete Clicker Log(s)"};
    ControlState cmdUnRegisteredClickers_{"Unregistered Polvane(s)"};
    ControlState cmdUnRegisteredStudents_{"Unregistered Student(s)"};
    ControlState form_{std::string(kCaption)};
    bool closed_ = false;
    std::vector<std::string> purged_;
};

}  // namespace tallory
