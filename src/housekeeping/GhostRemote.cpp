#include "housekeeping/GhostRemote.h"

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "common/ChangeJournal.h"
#include "common/Numbers.h"
#include "common/RunTimeError.h"
#include "common/Text.h"
#include "housekeeping/PurgeClickerLogs.h"
#include "registration/RemoteTable.h"

namespace tallory {

namespace {

constexpr size_t kShownRemoteLength = 8;

constexpr std::string_view kFirstDeleteCaption =
    "Processing Request, this might take several minutes depending on the size of your session "
    "data folder .... Please Stand By....";
constexpr std::string_view kReloadCaption =
    "This might take several minutes, depending on the size of your session data folder.... "
    "Please Stand By.....";

bool GhostCounts(const GhostRec& row) {
    return !TrimView(row.RemoteId).empty();
}

}  // namespace

std::string PadRemote(std::string_view text) {
    const std::string remote = ReplaceAll(text, "#", "");
    if (remote.size() > kShownRemoteLength)
        throw RunTimeError(kInvalidProcedureCall,
                           "A remote of more than 8 characters cannot be shown: " + remote);
    return std::string(kShownRemoteLength - remote.size(), '0') + remote;
}

GhostRemoteScreen::GhostRemoteScreen(Course& course, Host& host, MainScreen& screen,
                                     const UnregisteredTable& students)
    : course_(course), host_(host), screen_(screen), students_(students) {
    headings_[0].button.text = "#";
    headings_[1].button.text = "Remote ID";
    headings_[2].button.text = "Total";
    headings_[3].button.text = "Average";
    headings_[4].button.text = "Select";
    // This screen is the current one of the two tabs.
    cmdUnRegisteredClickers_.checked = true;
}

std::string_view GhostRemoteScreen::HelpText() {
    return "These Polvane clickers voted in this course but are not registered to any student on "
           "the roster: a clicker of a neighbouring class on the same frequency, a student who "
           "dropped the course, or a clicker nobody registered. Tick the clickers whose votes "
           "should go and press Confirm And Delete: their votes are removed from every session "
           "log for good and cannot be brought back. Proceed with caution, and delete nothing "
           "that may still belong to a student of this course.";
}

std::string GhostRemoteScreen::DeleteWarning() {
    return "All voting data associated with the slected Remote ID(s) will be permanently deleted "
           "and cannot be retrieved. \r\n"
           "Please do not delete any Remote ID(s)/voting data unless you are sure the student is "
           "no longer enrolled in the course or\r\n"
           "there is no student currently enrolled in your course who is tied to that Remote ID.";
}

void GhostRemoteScreen::Changed() {
    if (onChanged) onChanged();
}

void GhostRemoteScreen::Hide() {
    form_.visible = false;
    Changed();
}

void GhostRemoteScreen::Show() {
    form_.visible = true;
    Changed();
}

void GhostRemoteScreen::Load() {
    headings_[1].tipTitle = "Remote Id";
    headings_[1].tip =
        "The clicker ID is a unique series of numbers located on the back of each Polvane remote.";
    headings_[2].tipTitle = "Total";
    headings_[2].tip = "Total points earned via Polvane polling";
    headings_[3].tipTitle = "Average";
    headings_[3].tip = "Average points earned via Polvane polling.";

    bool anyStudent = false;
    for (long i = 0; i < students_.Allocated() && !anyStudent; ++i)
        anyStudent = RowCounts(students_[i]);
    cmdUnRegisteredStudents_.enabled = anyStudent;

    LoadGhostList();

    if (TrimView(rows_[0].TxtRemoteID.text).empty()) {
        // Nothing to choose from: only the way over to the students stays open.
        for (GhostHeading& heading : headings_) heading.button.enabled = false;
        for (ControlState* button : {&cmdSelectAll_, &cmdUnSelectAll_, &cmdCustomSelect_,
                                     &cmdDelete_, &cmdUnRegisteredClickers_})
            button->enabled = false;
    }
}

void GhostRemoteScreen::LoadGhostList() {
    ghostCount_ = 0;
    ghostList_.Reset();
    // Every row of Students, used or not: a row past the last student has an empty ID.
    for (long i = 0; i < course_.Students.Allocated(); ++i) {
        const StudentRec& student = course_.Students[i];
        const std::string id = Trim(student.StudentId);
        if (id.empty() || id.front() != '#') continue;
        const double total = student.Score[0];
        GhostRec& row = ghostList_[ghostCount_];
        // Every session counts in the divisor, also those in which the remote did not vote.
        row.Average =
            total <= 0 || course_.NumSessions < 1 ? 0 : Round(total / course_.NumSessions, 2);
        row.Total = total;
        row.Selected = kFalse;
        row.Serial = static_cast<int16_t>(ghostCount_);
        row.RemoteId = PadRemote(ReplaceAll(id, "#", ""));
        ++ghostCount_;
    }
    SetListScroll(vsScr_, ghostCount_);
    ShowGhostRows();
}

void GhostRemoteScreen::ShowGhostRows() {
    for (int r = 0; r < kListRows; ++r) {
        const GhostRec& row = ghostList_[vsScr_.value + r];
        GhostRow& shown = rows_[r];
        if (!GhostCounts(row)) {
            shown = GhostRow{};
            continue;
        }
        shown.TxtSerial.text = std::to_string(row.Serial + 1);
        shown.TxtRemoteID.text = row.RemoteId;
        shown.TxtTotal.text = NumberText(row.Total);
        shown.TxtAverage.text = NumberText(row.Average);
        shown.ChkSelect.checked = row.Selected == kTrue;
    }
}

void GhostRemoteScreen::SetGhostSelected(int serial, int16_t value) {
    ghostList_[serial].Selected = value;
}

void GhostRemoteScreen::SetAllGhostSelected(int16_t value) {
    for (int i = 0; i < ghostCount_; ++i)
        if (GhostCounts(ghostList_[i])) ghostList_[i].Selected = value;
}

void GhostRemoteScreen::ChkSelectClick(int r, bool checked) {
    const std::string& serial = rows_[r].TxtSerial.text;
    if (TrimView(serial).empty()) {
        rows_[r].ChkSelect.checked = false;
        return;
    }
    SetGhostSelected(std::atoi(serial.c_str()) - 1, checked ? kTrue : kFalse);
    ShowGhostRows();
}

void GhostRemoteScreen::CmdSelectAllClick() {
    SetAllGhostSelected(kTrue);
    ShowGhostRows();
}

void GhostRemoteScreen::CmdUnSelectAllClick() {
    SetAllGhostSelected(kFalse);
    ShowGhostRows();
}

void GhostRemoteScreen::VsScrChange(int value) {
    vsScr_.value = value;
    ShowGhostRows();
}

void GhostRemoteScreen::RowKeyDown(int key) {
    if (key != kKeyPageUp && key != kKeyPageDown) return;
    const int value = PagedValue(vsScr_, key == kKeyPageDown);
    if (value != vsScr_.value) VsScrChange(value);
}

void GhostRemoteScreen::CmdDeleteClick() {
    Hide();
    const Answer answer =
        host_.Message(DeleteWarning(), kProgramTitle, Icon::Stop, Buttons::OkCancel, kDestructive);
    if (answer != Answer::Ok) {
        Show();
        return;
    }
    std::vector<std::string> ticked;
    for (long i = 0; i < ghostList_.Allocated(); ++i)
        if (GhostCounts(ghostList_[i]) && ghostList_[i].Selected == kTrue)
            ticked.push_back(ghostList_[i].RemoteId);
    ChangeScope change(course_.AppPath,
                       ticked.size() == 1
                           ? "Purge of clicker " + Trim(ticked[0])
                           : "Purge of " + std::to_string(ticked.size()) + " clickers");
    host_.SetProgressCaption(kFirstDeleteCaption);
    // Each deleted remote costs a pass over all logs and a reload of all sessions.
    for (long i = 0; i < ghostList_.Allocated(); ++i) {
        const GhostRec& row = ghostList_[i];
        if (!GhostCounts(row) || row.Selected != kTrue) continue;
        const std::string remote = row.RemoteId;
        RemoveRemote(course_, host_, remote);
        UpdateClickerLogs(course_, host_, screen_, remote, "", kTrue, kTrue);
        purged_.push_back(remote);
    }
    host_.SetProgressCaption(kReloadCaption);
    LoadSessions(course_, host_, screen_);
    closed_ = true;
}

}  // namespace tallory
