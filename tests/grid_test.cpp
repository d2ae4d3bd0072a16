#include "TestSupport.h"
#include "common/Paths.h"
#include "grid/ScoreGrid.h"

namespace tallory {
namespace {

using test::LogVoter;

std::string DateOf(int day) {
    return (day < 10 ? "09/0" : "09/") + std::to_string(day) + "/2026";
}

// Students S1..Sn, each with clicker #A<i>, all answering A (the correct choice).
std::vector<LogVoter> Voters(int students) {
    std::vector<LogVoter> voters;
    for (int i = 1; i <= students; ++i)
        voters.push_back({"#A" + std::to_string(i), "S" + std::to_string(i), {"A"}});
    return voters;
}

// A course folder with one log per day of September, and the main window's logic over it.
struct OpenGrid {
    test::TempCourse folder;
    Course course;
    RecordingHost host;
    ScoreGrid grid{course};

    OpenGrid() = default;
    // Opened on `sessions` logs of the students S1..Sn.
    OpenGrid(int sessions, int students) {
        WriteSessions(sessions, Voters(students));
        Open();
    }

    void WriteSessions(int sessions, const std::vector<LogVoter>& voters) const {
        for (int day = 1; day <= sessions; ++day)
            folder.WriteLog(test::SeptemberLog(day), {.voters = voters});
    }

    void Open(bool largeFonts = false) {
        course.AppPath = course.ProgramFolder = folder.Path();
        grid.Start(host, largeFonts);
    }

