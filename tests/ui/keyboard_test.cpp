#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QScrollBar>
#include <algorithm>

#include "OpenWindow.h"
#include "QtEnvironment.h"
#include "Widgets.h"
#include "scoring/ScreenParts.h"
#include "ui/CommandLabel.h"
#include "ui/CourseListDialog.h"

namespace tallory {
namespace {

using namespace test;

// Six sessions of eight students, each session of three questions: the grid opens on sessions 3
// to 6, and the students scroll by two rows.
void WriteCourse(const TempCourse& folder) {
    std::string roster;
    LogPlan plan = QuestionsPlan(3);
    for (int i = 1; i <= 8; ++i) {
        const std::string id = "S" + std::to_string(i);
        roster += "Name" + std::to_string(i) + ", First, " + id + "\r\n";
        plan.voters.push_back({"#A" + std::to_string(i), id, {"A", "B", "A"}});
    }
    folder.WriteRoster(roster);
    for (int day = 1; day <= 6; ++day) folder.WriteLog(SeptemberLog(day), plan);
}

struct Fixture : CourseWindow {
    Fixture() : CourseWindow(WriteCourse) {
        window->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
    }
    QScrollBar* Sessions() { return Find<QScrollBar>(*window, "hscrlSession"); }
    QScrollBar* Students() { return Find<QScrollBar>(*window, "vscrlStudent"); }
    QWidget* Focused() { return QApplication::focusWidget(); }
    // What the view shows: the first heading, the first name and both scroll values.
    std::vector<QString> Shown() {
        return {Find(*window, "lblSession0")->text(), Find(*window, "lblStudentName1")->text(),
                QString::number(Sessions()->value()), QString::number(Students()->value())};
    }
};

TEST(Keyboard, GridKeysMoveTheViewAsTheScrollBarsAndLabelsDo) {
    Fixture fixture;
    ASSERT_EQ(fixture.Focused(), Find(*fixture.window, "lblSession0"));  // the keys start here
    ASSERT_EQ(fixture.Students()->maximum(), 2);

    // Each key from the middle, then the mouse's way from there: the same view, moved.
    struct Case {
        Qt::Key key;
        std::function<void(Fixture&)> mouse;
    };
    auto bar = [](QScrollBar* (Fixture::*which)(), QAbstractSlider::SliderAction action) {
        return [which, action](Fixture& f) { ((f.*which)())->triggerAction(action); };
    };
    auto label = [](const char* name) {
        return [name](Fixture& f) { Click(Find(*f.window, name)); };
    };
    const Case cases[] = {
        {Qt::Key_Left, label("lblPrevious")},
        {Qt::Key_Right, label("lblNext")},
        {Qt::Key_Up, bar(&Fixture::Students, QAbstractSlider::SliderSingleStepSub)},
        {Qt::Key_Down, bar(&Fixture::Students, QAbstractSlider::SliderSingleStepAdd)},
        {Qt::Key_PageUp, bar(&Fixture::Students, QAbstractSlider::SliderPageStepSub)},
        {Qt::Key_PageDown, bar(&Fixture::Students, QAbstractSlider::SliderPageStepAdd)},
        {Qt::Key_Home, bar(&Fixture::Sessions, QAbstractSlider::SliderToMinimum)},
        {Qt::Key_End, bar(&Fixture::Sessions, QAbstractSlider::SliderToMaximum)},
    };
    const std::vector<QString> middle = {"09/02/2026", " S2", "1", "1"};
    for (const Case& c : cases) {
        fixture.Sessions()->setValue(1);
        fixture.Students()->setValue(1);
        QTest::keyClick(fixture.Focused(), c.key);
        const std::vector<QString> byKey = fixture.Shown();
        EXPECT_NE(byKey, middle) << c.key;
        fixture.Sessions()->setValue(1);
        fixture.Students()->setValue(1);
        c.mouse(fixture);
        EXPECT_EQ(byKey, fixture.Shown()) << c.key;
    }
}

TEST(Keyboard, TabReachesHeadingsNamesAndCommandsInReadingOrderAndEnterActs) {
    Fixture fixture;
    MainWindow& window = *fixture.window;
    Find<QComboBox>(window, "cmbDisplayName")->setFocus(Qt::TabFocusReason);
    std::vector<std::string> walk;
    for (int step = 0; step < 60; ++step) {
        QTest::keyClick(fixture.Focused(), Qt::Key_Tab);
        const std::string name = fixture.Focused()->objectName().toStdString();
        if (name == "cmbDisplayName") break;
        walk.push_back(name);
    }
    // clang-format off
    const std::vector<std::string> reading = {
        "lblPrevious", "lblSession0", "lblSession7", "lblSession14", "lblSession21",
        "lblStudentName1", "lblStudentName6", "cmdEdit0", "cmdEdit3", "chkExport0", "CmdViewAll",
        "cmdHelp", "lblSessionSummaryReport", "lblTermSummaryReport", "lblSyncWebRegn", "cmdExit",
        "lblExit"};
    // clang-format on
    std::vector<std::string> reached;  // the walk's stops that are reading stops, in its order
    for (const std::string& name : walk)
        if (std::ranges::count(reading, name)) reached.push_back(name);
    EXPECT_EQ(reached, reading);
    // The links keep their captions.
    EXPECT_EQ(Find(window, "lblExit")->text(), "Exit");
    // Cells and the hidden Next are no stops; Previous is.
    EXPECT_EQ(std::ranges::count(walk, "lblSession1") + std::ranges::count(walk, "lblNext"), 0);

    // Enter on a name opens the student; Escape without an edit closes at once.
    Opening student("frmEditStudent", [&](QDialog& dialog) {
        QTest::keyClick(&dialog, Qt::Key_Escape);
        EXPECT_FALSE(dialog.isVisible());
    });
    auto* name = Find<CommandLabel>(window, "lblStudentName2");
    name->setFocus(Qt::TabFocusReason);
    QTest::keyClick(name, Qt::Key_Return);

    // Space on a heading opens the session; Escape after an edit asks, No keeps the edit.
    Opening session("frmEditSession", [&](QDialog& dialog) {
        auto* title = Find<QLineEdit>(dialog, "txtSessionName");
        QTest::keyClicks(title, "Mirrors");
        MessageBoxes question({MessageBoxes::Enter});
        QTest::keyClick(title, Qt::Key_Escape);
        ASSERT_EQ(question.shown.size(), 1u);
        EXPECT_EQ(std::tuple(question.shown[0].defaultButton, dialog.isVisible(), title->text()),
                  std::tuple(QMessageBox::No, true, "Mirrors"));
        // Yes drops the edit and closes.
        MessageBoxes drop({MessageBoxes::Click(QMessageBox::Yes)});
        QTest::keyClick(title, Qt::Key_Escape);
        EXPECT_FALSE(dialog.isVisible());
    });
    auto* heading = Find<CommandLabel>(window, "lblSession7");
    heading->setFocus(Qt::TabFocusReason);
    QTest::keyClick(heading, Qt::Key_Space);
    EXPECT_EQ(heading->text(), "09/04/2026");  // nothing saved
}

TEST(Keyboard, SetScoresWalksTheQuestionsByKeyAndAsksBeforeDroppingEdits) {
    Fixture fixture;
    const std::string log = fixture.folder.Log(SeptemberLog(3));
    Opening setScores("frmSetSessionScoring", [&](QDialog& dialog) {
        ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
        auto* number = Find(dialog, "lblCurQuestionNo");
        auto* points = Find<QLineEdit>(dialog, "txtPoints1");
        // Where the keys go once the dialog is active again after a question (the offscreen
        // screen has no window manager to give it back).
        auto focus = [&dialog] {
            dialog.activateWindow();
            EXPECT_TRUE(QTest::qWaitForWindowActive(&dialog));
            QApplication::processEvents();  // the activation reaches the shortcuts
            return dialog.focusWidget() ? dialog.focusWidget() : &dialog;
        };
        points->setFocus();
        const std::tuple<QKeyCombination, const char*> walk[] = {
            {Qt::Key_PageDown, "2"}, {Qt::ALT | Qt::Key_Right, "3"}, {Qt::Key_PageDown, "3"},
            {Qt::Key_PageUp, "2"},   {Qt::ALT | Qt::Key_Left, "1"},  {Qt::Key_PageUp, "1"},
        };
        for (const auto& [key, question] : walk) {
            QTest::keyClick(focus(), key.key(), key.keyboardModifiers());
            EXPECT_EQ(number->text(), question) << key.toCombined();
        }
        // A point typed and not yet handed over is an edit: Escape asks, and No keeps it.
        points->setFocus();
        points->setText("4");
        MessageBoxes keep({MessageBoxes::Enter});
        QTest::keyClick(points, Qt::Key_Escape);
        ASSERT_EQ(keep.shown.size(), 1u);
        EXPECT_EQ(std::tuple(keep.shown[0].defaultButton, dialog.isVisible(), points->text()),
                  std::tuple(QMessageBox::No, true, "4"));
        // Handed over, it is still unsaved; Yes drops it.
        EXPECT_EQ(focus(), points);
        QTest::keyClick(focus(), Qt::Key_PageDown);
        EXPECT_EQ(number->text(), "2");
        MessageBoxes drop({MessageBoxes::Click(QMessageBox::Yes)});
        QTest::keyClick(focus(), Qt::Key_Escape);
        EXPECT_EQ(std::tuple(drop.shown.size(), dialog.isVisible()), std::tuple(1u, false));
    });
    Find<QPushButton>(*fixture.window, "cmdEdit0")->click();
    EXPECT_EQ(fixture.folder.Log(SeptemberLog(3)), log);  // nothing was saved

    // Enter on Set Scores opens it again; without edits Escape closes at once.
    Opening again("frmSetSessionScoring", [&](QDialog& dialog) {
        ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
        QTest::keyClick(dialog.focusWidget(), Qt::Key_PageDown);
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Escape);
        EXPECT_FALSE(dialog.isVisible());
    });
    fixture.window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(fixture.window.get()));
    auto* edit = Find<QPushButton>(*fixture.window, "cmdEdit0");
    edit->setFocus(Qt::TabFocusReason);
    QTest::keyClick(edit, Qt::Key_Return);
}

