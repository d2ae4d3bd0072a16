#include <QCheckBox>
#include <QLineEdit>
#include <QRadioButton>

#include "OpenWindow.h"
#include "QtEnvironment.h"
#include "Widgets.h"
#include "ui/CommandLabel.h"

namespace tallory {
namespace {

using namespace test;

// One session: S1 answers A, worth a point, S2 answers B, worth nothing.
void WriteCourse(const TempCourse& folder) {
    folder.WriteRoster("Ames, Ann, S1\r\nBell, Ben, S2\r\n");
    folder.WriteLog("L2609081000.csv",
                    {.title = "Lenses", .voters = {{"#A1", "S1", {"A"}}, {"#A2", "S2", {"B"}}}});
}

struct Fixture : CourseWindow {
    Fixture() : CourseWindow(WriteCourse) {}
    // Row r of the first session's column.
    QString Cell(int row) {
        return Find<QLabel>(*window, QString("lblSession%1").arg(row))->text();
    }
};

// New points reach the grid and the log with Set; Cancel keeps both as they were.
TEST(SetScoresDialog, NewPointsReachTheGridWhenSetAndNotWhenCancelled) {
    // The button, and the second student's cell after it.
    for (const auto& [button, cell] : {std::pair{"cmdSet", "4"}, std::pair{"cmdCancel", "0"}}) {
        SCOPED_TRACE(button);
        Fixture fixture;
        ASSERT_EQ(fixture.Cell(2).trimmed(), "0");
        const std::string before = fixture.folder.Read("SessionData/L2609081000.csv");
        WhenOpen("frmSetSessionScoring", [button = button](QDialog& dialog) {
            EXPECT_EQ(dialog.windowTitle(), "Tallory - Set Scores");
            auto* points = Find<QLineEdit>(dialog, "txtPoints1");
            EXPECT_EQ(points->text(), "0");
            points->setText("3");
            emit points->editingFinished();
            EXPECT_EQ(Find<QLabel>(dialog, "lblTotalPerfPoints")->text(), "3.00");
            Find<QPushButton>(dialog, button)->click();
        });
        Find<QPushButton>(*fixture.window, "cmdEdit0")->click();
        const std::string after = fixture.folder.Read("SessionData/L2609081000.csv");
        EXPECT_EQ(fixture.Cell(2).trimmed(), cell);
        // Set writes the new point into the log and nothing else changes it.
        EXPECT_EQ(static_cast<bool>(Holds(after, "Response B,    ,   , 1 , 3 ,")), after != before);
    }
}

// A refused point value, left with Tab and answered with OK, must not swallow the next click:
// each control then acts, and the log holds what the screen showed.
TEST(SetScoresDialog, ClickAfterARefusedValueActs) {
    TempCourse folder;
    LogPlan log = QuestionsPlan(2);
    log.voters = {{"#A1", "S1", {"A", "A"}}, {"#A2", "S2", {"B", "A"}}};
    folder.WriteRoster("Ames, Ann, S1\r\nBell, Ben, S2\r\n");
    folder.WriteLog("L2609241000.csv", log);
    OpenWindow opened(folder.Path());
    const MessageBoxes::Press ok = [](QMessageBox& box) { box.accept(); };
    MessageBoxes answers({ok, ok, ok, ok});
    WhenOpen("frmSetSessionScoring", [&answers](QDialog& dialog) {
        auto* points = Find<QLineEdit>(dialog, "txtPoints0");
        auto refuse = [&] {
            points->setFocus();
            points->setText("x");
            emit points->editingFinished();  // Tab out of the box; OK on the message
            QApplication::processEvents();
            EXPECT_EQ(points->text(), "1");  // the old value comes back
        };
        refuse();
        auto* cap = Find<QCheckBox>(dialog, "chkTruncPerf");
        cap->click();
        EXPECT_FALSE(cap->isChecked());
        refuse();
        emit Find<CommandLabel>(dialog, "lblNext")->clicked();
        EXPECT_EQ(Find<QLabel>(dialog, "lblCurQuestionNo")->text(), "2");
        refuse();
        auto* yes = Find<QRadioButton>(dialog, "OptYes");
        yes->click();
        EXPECT_TRUE(yes->isChecked());
        QStringList titles;
        for (const MessageBoxes::Shown& box : answers.shown) titles << box.title;
        EXPECT_EQ(titles, (QStringList{"Tallory", "Tallory", "Tallory", "Deleting a Question"}));
        Find<QPushButton>(dialog, "cmdSet")->click();
    });
    Find<QPushButton>(*opened.window, "cmdEdit0")->click();
    const std::string saved = folder.Read("SessionData/L2609241000.csv");
    EXPECT_TRUE(BeginsWith(saved, "Scoring,  Performance = -1 ,"));
    EXPECT_TRUE(Holds(saved, " ,\"Q1\" ,Score"));
    EXPECT_TRUE(Holds(saved, " ,\"Q2|Y\" ,"));
}

TEST(EditSessionDialog, EnterInTheTitleRenamesTheHeading) {
    Fixture fixture;
    ASSERT_EQ(fixture.Cell(0).trimmed(), "Lenses");
    WhenOpen("frmEditSession", [](QDialog& dialog) {
        auto* title = Find<QLineEdit>(dialog, "txtSessionName");
        EXPECT_EQ(title->text(), "Lenses");
        title->setText("Mirrors");
        emit title->textEdited("Mirrors");
        emit title->returnPressed();
    });
    Click(Find<QLabel>(*fixture.window, "lblSession0"));
    EXPECT_EQ(fixture.Cell(0).trimmed(), "Mirrors");
    EXPECT_TRUE(Holds(fixture.folder.Read("SessionData/L2609081000.csv"), ",\"Mirrors\"\r\n"));
}

}  // namespace
}  // namespace tallory
