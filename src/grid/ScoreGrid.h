#pragma once

#include <array>
#include <functional>
#include <string>

#include "common/ControlState.h"
#include "common/Course.h"
#include "common/Host.h"
#include "export/ExportFormat.h"
#include "grid/GridShape.h"
#include "scoring/SessionStore.h"

namespace tallory {

// lblSession: per column a heading and one cell per row; column c (0-based) starts at c * 7.
constexpr int kLabelsPerColumn = kGridRows + 1;
constexpr int kSessionLabels = kGridColumns * kLabelsPerColumn;

// The main window's controls that can be enabled and disabled. Control arrays count as one.
enum class Control {
    CmdHelp,
    CmdExit,
    CmdExitApp,
    LblExit,
    LblSubject,
    LblCMS,
    LblNext,
    LblPrevious,
    CmbDisplayName,
    HscrlSession,
    VscrlStudent,
    LblSession,
    LblStudentName,
    LblTotal,
    LblAverage,
    CmdEdit,
    ChkExport,
    PicHelp,
    LblHelpCaption,
};
constexpr int kControlCount = static_cast<int>(Control::LblHelpCaption) + 1;

enum class NameColour { Blue, Red };

// What the grid shows of a student in a session, the same in every view of the class.
// A session's heading: the first 12 characters of its trimmed label.
std::string SessionHeading(const Course& course, int session);
// The student's points in the session as a number text, or "Ab" when absent.
std::string SessionCellText(const StudentRec& student, int session);
// The name as the grid shows it: a blank and up to 14 characters of the last name or the ID, or
// the bare ID of a student without a last name (a stray clicker's "#" row).
std::string StudentNameText(const Course& course, const StudentRec& student, DisplayOrder order);
// Red for a clicker nobody registered and for a roster student who never voted, blue otherwise.
NameColour NameColourOf(const StudentRec& student);
// The figure after "Average: ": the total over the number of all sessions, to 2 decimals.
double StudentAverage(const Course& course, const StudentRec& student);

// The keys that move the grid's view.
enum class GridKey { Left, Right, Up, Down, PageUp, PageDown, Home, End };

// What the pointer over a label of the grid shows.
struct Hover {
    bool underline = false;
    bool handCursor = false;
    std::string tip;
};

// Everything the main window shows, one ControlState per control. Rows of the name, total and
// average columns are 1..6.
struct GridView {
    std::string caption;  // the window title
    ControlState lblSubject, lblCMS;
    std::array<ControlState, kSessionLabels> lblSession;
    std::array<ControlState, kGridRows + 1> lblStudentName, lblTotal, lblAverage;
    std::array<NameColour, kGridRows + 1> nameColour{};
    std::array<ControlState, kGridColumns> cmdEdit, chkExport;
    ControlState lblNext, lblPrevious;
    ControlState cmbDisplayName;  // index: the DisplayOrder
    ControlState cmdHelp, PicHelp, LblHelpCaption;
    ControlState CmdExit, CmdExitApp, lblExit;
    ScrollBar sessionScroll;
    ScrollBar studentScroll;

    GridView();
    DisplayOrder Order() const { return static_cast<DisplayOrder>(cmbDisplayName.index); }
    bool HelpOpen() const { return PicHelp.visible; }
    // A control (an array counts as one) takes input.
    bool Enabled(Control control) const;
    void SetEnabled(Control control, bool enabled);
};

// The logic of the main window (frmSubject and its large-font twin): the state of its controls
// and one method per handler. A view binds it to real widgets and repaints from View() whenever
// onChanged fires.
class ScoreGrid : public MainScreen {
  public:
    explicit ScoreGrid(Course& course) : course_(course) {}

    const GridView& View() const { return view_; }
    // The course's grade-book format (lblCMS caption and tag), known after Start.
    const ExportFormat& Format() const { return format_; }
    int PageNo() const { return pageNo_; }

    // Called after every change of View().
    std::function<void()> onChanged;

    // The load handler after the single-instance test: folders, settings, registrations, roster,
    // every session log, then the window's own state. Run-time errors of the load propagate.
    void Start(Host& host, bool largeFonts);
    // Reads every session log again, as the start does, keeping the display order and the
    // session scroll position as far as it still exists; a view of the newest sessions stays on
    // the newest.
    void ReloadSessions(Host& host);

    // MainScreen: what the session store drives while it loads.
    void ClearTable() override;
    void UpdateTable() override;
    // Opens on the newest sessions; the student scroll bar shows when one page of rows is full.
    void SessionsLoaded(int numSessions, int numStudents) override;
    DisplayOrder Order() const override { return view_.Order(); }

    // Moving through sessions and students.
    void NextClick();
    void PreviousClick();
    // hscrlSession was moved (or dragged) to `value`.
    void SessionScrollChanged(int value);
    // Moves hscrlSession as a user would; the change handler runs when the value changes.
    void SetSessionScroll(int value);
    void StudentScrollChanged(int value);
    void MouseWheel(int rotation);
    // A key in the grid moves the view through the handlers of the mouse: the left and right
    // arrows are lblPrevious and lblNext, the up and down arrows a small step of vscrlStudent,
    // Page Up and Page Down a large one; Home and End move hscrlSession to the first and the last
    // sessions. A control that is disabled or hidden does not move.
    void KeyDown(GridKey key);
    void DisplayNameChanged(DisplayOrder order, Host& host);
    void ExportChanged(int column, bool checked);

    // Commands of a column and a row. Each returns what the window opens: a session number or a
    // row of Students, 0 for nothing. The session ones also set CurrentSession and CurrentLogFile.
    int HeadingClick(int index);
    int EditClick(int column);
    int StudentClick(int row) const;

    Hover HoverOf(int index) const;

    void ToggleHelp();
    // A course without sessions: the window can only be closed.
    void DisableAllButExits();

  private:
    void Changed();
    // hscrlSession fitted to the number of sessions.
    void FitSessionScroll();
    void ShowStudentRow(int row);
    void ShowSessionCell(int row, int column, int student);
    void ChooseSession(int session);

    Course& course_;
    GridView view_;
    ExportFormat format_;
    int pageNo_ = 0;
    bool busy_ = false;
};

}  // namespace tallory
