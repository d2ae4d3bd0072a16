#include <gtest/gtest.h>

#include <QLabel>
#include <QPushButton>

#include "QtEnvironment.h"
#include "Widgets.h"
#include "common/RecordingHost.h"
#include "ui/ReportSummaryDialog.h"

namespace tallory {
namespace {

using test::Click;

TEST(ReportSummaryDialog, EachLinkOpensItsPageAndCloseCloses) {
    Course course;
    course.AppPath = "/courses/Optics";
    RecordingHost host;
    ReportSummaryScreen screen(course, host);
    ReportSummaryDialog dialog(screen);
    const char* const names[] = {"LblReport1", "LblReport2", "lblReport3"};
    for (const char* name : names) {
        auto* link = dialog.findChild<QLabel*>(name);
        ASSERT_NE(link, nullptr) << name;
        EXPECT_FALSE(link->toolTip().isEmpty()) << name;
        Click(link);
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
