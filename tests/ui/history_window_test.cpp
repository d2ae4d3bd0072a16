#include <QPushButton>
#include <QTreeWidget>
#include <cstdlib>

#include "../TestSupport.h"
#include "QtEnvironment.h"
#include "common/History.h"
#include "ui/HistoryWindow.h"

namespace tallory {
namespace {

// The demo course after three changes, the last one undone.
struct ChangedCourse : test::TempCourse {
    test::TempCourse dataHome;
    RecordingHost host;
    int reloads = 0;
    ChangedCourse() {
        ::setenv("XDG_DATA_HOME", dataHome.Path().c_str(), 1);
        CopyFrom(test::DemoCourse());
        for (const std::vector<std::string>& words :
             {std::vector<std::string>{"set-scores", "1", "--participation", "2"},
              {"rename", "2", "Vectors review"},
              {"purge", "007F00B2", "--yes"},
              {"undo"}}) {
            const test::CliResult result = test::RunCliOn(Path(), words);
            EXPECT_TRUE(result.status == 0 || result.status == 3) << result.err;
        }
    }
};

// The list shows the newest change first, each with its files, the undone ones marked; Undo is
// offered only for a change in force, and undoing one puts its files back, reloads, and lists the
// undo on top.
TEST(HistoryWindow, ListsNewestFirstAndUndoesTheChosenChange) {
    ChangedCourse course;
    HistoryWindow window(course.Path(), course.host, [&] { ++course.reloads; });
    QTreeWidget* list = window.List();
    ASSERT_EQ(list->topLevelItemCount(), 4);
    EXPECT_EQ(list->topLevelItem(1)->text(2), "undone");
    EXPECT_EQ(list->topLevelItem(2)->text(1), "Rename of session 09/10/2026 to Vectors review");
    ASSERT_EQ(list->topLevelItem(2)->childCount(), 1);
    EXPECT_EQ(list->topLevelItem(2)->child(0)->text(1), "SessionData/L2609101000.csv");

    list->setCurrentItem(list->topLevelItem(1));
    EXPECT_FALSE(window.UndoButton()->isEnabled());
    list->setCurrentItem(list->topLevelItem(2)->child(0));
    EXPECT_TRUE(window.UndoButton()->isEnabled());
    const std::string before = course.Read("SessionData/L2609101000.csv");
    window.UndoButton()->click();
    EXPECT_EQ(course.reloads, 1);
    EXPECT_NE(course.Read("SessionData/L2609101000.csv"), before);
    ASSERT_EQ(list->topLevelItemCount(), 5);
    EXPECT_EQ(list->topLevelItem(0)->text(1),
              "Undo of Rename of session 09/10/2026 to Vectors review");
    EXPECT_EQ(list->topLevelItem(3)->text(2), "undone");
    EXPECT_TRUE(course.host.messages.empty());

    // On a screen (Xvfb) the window is photographed for the documentation.
    if (const char* picture = std::getenv("TALLORY_HISTORY_PICTURE")) {
        list->setCurrentItem(list->topLevelItem(2));
        list->topLevelItem(2)->setExpanded(true);
        window.show();
        QApplication::processEvents();
        window.grab().save(picture);
    }
}

// An undo that finds a file changed since asks first, naming it; No leaves the course as it is.
TEST(HistoryWindow, AChangedFileIsNamedAndNoLeavesIt) {
    ChangedCourse course;
    course.Write("SessionData/L2609081000.csv", course.Read("SessionData/L2609081000.csv") + "x");
    const std::string changed = course.Read("SessionData/L2609081000.csv");
    course.host.answers = {Answer::No};
    HistoryWindow window(course.Path(), course.host, [&] { ++course.reloads; });
    window.List()->setCurrentItem(window.List()->topLevelItem(3));
    window.UndoChosen();
    ASSERT_EQ(course.host.messages.size(), 1u);
    EXPECT_TRUE(test::Holds(course.host.messages[0].text, "SessionData/L2609081000.csv"));
    EXPECT_EQ(course.Read("SessionData/L2609081000.csv"), changed);
    EXPECT_EQ(course.reloads, 0);
    EXPECT_EQ(window.List()->topLevelItemCount(), 4);
}

}  // namespace
}  // namespace tallory
