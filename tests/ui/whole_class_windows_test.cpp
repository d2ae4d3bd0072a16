// The windows over the whole class beside the grid: every student and session in one table, and
// the course at a glance.
#include <QBarCategoryAxis>
#include <QBarSet>
#include <QChart>
#include <QChartView>
#include <QComboBox>
#include <QHeaderView>
#include <QHorizontalBarSeries>
#include <QLineEdit>
#include <QScrollBar>
#include <QTableWidget>

#include "OpenWindow.h"
#include "QtEnvironment.h"
#include "Widgets.h"
#include "ui/ClassViewWindow.h"
#include "ui/OverviewWindow.h"

namespace tallory {
namespace {

using namespace test;

constexpr int kStudents = 200;
constexpr int kSessions = 8;

std::string IdOf(int i) {
    return std::to_string(40000000 + i);
}

// 200 students on the roster, the last five of whom never vote, two clickers nobody registered,
// eight sessions of one question: 2 points for A, 0 for B, absences scattered.
void WriteClass(const TempCourse& folder) {
    folder.WriteSettings({{"CourseName", "Mechanics"}});
    std::string roster, remotes;
    for (int i = 0; i < kStudents; ++i) {
        roster +=
            "Last" + std::to_string(i) + ", First" + std::to_string(i) + ", " + IdOf(i) + "\r\n";
        remotes += "#A" + std::to_string(i) + ",\"" + IdOf(i) + "\"\r\n";
    }
    folder.WriteRoster(roster);
    folder.WriteRemotes(remotes);
    for (int day = 1; day <= kSessions; ++day) {
        LogPlan plan;
        for (int i = 0; i < kStudents - 5; ++i) {
            if ((i + day) % 9 == 0) continue;
            plan.voters.push_back({"#A" + std::to_string(i), "", {(i * day) % 3 ? "A" : "B"}});
        }
        plan.voters.push_back({"#F1", "", {"A"}});
        if (day % 2) plan.voters.push_back({"#F2", "", {"B"}});
        folder.WriteLog(SeptemberLog(day), plan);
    }
}

void ClickHeading(QHeaderView* header, int section) {
    QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                      {header->sectionViewportPosition(section) + header->sectionSize(section) / 2,
                       header->height() / 2});
}

struct Fixture : CourseWindow {
    ClassViewWindow view;
    QAbstractItemModel* model;
    QHeaderView* header;

