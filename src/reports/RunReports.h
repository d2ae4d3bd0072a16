#pragma once

#include <array>
#include <string>

#include "common/Course.h"
#include "common/Host.h"
#include "reports/PageWriter.h"
#include "scoring/ScreenParts.h"

namespace tallory {

// How the report command ended.
enum class ReportRunEnd {
    Written,          // every page written: the summary dialog follows
    Cancelled,        // the display preferences were cancelled; nothing written
    NoReportsFolder,  // the Reports folder could not be made; nothing written
};

// The display preferences dialog of the report command.
OptionDialog ReportDisplayDialog();

// The session summary report command (lblSessionSummaryReport): the Reports folder, the display
// preferences, every session's summary and detail, the term pages. The caller shows the summary
// dialog when it returns Written. Pages go to `output`, files in the course folder by default.
ReportRunEnd RunReports(Course& course, Host& host);
ReportRunEnd RunReports(Course& course, Host& host, PageOutput& output);

// The term summary report command (lblTermSummaryReport): the term pages and the student term
// report with the display mode of the last run; no folder check, no dialog.
void RunTermReports(Course& course, Host& host);
void RunTermReports(Course& course, Host& host, PageOutput& output);

// FrmReportSummay: the three links to the pages just written, opened in the desktop's browser.
class ReportSummaryScreen {
  public:
    static constexpr int kLinks = 3;

    ReportSummaryScreen(const Course& course, Host& host);

    struct Controls {
        ControlState Label1;                     // the heading
        ControlState lblFolder;                  // where the pages are
        std::array<ControlState, kLinks> links;  // LblReport1, LblReport2, lblReport3
        std::array<std::string, kLinks> tips;
        // The descriptions: of the term page, and of the voting data, whose text runs around
        // the link to the cumulative scores.
        ControlState lblTermDescription;
        ControlState lblVotingDescription;
        ControlState lblVotingDescriptionEnd;
        ControlState lvButtons_H1;  // Close
    };

    const Controls& controls() const { return controls_; }
    // The page a link opens.
    const std::string& LinkTarget(int link) const { return targets_.at(link); }
    // A click on link 0, 1 or 2 opens its page.
    void LinkClick(int link);

  private:
    Host& host_;
    Controls controls_;
    std::array<std::string, kLinks> targets_;
};

}  // namespace tallory
