#include "TestSupport.h"
#include "common/Text.h"
#include "grid/ClassView.h"
#include "grid/ScoreGrid.h"

namespace tallory {
namespace {

// Two questions worth a point each for A, one participation point. Points per session:
//            day 1   day 2   total
//   S1 Doe     3      Ab       3
//   S2 Ames    2       3       5
//   S3 cole    0       2       2
//   S4 Zed    Ab       2       2
//   #B1        3      Ab       3   (a clicker nobody registered)
//   S9 Nobody Ab      Ab       0   (on the roster, never voted)
struct ClassCourse {
    test::TempCourse folder;
    Course course;
    RecordingHost host;
    ScoreGrid grid{course};
    ClassView view{course};

    explicit ClassCourse(DisplayOrder order = DisplayOrder::StudentId) {
        folder.WriteRoster(
            "Doe, Jane, S1\r\nAmes, Bob, S2\r\ncole, Ann, S3\r\nZed, Max, S4\r\n"
            "Nobody, Never, S9\r\n");
        folder.WriteRemotes("#A1,\"S1\"\r\n#A2,\"S2\"\r\n#A3,\"S3\"\r\n#A4,\"S4\"\r\n");
        test::LogPlan day1 = test::QuestionsPlan(2);
        day1.voters = {{"#A1", "", {"A", "A"}},
                       {"#A2", "", {"A", "B"}},
                       {"#A3", "", {"B", "B"}},
                       {"#B1", "", {"A", "A"}}};
        test::LogPlan day2 = test::QuestionsPlan(2);
        day2.voters = {{"#A2", "", {"A", "A"}}, {"#A3", "", {"A", ""}}, {"#A4", "", {"A", "B"}}};
        folder.WriteLog(test::SeptemberLog(1), day1);
        folder.WriteLog(test::SeptemberLog(2), day2);
        course.AppPath = course.ProgramFolder = folder.Path();
        grid.Start(host, false);
        if (order != grid.View().Order()) grid.DisplayNameChanged(order, host);
        view.Refresh(order);
    }