    Fixture()
        : CourseWindow(WriteClass),
          view(course, host, window->Grid(), window.get()),
          model(view.Table()->model()),
          header(view.Table()->horizontalHeader()) {
        view.resize(760, 520);
        view.show();
    }
    QString Cell(int row, int column) const { return model->index(row, column).data().toString(); }
};

TEST(ClassViewWindow, ShowsTheWholeClassWithTheNamesHeld) {
    Fixture fixture;
    FrozenColumnTable* table = fixture.view.Table();
    ASSERT_EQ(fixture.model->rowCount(), kStudents + 2);
    ASSERT_EQ(fixture.model->columnCount(), ClassView::kFirstSessionColumn + kSessions);
    EXPECT_EQ(Find(fixture.view, "lblCounts")->text(), "202 students, 8 sessions");
    EXPECT_EQ(fixture.model->headerData(ClassView::kFirstSessionColumn, Qt::Horizontal),
              "09/01/2026");

    // Grid order, by ID: the never-voting students are red and absent throughout, the clickers
    // nobody registered come last, red.
    const int silent = kStudents - 1, stray = kStudents;
    auto colour = [&](int row) {
        return fixture.model->index(row, 0).data(Qt::ForegroundRole).value<QColor>();
    };
    EXPECT_EQ(std::tuple(colour(silent), colour(0)), std::tuple(QColor(255, 0, 0), Qt::blue));
    const QModelIndex absent = fixture.model->index(silent, ClassView::kFirstSessionColumn);
    EXPECT_EQ(std::tuple(absent.data().toString(), absent.data(Qt::ToolTipRole).toString(),
                         fixture.Cell(stray, 0)),
              std::tuple("Ab", "Absent", "#F1"));

    // Scrolled to the far right, the names stay where they were while the sessions move on.
    QTableView* names = table->Frozen();
    EXPECT_FALSE(names->isColumnHidden(0));
    EXPECT_TRUE(names->isColumnHidden(ClassView::kFirstSessionColumn));
    const QRect before = names->geometry();
    QScrollBar* sideways = table->horizontalScrollBar();
    ASSERT_GT(sideways->maximum(), 0);
    sideways->setValue(sideways->maximum());
    EXPECT_EQ(names->geometry(), before);
    EXPECT_GT(table->columnAt(before.width() / 2), 0);
    EXPECT_EQ(names->columnAt(before.width() / 2), 0);
    // The names follow the rows downwards.
    table->verticalScrollBar()->setValue(table->verticalScrollBar()->maximum());
    EXPECT_EQ(names->verticalScrollBar()->value(), table->verticalScrollBar()->value());
}

TEST(ClassViewWindow, SortsByAHeadingAndSearches) {
    Fixture fixture;
    const int total = ClassView::kTotalColumn, day3 = ClassView::kFirstSessionColumn + 2;
    // Which order a click gives is the table's own; the heading only has to hand it over.
    ClickHeading(fixture.header, total);
    ClickHeading(fixture.header, total);
    EXPECT_EQ(fixture.header->sortIndicatorOrder(), Qt::DescendingOrder);
    EXPECT_GE(fixture.Cell(0, total).toDouble(), fixture.Cell(1, total).toDouble());
    ClickHeading(fixture.header, day3);
    EXPECT_EQ(fixture.header->sortIndicatorSection(), day3);

    // A chosen student stays chosen and in sight through a sort; with nobody chosen the new
    // order shows from its top.
    FrozenColumnTable* table = fixture.view.Table();
    table->setCurrentIndex(fixture.model->index(150, total));
    const QString chosen = fixture.Cell(150, 0);
    ClickHeading(fixture.header, day3);
    EXPECT_EQ(fixture.Cell(table->currentIndex().row(), 0), chosen);
    EXPECT_TRUE(table->viewport()->rect().intersects(table->visualRect(table->currentIndex())));
    table->clearSelection();
    table->verticalScrollBar()->setValue(table->verticalScrollBar()->maximum());
    ClickHeading(fixture.header, day3);  // the third click: the grid's order again
    EXPECT_EQ(fixture.header->sortIndicatorSection(), -1);
    EXPECT_EQ(table->verticalScrollBar()->value(), 0);

    // The names' own heading, which lies over the table's, hands its clicks over too.
    ClickHeading(fixture.view.Table()->Frozen()->horizontalHeader(), 0);
    EXPECT_EQ(fixture.header->sortIndicatorSection(), 0);
    EXPECT_EQ(fixture.Cell(0, 0), "#F1");  // "#" before the digits

    // A search by last name keeps the rows that hold it; by ID, the one student.
    auto* search = Find<QLineEdit>(fixture.view, "txtSearch");
    Type(search, "last17");
    EXPECT_EQ(fixture.model->rowCount(), 11);  // Last17, Last170 to Last179
    EXPECT_EQ(Find(fixture.view, "lblCounts")->text(), "11 of 202 students, 8 sessions");
    search->clear();
    EXPECT_EQ(fixture.model->rowCount(), kStudents + 2);
}

TEST(ClassViewWindow, ChoosingAStudentOrASessionOpensTheGridsScreens) {
    Fixture fixture;
    FrozenColumnTable* table = fixture.view.Table();
    // Nothing is chosen before the instructor chooses.
    EXPECT_FALSE(Find<QPushButton>(fixture.view, "cmdOpenStudent")->isEnabled());
    auto* search = Find<QLineEdit>(fixture.view, "txtSearch");
    Type(search, QString::fromStdString(IdOf(42)));
    ASSERT_EQ(fixture.model->rowCount(), 1);

    // Enter in the search chooses the student found; Enter on the name opens the clickers.
    PressKey(search, Qt::Key_Return);
    EXPECT_EQ(table->currentIndex(), fixture.model->index(0, 0));
    EXPECT_TRUE(Find<QPushButton>(fixture.view, "cmdOpenStudent")->isEnabled());
    EXPECT_FALSE(Find<QPushButton>(fixture.view, "cmdOpenSession")->isEnabled());
    Opening student("frmEditStudent", [&](QDialog& dialog) {
        EXPECT_EQ(Find(dialog, "lblStudentID")->text(), QString::fromStdString(IdOf(42)));
        Find<QPushButton>(dialog, "cmdCancel")->click();
    });
    PressKey(table, Qt::Key_Return);

    // Open Session on a session's column renames it; the heading follows at once.
    const int day2 = ClassView::kFirstSessionColumn + 1;
    table->setCurrentIndex(fixture.model->index(0, day2));
    Opening session("frmEditSession", [&](QDialog& dialog) {
        auto* title = Find<QLineEdit>(dialog, "txtSessionName");
        PressKey(title, Qt::Key_A, Qt::ControlModifier);
        Type(title, "Lab on springs");
        Find<QPushButton>(dialog, "cmdSave")->click();
    });
    Find<QPushButton>(fixture.view, "cmdOpenSession")->click();
    EXPECT_EQ(fixture.model->headerData(day2, Qt::Horizontal), "Lab on sprin");
    EXPECT_EQ(fixture.model->headerData(day2, Qt::Horizontal, Qt::ToolTipRole), "Lab on springs");
    // The search and the chosen student outlive the refresh.
    EXPECT_EQ(fixture.model->rowCount(), 1);
    EXPECT_EQ(table->currentIndex(), fixture.model->index(0, day2));
}

// Five students over four sessions of three questions (A correct, worth a point each):
// S1 present throughout; S2 misses the last three; S3 only the first; S4 never votes; S5 misses
// one. In session 4, Q1 is answered correctly by everybody present, Q2 by nobody, Q3 by half;
// in session 1 Q1 by all, Q2 by half, Q3 by three of the four.
void WriteCourse(const TempCourse& folder) {
    folder.WriteSettings({{"CourseName", "Optics"}});
    folder.WriteRoster(
        "Ames, Ann, S1\r\nBo, Ben, S2\r\nCole, Cy, S3\r\nDee, Di, S4\r\nEng, Eve, S5\r\n");
    folder.WriteRemotes("#A1,\"S1\"\r\n#A2,\"S2\"\r\n#A3,\"S3\"\r\n#A5,\"S5\"\r\n");
    for (int day = 1; day <= 4; ++day) {
        LogPlan plan = QuestionsPlan({"Q1", "Q2", "Q3"});
        plan.voters.push_back({"#A1", "", {"A", "B", "A"}});
        if (day == 1) plan.voters.push_back({"#A2", "", {"A", "A", "A"}});
        if (day == 1) plan.voters.push_back({"#A3", "", {"A", "A", "A"}});
        if (day != 2) plan.voters.push_back({"#A5", "", {"A", "C", "B"}});
        folder.WriteLog(SeptemberLog(day), plan);
    }
}

struct OverviewFixture : CourseWindow {
    OverviewWindow overview;