TEST(Keyboard, MessageBoxesHaveNoMinimiseButtonAndDestructiveOnesDefaultToNo) {
    QtHost host;
    const std::tuple<Buttons, MessageStyle, QMessageBox::StandardButton, Answer> cases[] = {
        {Buttons::YesNo, kDestructive, QMessageBox::No, Answer::No},
        {Buttons::OkCancel, kDestructive, QMessageBox::Cancel, Answer::Cancel},
        {Buttons::YesNo, {}, QMessageBox::Yes, Answer::Yes},
    };
    for (const auto& [buttons, style, shown, enter] : cases) {
        MessageBoxes boxes({MessageBoxes::Enter});
        EXPECT_EQ(host.Message("Remove it?", "Confirm Remove", Icon::Question, buttons, style),
                  enter);
        ASSERT_EQ(boxes.shown.size(), 1u);
        const Qt::WindowFlags flags = boxes.shown[0].flags;
        EXPECT_EQ(boxes.shown[0].defaultButton, shown);
        EXPECT_FALSE(flags & (Qt::WindowMinimizeButtonHint | Qt::WindowMaximizeButtonHint));
        EXPECT_TRUE(flags & Qt::WindowCloseButtonHint);
    }

    // A table lines up in a fixed-width font.
    bool fixed = false;
    MessageBoxes table({[&](QMessageBox& box) {
        fixed = box.findChild<QLabel*>("qt_msgbox_label")->fontInfo().fixedPitch();
        box.accept();
    }});
    host.Message("SrNo   StudentID\r\n1      S1", "Warning", Icon::Exclamation, Buttons::Ok,
                 kTableText);
    EXPECT_TRUE(fixed);
}

TEST(Keyboard, CourseScreenShowsNoRowSelectedAndEnterNeedsOne) {
    TempCourse program;
    for (const char* course : {"physics", "Algebra"})
        program.Write(std::string("Classes/") + course + "/Roster.txt", "");
    QtHost host;
    CourseListDialog dialog(program.Path(), host);
    dialog.show();
    dialog.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    auto* list = Find<QListWidget>(dialog, "lstCourses");
    ASSERT_EQ(list->count(), 2);
    EXPECT_EQ(std::tuple(list->hasFocus(), list->currentRow(), list->selectedItems().size()),
              std::tuple(true, -1, 0));

    QTest::keyClick(list, Qt::Key_Return);
    EXPECT_EQ(std::tuple(dialog.isVisible(), dialog.result()), std::tuple(true, QDialog::Rejected));

    QTest::keyClick(list, Qt::Key_Down);
    EXPECT_EQ(std::tuple(list->selectedItems().size(), list->currentRow()), std::tuple(1, 0));
    QTest::keyClick(list, Qt::Key_Return);
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(dialog.CourseFolder(), program.Path() + "/Classes/Algebra");
}

}  // namespace
}  // namespace tallory
