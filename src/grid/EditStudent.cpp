#include "grid/EditStudent.h"

#include "common/ChangeJournal.h"
#include "common/Paths.h"
#include "common/Text.h"
#include "housekeeping/PurgeClickerLogs.h"
#include "registration/RemoteTable.h"
#include "registration/Roster.h"
#include "start/Fields.h"

namespace tallory {

namespace {

// The list of a student's remotes is split into fields 0 to this.
constexpr int kClickListTopField = 99;
constexpr size_t kShownNameLength = 20;

}  // namespace

EditStudentScreen::EditStudentScreen(Course& course, Host& host, MainScreen& screen, int row)
    : course_(course), host_(host), screen_(screen) {
    const StudentRec& student = course_.Students[row];
    lbliStudent_.text = std::to_string(row);
    const bool unregistered = StartsWith(student.StudentId, "#");
    txtStudentId_.text = unregistered ? "" : student.StudentId;
    txtClickerId_.text = student.RemoteId;
    // A remote without a student is the remote the screen acts on; a student's first remote
    // takes its place when the screen becomes active.
    if (unregistered) lblClickerID_.text = student.RemoteId;
}

void EditStudentScreen::Activate() {
    lblStudentID_.text = txtStudentId_.text;
    if (txtStudentId_.text.empty()) {
        cmdRemove_.enabled = cmdRemove_.visible = true;
        cmdSave_.enabled = cmdSave_.visible = false;
        cmdAdd_.enabled = false;
        lblStudentID_.text = "Unregistered";
        label4_.text = "Unregistered Clicker";
        lblLastName_.text.clear();
        txtNewClickerId_.text.clear();
    } else {
        clickList_.clear();
        cmbClickList_.index = -1;
        cmdRemove_.enabled = cmdRemove_.visible = false;
        cmdSave_.enabled = cmdSave_.visible = true;
        const std::string list = RemotesOfStudent(course_, txtStudentId_.text);
        label4_.text = "Registered Clickers";
        const RosterRec entry = GetRosterEntry(course_, txtStudentId_.text);
        lblLastName_.text = TrimView(entry.LastName).empty()
                                ? ""
                                : Left(entry.LastName + " , " + entry.FirstName, kShownNameLength);
        Fields fields(kClickListTopField);
        SplitFields(list, fields);
        cmdSave_.text = "Add Clicker";
        lblClickerID_.text.clear();
        if (fields.Count() >= 0) {
            for (int f = 0; f <= fields.Count(); ++f) clickList_.push_back(fields.Text(f));
            lblClickerID_.text = clickList_.front();
            cmdSave_.text = "Remove Clicker";
        }
        cmdAdd_.enabled = true;
        txtNewClickerId_.text.clear();
    }
    if (!clickList_.empty()) cmbClickList_.index = 0;
    cmbClickList_.text = cmbClickList_.index >= 0 ? clickList_[cmbClickList_.index] : "";
    if (NormalKey(cmdSave_.text) == "ADD CLICKER") cmdSave_.visible = false;
}

void EditStudentScreen::cmbClickListClick(int index) {
    cmbClickList_.index = index;
    cmbClickList_.text = index >= 0 ? clickList_[index] : "";
    // The caption follows the choice; the remote the pass over the logs names does not.
    cmdSave_.text = index < 0 ? "Add Clicker" : "Remove Clicker";
}

void EditStudentScreen::TxtNewClickerIdChange(std::string_view text) {
    txtNewClickerId_.text = std::string(text);
}

bool EditStudentScreen::HasUnsavedEdits() const {
    return !TrimView(txtNewClickerId_.text).empty();
}

bool EditStudentScreen::TxtNewClickerIdKey(int key) {
    return IsRemoteIdKey(key);
}

void EditStudentScreen::Hide() {
    form_.visible = false;
    if (onChanged) onChanged();
}

std::string EditStudentScreen::RemoteIdPath() const {
    return CoursePath(course_.AppPath, "\\SessionData\\RemoteID.csv");
}

void EditStudentScreen::CmdAddClick() {
    focusNewClicker_ = false;
    const std::string remote = Trim(txtNewClickerId_.text);
    if (remote.empty()) {
        host_.Message("New clicker id cannot be blank", "New Clicker Id Required",
                      Icon::Information);
        focusNewClicker_ = true;
        return;
    }
    ChangeScope change(course_.AppPath,
                       "Clicker " + remote + " added to student " + Trim(txtStudentId_.text));
    host_.ShowProgress();
    Hide();
    AddRemote(course_, remote, txtStudentId_.text);
    host_.SetProgressText("Saving Remote ID");
    WriteRemoteIds(course_, host_, RemoteIdPath());
    host_.SetProgressText("Updating Lectures...");
    // The pass names the student's first remote, as the screen showed it when it became active.
    UpdateClickerLogs(course_, host_, screen_, lblClickerID_.text, txtStudentId_.text, kFalse,
                      kFalse);
    host_.HideProgress();
    closed_ = true;
}

void EditStudentScreen::cmdSaveClick() {
    // Whatever its caption reads, the button removes the chosen remote.
    const std::string remote = cmbClickList_.text;
    ChangeScope change(
        course_.AppPath,
        TrimView(remote).empty()
            ? "Update of the logs of student " + Trim(txtStudentId_.text)
            : "Clicker " + Trim(remote) + " removed from student " + Trim(txtStudentId_.text));
    if (!TrimView(remote).empty()) {
        const Answer answer = host_.Message(
            "Are you sure you want to delete the selected clicker. The complete process might "
            "take several minutes",
            "Confirm Delete", Icon::Question, Buttons::YesNo, kDestructive);
        if (answer == Answer::No) return;
        Hide();
        host_.ShowProgress();
        host_.SetProgressText("Deleting Remote Id :- '" + remote + "'");
        RemoveRemote(course_, host_, remote);
    }
    host_.SetProgressText("Updating Lectures...");
    // The pass names the student's first remote, whichever row left the registrations.
    UpdateClickerLogs(course_, host_, screen_, lblClickerID_.text, txtStudentId_.text, kFalse,
                      kFalse);
    closed_ = true;
}

void EditStudentScreen::cmdRemoveClick() {
    const std::string& remote = lblClickerID_.text;
    const Answer answer =
        host_.Message("This will permanently delete " + remote + " from the log files.",
                      kProgramTitle, Icon::None, Buttons::OkCancel, kDestructive);
    if (answer != Answer::Ok) {
        closed_ = true;
        return;
    }
    Hide();
    ChangeScope change(course_.AppPath, "Deletion of the logs of clicker " + Trim(remote));
    UpdateClickerLogs(course_, host_, screen_, remote, "", kTrue, kFalse);
    // No count is kept: the remote stands where the count would.
    host_.Message(remote + " records deleted from the log files.", kProgramTitle);
    closed_ = true;
}

}  // namespace tallory
