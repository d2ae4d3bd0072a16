#include "web/WebSyncScreen.h"

#include <deque>
#include <utility>

#include "common/ChangeJournal.h"
#include "common/Paths.h"
#include "common/Text.h"
#include "registration/RemoteTable.h"

namespace tallory {

namespace {

std::string ListText(std::string_view last, std::string_view first, std::string_view id) {
    return Trim(last) + " " + Trim(first) + " (" + Trim(id) + ")";
}

}  // namespace

WebSyncScreen::WebSyncScreen(Course& course, Host& host, UrlFetcher& fetcher,
                             std::string serviceBase)
    : course_(course), host_(host), fetcher_(fetcher) {
    regs_.serviceBase = std::move(serviceBase);
    wNote_.text = "WebSync synchronizes your clickers.  To start the WebSync, click Synchronize";
    wWebListLabel_.text = "Web Registrations:";
    wListLabel_.text = "Students in Roster:";
    wAccept_.text = "Accept";
    wIgnore_.text = "Ignore";
    wSync_.text = "Continue";
    wCancel_.text = "Cancel";
    // The roster proposals appear with the first remote to verify.
    wList_.state.visible = false;
    wListLabel_.visible = false;

    course_.ClickerCheckStarted = false;
    regs_.WebRegLoaded = false;
    regs_.WebCode = WebCodeSetting(course_);
    isSql_ = IsSqlCode(regs_.WebCode);
    if (!isSql_) {
        schoolName_ = regs_.WebCode;
    } else if (Trim(regs_.WebCode).size() <= 5) {
        schoolName_ = UrlHostName(regs_.serviceBase);
        if (schoolName_.empty()) schoolName_ = "the registration service";
    } else {
        schoolName_ = Trim(std::string_view(regs_.WebCode).substr(3));
    }
    SetState(State::Welcome);
    registrationNo_ = 1;
    cancelled_ = false;
}

void WebSyncScreen::Changed() {
    if (onChanged) onChanged();
}

void WebSyncScreen::SetState(State state) {
    wWebList_.state.visible = false;
    wWebListLabel_.visible = false;
    wCancel_.text = "Cancel";
    state_ = state;
    switch (state) {
        case State::Welcome:
            wNote_.text =
                "To update student web registrations through " + schoolName_ + ", press Continue.";
            wSync_.visible = wSync_.enabled = true;
            wAccept_.visible = wIgnore_.visible = false;
            course_.ClickerCheckStarted = false;
            regs_.WebRegLoaded = false;
            break;
        case State::Synchronizing:
            wNote_.text = "Communicating.....";
            wSync_.visible = true;
            wSync_.enabled = false;
            wAccept_.visible = wIgnore_.visible = false;
            break;
        case State::Verify: {
            wSync_.visible = false;
            wAccept_.visible = wIgnore_.visible = true;
            wList_.state.visible = wListLabel_.visible = true;
            wWebList_.state.visible = wWebListLabel_.visible = true;
            FillWebList();
            FillRosterList();
            const std::string opening =
                "The remote " + std::as_const(course_).Students[currentStudent_].StudentId +
                " has been registered on the web to the names in the yellow box";
            wNote_.text =
                bestScore_ > 0
                    ? opening +
                          " and matches the students in the right box who are in your roster.  "
                          "Choose a name from the roster and press Accept to load web "
                          "registration information into your roster."
                    : opening +
                          ". It DOES NOT match any of the students in your roster.  You may "
                          "choose any name from the roster and press Accept to load web "
                          "registration information into your roster.";
            wWhich_.text = "(Processing registration " + std::to_string(registrationNo_) + " of " +
                           std::to_string(course_.NumStudents) + ")";
            ++registrationNo_;
            Changed();
            if (onVerify) onVerify(AcceptsByItself());
            return;
        }
        case State::Done:
            wSync_.visible = wAccept_.visible = wIgnore_.visible = false;
            wCancel_.text = "Done";
            ConfirmRegisteredRemotes();
            if (hidden_) return;  // closed during the check
            wNote_.text = "The WebSync process has completed.  " +
                          std::to_string(regs_.RecordsUpdated) + " records have been updated." +
                          "\r\n" +
                          (course_.ClickerCheckStarted ? "ClickerCheck.txt updated."
                                                       : "No conflicts identified.");
            break;
    }
    Changed();
}

bool WebSyncScreen::AcceptsByItself() const {
    if (wList_.rows.size() != 1 || wWebList_.rows.size() != 1) return false;
    const RosterRec& student = std::as_const(course_).Roster[wList_.itemData[0]];
    return RegisteredRemote(course_, student.StudentId).empty();
}

void WebSyncScreen::NextStudent() {
    // One turn per entry of Students, used or not, until a remote waits for the instructor.
    while (!hidden_) {
        ++currentStudent_;
        if (currentStudent_ > kMaxStudents) {
            SetState(State::Done);
            return;
        }
        const std::string id = std::as_const(course_).Students[currentStudent_].StudentId;
        if (!TrimView(id).empty()) SetState(State::Synchronizing);
        if (!StartsWith(id, "#")) {
            host_.YieldEvents();
            continue;
        }
        wList_.Clear();
        FetchRegistrationsForStudent(course_, host_, regs_, fetcher_, currentStudent_);
        if (GaveUpFetch()) return;
        if (hidden_ || regs_.WebMatchCount < 1) continue;
        SetState(State::Verify);
        // One web registration and one roster student without a clicker: no question asked.
        if (!AcceptsByItself()) return;
        host_.YieldEvents();
        if (hidden_) return;
        wList_.state.index = 0;
        Accept();
    }
}

void WebSyncScreen::Accept() {
    cancelled_ = false;
    const int row = wList_.state.index;
    if (row < 0 || row >= static_cast<int>(wList_.rows.size())) return;
    ApplyRegistration(course_, regs_, wList_.itemData[row], currentStudent_);
}

void WebSyncScreen::FillWebList() {
    wWebList_.Clear();
    bool anyMatched = false;
    for (int r = 0; r < regs_.NumWebRegs; ++r) anyMatched = anyMatched || regs_.WebRegMatched[r];
    for (int r = 0; r < regs_.NumWebRegs; ++r) {
        if (anyMatched && !regs_.WebRegMatched[r]) continue;
        const WebRegRec& web = std::as_const(regs_).WebRegs[r];
        wWebList_.rows.push_back(ListText(web.LastName, web.FirstName, web.StudentId));
        wWebList_.itemData.push_back(r);
    }
}

void WebSyncScreen::FillRosterList() {
    wList_.Clear();
    // The best scorer so far goes to the front, everybody else to the end.
    std::deque<int> candidates;
    int best = 0;
    for (int k = 0; k < course_.NumRoster; ++k) {
        const int score = std::as_const(course_).Roster[k].MatchScore;
        if (score > 0 && score >= best) {
            best = score;
            candidates.push_front(k);
        } else {
            candidates.push_back(k);
        }
    }
    for (int k : candidates) {
        const RosterRec& student = std::as_const(course_).Roster[k];
        if (student.MatchScore <= 0 && best != 0) continue;
        std::string text = ListText(student.LastName, student.FirstName, student.StudentId);
        const std::string remote = RegisteredRemote(course_, student.StudentId);
        if (!remote.empty()) text += " #" + remote;
        wList_.rows.push_back(std::move(text));
        wList_.itemData.push_back(k);
    }
    bestScore_ = best;
}

void WebSyncScreen::ConfirmRegisteredRemotes() {
    wNote_.text = "Confirming registered remotes";
    wWhich_.visible = true;
    for (int i = 1; i <= course_.NumRemotes && !hidden_; ++i) {
        const std::string remote = course_.RemoteTable[i].RemoteId;
        wWhich_.text = "Checking " + remote + " : " + std::to_string(i) + " / " +
                       std::to_string(course_.NumRemotes);
        Changed();
        host_.YieldEvents();
        CheckRemoteWebRegistration(course_, host_, regs_, fetcher_, remote);
        if (GaveUpFetch()) return;
    }
}

bool WebSyncScreen::GaveUpFetch() {
    if (fetcher_.Stopped() == FetchStop::None || hidden_) return hidden_;
    // Every later fetch would wait as long again: the run ends as a cancelled one does, and writes
    // nothing.
    cancelled_ = true;
    hidden_ = true;
    SetState(State::Welcome);
    return true;
}

void WebSyncScreen::wSyncClick() {
    if (!wSync_.visible || !wSync_.enabled || hidden_) return;
    currentStudent_ = -1;
    fetcher_.Reset();
    regs_.NumWebRegs = 0;
    regs_.RecordsUpdated = 0;
    NextStudent();
}

void WebSyncScreen::wAcceptClick() {
    if (!wAccept_.visible || hidden_) return;
    cancelled_ = false;
    if (wList_.state.index < 0) return;
    Accept();
    NextStudent();
}

void WebSyncScreen::wIgnoreClick() {
    if (!wIgnore_.visible || hidden_) return;
    cancelled_ = false;
    NextStudent();
}

void WebSyncScreen::wCancelClick() {
    // A fetch under way (this click came from its events) stops at once.
    fetcher_.Cancel();
    cancelled_ = NormalKey(wCancel_.text) == "CANCEL";
    hidden_ = true;
    SetState(State::Welcome);
}

void WebSyncScreen::wListSelect(int row) {
    wList_.state.index = row >= 0 && row < static_cast<int>(wList_.rows.size()) ? row : -1;
}

std::optional<std::string> AnswerWebSync(WebSyncScreen& screen, VerifyAnswer answer) {
    std::optional<std::string> doneNote;
    screen.wSyncClick();
    while (!screen.Hidden()) {
        if (screen.CurrentState() != WebSyncScreen::State::Verify) {
            if (screen.CurrentState() == WebSyncScreen::State::Done) doneNote = screen.wNote().text;
            screen.wCancelClick();
        } else if (answer == VerifyAnswer::Accept && !screen.wList().rows.empty()) {
            screen.wListSelect(0);
            screen.wAcceptClick();
        } else if (answer == VerifyAnswer::Cancel) {
            screen.wCancelClick();
        } else {
            screen.wIgnoreClick();
        }
    }
    return doneNote;
}

std::string ConfirmSyncText() {
    return "Campus Bridgeline is installed in this course folder. It shares your Tallory "
           "desktop information with your campus course management system (CMS). We can now "
           "synchronize your campus CMS roster/registration data from Tallory. Would you like us "
           "to synchronize your campus roster and registration data now?\r\n Note: In order to "
           "save and synchronize your registration data with your CMS successfully, you will "
           "need to exit and re-start Tallory.";
}

void SyncWebRegistrations(Course& course, Host& host, MainScreen& screen, UrlFetcher& fetcher,
                          const std::function<void(WebSyncScreen&)>& showModal) {
    const std::string tool = CoursePath(course.AppPath, "\\Campus Bridgeline.exe");
    if (FileExists(tool) && FileExists(CoursePath(course.AppPath, "\\Campus_Bridgeline.xml"))) {
        if (host.Message(ConfirmSyncText(), "Confirm Sync", Icon::Question, Buttons::YesNo) ==
            Answer::Yes) {
            host.StartProgram(tool, "download");
            return;
        }
    }
    // Say at once when nothing can be asked, rather than walk every clicker to no answer.
    const std::string serviceBase = RegistrationServiceBase();
    const std::string unreachable = UnreachableSourceMessage(WebCodeSetting(course), serviceBase);
    if (!unreachable.empty()) {
        host.Message(unreachable, kProgramTitle, Icon::Exclamation);
        return;
    }
    WebSyncScreen web(course, host, fetcher, serviceBase);
    showModal(web);
    // A cancelled run keeps its accepted registrations in memory only, until the next reload.
    if (web.Cancelled()) return;
    SaveWebRegistrations(course, host, screen);
}

void SaveWebRegistrations(Course& course, Host& host, MainScreen& screen) {
    ChangeScope change(course.AppPath, "WebSync");
    WriteRemoteIds(course, host, CoursePath(course.AppPath, "\\SessionData\\RemoteID.csv"));
    LoadSessions(course, host, screen);
    screen.UpdateTable();
}

}  // namespace tallory
