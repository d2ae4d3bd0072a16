// The dialogs of a report run: the choice of how students show, and the summary of the pages.

#include <QRadioButton>

#include "QtEnvironment.h"
#include "Widgets.h"
#include "common/RecordingHost.h"
#include "ui/QtHost.h"
#include "ui/ReportSummaryDialog.h"

namespace tallory {
namespace {

const OptionDialog kPreferences = {.title = "HTML Report Display Preferences",
                                   .heading = "Show students by",
                                   .choices = {"Name", "ID", "Name and ID", "Remote", "Nothing"},
                                   .footer = "Applies to every page",
                                   .acceptCaption = "Continue",
                                   .cancelCaption = "Stop",
                                   .preselected = 1};

// Runs `work` on the option dialog once QtHost has it up, then lets ChooseOption return.
OptionChoice ChooseWith(const OptionDialog& dialog, std::function<void(QWidget&)> work) {
    QTimer::singleShot(0, [work] {
        QWidget* window = QApplication::activeModalWidget();
        if (window == nullptr || window->objectName() != "frmOptions") {
            ADD_FAILURE() << "the option dialog did not open";
            if (window) window->close();
            return;
        }
        work(*window);
    });
    QtHost host;
    return host.ChooseOption(dialog);
}

QRadioButton* Option(QWidget& window, int index) {
    return window.findChild<QRadioButton*>(QString("optExport%1").arg(index));
}

TEST(OptionDialog, ShowsTheDialogAndReturnsTheTickedOption) {
    // What is ticked first (-1: nothing), the button pressed (none: the window closed), and the
    // choice that comes back.
    const std::tuple<const char*, int, const char*, int, bool> cases[] = {
        {"accept the preselected", -1, "CmdExport", 1, false},
        {"tick another, accept", 4, "CmdExport", 4, false},
        {"tick another, cancel", 0, "CmdStop", 0, true},
        {"close the window", -1, nullptr, 1, true},
    };
    for (const auto& [what, tick, button, index, cancelled] : cases) {
        bool checked = false;
        OptionChoice choice = ChooseWith(kPreferences, [&](QWidget& window) {
            EXPECT_EQ(window.windowTitle(), "HTML Report Display Preferences");
            EXPECT_EQ(window.findChild<QLabel*>("lblHdr")->text(), "Show students by");
            EXPECT_EQ(window.findChild<QLabel*>("lblFtr")->text(), "Applies to every page");
            EXPECT_EQ(window.findChild<QPushButton*>("CmdExport")->text(), "Continue");
            EXPECT_EQ(window.findChild<QPushButton*>("CmdStop")->text(), "Stop");
            for (int i = 0; i < 5; ++i) {
                ASSERT_NE(Option(window, i), nullptr);
                EXPECT_EQ(Option(window, i)->text().toStdString(), kPreferences.choices[i]);
                EXPECT_EQ(Option(window, i)->isChecked(), i == 1) << i;
            }
            checked = true;
            if (tick >= 0) Option(window, tick)->click();
            if (button)
                window.findChild<QPushButton*>(button)->click();
            else
                window.close();
        });
        EXPECT_EQ(std::tuple(what, checked, choice.index, choice.cancelled),
                  std::tuple(what, true, index, cancelled));
    }
}

TEST(ReportSummaryDialog, EachLinkOpensItsPageAndCloseCloses) {
    Course course;
    course.AppPath = "/courses/Optics";
    RecordingHost host;
    ReportSummaryScreen screen(course, host);
    ReportSummaryDialog dialog(screen);
    for (const char* name : {"LblReport1", "LblReport2", "lblReport3"}) {
        QLabel* link = test::Find(dialog, name);
        EXPECT_FALSE(link->toolTip().isEmpty()) << name;
        test::Click(link);
    }
    EXPECT_EQ(host.opened,
              (std::vector<std::string>{"/courses/Optics/Term_Session Summary and Review.html",
                                        "/courses/Optics/STUDENT VOTING DATA.html",
                                        "/courses/Optics/Reports/StudentTermReport.html"}));
    EXPECT_TRUE(
        dialog.findChild<QLabel*>("lblFolder")->text().endsWith(" '/courses/Optics'  Folder"));
    dialog.show();
    dialog.findChild<QPushButton*>("lvButtons_H1")->click();
    EXPECT_FALSE(dialog.isVisible());
}

}  // namespace
}  // namespace tallory
