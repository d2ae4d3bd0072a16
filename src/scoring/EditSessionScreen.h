#pragma once

#include <string>
#include <string_view>

#include "common/Course.h"
#include "common/Host.h"
#include "scoring/ScreenParts.h"
#include "start/ProgramStart.h"

namespace tallory {

// Copies the log `file` of SessionData into RemovedLogsFolder as "<file>.<date-time>"; false with
// a reason when the copy was not made. `kept` gets the copy's path.
bool KeepRemovedLog(const Course& course, const std::string& file, std::string& kept,
                    std::string& error);

// frmEditSession, opened from a session heading of the main window: renames or removes a session.
class EditSessionScreen {
  public:
    // Makes `session` the current session and fills the form from the tables; the log is not read.
    EditSessionScreen(Course& course, Host& host, SessionGrid& grid, int session);

    void txtSessionNameChange(std::string_view text);
    // Enter in the title box saves.
    void txtSessionNameEnter() { cmdSaveClick(); }
    // The checks of a new title; on a failure the message is shown, the offending text selected,
    // and the focus belongs in txtSessionName.
    bool ValidSessionName();
    void cmdSaveClick();
    void cmdRemoveClick();
    void cmdCancelClick();
    // The title box no longer reads as the session's title: closing would drop the edit.
    bool HasUnsavedEdits() const { return txtSessionName_.text != shownTitle_; }
    // Run by the opener once the form has closed: a saved title becomes the session's title in
    // the grid; a blank one leaves the heading to the date.
    void AfterClose();

    const ControlState& lblFileName() const { return lblFileName_; }
    const ControlState& txtSessionName() const { return txtSessionName_; }
    bool Saved() const { return saved_; }
    // cmdSave got the new title into the log on disk.
    bool WriteSucceeded() const { return written_; }
    bool Closed() const { return closed_; }
    // cmdRemove went through: the log was emptied and the sessions reloaded.
    bool Removed() const { return removed_; }
    // cmdRemove was answered Yes.
    bool Confirmed() const { return confirmed_; }
    // cmdRemove wrote the "x" copy.
    bool CopyWritten() const { return copyWritten_; }
    // Where cmdRemove kept the original text of the log; empty before.
    const std::string& KeptLog() const { return keptLog_; }
    int Session() const { return session_; }

  private:
    bool Refuse(std::string_view message, size_t start, size_t length);

    Course& course_;
    Host& host_;
    SessionGrid& grid_;
    int session_;
    ControlState lblFileName_;
    ControlState txtSessionName_;
    std::string shownTitle_;  // the title the form opened with
    bool saved_ = false;
    bool closed_ = false;
    bool removed_ = false;
    bool written_ = false;
    bool confirmed_ = false;
    bool copyWritten_ = false;
    std::string keptLog_;
};

}  // namespace tallory
