#include <QBarCategoryAxis>
#include <QBarSet>
#include <QChart>
#include <QChartView>
#include <QComboBox>
#include <QHorizontalBarSeries>
#include <QTableWidget>

#include "OpenWindow.h"
#include "QtEnvironment.h"
#include "Widgets.h"
#include "ui/OverviewWindow.h"

namespace tallory {
namespace {

using test::Find;
using test::TempCourse;
using test::WhenOpen;

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
        test::LogPlan plan = test::QuestionsPlan({"Q1", "Q2", "Q3"});
        plan.voters.push_back({"#A1", "", {"A", "B", "A"}});
        if (day == 1) plan.voters.push_back({"#A2", "", {"A", "A", "A"}});
        if (day == 1) plan.voters.push_back({"#A3", "", {"A", "A", "A"}});
        if (day != 2) plan.voters.push_back({"#A5", "", {"A", "C", "B"}});
        folder.WriteLog(test::SeptemberLog(day), plan);
    }
}

struct Fixture : test::CourseWindow {
    OverviewWindow overview;

    Fixture() : CourseWindow(WriteCourse), overview(course, host, window->Grid(), window.get()) {
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
    Fixture fixture;
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
    QKeyEvent home(QEvent::KeyPress, Qt::Key_Home, Qt::NoModifier);
    QApplication::sendEvent(choice, &home);
    EXPECT_EQ(choice->currentIndex(), 0);
    EXPECT_EQ(fixture.Shares(), QList<double>({100, 75, 50}));
}

TEST(OverviewWindow, ANameOpensTheStudentAsTheGridDoes) {
    Fixture fixture;
    QTableWidget* atRisk = fixture.overview.AtRiskTable();
    atRisk->setFocus();
    atRisk->setCurrentCell(1, 0);
    test::Opening student("frmEditStudent", [&](QDialog& dialog) {
        EXPECT_EQ(Find(dialog, "lblStudentID")->text(), "S3");
        Find<QPushButton>(dialog, "cmdCancel")->click();
    });
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QApplication::sendEvent(atRisk, &enter);
    EXPECT_EQ(atRisk->currentRow(), 1);
}

TEST(OverviewWindow, WritesThePageAndOpensIt) {
    test::CourseWindow opened(WriteCourse);
    RecordingHost recording;
    OverviewWindow overview(opened.course, recording, opened.window->Grid(), opened.window.get());
    Find<QPushButton>(overview, "cmdWritePage")->click();
    const std::string page = opened.folder.File("Reports/Overview.html");
    ASSERT_EQ(recording.opened.size(), 1u);
    EXPECT_EQ(recording.opened[0], page);
    EXPECT_TRUE(test::Holds(test::ReadBytes(page), "Bo, Ben"));
}

TEST(OverviewWindow, OpensFromTheMainWindow) {
    test::CourseWindow opened(WriteCourse);
    test::Opening overview("frmOverview", [&](QDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle(), "Course Overview");
        EXPECT_EQ(dialog.findChild<QTableWidget*>("tblAtRisk")->rowCount(), 3);
        dialog.close();
    });
    Find<QPushButton>(*opened.window, "cmdOverview")->click();
}

}  // namespace
}  // namespace tallory
