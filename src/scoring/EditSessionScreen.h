#pragma once

#include <string>
#include <string_view>

#include "common/Course.h"
#include "common/Host.h"
#include "scoring/ScreenParts.h"

namespace tallory {

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
    // Run by the opener once the form has closed: a saved title that is not blank becomes the
    // session's title in the grid.
    void AfterClose();

    const ControlState& lblFileName() const { return lblFileName_; }
    const ControlState& txtSessionName() const { return txtSessionName_; }
    bool Saved() const { return saved_; }
    // cmdSave got the new title into the log on disk.
    bool WriteSucceeded() const { return written_; }
    bool Closed() const { return closed_; }
    // cmdRemove went through: the log was emptied and the sessions reloaded.
    bool Removed() const { return removed_; }
    int Session() const { return session_; }

  private:
    bool Refuse(std::string_view message, size_t start, size_t length);

    Course& course_;
    Host& host_;
    SessionGrid& grid_;
    int session_;
    ControlState lblFileName_;
    ControlState txtSessionName_;
    bool saved_ = false;
    bool closed_ = false;
    bool removed_ = false;
    bool written_ = false;
};

}  // namespace tallory
