#include <QAbstractButton>
#include <QAccessible>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QLineEdit>
#include <QRegularExpression>
#include <QScrollBar>
#include <set>

#include "OpenWindow.h"
#include "QtEnvironment.h"
#include "Widgets.h"
#include "ui/Accessibility.h"
#include "ui/CommandLabel.h"

namespace tallory {
namespace {

using namespace test;

// Five sessions of seven students on a roster whose last names run against their IDs.
void WriteCourse(const TempCourse& folder) {
    folder.WriteSettings({{"CourseName", "Optics"}});
    std::string roster;
    LogPlan plan;
    for (int i = 1; i <= 7; ++i) {
        const std::string id = "S" + std::to_string(i);
        roster += std::string(1, static_cast<char>('H' - i)) + "name, First, " + id + "\r\n";
        plan.voters.push_back({"#A" + std::to_string(i), id, {i == 3 ? "B" : "A"}});
    }
    folder.WriteRoster(roster);
    for (int day = 1; day <= 5; ++day) {
        if (day == 5) plan.voters.pop_back();  // S7 misses the last session
        folder.WriteLog(SeptemberLog(day), plan);
    }
}

QString Text(QWidget& window, const QString& name) {
    return Find(window, name)->text();
}
QStringList Texts(QWidget& window, const QStringList& names) {
    QStringList texts;
    for (const QString& name : names) texts << Text(window, name);
    return texts;
}

TEST(MainWindow, ShowsTheCourseAndMovesThroughIt) {
    CourseWindow opened(WriteCourse);
    MainWindow& window = *opened.window;

    EXPECT_EQ(window.windowTitle(), "Tallory-Optics");
    // The latest four sessions, students by ID.
    EXPECT_EQ(Texts(window, {"lblSubject", "lblSession0", "lblSession21", "lblStudentName1",
                             "lblSession1", "lblTotal1", "lblAverage1"}),
              (QStringList{"Optics", "09/02/2026", "09/05/2026", " S1", "2", "10", "Average: 2"}));
    EXPECT_FALSE(Find(window, "lblNext")->isVisible());
    EXPECT_TRUE(Find(window, "lblPrevious")->isVisible());

    // One page back: the first session comes into view.
    Click(Find(window, "lblPrevious"));
    EXPECT_EQ(Text(window, "lblSession0"), "09/01/2026");
    EXPECT_TRUE(Find(window, "lblNext")->isVisible());

    // An export mark follows its session while the grid moves.
    Find<QCheckBox>(window, "chkExport1")->click();  // 09/02
    EXPECT_EQ(opened.course.ExportSel[2], 1);
    Find<QScrollBar>(window, "hscrlSession")->setValue(1);
    EXPECT_TRUE(Find<QCheckBox>(window, "chkExport0")->isChecked());
    EXPECT_FALSE(Find<QCheckBox>(window, "chkExport1")->isChecked());
    Wheel(&window, -120);
    EXPECT_EQ(Texts(window, {"lblStudentName6", "lblSession27"}), (QStringList{" S7", "Ab"}));
    EXPECT_EQ(Find(window, "lblSession27")->toolTip(), "Absent");

    // Type grows with the window, by the smaller of its two ratios.
    const double points = Find(window, "lblSession1")->font().pointSizeF();
    window.resize(window.width(), window.height() * 2);
    EXPECT_EQ(Find(window, "lblSession1")->font().pointSizeF(), points);
    window.resize(window.width() * 2, window.height());
    EXPECT_GT(Find(window, "lblSession1")->font().pointSizeF(), points * 1.5);

    // By last name the order turns round.
    PressKey(Find<QComboBox>(window, "cmbDisplayName"), Qt::Key_Up);
    EXPECT_EQ(Texts(window, {"lblStudentName1", "lblStudentName6"}),
              (QStringList{" Bname", " Gname"}));
}

// The large-font layout; which controls a course without sessions leaves is the grid's own test.
TEST(MainWindow, CourseWithoutSessionsCanOnlyBeClosed) {
    CourseWindow opened([](const TempCourse& f) { f.WriteRoster("Doe, Jane, 12345\r\n"); }, true);
    MainWindow& window = *opened.window;
    EXPECT_EQ(window.objectName(), "FrmS_120DPI");
    EXPECT_FALSE(Find(window, "lblSession0")->isEnabled());
    EXPECT_TRUE(Find<QWidget>(window, "cmdExit")->isEnabled());
}

// Controls a person can work: buttons, boxes, lists, bars, and the labels that act.
bool Actionable(const QWidget* widget) {
    if (auto* label = qobject_cast<const CommandLabel*>(widget)) return label->IsKeyboardCommand();
    return qobject_cast<const QAbstractButton*>(widget) || qobject_cast<const QComboBox*>(widget) ||
           qobject_cast<const QScrollBar*>(widget) || qobject_cast<const QLineEdit*>(widget);
}

TEST(MainWindow, HelpExplainsTheWindowAndLeavesOnlyTheWaysOutAndTheColumns) {
    CourseWindow opened(WriteCourse);
    MainWindow& window = *opened.window;
    std::map<QWidget*, bool> before;
    for (QWidget* widget : window.findChildren<QWidget*>())
        if (Actionable(widget) && widget->window() == &window) before[widget] = widget->isEnabled();

    Find<QAbstractButton>(window, "cmdHelp")->click();
    QWidget* panel = Find<QWidget>(window, "PicHelp");
    ASSERT_TRUE(panel->isVisible());
    QString text;
    for (QLabel* label : panel->findChildren<QLabel*>()) text += label->text() + "\n";
    // What the grid shows, each command, and where the course is.
    for (const char* words :
         {"Ab means absent", "Blue names", "Red names", "Average", "Set Scores", "Export Selected",
          "Unregistered Clickers", "Whole Class", "HTML Reports", "Term Summary Report",
          "Sync Web Registrations", "Web Update", "Show names by", "Roster.txt", "SessionData"})
        EXPECT_TRUE(text.contains(words)) << words;
    EXPECT_EQ(Find<QLineEdit>(window, "txtHelpFolder")->text(),
              QDir::toNativeSeparators(QString::fromStdString(opened.folder.Path())));

    // Open: the help, the exits and the columns' own controls (as they were); nothing else.
    const std::set<QString> waysOut = {"cmdHelp", "cmdExit", "lblExit"};
    const QRegularExpression column("^(cmdEdit|chkExport|lblSession)\\d+$");
    auto keepsItsState = [&](const QString& name) { return column.match(name).hasMatch(); };
    for (const auto& [widget, enabled] : before) {
        const QString name = widget->objectName();
        if (panel->isAncestorOf(widget) || waysOut.count(name))
            EXPECT_TRUE(widget->isEnabled()) << name.toStdString();
        else if (keepsItsState(name))
            EXPECT_EQ(widget->isEnabled(), enabled) << name.toStdString();
        else
            EXPECT_FALSE(widget->isEnabled()) << name.toStdString() << " usable under the help";
    }
    // Closed: as before.
    Find<QAbstractButton>(window, "cmdHelp")->click();
    EXPECT_FALSE(panel->isVisible());
    for (const auto& [widget, enabled] : before)
        EXPECT_EQ(widget->isEnabled(), enabled) << widget->objectName().toStdString();
}

// Twenty students: three a notch of the wheel, a page of six per Page key.
void WriteClass(const TempCourse& folder) {
    LogPlan plan;
    for (int i = 10; i < 30; ++i)
        plan.voters.push_back({"#B" + std::to_string(i), "S" + std::to_string(i), {"A"}});
    folder.WriteLog(SeptemberLog(1), plan);
}

TEST(MainWindow, TheWheelMovesThreeStudentsANotchAndPageKeysAPage) {
    CourseWindow opened(WriteClass);
    MainWindow& window = *opened.window;
    auto* students = Find<QScrollBar>(window, "vscrlStudent");
    ASSERT_EQ(students->maximum(), 14);
    auto wheel = [&](int delta) {
        Wheel(&window, delta);
        return students->value();
    };
    auto key = [&](Qt::Key code) {
        QTest::keyClick(&window, code);
        return students->value();
    };
    EXPECT_EQ(wheel(-120), 3);
    EXPECT_EQ(wheel(-120), 6);
    EXPECT_EQ(Text(window, "lblStudentName1"), " S16");
    EXPECT_EQ(wheel(120), 3);
    // A fine wheel's small turns add up.
    EXPECT_EQ(wheel(-20), 3);
    EXPECT_EQ(wheel(-20), 4);
    EXPECT_EQ(wheel(-80), 6);
    EXPECT_EQ(key(Qt::Key_PageDown), 12);
    EXPECT_EQ(key(Qt::Key_PageDown), 14);  // no further than the last student
    EXPECT_EQ(key(Qt::Key_PageUp), 8);
    EXPECT_EQ(wheel(600), 0);
}

// What a screen reader hears of the grid, and that nothing it can work is nameless.
TEST(MainWindow, EveryControlHasANameAndCellsSayWhoseScoreOfWhichSession) {
    InstallAccessibility();
    CourseWindow opened(WriteCourse);
    MainWindow& window = *opened.window;
    auto spoken = [](QWidget* widget) {
        QAccessibleInterface* face = QAccessible::queryAccessibleInterface(widget);
        return std::pair{face->role(), face->text(QAccessible::Name)};
    };
    const std::tuple<const char*, QAccessible::Role, const char*> heard[] = {
        {"lblSession1", QAccessible::StaticText, "S1, 09/02/2026, score 2"},
        {"lblSession3", QAccessible::StaticText, "S3, 09/02/2026, score 0"},
        {"lblSession0", QAccessible::Button, "Session 09/02/2026"},
        {"lblStudentName1", QAccessible::Button, "Student S1"},
        {"lblSyncWebRegn", QAccessible::Button, "Sync Web Registrations"},
        {"chkExport1", QAccessible::CheckBox, "Export 09/03/2026"},
    };
    for (const auto& [name, role, text] : heard)
        EXPECT_EQ(spoken(Find<QWidget>(window, name)), std::pair(role, QString(text))) << name;
    EXPECT_EQ(spoken(Find<QWidget>(window, "vscrlStudent")).second, "Students");
    Wheel(&window, -120);
    EXPECT_EQ(spoken(Find(window, "lblSession27")).second, "S7, 09/05/2026, absent");

    // A press through the reader acts as a click.
    QAccessibleInterface* previous =
        QAccessible::queryAccessibleInterface(Find(window, "lblPrevious"));
    ASSERT_TRUE(previous->actionInterface());
    previous->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(Text(window, "lblSession0"), "09/01/2026");

    // Every control shown that a person can work has a name, help panel included.
    Find<QAbstractButton>(window, "cmdHelp")->click();
    int walked = 0;
    for (QWidget* widget : window.findChildren<QWidget*>()) {
        if (!widget->isVisible() || !Actionable(widget) || widget->window() != &window) continue;
        ++walked;
        EXPECT_FALSE(spoken(widget).second.trimmed().isEmpty())
            << widget->metaObject()->className() << " " << widget->objectName().toStdString()
            << " in " << widget->parentWidget()->objectName().toStdString();
    }
    EXPECT_GT(walked, 25);
}

}  // namespace
}  // namespace tallory
