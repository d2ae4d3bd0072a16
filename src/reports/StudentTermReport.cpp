#include "common/Numbers.h"
#include "common/Text.h"
#include "reports/Reports.h"
#include "scoring/SessionStore.h"

namespace tallory {

namespace {

constexpr std::string_view kSteps = "Student Term Report Report ";

void WriteHeadTable(PageWriter& page, const Course& course, double termPoints, double sum,
                    int counted) {
    page.Line("<table border=4 cellpadding=6> ");
    page.Line("<tr>");
    page.Text("<td colspan=").Number(course.NumSessions + 2).Text(" align=left>").Line(kPageFont);
    page.Text("Total Number of Sessions: <B>").Number(course.NumSessions).Line(" </B> <br>");
    page.Text("Total Number of Students in Class: <B>")
        .Number(course.NumStudents)
        .Line("</B> <br> ");
    page.Text("Total Number of Available Points for Term: <B>")
        .Number(Int(termPoints))
        .Line("</B> <br> ");
    // The mean total of the students with points, in points.
    page.Text("Student Average: <B>");
    if (counted > 0)
        page.Formatted(sum / counted);
    else
        page.Text("0.00");
    page.Line(" </B> <br>");
    page.Line("</td></font></tr>");
    page.Text("<td bgcolor=#FFFDA6 colspan=").Number(course.NumSessions + 2).Line(" align=left>");
    page.Text(kPageFont).Line("<B>Ab = Absent (no votes collected) </B> </font><br>");
    page.Text(kPageFont).Line(
        "<B>Student Average = Calculation based only on students who voted in this "
        "session.</B> </font><br>");
    page.Line("</td>");
    page.Line("<tr bgcolor=#FFFDA6>");
    page.Text("<th align=left bgcolor=#FFFDA6 >")
        .Text(kPageFont)
        .Line("Student Info/<br>Total</font></th>");
    page.Text("<th align=center>").Text(kPageFont).Line("Average:</font></th>");
}

void WriteNameCell(PageWriter& page, const StudentRec& student) {
    const std::string total = FormatFixed(student.Score[0], 2);
    if (StartsWith(student.StudentId, "#")) {
        page.Text("<td align=left>")
            .Text("<font face = \"Trebuchet MS\"color=")
            .Text(kWrongColour)
            .Text(">")
            .Text(student.StudentId)
            .Text(" </font> <br>");
    } else {
        const std::string shown = page.ShowsName(student.StudentId)
                                      ? page.StudentDisplayName(student.StudentId)
                                      : student.StudentId;
        page.Text("<td align=left>")
            .Text("<font face = \"Trebuchet MS\"color=")
            .Text(kLinkColour)
            .Text("> <B>")
            .Text(shown)
            .Text(" </B> </font> <br>");
    }
    page.Text(kPageFont).Text("Total: ").Text(total).Line("</font></td>");
}

}  // namespace

void WriteStudentTermReport(Course& course, PageWriter& page) {
    SessionPasses passes;
    WriteStudentTermReport(course, page, passes);
}

void WriteStudentTermReport(Course& course, PageWriter& page, SessionPasses& passes) {
    Host& host = page.host();
    const int sessions = course.NumSessions;
    double termPoints = 0;
    passes.Walk(
        course, PassRule::Every,
        [&](int i) {
            host.SetProgressText(std::string(kSteps) + "0 Of 3 (Reading Session(s)" +
                                 OfCount(i, sessions) + ")");
            host.SetProgressValue(0);
        },
        [&](int, const SessionFigures& session) {
            termPoints += session.participation + session.maxPoints;
        });
    // The last pass of a run: the page of every student's scores is written without the tables'
    // copy beside it.
    passes.Forget();
    // Every row of the table counts, not only those in use; students without points do not.
    double sum = 0;
    int counted = 0;
    const Course& table = course;
    for (long i = 1; i <= kMaxStudents; ++i) {
        const double total = table.Students[i].Score[0];
        sum += total;
        if (total > 0) ++counted;
    }
    host.SetProgressText(std::string(kSteps) + "1 Of 3");
    host.SetProgressValue(1.0 / 3);

    page.Open(StudentTermReportPath(course));
    page.TermHead("Student Term");
    WriteHeadTable(page, course, termPoints, sum, counted);
    for (int j = 1; j <= sessions; ++j) {
        host.SetProgressText(std::string(kSteps) + "1 Of 3 (Writing Session(s) " +
                             OfCount(j, sessions) + ")");
        host.SetProgressValue(1.0 / 3);
        page.Text("<th align=center>")
            .Text("<A HREF=")
            .Text("\"")
            .Text(SessionDetailLinkFromReports(j))
            .Text("\"")
            .Text(" > <font face = \"Trebuchet MS\"color=")
            .Text(kLinkColour)
            .Text(">")
            .Text(SessionLabel(course, j))
            .Line(" </A> </th>");
    }
    page.Line("</tr>");
    // The step number goes back here; instructors know the sequence so.
    host.SetProgressText(std::string(kSteps) + "0 Of 3");
    host.SetProgressValue(0);

    const bool measured = Round(termPoints) > 0 && sessions > 0;
    for (int i = 1; i <= course.NumStudents; ++i) {
        host.SetProgressText(std::string(kSteps) + "2 Of 3 (Writing Student(s) Info" +
                             OfCount(i, course.NumStudents) + ")");
        host.SetProgressValue(0.5);
        const StudentRec& student = course.Students[i];
        page.Text("<tr bgcolor=").Text(RowColour(i)).Line(">");
        WriteNameCell(page, student);
        page.Text("<td align=center>").Text(kPageFont);
        if (measured)
            page.Formatted(student.Score[0] * 100 / termPoints).Line("% </font></td>");
        else
            page.Line("0% </font></td>");
        for (int j = 1; j <= sessions; ++j) {
            page.Text("<td align=center>").Text(kPageFont);
            if (student.Present[j] != 0)
                page.Number(student.Score[j]);
            else
                page.Text("Ab");
            page.Line("</font></td>");
        }
        page.Line("</tr>");
    }
    host.SetProgressText("Finalizing Report");
    host.SetProgressValue(1);
    page.Line("</table>");
    page.Tail();
    page.Close();
}

}  // namespace tallory
