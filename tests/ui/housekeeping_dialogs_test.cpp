// The housekeeping screens of the main window (a student's clickers, the stray clickers, the
// students without one), and the look before a change that rewrites the logs: Cancel leaves the
// course as it was while Go Ahead lets the change happen.

#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QLineEdit>
#include <QTableWidget>

#include "OpenWindow.h"
#include "QtEnvironment.h"
#include "Widgets.h"
#include "ui/PreviewDialog.h"

namespace tallory {
namespace {

using namespace test;

// The sample course of the housekeeping tests: S1..S4, then the stray clickers 99 and ABC123.
struct Fixture : CourseWindow {
    Fixture()
        : CourseWindow([](const TempCourse& f) { f.CopyFrom(DataPath("housekeeping/course")); }) {}
    QLabel* Name(int row) { return Find<QLabel>(*window, QString("lblStudentName%1").arg(row)); }
    std::string Log() { return folder.Read("SessionData/L2609071000.csv"); }
};

TEST(EditStudentDialog, ShowsTheStudentsClickersAndFiltersKeys) {
    Fixture fixture;
    WhenOpen("frmEditStudent", [](QDialog& dialog) {
        // What the student's screen holds reaches its controls, and a choice in the list
        // reaches the screen.
        EXPECT_EQ(Find<QLabel>(dialog, "lblLastName")->text(), "Baker , Bob");
        auto* list = Find<QComboBox>(dialog, "cmbClickList");
        EXPECT_EQ(list->itemText(1), "777");
        EXPECT_FALSE(Find<QPushButton>(dialog, "cmdRemove")->isVisible());
        list->setCurrentIndex(-1);
        EXPECT_EQ(Find<QPushButton>(dialog, "cmdSave")->text(), "Add Clicker");
        auto* box = Find<QLineEdit>(dialog, "TxtNewClickerId");
        Type(box, "1g2Z,f");
        EXPECT_EQ(box->text(), "12f");
        Find<QPushButton>(dialog, "cmdCancel")->click();
    });
    Click(fixture.Name(2));
    EXPECT_TRUE(fixture.host.Progress() == nullptr);
}

TEST(EditStudentDialog, DeletesAStrayClickersLogsAfterAsking) {
    Fixture fixture;
    MessageBoxes answers(
        {MessageBoxes::Click(QMessageBox::Ok), MessageBoxes::Click(QMessageBox::Ok)});
    WhenOpen("frmEditStudent", [](QDialog& dialog) {
        GoAheadOnPreview();
        Find<QPushButton>(dialog, "cmdRemove")->click();
    });
    Click(fixture.Name(5));
    EXPECT_EQ(answers.shown.size(), 2u);  // the question, then the count
    EXPECT_FALSE(Holds(fixture.Log(), "#99,"));
    // Nothing reloads: the grid still shows the clicker.
    EXPECT_EQ(fixture.Name(5)->text().trimmed(), "#99");
}

TEST(GhostRemoteDialog, SearchTicksAndACancelledDeleteComesBack) {
    Fixture fixture;
    const std::string before = fixture.Log();
    bool cameBack = false;
    WhenOpen("frmGhostRemote", [&](QDialog& dialog) {
        EXPECT_EQ(Find<QLineEdit>(dialog, "TxtRemoteID0")->text(), "00000099");
        EXPECT_EQ(Find<QLineEdit>(dialog, "TxtAverage1")->text(), "1.67");
        EXPECT_EQ(Find<QLineEdit>(dialog, "TxtRemoteID2")->text(), "");
        Find<QCheckBox>(dialog, "ChkSelect0")->click();
        EXPECT_TRUE(Find<QCheckBox>(dialog, "ChkSelect0")->isChecked());
        WhenOpen("frmFilterGhostRemote", [](QDialog& search) {
            auto* containing = Find<QLineEdit>(search, "TxtRemoteIdContaining");
            Type(containing, "c1.");
            EXPECT_EQ(containing->text(), "c1");
            Find<QPushButton>(search, "CmdSelect")->click();
        });
        Find<QPushButton>(dialog, "CmdCustomSelect")->click();
        // The search cleared the tick by hand and ticked ABC123.
        EXPECT_FALSE(Find<QCheckBox>(dialog, "ChkSelect0")->isChecked());
        EXPECT_TRUE(Find<QCheckBox>(dialog, "ChkSelect1")->isChecked());
        auto* answers = new MessageBoxes({MessageBoxes::Click(QMessageBox::Cancel)});
        WhenOpen("frmGhostRemote", [&, answers](QDialog& again) {
            cameBack = true;
            EXPECT_EQ(answers->shown.size(), 1u);
            delete answers;
            EXPECT_TRUE(Find<QCheckBox>(again, "ChkSelect1")->isChecked());
            again.reject();
        });
        GoAheadOnPreview();
        Find<QPushButton>(dialog, "CmdDelete")->click();
    });
    Find<QPushButton>(*fixture.window, "CmdViewAll")->click();
    EXPECT_TRUE(cameBack);
    EXPECT_EQ(fixture.Log(), before);
}

TEST(UnRegisteredStudentsDialog, ExportsAndGoesBackToTheClickers) {
    Fixture fixture;
    bool back = false;
    WhenOpen("frmGhostRemote", [&](QDialog& dialog) {
        WhenOpen("frmUnRegisteredStudents", [&](QDialog& students) {
            EXPECT_EQ(Find<QLineEdit>(students, "TxtLastName0")->text(), "Clark");
            EXPECT_EQ(Find<QLineEdit>(students, "txtStudentId1")->text(), "S4");
            EXPECT_FALSE(Find<QWidget>(students, "VsScr")->isEnabled());
            MessageBoxes answers({MessageBoxes::Click(QMessageBox::Ok)});
            Find<QPushButton>(students, "CmdCSV")->click();
            EXPECT_EQ(answers.shown.size(), 1u);
            MessageBoxes copied({MessageBoxes::Click(QMessageBox::Ok)});
            Find<QPushButton>(students, "CmdClipboardTab")->click();
            EXPECT_TRUE(QGuiApplication::clipboard()->text().endsWith("Dunn\tDi\tS4\r\n"));
            WhenOpen("frmGhostRemote", [&](QDialog& again) {
                back = true;
                again.reject();
            });
            Find<QPushButton>(students, "CmdUnRegisteredClickers")->click();
        });
        Find<QPushButton>(dialog, "CmdUnRegisteredStudents")->click();
    });
    Find<QPushButton>(*fixture.window, "CmdViewAll")->click();
    EXPECT_TRUE(back);
    EXPECT_TRUE(fixture.folder.Exists("Unregistered Student List.CSV"));
}

TEST(PreviewDialog, ShowsTheCountsAndEveryMovedScore) {
    ChangePreview preview;
    preview.files = {"SessionData/L1.csv", "SessionData/L2.csv"};
    preview.logs = 2;
    preview.changes = {{"S1", "Adams, Ann", "09/01/2026", "L1.csv", 2, 1, "2", "1"},
                       {"#99", "", "09/02/2026", "L2.csv", 1, {}, "1", "Ab"}};
    PreviewDialog dialog(preview);
    EXPECT_EQ(dialog.Summary()->text(), "This changes 2 scores of 2 students in 2 sessions.");
    ASSERT_EQ(dialog.List()->rowCount(), 2);
    QStringList cells;
    for (auto [row, column] : {std::pair{0, 0}, {1, 0}, {1, 1}, {1, 2}})
        cells << dialog.List()->item(row, column)->text();
    EXPECT_EQ(cells, (QStringList{"S1  Adams, Ann", "#99", "09/02/2026", "1  ->  Ab"}));
    // Enter keeps everything.
    EXPECT_TRUE(dialog.Cancel()->isDefault());
    EXPECT_TRUE(WorthPreviewing(preview));
    preview.logs = 1;
    EXPECT_FALSE(WorthPreviewing(preview));
}

// A purge of both stray clickers: the preview comes before the question, names the stray rows,
// and its Cancel writes nothing; Go Ahead goes on to the usual question, the deletion and the
// reload.
TEST(PreviewDialog, ComesBeforeAPurge) {
    for (bool goAhead : {false, true}) {
        Fixture fixture;
        const auto before = FolderFiles(fixture.folder.Path());
        MessageBoxes answers({MessageBoxes::Click(QMessageBox::Ok)});
        QStringList ids;
        WhenOpen("frmGhostRemote", [&](QDialog& list) {
            WhenOpen("PreviewDialog", [&](QDialog& dialog) {
                auto* table = Find<QTableWidget>(dialog, "PreviewList");
                for (int r = 0; r < table->rowCount(); ++r) ids << table->item(r, 0)->text();
                Find<QPushButton>(dialog, goAhead ? "PreviewGoAhead" : "PreviewCancel")->click();
            });
            Find<QPushButton>(list, "CmdSelectAll")->click();
            Find<QPushButton>(list, "CmdDelete")->click();
            if (!goAhead) list.reject();
        });
        Find<QPushButton>(*fixture.window, "CmdViewAll")->click();
        EXPECT_TRUE(ids.contains("#99") && ids.contains("#ABC123")) << ids.join(",").toStdString();
        EXPECT_EQ(answers.shown.size(), goAhead ? 1u : 0u);
        EXPECT_EQ(FolderFiles(fixture.folder.Path()) == before, !goAhead);
        // Gone from the logs, the ticked clickers leave the reloaded grid.
        EXPECT_EQ(Holds(fixture.Log(), "#ABC123,"), !goAhead);
        EXPECT_EQ(fixture.Name(5)->text().isEmpty(), goAhead);
    }
}

// Adding a stray clicker to a student: the same look first, from the student's screen.
TEST(PreviewDialog, ComesBeforeAClickerIsAdded) {
    Fixture fixture;
    const auto before = FolderFiles(fixture.folder.Path());
    WhenOpen("frmEditStudent", [&](QDialog& dialog) {
        Opening look("PreviewDialog", [&](QDialog& preview) {
            EXPECT_NE(Find<QLabel>(preview, "PreviewSummary")->text().indexOf("This changes "), -1);
            Find<QPushButton>(preview, "PreviewCancel")->click();
        });
        Type(Find<QWidget>(dialog, "TxtNewClickerId"), "99");
        Find<QPushButton>(dialog, "CmdAdd")->click();
        // Cancel closes without asking: the button drops the typed clicker.
        Find<QPushButton>(dialog, "cmdCancel")->click();
    });
    Click(Find<QLabel>(*fixture.window, "lblStudentName3"));
    EXPECT_EQ(FolderFiles(fixture.folder.Path()), before);
}

}  // namespace
}  // namespace tallory