    const GridView& view() const { return grid.View(); }
    std::string Heading(int column) const {
        return view().lblSession[column * kLabelsPerColumn].text;
    }
    std::string Cell(int row, int column) const {
        return view().lblSession[column * kLabelsPerColumn + row].text;
    }
};

TEST(ScoreGrid, OpensOnTheLatestFourSessions) {
    // Sessions, the page shown, Previous (the bar shows with it, its maximum the page), and
    // whether the fourth column is in use.
    const std::tuple<int, int, bool, bool> cases[] = {
        {3, 0, false, false}, {4, 0, false, true}, {5, 1, true, true}, {9, 5, true, true}};
    for (const auto& [sessions, pageNo, previous, lastColumnShown] : cases) {
        SCOPED_TRACE(sessions);
        OpenGrid open(sessions, 2);
        const GridView& view = open.view();
        EXPECT_EQ(
            std::tuple(open.grid.PageNo(), view.lblNext.visible, view.lblPrevious.visible,
                       view.sessionScroll.visible, view.sessionScroll.maximum,
                       view.sessionScroll.value, open.Heading(0)),
            std::tuple(pageNo, false, previous, previous, pageNo, pageNo, DateOf(pageNo + 1)));
        EXPECT_EQ(
            std::tuple(view.cmdEdit[3].visible, view.chkExport[3].visible, open.Heading(3),
                       open.Cell(1, 3)),
            std::tuple(lastColumnShown, lastColumnShown, lastColumnShown ? DateOf(pageNo + 4) : " ",
                       lastColumnShown ? "2" : " "));
    }
}

TEST(ScoreGrid, PagesOneSessionAtATime) {
    OpenGrid open(6, 1);
    ScoreGrid& grid = open.grid;
    ASSERT_EQ(grid.PageNo(), 2);

    grid.NextClick();  // already on the last session
    EXPECT_EQ(grid.PageNo(), 2);
    grid.PreviousClick();
    EXPECT_EQ(std::tuple(grid.PageNo(), open.view().sessionScroll.value, open.Heading(0)),
              std::tuple(1, 1, DateOf(2)));
    EXPECT_TRUE(open.view().lblNext.visible && open.view().lblPrevious.visible);

    grid.SessionScrollChanged(0);
    EXPECT_EQ(open.Heading(0), DateOf(1));
    EXPECT_FALSE(open.view().lblPrevious.visible);
    grid.PreviousClick();
    EXPECT_EQ(grid.PageNo(), 0);

    grid.NextClick();
    EXPECT_EQ(open.Heading(3), DateOf(5));
}

TEST(ScoreGrid, StudentScrollBarAndWheel) {
    for (int students : {5, 6, 7}) {
        SCOPED_TRACE(students);
        OpenGrid open(1, students);
        EXPECT_EQ(open.view().studentScroll.visible, students > 5);
        EXPECT_EQ(open.view().studentScroll.maximum, std::max(students - 6, 0));
        if (students < 7) continue;
        ScoreGrid& grid = open.grid;
        EXPECT_EQ(open.view().lblStudentName[6].text, " S6");
        grid.MouseWheel(-120);  // towards the user: down the list
        EXPECT_EQ(std::tie(open.view().studentScroll.value, open.view().lblStudentName[1].text,
                           open.view().lblStudentName[6].text),
                  std::tuple(1, " S2", " S7"));
        grid.MouseWheel(-120);  // the last student is already shown
        EXPECT_EQ(open.view().studentScroll.value, 1);
        grid.MouseWheel(120);
        EXPECT_EQ(open.view().lblStudentName[1].text, " S1");
        grid.StudentScrollChanged(1);
        EXPECT_EQ(grid.StudentClick(6), 7);
    }
}

TEST(ScoreGrid, KeysMoveOnlyWhatTheMouseCouldMove) {
    // Where the keys leave the first session column (pageNo) and the first student row.
    const std::tuple<const char*, int, int, bool, GridKey, int, int> cases[] = {
        {"left", 7, 12, false, GridKey::Left, 2, 0},
        {"right at the end", 7, 12, false, GridKey::Right, 3, 0},
        {"home", 7, 12, false, GridKey::Home, 0, 0},
        {"end", 7, 12, false, GridKey::End, 3, 0},
        {"down", 7, 12, false, GridKey::Down, 3, 1},
        {"page down", 7, 12, false, GridKey::PageDown, 3, 5},
        {"page down, clamped", 7, 8, false, GridKey::PageDown, 3, 2},
        {"up at the top", 7, 12, false, GridKey::Up, 3, 0},
        {"home, four sessions: no bar", 4, 12, false, GridKey::Home, 0, 0},
        {"down, six students: nothing below", 7, 6, false, GridKey::Down, 3, 0},
        {"help open: left", 7, 12, true, GridKey::Left, 3, 0},
        {"help open: home", 7, 12, true, GridKey::Home, 3, 0},
        {"help open: page down", 7, 12, true, GridKey::PageDown, 3, 0},
    };
    for (const auto& [what, sessions, students, help, key, pageNo, firstRow] : cases) {
        OpenGrid open(sessions, students);
        if (help) open.grid.ToggleHelp();
        open.grid.KeyDown(key);
        EXPECT_EQ(open.grid.PageNo(), pageNo) << what;
        EXPECT_EQ(open.view().sessionScroll.value, pageNo) << what;
        EXPECT_EQ(open.view().studentScroll.value, firstRow) << what;
        // The view was redrawn there.
        EXPECT_EQ(open.view().lblStudentName[1].text,
                  " " + open.course.Students[firstRow + 1].StudentId)
            << what;
    }
}

TEST(ScoreGrid, SessionsWithoutStudentsShowOneBlankRow) {
    OpenGrid open(2, 0);
    const GridView& view = open.view();
    EXPECT_EQ(open.Heading(1), DateOf(2));
    EXPECT_EQ(open.Cell(1, 0) + open.Cell(1, 1) + view.lblTotal[1].text, "   ");
    EXPECT_EQ(view.lblAverage[1].text, "Average: 0");
    EXPECT_EQ(view.lblStudentName[2].text + view.lblTotal[2].text, "");
    EXPECT_EQ(open.grid.StudentClick(2), 0);
}

TEST(ScoreGrid, NamesAndColoursInBothOrders) {
    OpenGrid open;
    // A bare ID on the roster is its own last name.
    open.folder.WriteRoster("ABCDEFGHIJKLMNOPQRST\r\nZeta, Ann, S9\r\nAbel, Ben, S5\r\n");
    open.WriteSessions(
        1, {{"#A1", "ABCDEFGHIJKLMNOPQRST", {"A"}}, {"#A5", "S5", {"B"}}, {"#FF", "", {"A"}}});
    open.Open();
    using Rows = std::vector<std::pair<std::string, NameColour>>;
    auto rows = [&] {
        Rows shown;
        for (int r = 1; r <= 4; ++r)
            shown.push_back({open.view().lblStudentName[r].text, open.view().nameColour[r]});
        return shown;
    };
    using enum NameColour;
    // Red: on the roster but never voted (S9), or a clicker nobody registered (#FF).
    EXPECT_EQ(rows(),
              (Rows{{" ABCDEFGHIJKLMN", Blue}, {" S5", Blue}, {" S9", Red}, {" #FF", Red}}));
    open.grid.DisplayNameChanged(DisplayOrder::LastName, open.host);
    // No last name: the ID without a leading blank.
    EXPECT_EQ(rows(),
              (Rows{{" ABCDEFGHIJKLMN", Blue}, {" Abel", Blue}, {" Zeta", Red}, {"#FF", Red}}));
}

TEST(ScoreGrid, CellsTotalsAveragesAndAbsences) {
    OpenGrid open;
    open.WriteSessions(2, Voters(2));
    open.folder.WriteLog(test::SeptemberLog(3), {.voters = {{"#A1", "S1", {"A"}}}});  // S2 absent
    open.Open();
    const GridView& view = open.view();
    EXPECT_EQ(
        std::tuple(open.Cell(1, 2), open.Cell(2, 2), view.lblTotal[1].text, view.lblTotal[2].text),
        std::tuple("2", "Ab", "6", "4"));
    // A heading, points, S2 absent in the third session, the blank fourth heading, a blank cell.
    const std::tuple<int, bool, const char*> hovers[] = {
        {0, true, ""}, {1, false, ""}, {16, true, "Absent"}, {21, false, ""}, {22, false, ""}};
    for (const auto& [index, underline, tip] : hovers) {
        Hover hover = open.grid.HoverOf(index);
        EXPECT_EQ(std::tuple(index, hover.underline, hover.handCursor, hover.tip),
                  std::tuple(index, underline, underline, tip));
    }

    // A total of 7 over three sessions, whichever were attended.
    open.course.Students[1].Score[0] = 7;
    open.course.Students[2].Score[0] = 7.035;
    open.grid.UpdateTable();
    EXPECT_EQ(view.lblTotal[1].text, "7");
    EXPECT_EQ(view.lblAverage[1].text, "Average: 2.33");
    EXPECT_EQ(view.lblAverage[2].text, "Average: 2.34");  // 2.345: the half goes to the even digit
}

TEST(ScoreGrid, ExportMarksHeadingsAndSetScoresFollowTheirSession) {
    OpenGrid open(5, 1);
    ScoreGrid& grid = open.grid;
    ASSERT_EQ(grid.PageNo(), 1);
    grid.ExportChanged(0, true);  // session 2
    EXPECT_EQ(open.course.ExportSel[2], 1);
    grid.PreviousClick();
    EXPECT_FALSE(open.view().chkExport[0].checked);
    EXPECT_TRUE(open.view().chkExport[1].checked);
    grid.NextClick();
    EXPECT_TRUE(open.view().chkExport[0].checked);
    grid.ExportChanged(0, false);
    EXPECT_EQ(open.course.ExportSel[2], 0);

    EXPECT_EQ(grid.HeadingClick(8), 0);  // a cell, not a heading
    EXPECT_EQ(grid.HeadingClick(7), 3);
    EXPECT_EQ(std::tie(open.course.CurrentSession, open.course.CurrentLogFile),
              std::tuple(3, "L2609031000.csv"));
    EXPECT_EQ(grid.EditClick(3), 5);
    EXPECT_EQ(open.course.CurrentLogFile, "L2609051000.csv");

    OpenGrid few(2, 1);
    EXPECT_EQ(few.grid.HeadingClick(14), 0);  // the blank third column
}

TEST(ScoreGrid, StartWithoutSessionsLeavesOnlyTheExits) {
    OpenGrid open;
    open.folder.WriteRoster("Doe, Jane, 12345\r\n");
    open.Open();
    const GridView& view = open.view();
    EXPECT_EQ(open.course.NumSessions, 0);
    EXPECT_EQ(view.caption, "Tallory-" + LastComponent(open.folder.Path()));
    EXPECT_EQ(std::tie(view.lblStudentName[1].text, view.lblAverage[1].text),
              std::tuple(" 12345", "Average: 0"));
    EXPECT_FALSE(view.sessionScroll.visible);
    for (Control locked :
         {Control::CmdHelp, Control::CmdEdit, Control::LblSession, Control::LblNext})
        EXPECT_FALSE(view.Enabled(locked)) << static_cast<int>(locked);
    EXPECT_TRUE(view.Enabled(Control::CmdExit));
}

TEST(ScoreGrid, StartMakesTheCourseFoldersAndNamesTheWindow) {
    // Options file, large fonts, whether the folders are made.
    for (auto [optionsFile, largeFonts, foldersMade] :
         {std::tuple{false, false, true}, {true, false, false}, {true, true, true}}) {
        SCOPED_TRACE(testing::Message() << optionsFile << largeFonts);
        OpenGrid open;
        open.folder.WriteSettings({{"CourseName", "Optics"}});
        if (optionsFile) open.folder.Write("Classes/Options.csv", "\"SelectedClass\",\"x\"\r\n");
        open.Open(largeFonts);
        // Images is made in every case, by the move of stray images.
        EXPECT_EQ(open.folder.Exists("Reports"), foldersMade);
        EXPECT_EQ(open.view().caption + "|" + open.view().lblSubject.text, "Tallory-Optics|Optics");
    }
}

}  // namespace
}  // namespace tallory
