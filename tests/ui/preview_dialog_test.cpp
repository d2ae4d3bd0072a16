// The look before a change that rewrites the logs: what the dialog shows, and that Cancel leaves
// the course as it was while Go Ahead lets the change happen.
#include <gtest/gtest.h>

#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTableWidget>

#include "../TestSupport.h"
#include "OpenWindow.h"
#include "QtEnvironment.h"
#include "Widgets.h"
#include "ui/PreviewDialog.h"

namespace tallory {
namespace {

using test::Find;
using test::MessageBoxes;
using test::WhenOpen;

TEST(PreviewDialog, ShowsTheCountsAndEveryMovedScore) {
    ChangePreview preview;
    preview.files = {"SessionData/L1.csv", "SessionData/L2.csv"};
    preview.logs = 2;
    preview.changes = {{"S1", "Adams, Ann", "09/01/2026", "L1.csv", 2, 1, "2", "1"},
                       {"#99", "", "09/02/2026", "L2.csv", 1, {}, "1", "Ab"}};
    PreviewDialog dialog(preview);
    EXPECT_EQ(dialog.Summary()->text(), "This changes 2 scores of 2 students in 2 sessions.");
    ASSERT_EQ(dialog.List()->rowCount(), 2);
    EXPECT_EQ(dialog.List()->item(0, 0)->text(), "S1  Adams, Ann");
    EXPECT_EQ(dialog.List()->item(1, 0)->text(), "#99");
    EXPECT_EQ(dialog.List()->item(1, 1)->text(), "09/02/2026");
    EXPECT_EQ(dialog.List()->item(1, 2)->text(), "1  ->  Ab");
    // Enter keeps everything.
    EXPECT_TRUE(dialog.Cancel()->isDefault());
    EXPECT_TRUE(WorthPreviewing(preview));
    preview.logs = 1;
    EXPECT_FALSE(WorthPreviewing(preview));
}

// The sample course of the housekeeping screens: S1..S4, the stray clickers 99 and ABC123.
struct Fixture : test::CourseWindow {
    Fixture()
        : CourseWindow([](const test::TempCourse& f) {
              f.CopyFrom(test::DataPath("housekeeping/course"));
          }) {}
    test::Files Files() const { return test::FolderFiles(folder.Path()); }
};

// A purge of both stray clickers: the preview comes before the question, names the stray rows,
// and its Cancel writes nothing; Go Ahead goes on to the usual question and the deletion.
TEST(PreviewDialog, ComesBeforeAPurge) {
    for (bool goAhead : {false, true}) {
        Fixture fixture;
        const auto before = fixture.Files();
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
        EXPECT_TRUE(ids.contains("#99")) << ids.join(",").toStdString();
        EXPECT_TRUE(ids.contains("#ABC123")) << ids.join(",").toStdString();
        EXPECT_EQ(answers.shown.size(), goAhead ? 1u : 0u);
        EXPECT_EQ(fixture.Files() == before, !goAhead);
    }
}

// Adding a stray clicker to a student: the same look first, from the student's screen.
TEST(PreviewDialog, ComesBeforeAClickerIsAdded) {
    Fixture fixture;
    const auto before = fixture.Files();
    bool shown = false;
    WhenOpen("frmEditStudent", [&](QDialog& dialog) {
        WhenOpen("PreviewDialog", [&](QDialog& preview) {
            shown = true;
            EXPECT_NE(Find<QLabel>(preview, "PreviewSummary")->text().indexOf("This changes "), -1);
            Find<QPushButton>(preview, "PreviewCancel")->click();
        });
        test::Type(Find<QWidget>(dialog, "TxtNewClickerId"), "99");
        Find<QPushButton>(dialog, "CmdAdd")->click();
        // Cancel closes without asking: the button drops the typed clicker.
        Find<QPushButton>(dialog, "cmdCancel")->click();
    });
    test::Click(Find<QLabel>(*fixture.window, "lblStudentName3"));
    EXPECT_TRUE(shown);
    EXPECT_EQ(fixture.Files(), before);
}

}  // namespace
}  // namespace tallory
