#include <array>

#include "common/Numbers.h"
#include "common/Text.h"
#include "logs/SessionLog.h"
#include "reports/Reports.h"
#include "reports/TermPage.h"

namespace tallory {

namespace {

// What the first pass keeps of each session: index 0 of the points is the term's sum.
struct TermFigures {
    std::array<double, kSessionTableUpper + 1> points{};
    std::array<double, kSessionTableUpper + 1> divisor{};
};

void WriteHeadTable(PageWriter& page, const Course& course, const TermPage& kind,
                    const TermFigures& figures) {
    page.Line("<table border=4 cellpadding=6> ");
    page.Line("<tr>");
    page.Line("<td colspan=6 align=left>");
    page.Text("<font face=\"Trebuchet MS\">Total Number of Sessions: <B>")
        .Number(course.NumSessions)
        .Line(" </B> </font> <br>");
    page.Text("<font face=\"Trebuchet MS\">Total Number of Students in Class: <B>")
        .Number(course.NumStudents)
        .Line("</B> </font> <br> ");
    page.Text("<font face=\"Trebuchet MS\">Total Number of Available Points for Term: <B>");
    if (kind.studentPage)
        page.Number(Int(figures.points[0]));
    else
        page.Formatted(figures.points[0]);
    page.Line("</B> </font> <br> ");
    if (kind.studentPage)
        page.Text(kPageFont)
            .Text("<A href=\"")
            .Text(StudentTermReportLinkFromCourse(course))
            .Line("\">View Cumulative Student Scores</A></font>");
    page.Line("</td>");
    page.Line("</tr>");
    page.Text("<td bgcolor=#FFFDA6 colspan=").Number(6).Line(" align=left>");
    if (kind.studentPage)
        page.Text(kPageFont).Line("<B>Ab = Absent (no votes collected) </B> </font><br>");
    page.Text(kPageFont).Line(
        "<B>Session Average = Calculation based only on students who voted in this "
        "session.</B> </font><br>");
    page.Line("</td>");
    page.Line("<tr>");
    page.Text("<th align=left bgcolor=#FFFDA6 >")
        .Text(kPageFont)
        .Line("Title/<br>Session Date</font></th>");
    page.Text("<th align=left bgcolor=#FFFDA6 >").Text(kPageFont).Line("Report Links</th></font>");
    page.Text("<th align=center bgcolor=#FFFDA6 >")
        .Text(kPageFont)
        .Line("Number of Students<br> in Session</font></th>");
    page.Text("<th align=center bgcolor=#FFFDA6>")
        .Text(kPageFont)
        .Line("Total Number of<br> Questions Asked</font></th>");
    page.Text("<th align=center bgcolor=#FFFDA6>")
        .Text(kPageFont)
        .Line("Total Points<br> Available</font></th>");
    page.Text("<th align=center bgcolor=#FFFDA6>")
        .Text(kPageFont)
        .Line("Session Average<font></th>");
    page.Line("</tr>");
}

void WriteSessionRow(PageWriter& page, const Course& course, const TermPage& kind, int i,
                     const SessionFigures& session, double divisor) {
    const double participation = session.participation;
    const double maximum = session.maxPoints;
    const double average = session.average;
    const std::string number = std::to_string(i);
    page.Text("<tr bgcolor=").Text(RowColour(i)).Line(">");
    page.Text("<th align=left> ")
        .Text(kPageFont)
        .Text("Session " + number + " <br> ")
        .Text(SessionDate(course.SessionFile[i]))
        .Line("</font></td>");
    if (kind.studentPage) {
        // This cell runs into the next one on the same line.
        page.Text("<td align=center><A HREF=\"")
            .Text(SessionDetailLinkFromCourse(course, i))
            .Text("\">")
            .Text(kPageFont)
            .Text(" Student Responses </A></font> </td> ");
    } else {
        page.Text("<td align=center><A HREF=\"")
            .Text(SessionSummaryLinkFromCourse(course, i))
            .Text("\"> ")
            .Text(kPageFont)
            .Line(" Session Summary <br> and Question Data </font></A>");
    }
    page.Text("<td align=right>")
        .Text(kPageFont)
        .Text(std::to_string(session.voters))
        .Line("</font></td>");
    page.Text("<td align=right>")
        .Text(kPageFont)
        .Text(std::to_string(session.asked))
        .Line("</font></td>");
    // One place here, where the session's own page shows two.
    page.Text("<td align=right>")
        .Text(kPageFont)
        .Converted(Int(maximum * 10 + participation * 10 + 0.5) / 10)
        .Line("</font></td>");
    page.Text("<td align=right>").Text(kPageFont);
    const double whole = Round(divisor);
    if (whole > 1)
        page.Converted(Int(average * 100 / divisor));
    else if (whole == 1)
        page.Converted(Int(average * 100 / 1));
    else
        page.Converted(0);
    page.Line("% </font></td>");
    page.Line("</tr>");
}

}  // namespace

void WriteTermPage(Course& course, PageWriter& page, const TermPage& kind, SessionPasses& passes) {
    Host& host = page.host();
    const int count = course.NumSessions;
    host.SetProgressText(kind.steps + "0 Of 3");
    host.SetProgressValue(0);
    TermFigures figures;
    passes.Walk(
        course, PassRule::WhileTitleLive,
        [&](int i) {
            host.SetProgressText(kind.steps + "0 Of 3 (Reading Sessions :- " + OfCount(i, count) +
                                 ")");
            host.SetProgressValue(0);
        },
        [&](int i, const SessionFigures& session) {
            const double points = session.participation + session.maxPoints;
            figures.points[i] = points;
            figures.points[0] += points;
            figures.divisor[i] = points;
        });
    host.SetProgressText(kind.steps + "1 Of 3");
    host.SetProgressValue(1.0 / 3);

    page.Open(kind.path);
    page.TermHead(kind.title);
    WriteHeadTable(page, course, kind, figures);
    // The student page has a row for every session; one left out of the first pass has no
    // points to measure its average against.
    passes.Walk(
        course, kind.studentPage ? PassRule::Every : PassRule::WhileTitleLive,
        [&](int i) {
            host.SetProgressText(kind.steps + "2 Of 3 (Writing Sessions :- " + OfCount(i, count) +
                                 ")");
            host.SetProgressValue(2.0 / 3);
        },
        [&](int i, const SessionFigures& session) {
            WriteSessionRow(page, course, kind, i, session, figures.divisor[i]);
        });
    host.SetProgressText(kind.finishedText);
    host.SetProgressValue(1);
    // The table is left open.
    page.Tail();
    page.Close();
}

void WriteTermSummary(Course& course, PageWriter& page) {
    SessionPasses passes;
    WriteTermSummary(course, page, passes);
}

void WriteTermSummary(Course& course, PageWriter& page, SessionPasses& passes) {
    TermPage kind;
    kind.path = TermSummaryPath(course);
    kind.title = "Term/Session Summary and Review";
    kind.steps = "Exporting Term Summary Steps ";
    kind.finishedText = "Exporting Term Summary Steps 3 Of 3";
    WriteTermPage(course, page, kind, passes);
    WriteStudentVotingData(course, page, passes);
}

}  // namespace tallory
