#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/Course.h"
#include "common/Host.h"
#include "scoring/ScreenParts.h"
#include "scoring/SessionStore.h"
#include "web/Internet.h"
#include "web/WebRegistration.h"

namespace tallory {

// A list box: its rows, the item data of each row, and the selected row in state.index.
struct ListState {
    ControlState state;
    std::vector<std::string> rows;
    std::vector<int> itemData;

    void Clear() {
        rows.clear();
        itemData.clear();
        state.index = -1;
    }
};

// frmWebSync: walks the unregistered remotes of Students, asks the registration source who
// registered each, proposes roster students and lets the instructor accept or ignore; at the end
// it checks every registered remote for conflicts and reports.
class WebSyncScreen {
  public:
    enum class State { Welcome, Synchronizing, Verify, Done };

    // The screen's load: reads "webcode", names the source and enters the welcome state.
    // `serviceBase` is the registration server (TALLORY_REGISTRATION_BASE).
    WebSyncScreen(Course& course, Host& host, UrlFetcher& fetcher, std::string serviceBase);

    void SetState(State state);
    void NextStudent();
    void FillWebList();
    void FillRosterList();
    // Checks every remote of RemoteTable against its web registrations; only notes result.
    void ConfirmRegisteredRemotes();

    void wSyncClick();
    void wAcceptClick();
    void wIgnoreClick();
    void wCancelClick();
    // Selects a row of wList (-1 for none).
    void wListSelect(int row);

    State CurrentState() const { return state_; }
    // wCancel closed the screen; Cancelled() tells whether it read "Cancel" then.
    bool Hidden() const { return hidden_; }
    bool Cancelled() const { return cancelled_; }
    // The instructor chose, once the screen had closed, not to keep what it found: the run ends as
    // Cancel ends it.
    void KeepNothing() { cancelled_ = true; }
    bool IsSql() const { return isSql_; }
    const std::string& SchoolName() const { return schoolName_; }
    int BestScore() const { return bestScore_; }
    int CurrentStudent() const { return currentStudent_; }
    const WebRegistrations& Registrations() const { return regs_; }

    const ControlState& wNote() const { return wNote_; }
    const ControlState& wWhich() const { return wWhich_; }
    const ControlState& wSync() const { return wSync_; }
    const ControlState& wAccept() const { return wAccept_; }
    const ControlState& wIgnore() const { return wIgnore_; }
    const ControlState& wCancel() const { return wCancel_; }
    const ControlState& wWebListLabel() const { return wWebListLabel_; }
    const ControlState& wListLabel() const { return wListLabel_; }
    const ListState& wWebList() const { return wWebList_; }
    const ListState& wList() const { return wList_; }

    // Called after every change of the controls, so that a window can repaint mid-walk.
    std::function<void()> onChanged;
    // Called at the end of each verify state, before an automatic accept; `automatic` tells
    // whether the screen accepts on its own.
    std::function<void(bool automatic)> onVerify;

  private:
    void Changed();
    bool AcceptsByItself() const;
    // After a fetch: true when the run is over, because the screen was closed or the fetch was
    // given up (too slow, too large, cancelled), which ends the run as Cancel does.
    bool GaveUpFetch();
    void Accept();

    Course& course_;
    Host& host_;
    UrlFetcher& fetcher_;
    WebRegistrations regs_;
    State state_ = State::Welcome;
    bool isSql_ = true;
    std::string schoolName_;
    int bestScore_ = 0;
    bool cancelled_ = false;
    bool hidden_ = false;
    int registrationNo_ = 1;
    int currentStudent_ = -1;

    ControlState wNote_;
    ControlState wWhich_;
    ControlState wSync_;
    ControlState wAccept_;
    ControlState wIgnore_;
    ControlState wCancel_;
    ControlState wWebListLabel_;
    ControlState wListLabel_;
    ListState wWebList_;
    ListState wList_;
};

// lblSyncWebRegn of the main window. When the sibling tool and its settings lie in the course
// folder, offers to start it instead ("Confirm Sync"). Otherwise shows the screen through
// `showModal` (which returns once the screen is hidden); unless the run was cancelled, rewrites
// RemoteID.csv and reloads the sessions into `screen`.
void SyncWebRegistrations(Course& course, Host& host, MainScreen& screen, UrlFetcher& fetcher,
                          const std::function<void(WebSyncScreen&)>& showModal);

// The end of a run that was not cancelled: RemoteID.csv rewritten from RemoteTable, the sessions
// reloaded into `screen`.
void SaveWebRegistrations(Course& course, Host& host, MainScreen& screen);

// How a script answers each verify state that waits for a person.
enum class VerifyAnswer { Accept, Ignore, Cancel };

// Runs a loaded screen without a person: presses Continue, then at every verify that waits either
// selects the first roster row and presses Accept (Ignore when the list is empty), presses
// Ignore, or presses Cancel; at the end closes it with Done. Returns the note of the done state,
// or nothing when the run was cancelled before it.
std::optional<std::string> AnswerWebSync(WebSyncScreen& screen, VerifyAnswer answer);

// The text of the question that offers the sibling tool instead.
std::string ConfirmSyncText();

}  // namespace tallory