    std::vector<std::string> Ids() const {
        std::vector<std::string> ids;
        for (int row = 0; row < view.RowCount(); ++row)
            ids.push_back(course.Students[view.StudentAt(row)].StudentId);
        return ids;
    }
};

using Ids = std::vector<std::string>;

TEST(ClassView, ShowsWhatTheGridShows) {
    for (DisplayOrder order : {DisplayOrder::StudentId, DisplayOrder::LastName}) {
        SCOPED_TRACE(static_cast<int>(order));
        ClassCourse open(order);
        const GridView& grid = open.grid.View();
        ASSERT_EQ(open.view.RowCount(), 6);
        ASSERT_EQ(open.view.ColumnCount(), ClassView::kFirstSessionColumn + 2);
        // Both sessions stand in the grid's first two columns; rows 1..6 are all the students.
        for (int r = 1; r <= kGridRows; ++r) {
            const int row = open.view.RowOf(grid.studentScroll.value + r);
            ASSERT_GE(row, 0);
            // The grid pads a name with a blank; the table pads its cells itself.
            EXPECT_EQ(open.view.CellText(row, ClassView::kNameColumn),
                      Trim(grid.lblStudentName[r].text));
            EXPECT_EQ(open.view.CellText(row, ClassView::kTotalColumn), grid.lblTotal[r].text);
            EXPECT_EQ("Average: " + open.view.CellText(row, ClassView::kAverageColumn),
                      grid.lblAverage[r].text);
            EXPECT_EQ(open.view.Colour(row), grid.nameColour[r]);
            for (int c = 0; c < 2; ++c) {
                const int column = ClassView::kFirstSessionColumn + c;
                EXPECT_EQ(open.view.CellText(row, column),
                          grid.lblSession[c * kLabelsPerColumn + r].text);
                EXPECT_EQ(open.view.HeaderText(column), grid.lblSession[c * kLabelsPerColumn].text);
                EXPECT_EQ(open.view.Absent(row, column), open.view.CellText(row, column) == "Ab");
            }
        }
        const int first = ClassView::kFirstSessionColumn;
        EXPECT_EQ(std::tuple(open.view.SessionAt(ClassView::kAverageColumn),
                             open.view.SessionAt(first + 1), open.view.SessionAt(first + 2)),
                  std::tuple(0, 2, 0));
    }
}

TEST(ClassView, SortsByAnyColumn) {
    const int day1 = ClassView::kFirstSessionColumn, day2 = day1 + 1;
    const int name = ClassView::kNameColumn, total = ClassView::kTotalColumn;
    const DisplayOrder last = DisplayOrder::LastName, id = DisplayOrder::StudentId;
    const std::tuple<DisplayOrder, int, bool, Ids> cases[] = {
        // Names as text, without regard to case: "cole" between "Ames" and "Doe".
        {last, name, true, {"#B1", "S2", "S3", "S1", "S9", "S4"}},
        {last, name, false, {"S4", "S9", "S1", "S3", "S2", "#B1"}},
        // Numbers as numbers; equal figures keep the grid's order (the stray clicker last).
        {id, total, true, {"S9", "S3", "S4", "S1", "#B1", "S2"}},
        {id, total, false, {"S2", "S1", "#B1", "S3", "S4", "S9"}},
        // Absences below every number, 0 included: first going up, last going down.
        {id, day1, true, {"S4", "S9", "S3", "S2", "S1", "#B1"}},
        {id, day1, false, {"S1", "#B1", "S2", "S3", "S4", "S9"}},
        {id, day2, false, {"S2", "S3", "S4", "S1", "S9", "#B1"}},
        // Out of range: back to the grid's order.
        {id, 99, true, {"S1", "S2", "S3", "S4", "S9", "#B1"}},
    };
    for (const auto& [order, column, ascending, ids] : cases) {
        SCOPED_TRACE(testing::Message() << column << (ascending ? " up" : " down"));
        ClassCourse open(order);
        open.view.Sort(column, ascending);
        EXPECT_EQ(open.Ids(), ids);
    }
}

TEST(ClassView, SearchesIdsAndNames) {
    const std::tuple<const char*, Ids> cases[] = {
        {"", {"S1", "S2", "S3", "S4", "S9", "#B1"}},
        {"s1", {"S1"}},
        {"  ames ", {"S2"}},
        {"COLE", {"S3"}},
        {"Max", {"S4"}},  // first name
        {"#b", {"#B1"}},  // a stray clicker by its remote
        {"a", {"S1", "S2", "S3", "S4"}},
        {"S1Doe", {}},  // never across two fields
        {"nobody here", {}},
    };
    ClassCourse open;
    for (const auto& [text, ids] : cases) {
        SCOPED_TRACE(text);
        open.view.Search(text);
        EXPECT_EQ(open.Ids(), ids);
    }
}

TEST(ClassView, KeepsSortAndSearchAcrossARefresh) {
    ClassCourse open;
    open.view.Sort(ClassView::kFirstSessionColumn + 1, false);
    open.view.Search("s");
    EXPECT_EQ(open.Ids(), (Ids{"S2", "S3", "S4", "S1", "S9"}));

    // A session gone behind the view takes its sort column with it.
    open.course.Students[open.course.StudentIndex.at("S1")].Score[0] = 40;
    open.course.NumSessions = 1;
    open.view.Refresh(DisplayOrder::StudentId);
    EXPECT_EQ(std::tuple(open.view.SortColumn(), open.view.SearchText(), open.view.ColumnCount()),
              std::tuple(-1, "s", ClassView::kFirstSessionColumn + 1));
    EXPECT_EQ(open.Ids(), (Ids{"S1", "S2", "S3", "S4", "S9"}));
    EXPECT_EQ(open.view.CellText(0, ClassView::kTotalColumn), "40");
}

TEST(ClassView, KeepsTheChosenStudentThroughAReorder) {
    const int day2 = ClassView::kFirstSessionColumn + 1, total = ClassView::kTotalColumn;
    // The chosen cell in the grid's order (S1 S2 S3 S4 S9 #B1), the search, the sessions left
    // after the refresh, and the cell kept.
    const std::tuple<const char*, ClassView::Cell, const char*, int, int, int> cases[] = {
        // Sorted by total going down: S2 S1 #B1 S3 S4 S9.
        {"followed into the new order", {0, total}, "", 2, 1, total},
        {"nobody chosen", {}, "", 2, -1, -1},
        {"hidden by the search", {0, total}, "ames", 2, -1, -1},
        // A session gone takes the chosen column back to the last one there is.
        {"column gone", {3, day2}, "", 1, 4, day2 - 1},
    };
    for (const auto& [what, chosen, search, sessions, row, column] : cases) {
        SCOPED_TRACE(what);
        ClassCourse open;
        open.view.KeepChoice(chosen);
        open.course.NumSessions = sessions;
        open.view.Refresh(DisplayOrder::StudentId);
        open.view.Sort(total, false);
        open.view.Search(search);
        const ClassView::Cell kept = open.view.KeptChoice();
        EXPECT_EQ(std::tuple(kept.row, kept.column), std::tuple(row, column));
    }
}

}  // namespace
}  // namespace tallory
