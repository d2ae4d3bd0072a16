#include "reports/RunReports.h"

#include "common/Paths.h"
#include "reports/Reports.h"
#include "scoring/Grading.h"

namespace tallory {

namespace {

constexpr std::string_view kSupportAddress = "support@tallory.example";

}  // namespace

OptionDialog ReportDisplayDialog() {
    OptionDialog dialog;
    dialog.title = "HTML Report Display Preferences";
    dialog.heading =
        "Please choose what student information you'd like to include in the HTML report(s):";
    dialog.choices = {"Student last name, first name, student ID ",
                      "Student last name, student ID ", "Student ID only ",
                      "Student last name, student first name", "Remote ID Only"};
    dialog.footer =
        "The Student Voting Data report contains your individual students' polling statistics, "
        "by session and by question. Your customizations (chosen here) will affect how "
        "individual student data will be displayed.  ";
    dialog.acceptCaption = "Submit";
    dialog.cancelCaption = "Cancel";
    dialog.preselected = kDisplayIdOnly;
    return dialog;
}

ReportRunEnd RunReports(Course& course, Host& host) {
    FilePageOutput output(host);
    return RunReports(course, host, output);
}

ReportRunEnd RunReports(Course& course, Host& host, PageOutput& output) {
    const std::string folder = ReportsFolderPath(course);
    CreateFolderPath(folder);
    if (!FolderExists(folder)) {
        host.Message("Unable to create 'Reports' Folder access denied", "Folder Not Found",
                     Icon::Information);
        return ReportRunEnd::NoReportsFolder;
    }

    // The choice counts even when the dialog is cancelled.
    const OptionChoice choice = host.ChooseOption(ReportDisplayDialog());
    const int index = choice.index;
    course.ReportDisplayMode = index >= 0 && index <= 4 ? static_cast<int16_t>(index)
                                                        : static_cast<int16_t>(kDisplayIdOnly);
    if (choice.cancelled) return ReportRunEnd::Cancelled;

    host.ShowProgress();
    const int count = course.NumSessions;
    // A visible pass over the sessions before any is written.
    for (int i = 1; i <= count; ++i)
        host.SetProgressText("Checking Session Information - " + OfCount(i, count));
    PageWriter page(course, host, output);
    // Each page of a session reads it from its log, the detail after the summary. The detail
    // shares the summary's opening when a second one would leave the tables as they are.
    SessionPasses passes;
    passes.StartWalk(course);
    for (int i = 1; i <= count; ++i) {
        host.SetProgressText("Gathering Lecture Summary - " + OfCount(i, count));
        OpenSession(course, i);
        WriteOpenedSessionSummary(course, page, i);
        if (ReopeningChangesNothing(course, i))
            passes.WalkOpened(course, i);
        else
            OpenSession(course, i);
        WriteOpenedSessionDetail(course, page, i);
    }
    passes.FinishWalk(course);
    host.SetProgressText("Exporting Term Summary");
    host.SetProgressValue(0);
    WriteTermSummary(course, page, passes);
    WriteStudentTermReport(course, page, passes);
    host.HideProgress();
    return ReportRunEnd::Written;
}

void RunTermReports(Course& course, Host& host) {
    FilePageOutput output(host);
    RunTermReports(course, host, output);
}

void RunTermReports(Course& course, Host& host, PageOutput& output) {
    host.ShowProgress();
    PageWriter page(course, host, output);
    SessionPasses passes;
    WriteTermSummary(course, page, passes);
    WriteStudentTermReport(course, page, passes);
    host.HideProgress();
}

ReportSummaryScreen::ReportSummaryScreen(const Course& course, Host& host) : host_(host) {
    controls_.Label1.text = "Report Summary";
    controls_.lblFolder.text =
        "You have now generated (or updated, if you have used this function before) two HTML "
        "reports containing your class polling data. These printable reports may be posted to "
        "your course web site or your campus course management system (using Adobe PDF). "
        "Contact " +
        std::string(kSupportAddress) +
        " for more detailed instructions. You may access these reports from your " + " '" +
        course.AppPath + "'  Folder";
    controls_.links[0].text = "1. Term / Session Summary and Review:";
    controls_.links[1].text = "2. Student Voting Data:";
    controls_.links[2].text = "Cumulative Student Scores,";
    controls_.tips = {"Click Once to View Term / Session Summary and Review Report",
                      "Click Once to view Student Voting Data Report",
                      "Click Once to view Cumulative Student Scores"};
    controls_.lblTermDescription.text =
        "Details both your cumulative and individual session polling data. No individual "
        "student scores or votes are included. For each session, we provide individual question "
        "statistics, your question (via the screenshot taken when you began polling), and the "
        "graph with voting results. This report is a great study and review tool for students.";
    controls_.lblVotingDescription.text =
        "This report contains your individual students' polling statistics, by session and by "
        "question. This report also links to your student's";
    controls_.lblVotingDescriptionEnd.text =
        "which provides you with an easily printable overview of your students' entire "
        "performance with Polvane. This is a great resource for you, especially for struggling "
        "students.";
    controls_.lvButtons_H1.text = "Close";
    // The voting data is named in capitals here; the course folder's names match without
    // regard to case.
    targets_ = {CoursePath(course.AppPath, "\\Term_Session Summary and Review.html"),
                CoursePath(course.AppPath, "\\STUDENT VOTING DATA.html"),
                CoursePath(course.AppPath, "\\Reports\\StudentTermReport.html")};
}

void ReportSummaryScreen::LinkClick(int link) {
    host_.OpenDocument(targets_.at(link));
}

}  // namespace tallory