    OverviewFixture()
        : CourseWindow(WriteCourse), overview(course, host, window->Grid(), window.get()) {
        overview.resize(1000, 700);
        overview.show();
    }

    QStringList Categories() const {
        auto* axis = qobject_cast<QBarCategoryAxis*>(
            overview.QuestionsChart()->chart()->axes(Qt::Vertical).first());
        return axis->categories();
    }
    QList<double> Shares() const {
        auto* series = qobject_cast<QHorizontalBarSeries*>(
            overview.QuestionsChart()->chart()->series().first());
        QList<double> values;
        for (int i = 0; i < series->barSets().first()->count(); ++i)
            values << series->barSets().first()->at(i);
        return values;
    }
};

TEST(OverviewWindow, ShowsTheAtRiskBesideTheCharts) {
    OverviewFixture fixture;
    QTableWidget* atRisk = fixture.overview.AtRiskTable();
    QStringList names;
    for (int row = 0; row < atRisk->rowCount(); ++row) names << atRisk->item(row, 0)->text();
    EXPECT_EQ(names, QStringList({"Bo, Ben", "Cole, Cy", "Dee, Di"}));
    EXPECT_EQ(atRisk->item(1, 1)->text(), "1 of 4");
    EXPECT_TRUE(Find<QLabel>(fixture.overview, "lblFacts")->text().contains("3</b> at risk"));

    // The last session's questions, hardest first, at the top: the category axis runs upwards.
    EXPECT_EQ(fixture.overview.SessionChoice()->currentIndex(), 3);
    EXPECT_EQ(fixture.Categories(), QStringList({"Q1 Q1", "Q3 Q3", "Q2 Q2"}));
    EXPECT_EQ(fixture.Shares(), QList<double>({100, 50, 0}));

    // Another session chosen from the keyboard: the chart follows.
    QComboBox* choice = fixture.overview.SessionChoice();
    choice->setFocus();
    PressKey(choice, Qt::Key_Home);
    EXPECT_EQ(choice->currentIndex(), 0);
    EXPECT_EQ(fixture.Shares(), QList<double>({100, 75, 50}));
}

TEST(OverviewWindow, ANameOpensTheStudentAsTheGridDoes) {
    OverviewFixture fixture;
    QTableWidget* atRisk = fixture.overview.AtRiskTable();
    atRisk->setFocus();
    atRisk->setCurrentCell(1, 0);
    Opening student("frmEditStudent", [&](QDialog& dialog) {
        EXPECT_EQ(Find(dialog, "lblStudentID")->text(), "S3");
        Find<QPushButton>(dialog, "cmdCancel")->click();
    });
    PressKey(atRisk, Qt::Key_Return);
    EXPECT_EQ(atRisk->currentRow(), 1);
}

TEST(OverviewWindow, WritesThePageAndOpensIt) {
    CourseWindow opened(WriteCourse);
    RecordingHost recording;
    OverviewWindow overview(opened.course, recording, opened.window->Grid(), opened.window.get());
    Find<QPushButton>(overview, "cmdWritePage")->click();
    EXPECT_EQ(recording.opened, Strings{opened.folder.File("Reports/Overview.html")});
    EXPECT_TRUE(Holds(opened.folder.Read("Reports/Overview.html"), "Bo, Ben"));
}

// Each window opens from its button on the main window, over the course of the grid.
TEST(WholeClassWindows, OpenFromTheMainWindow) {
    const std::tuple<void (*)(const TempCourse&), const char*, const char*, const char*, int,
                     const char*>
        windows[] = {
            {WriteClass, "cmdClassView", "frmClassView", "tblClass", kStudents + 2,
             "Tallory - Whole Class"},
            // Three students at risk.
            {WriteCourse, "cmdOverview", "frmOverview", "tblAtRisk", 3, "Course Overview"},
        };
    for (const auto& [write, button, name, table, rows, title] : windows) {
        CourseWindow opened(write);
        Opening window(name, [&](QDialog& dialog) {
            EXPECT_EQ(dialog.windowTitle(), title);
            EXPECT_EQ(dialog.findChild<QTableView*>(table)->model()->rowCount(), rows);
            dialog.close();
        });
        Find<QPushButton>(*opened.window, button)->click();
    }
}

}  // namespace
}  // namespace tallory
