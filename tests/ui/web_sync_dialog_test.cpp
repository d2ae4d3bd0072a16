#include <QLineEdit>
#include <QListWidget>
#include <chrono>
#include <cstdlib>

#include "../LocalHttpServer.h"
#include "OpenWindow.h"
#include "QtEnvironment.h"
#include "Widgets.h"
#include "ui/CommandLabel.h"

namespace tallory {
namespace {

using namespace test;

// Two unregistered clickers that WebReg.dat knows: Bennett's (clear, but he has a clicker) and
// Chen's (two Chens in the roster).
void WriteCourse(const TempCourse& folder) {
    folder.WriteRoster("Bennett,Oliver,1002\r\nChen,Wei,1003\r\nChen,Lin,1004\r\n");
    folder.WriteSettings({{"webcode", "local"}});
    folder.WriteRemotes("#AA0002,\"1002\"\r\n");
    folder.Write("WebReg.dat", ReadBytes(DataPath("web/WebReg.csv")));
    folder.WriteLog(
        "L2609081000.csv",
        {.title = "Optics",
         .voters = {{"#AA0002", "", {"A"}}, {"#BB0002", "", {"A"}}, {"#BB0003", "", {"B"}}}});
}

QStringList Rows(QDialog& dialog, const char* name) {
    QStringList rows;
    auto* list = Find<QListWidget>(dialog, name);
    for (int i = 0; i < list->count(); ++i) rows << list->item(i)->text();
    return rows;
}

TEST(WebSyncDialog, WalksTheClickersAndReloadsTheGrid) {
    CourseWindow fixture(WriteCourse);
    WhenOpen("frmWebSync", [&](QDialog& dialog) {
        EXPECT_EQ(Find<QLabel>(dialog, "wNote")->text(),
                  "To update student web registrations through local, press Continue.");
        Find<QPushButton>(dialog, "wSync")->click();

        // Bennett's clicker waits: he has one already.
        EXPECT_EQ(Rows(dialog, "wWebList"), QStringList{"Bennett Oliver (1002)"});
        EXPECT_FALSE(Find<QPushButton>(dialog, "wSync")->isVisible());
        Find<QPushButton>(dialog, "wIgnore")->click();

        EXPECT_EQ(Rows(dialog, "wList"), (QStringList{"Chen Wei (1003)", "Chen Lin (1004)"}));
        if (const char* shot = std::getenv("TALLORY_WEBSYNC_SCREENSHOT")) {
            dialog.resize(720, 460);
            dialog.grab().save(QString::fromLocal8Bit(shot));
        }
        Find<QListWidget>(dialog, "wList")->setCurrentRow(1);
        Find<QPushButton>(dialog, "wAccept")->click();

        auto* done = Find<QPushButton>(dialog, "wCancel");
        EXPECT_EQ(done->text(), "Done");
        // Chen Lin's votes move from the unregistered clicker to her: the change is shown first.
        GoAheadOnPreview();
        done->click();
    });
    emit Find<CommandLabel>(*fixture.window, "lblSyncWebRegn")->clicked();
    EXPECT_EQ(fixture.folder.Remotes(), "#AA0002,\"1002\"\r\n#00BB0003,\"1004\"\r\n");
    // The reload: Chen Lin's clicker is hers now, so no unregistered row of it is left.
    for (int s = 1; s <= fixture.course.NumStudents; ++s)
        EXPECT_NE(fixture.course.Students[s].StudentId, "#BB0003");
}

TEST(WebSyncDialog, TheCloseBoxCancels) {
    CourseWindow fixture(WriteCourse);
    WhenOpen("frmWebSync", [](QDialog& dialog) { dialog.reject(); });
    emit Find<CommandLabel>(*fixture.window, "lblSyncWebRegn")->clicked();
    EXPECT_EQ(fixture.folder.Remotes(), "#AA0002,\"1002\"\r\n");
}

TEST(WebUpdateDialog, SaysThereAreNoUpgrades) {
    CourseWindow fixture(WriteCourse);
    WhenOpen("frmWebUpdateSummary", [](QDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle(), "Web Update");
        EXPECT_EQ(Find<QLineEdit>(dialog, "txtClicker")->text(), "No upgrades available");
        EXPECT_EQ(Find<QLineEdit>(dialog, "txtGrader")->text(), "No upgrades available");
        Find<QPushButton>(dialog, "CmdQuit")->click();  // does nothing
        EXPECT_TRUE(dialog.isVisible());
        Find<QPushButton>(dialog, "cmdClose")->click();
    });
    Find<QPushButton>(*fixture.window, "CmdWebUpdate")->click();
}

// A server that takes the request and never answers: the instructor's Cancel stops the wait at
// once, long before the fetch's own time limit, and nothing is written.
TEST(WebSyncDialog, CancelStopsAFetchThatHangs) {
    LocalHttpServer server(Silence);
    CourseWindow opened([&](const TempCourse& folder) {
        WriteCourse(folder);
        folder.WriteSettings({{"webcode", server.Base() + "WebReg.csv"}});
    });
    std::chrono::steady_clock::duration waited{};
    WhenOpen("frmWebSync", [&](QDialog& dialog) {
        auto* cancel = Find<QPushButton>(dialog, "wCancel");
        QTimer::singleShot(300, cancel, [cancel] { cancel->click(); });
        const auto start = std::chrono::steady_clock::now();
        Find<QPushButton>(dialog, "wSync")->click();
        waited = std::chrono::steady_clock::now() - start;
        EXPECT_FALSE(dialog.isVisible());
    });
    emit Find<CommandLabel>(*opened.window, "lblSyncWebRegn")->clicked();
    EXPECT_LT(waited, std::chrono::seconds(3));
    EXPECT_EQ(server.Targets().size(), 1u);
    EXPECT_EQ(opened.folder.Remotes(), "#AA0002,\"1002\"\r\n");
    EXPECT_FALSE(opened.folder.Exists("SessionData/ClickerCheck.txt"));
}

}  // namespace
}  // namespace tallory
