#include "grid/ScoreGrid.h"

#include <algorithm>
#include <utility>

#include "common/Numbers.h"
#include "common/Paths.h"
#include "common/Text.h"
#include "grid/CourseLoad.h"
#include "registration/Roster.h"
#include "start/Fields.h"

namespace tallory {

namespace {

// Controls that stay usable while the help panel is open.
bool UsableDuringHelp(Control control) {
    switch (control) {
        case Control::CmdHelp:
        case Control::PicHelp:
        case Control::LblHelpCaption:
        case Control::CmdExit:
        case Control::CmdExitApp:
        case Control::LblExit:
            return true;
        default:
            return false;
    }
}

// The column controls whose state the help panel leaves alone in both directions.
bool KeepsStateAcrossHelp(Control control) {
    return control == Control::CmdEdit || control == Control::ChkExport ||
           control == Control::LblSession;
}

// The buttons, labels and drawn commands that a course without sessions keeps usable.
bool UsableWithoutSessions(Control control) {
    switch (control) {
        case Control::CmdExitApp:
        case Control::CmdExit:
        case Control::LblCMS:
        case Control::LblSubject:
        // Not buttons or labels: the list, the scroll bars and the help picture keep their state.
        case Control::CmbDisplayName:
        case Control::HscrlSession:
        case Control::VscrlStudent:
        case Control::PicHelp:
            return true;
        default:
            return false;
    }
}

int Clamp(int value, const ScrollBar& bar) {
    return std::max(bar.minimum, std::min(value, bar.maximum));
}

}  // namespace

std::string SessionHeading(const Course& course, int session) {
    return Left(Trim(SessionLabel(course, session)), 12);
}

std::string SessionCellText(const StudentRec& student, int session) {
    // Only presence decides: a student whose clicker was seen but answered nothing has 0 points.
    return student.Present[session] != 0 ? NumberText(student.Score[session]) : "Ab";
}

std::string StudentNameText(const Course& course, const StudentRec& student, DisplayOrder order) {
    if (order == DisplayOrder::LastName) {
        std::string lastName = Trim(GetRosterEntry(course, student.StudentId).LastName);
        return lastName.empty() ? Trim(student.StudentId) : " " + Left(lastName, 14);
    }
    return " " + Left(Trim(student.StudentId), 14);
}

NameColour NameColourOf(const StudentRec& student) {
    const bool unregistered =
        StartsWith(student.StudentId, "#") || SameText(student.RemoteId, "unregistered");
    return unregistered ? NameColour::Red : NameColour::Blue;
}

double StudentAverage(const Course& course, const StudentRec& student) {
    // The average is over all sessions, not only those attended.
    if (course.NumSessions < 1) return 0;
    return Round(student.Score[0] / course.NumSessions, 2);
}

void ScoreGrid::Changed() {
    if (onChanged) onChanged();
}

GridView::GridView() {
    cmbDisplayName.index = static_cast<int>(DisplayOrder::StudentId);
    cmdHelp.text = "Help";
    PicHelp.visible = false;
}

namespace {

// Calls `each` with every state that stands for the control.
template <class View, class Each>
void ForEachState(View& view, Control control, Each each) {
    auto all = [&](auto& states) {
        for (auto& state : states) each(state);
    };
    switch (control) {
        case Control::CmdHelp:
            return each(view.cmdHelp);
        case Control::CmdExit:
            return each(view.CmdExit);
        case Control::CmdExitApp:
            return each(view.CmdExitApp);
        case Control::LblExit:
            return each(view.lblExit);
        case Control::LblSubject:
            return each(view.lblSubject);
        case Control::LblCMS:
            return each(view.lblCMS);
        case Control::LblNext:
            return each(view.lblNext);
        case Control::LblPrevious:
            return each(view.lblPrevious);
        case Control::CmbDisplayName:
            return each(view.cmbDisplayName);
        case Control::HscrlSession:
            return each(view.sessionScroll);
        case Control::VscrlStudent:
            return each(view.studentScroll);
        case Control::LblSession:
            return all(view.lblSession);
        case Control::LblStudentName:
            return all(view.lblStudentName);
        case Control::LblTotal:
            return all(view.lblTotal);
        case Control::LblAverage:
            return all(view.lblAverage);
        case Control::CmdEdit:
            return all(view.cmdEdit);
        case Control::ChkExport:
            return all(view.chkExport);
        case Control::PicHelp:
            return each(view.PicHelp);
        case Control::LblHelpCaption:
            return each(view.LblHelpCaption);
    }
}

}  // namespace

bool GridView::Enabled(Control control) const {
    bool enabled = true;
    bool first = true;
    ForEachState(*this, control, [&](const auto& state) {
        if (first) enabled = state.enabled;
        first = false;
    });
    return enabled;
}

void GridView::SetEnabled(Control control, bool enabled) {
    ForEachState(*this, control, [&](auto& state) { state.enabled = enabled; });
}

void ScoreGrid::Start(Host& host, bool largeFonts) {
    // A course chosen from the Classes list already has its folders; the large-font layout makes
    // sure of them in every case.
    if (largeFonts || !FileExists(CoursePath(course_.ProgramFolder, "\\Classes\\Options.csv")))
        for (const char* folder : {"\\Images", "\\SessionData", "\\Reports"})
            CreateFolderPath(CoursePath(course_.AppPath, folder));
    pageNo_ = 0;
    // Choosing the display order sorts and redraws what is there: nothing, before the load.
    DisplayNameChanged(DisplayOrder::StudentId, host);
    view_.lblCMS.text.clear();
    view_.lblCMS.visible = false;

    CourseLoadOptions options;
    options.shown = [this](const LoadedCourse& loaded) {
        format_ = loaded.format;
        view_.caption = "Tallory-" + loaded.courseName;
        view_.lblCMS.text = loaded.format.caption;
        view_.lblCMS.visible = !view_.lblCMS.text.empty();
        view_.lblSubject.text = loaded.courseLabel;
        Changed();
    };
    LoadedCourse loaded = LoadCourse(course_, host, *this, options);
    options.shown(loaded);
    FitSessionScroll();
    host.HideProgress();
    if (course_.NumSessions < 1) DisableAllButExits();
    Changed();
}

void ScoreGrid::FitSessionScroll() {
    ScrollBar& bar = view_.sessionScroll;
    if (course_.NumSessions > kGridColumns) {
        bar.visible = true;
        bar.maximum = course_.NumSessions - kGridColumns;
    } else {
        bar.visible = false;
    }
    bar.value = Clamp(pageNo_, bar);
}

void ScoreGrid::ReloadSessions(Host& host) {
    const int keptSession = view_.sessionScroll.value;
    const int keptStudent = view_.studentScroll.value;
    // A view of the newest sessions follows a session that the polling application starts.
    const bool atNewest =
        !view_.sessionScroll.visible || keptSession >= view_.sessionScroll.maximum;
    LoadSessions(course_, host, *this);
    FitSessionScroll();
    host.HideProgress();
    if (!atNewest) view_.sessionScroll.value = Clamp(keptSession, view_.sessionScroll);
    SessionScrollChanged(view_.sessionScroll.value);
    if (view_.studentScroll.visible) StudentScrollChanged(Clamp(keptStudent, view_.studentScroll));
    Changed();
}

void ScoreGrid::ClearTable() {
    for (int r = 1; r <= kGridRows; ++r) {
        view_.lblStudentName[r].text.clear();
        view_.lblTotal[r].text.clear();
        view_.lblAverage[r].text.clear();
    }
    for (ControlState& label : view_.lblSession) label.text.clear();
    for (ControlState& button : view_.cmdEdit) button.visible = false;
    for (ControlState& tick : view_.chkExport) tick.visible = false;
    Changed();
}

void ScoreGrid::SessionsLoaded(int numSessions, int numStudents) {
    pageNo_ = NewestPage(numSessions);
    ScrollBar& bar = view_.studentScroll;
    if (numStudents < kGridRows) {
        bar.visible = false;
    } else {
        bar.visible = true;
        bar.minimum = 0;
        bar.maximum = numStudents - kGridRows;
        bar.largeChange = kGridRows - 1;
        bar.value = Clamp(bar.value, bar);
    }
    Changed();
}

void ScoreGrid::UpdateTable() {
    busy_ = true;
    ScrollBar& sessions = view_.sessionScroll;
    sessions.maximum = std::max(0, course_.NumSessions - kGridColumns);
    sessions.value = Clamp(sessions.value, sessions);
    if (course_.NumSessions < kGridColumns + 1) sessions.visible = false;
    // An empty course leaves the busy flag set: there are no export marks to protect then.
    if (course_.NumSessions < 1 && course_.NumStudents < 1) {
        Changed();
        return;
    }
    view_.lblNext.visible = pageNo_ + kGridColumns < course_.NumSessions;
    view_.lblPrevious.visible = pageNo_ != 0;
    for (int r = 1; r <= kGridRows; ++r) {
        // Rows below the last student keep what they show; the first row is always drawn.
        if (view_.studentScroll.value + r > course_.NumStudents && r != 1) continue;
        ShowStudentRow(r);
    }
    busy_ = false;
    Changed();
}

void ScoreGrid::ShowSessionCell(int r, int c, int s) {
    const int heading = (c - 1) * kLabelsPerColumn;
    std::string& cell = view_.lblSession[heading + r].text;
    if (c > course_.NumSessions) {
        view_.lblSession[heading].text = " ";
        cell = " ";
        view_.cmdEdit[c - 1].visible = false;
        view_.chkExport[c - 1].visible = false;
        return;
    }
    const int session = pageNo_ + c;
    view_.lblSession[heading].text = SessionHeading(course_, session);
    view_.cmdEdit[c - 1].visible = true;
    view_.chkExport[c - 1].visible = true;
    view_.chkExport[c - 1].checked = course_.ExportSel[session] != 0;
    const StudentRec& student = std::as_const(course_).Students[s];
    if (student.Present[session] == 0 && s > course_.NumStudents)
        cell = " ";
    else
        cell = SessionCellText(student, session);
}

void ScoreGrid::ShowStudentRow(int r) {
    const int s = view_.studentScroll.value + r;
    for (int c = 1; c <= kGridColumns; ++c) ShowSessionCell(r, c, s);

    // Past the last student (only ever the first row) the name comes from an empty record.
    const StudentRec& student = std::as_const(course_).Students[s];
    view_.lblTotal[r].text = s > course_.NumStudents ? " " : NumberText(student.Score[0]);
    view_.lblStudentName[r].text = StudentNameText(course_, student, view_.Order());
    view_.nameColour[r] = NameColourOf(student);
    view_.lblAverage[r].text = "Average: " + NumberText(StudentAverage(course_, student));
}

void ScoreGrid::NextClick() {
    if (pageNo_ + kGridColumns < course_.NumSessions) SetSessionScroll(++pageNo_);
}

void ScoreGrid::PreviousClick() {
    if (pageNo_ > 0) SetSessionScroll(--pageNo_);
}

void ScoreGrid::SessionScrollChanged(int value) {
    ScrollBar& bar = view_.sessionScroll;
    if (!bar.visible) return;
    bar.value = Clamp(value, bar);
    pageNo_ = bar.value;
    UpdateTable();
}

void ScoreGrid::SetSessionScroll(int value) {
    ScrollBar& bar = view_.sessionScroll;
    const int clamped = Clamp(value, bar);
    if (clamped == bar.value) {
        Changed();
        return;
    }
    bar.value = clamped;
    SessionScrollChanged(clamped);
}

void ScoreGrid::StudentScrollChanged(int value) {
    view_.studentScroll.value = Clamp(value, view_.studentScroll);
    UpdateTable();
}

void ScoreGrid::MouseWheel(int rotation) {
    const ScrollBar& bar = view_.studentScroll;
    // Turning the wheel towards the user moves down the list.
    const int value = rotation < 1 ? std::min(bar.value + bar.smallChange, bar.maximum)
                                   : std::max(bar.value - bar.smallChange, bar.minimum);
    if (value != bar.value) StudentScrollChanged(value);
}

void ScoreGrid::KeyDown(GridKey key) {
    const ScrollBar& sessions = view_.sessionScroll;
    const ScrollBar& students = view_.studentScroll;
    auto moveStudents = [&](int step) {
        if (!students.visible || !students.enabled) return;
        const int value = Clamp(students.value + step, students);
        if (value != students.value) StudentScrollChanged(value);
    };
    auto moveSessions = [&](int value) {
        if (sessions.visible && sessions.enabled) SetSessionScroll(value);
    };
    switch (key) {
        case GridKey::Left:
            if (view_.lblPrevious.enabled) PreviousClick();
            return;
        case GridKey::Right:
            if (view_.lblNext.enabled) NextClick();
            return;
        case GridKey::Up:
            return moveStudents(-students.smallChange);
        case GridKey::Down:
            return moveStudents(students.smallChange);
        case GridKey::PageUp:
            return moveStudents(-students.largeChange);
        case GridKey::PageDown:
            return moveStudents(students.largeChange);
        case GridKey::Home:
            return moveSessions(sessions.minimum);
        case GridKey::End:
            return moveSessions(sessions.maximum);
    }
}

void ScoreGrid::DisplayNameChanged(DisplayOrder order, Host& host) {
    view_.cmbDisplayName.index = static_cast<int>(order);
    host.YieldEvents();
    SortStudents(course_, order);
    UpdateTable();
}

void ScoreGrid::ExportChanged(int column, bool checked) {
    if (busy_) return;
    course_.ExportSel[pageNo_ + 1 + column] = checked ? 1 : 0;
    UpdateTable();
}

void ScoreGrid::ChooseSession(int session) {
    course_.CurrentSession = session;
    course_.CurrentLogFile = course_.SessionFile[session];
}

int ScoreGrid::HeadingClick(int index) {
    if (index % kLabelsPerColumn != 0) return 0;
    const int session = index / kLabelsPerColumn + pageNo_ + 1;
    // A blank heading stands for no session: there is nothing to rename or remove.
    if (session > course_.NumSessions) return 0;
    ChooseSession(session);
    return session;
}

int ScoreGrid::EditClick(int column) {
    const int session = pageNo_ + column + 1;
    if (session > course_.NumSessions) return 0;
    ChooseSession(session);
    return session;
}

int ScoreGrid::StudentClick(int row) const {
    if (TrimView(view_.lblStudentName[row].text).empty()) return 0;
    return view_.studentScroll.value + row;
}

Hover ScoreGrid::HoverOf(int index) const {
    const std::string& text = view_.lblSession[index].text;
    if (index % kLabelsPerColumn == 0) {
        if (TrimView(text).empty()) return {};
        return {true, true, ""};
    }
    if (SameText(text, "Ab")) return {true, true, "Absent"};
    return {};
}

void ScoreGrid::ToggleHelp() {
    const bool open = !view_.HelpOpen();
    view_.PicHelp.visible = open;
    view_.cmdHelp.text = open ? "Close Help" : "Help";
    for (int i = 0; i < kControlCount; ++i) {
        const Control control = static_cast<Control>(i);
        if (KeepsStateAcrossHelp(control)) continue;
        if (!open || !UsableDuringHelp(control)) view_.SetEnabled(control, !open);
    }
    Changed();
}

void ScoreGrid::DisableAllButExits() {
    for (int i = 0; i < kControlCount; ++i) {
        const Control control = static_cast<Control>(i);
        if (!UsableWithoutSessions(control)) view_.SetEnabled(control, false);
    }
    Changed();
}

}  // namespace tallory
