#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <deque>

#include "../TestSupport.h"
#include "OpenWindow.h"
#include "QtEnvironment.h"
#include "Widgets.h"

namespace tallory {
namespace {

using test::Click;
using test::Find;
using test::MessageBoxes;
using test::TempCourse;
using test::Type;
using test::WhenOpen;

// The sample course of the housekeeping tests: S1..S4, then the stray clickers 99 and ABC123.
struct Fixture : test::CourseWindow {
    Fixture()
        : CourseWindow(
              [](const TempCourse& f) { f.CopyFrom(test::DataPath("housekeeping/course")); }) {}
    QLabel* Name(int row) { return Find<QLabel>(*window, QString("lblStudentName%1").arg(row)); }
    std::string Log() { return folder.Read("SessionData/L2609071000.csv"); }
};

TEST(EditStudentDialog, ShowsTheStudentsClickersAndFiltersKeys) {
    Fixture fixture;
    ASSERT_EQ(fixture.Name(2)->text().trimmed(), "S2");
    WhenOpen("frmEditStudent", [](QDialog& dialog) {
        EXPECT_EQ(Find<QLabel>(dialog, "lblStudentID")->text(), "S2");
        EXPECT_EQ(Find<QLabel>(dialog, "lblLastName")->text(), "Baker , Bob");
        auto* list = Find<QComboBox>(dialog, "cmbClickList");
        ASSERT_EQ(list->count(), 2);
        EXPECT_EQ(list->itemText(1), "777");
        EXPECT_TRUE(Find<QPushButton>(dialog, "cmdSave")->isVisible());
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
    ASSERT_EQ(fixture.Name(5)->text().trimmed(), "#99");
    MessageBoxes answers(
        {MessageBoxes::Click(QMessageBox::Ok), MessageBoxes::Click(QMessageBox::Ok)});
    WhenOpen("frmEditStudent", [](QDialog& dialog) {
        EXPECT_EQ(Find<QLabel>(dialog, "Label4")->text(), "Unregistered Clicker");
        EXPECT_FALSE(Find<QPushButton>(dialog, "CmdAdd")->isEnabled());
        WhenOpen("PreviewDialog",
                 [](QDialog& preview) { Find<QPushButton>(preview, "PreviewGoAhead")->click(); });
        Find<QPushButton>(dialog, "cmdRemove")->click();
    });
    Click(fixture.Name(5));
    EXPECT_EQ(answers.Texts(), QStringList({"This will permanently delete 99 from the log files.",
                                            "99 records deleted from the log files."}));
    EXPECT_EQ(fixture.Log().find("#99,"), std::string::npos);
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
        WhenOpen("PreviewDialog",
                 [](QDialog& preview) { Find<QPushButton>(preview, "PreviewGoAhead")->click(); });
        Find<QPushButton>(dialog, "CmdDelete")->click();
    });
    Find<QPushButton>(*fixture.window, "CmdViewAll")->click();
    EXPECT_TRUE(cameBack);
    EXPECT_EQ(fixture.Log(), before);
}

TEST(GhostRemoteDialog, DeletingTickedClickersReloadsTheGrid) {
    Fixture fixture;
    MessageBoxes answers({MessageBoxes::Click(QMessageBox::Ok)});
    WhenOpen("frmGhostRemote", [](QDialog& dialog) {
        Find<QPushButton>(dialog, "CmdSelectAll")->click();
        WhenOpen("PreviewDialog",
                 [](QDialog& preview) { Find<QPushButton>(preview, "PreviewGoAhead")->click(); });
        Find<QPushButton>(dialog, "CmdDelete")->click();
    });
    Find<QPushButton>(*fixture.window, "CmdViewAll")->click();
    EXPECT_EQ(answers.shown.size(), 1u);
    EXPECT_EQ(fixture.Log().find("#99,"), std::string::npos);
    EXPECT_EQ(fixture.Log().find("#ABC123,"), std::string::npos);
    EXPECT_EQ(fixture.Name(5)->text(), "");
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
            EXPECT_EQ(QGuiApplication::clipboard()->text(),
                      "Last Name\tFirst Name\tStudent Id\r\n\r\nClark\tCy\tS3\r\nDunn\tDi\tS4\r\n");
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
    EXPECT_EQ(fixture.folder.Read("Unregistered Student List.CSV"),
              "Last Name,First Name,Student Id\r\n\r\nClark,Cy,S3\r\nDunn,Di,S4\r\n");
}

}  // namespace
}  // namespace tallory
