#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QKeyEvent>
#include <QScrollBar>
#include <QWheelEvent>

#include "../TestSupport.h"
#include "OpenWindow.h"
#include "QtEnvironment.h"
#include "Widgets.h"
#include "ui/MainWindow.h"
#include "ui/QtHost.h"

namespace tallory {
namespace {

using test::Click;
using test::Find;
using test::TempCourse;

// Five sessions of seven students on a roster whose last names run against their IDs.
void WriteCourse(const TempCourse& folder) {
    folder.WriteSettings({{"CourseName", "Optics"}});
    std::string roster;
    test::LogPlan plan;
    for (int i = 1; i <= 7; ++i) {
        const std::string id = "S" + std::to_string(i);
        roster += std::string(1, static_cast<char>('H' - i)) + "name, First, " + id + "\r\n";
        plan.voters.push_back({"#A" + std::to_string(i), id, {i == 3 ? "B" : "A"}});
    }
    folder.WriteRoster(roster);
    for (int day = 1; day <= 5; ++day) {
        if (day == 5) plan.voters.pop_back();  // S7 misses the last session
        folder.WriteLog(test::SeptemberLog(day), plan);
    }
}

QString Text(QWidget& window, const QString& name) {
    return Find(window, name)->text();
}

TEST(MainWindow, ShowsTheCourseAndMovesThroughIt) {
    test::CourseWindow opened(WriteCourse);
    MainWindow& window = *opened.window;

    EXPECT_EQ(window.windowTitle(), "Tallory-Optics");
    EXPECT_EQ(Text(window, "lblSubject"), "Optics");
    // The latest four sessions, students by ID.
    EXPECT_EQ(Text(window, "lblSession0"), "09/02/2026");
    EXPECT_EQ(Text(window, "lblSession21"), "09/05/2026");
    EXPECT_EQ(Text(window, "lblStudentName1"), " S1");
    EXPECT_EQ(Text(window, "lblSession1"), "2");
    EXPECT_EQ(Text(window, "lblSession3"), "0");  // S3 chose a wrong answer
    EXPECT_EQ(Text(window, "lblTotal1"), "10");
    EXPECT_EQ(Text(window, "lblAverage1"), "Average: 2");
    EXPECT_FALSE(Find(window, "lblNext")->isVisible());
    EXPECT_TRUE(Find(window, "lblPrevious")->isVisible());
    EXPECT_TRUE(Text(window, "lblPrevious").contains("Previous"));

    // One page back: the first session comes into view.
    Click(Find(window, "lblPrevious"));
    EXPECT_EQ(Text(window, "lblSession0"), "09/01/2026");
    EXPECT_EQ(Find<QScrollBar>(window, "hscrlSession")->value(), 0);
    EXPECT_TRUE(Find(window, "lblNext")->isVisible());

    // An export mark follows its session while the grid moves.
    Find<QCheckBox>(window, "chkExport1")->click();  // 09/02
    EXPECT_EQ(opened.course.ExportSel[2], 1);
    Find<QScrollBar>(window, "hscrlSession")->setValue(1);
    EXPECT_TRUE(Find<QCheckBox>(window, "chkExport0")->isChecked());
    EXPECT_FALSE(Find<QCheckBox>(window, "chkExport1")->isChecked());
    QWheelEvent wheel(QPointF(10, 10), window.mapToGlobal(QPointF(10, 10)), QPoint(),
                      QPoint(0, -120), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&window, &wheel);
    EXPECT_EQ(Text(window, "lblStudentName6"), " S7");
    EXPECT_EQ(Text(window, "lblSession27"), "Ab");
    EXPECT_EQ(Find(window, "lblSession27")->toolTip(), "Absent");
    EXPECT_TRUE(Find<QCheckBox>(window, "chkExport0")->isChecked());

    // Type grows with the window, by the smaller of its two ratios.
    const double points = Find(window, "lblSession1")->font().pointSizeF();
    window.resize(window.width(), window.height() * 2);
    EXPECT_EQ(Find(window, "lblSession1")->font().pointSizeF(), points);
    window.resize(window.width() * 2, window.height());
    EXPECT_GT(Find(window, "lblSession1")->font().pointSizeF(), points * 1.5);

    // By last name the order turns round.
    QKeyEvent up(QEvent::KeyPress, Qt::Key_Up, Qt::NoModifier);
    QApplication::sendEvent(Find<QComboBox>(window, "cmbDisplayName"), &up);
    EXPECT_EQ(Find<QComboBox>(window, "cmbDisplayName")->currentText(), "Last Name");
    EXPECT_EQ(Text(window, "lblStudentName1"), " Bname");
    EXPECT_EQ(Text(window, "lblStudentName6"), " Gname");
}

TEST(MainWindow, CourseWithoutSessionsCanOnlyBeClosed) {
    TempCourse folder;
    folder.WriteRoster("Doe, Jane, 12345\r\n");
    test::OpenWindow opened(folder.Path(), true);
    MainWindow& window = *opened.window;
    EXPECT_EQ(window.objectName(), "FrmS_120DPI");
    EXPECT_EQ(Text(window, "lblStudentName1"), " 12345");
    EXPECT_FALSE(Find<QWidget>(window, "cmdHelp")->isEnabled());
    EXPECT_FALSE(Find(window, "lblExit")->isEnabled());
    EXPECT_FALSE(Find(window, "lblSession0")->isEnabled());
    EXPECT_TRUE(Find<QWidget>(window, "cmdExit")->isEnabled());
    EXPECT_FALSE(Find<QWidget>(window, "cmdEdit0")->isVisible());
}

}  // namespace
}  // namespace tallory
