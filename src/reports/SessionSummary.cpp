#include "common/Numbers.h"
#include "common/Text.h"
#include "logs/QuestionName.h"
#include "logs/SessionLog.h"
#include "reports/Reports.h"
#include "scoring/Grading.h"
#include "scoring/SessionStore.h"

namespace tallory {

namespace {

void WriteHeadTable(PageWriter& page, const Course& course, int session) {
    const double participation = course.SessParticipation;
    const double maximum = course.Questions[0].MaxPoints;
    page.Line("<table border=4 cellpadding=6> ");
    page.Line("<tr>");
    page.Line("<td colspan=3 align=left>");
    page.Text("Date:  <B> <font face = \"Trebuchet MS\"color =#0000FF>")
        .Text(SessionDate(course.SessionFile[session]))
        .Line(" </B> </font> <br> ");
    page.Text("<font face = \"Trebuchet MS\"> Number of Students: <B>")
        .Number(course.NumVoters)
        .Line("</B> </font> <br> ");
    page.Text("<font face = \"Trebuchet MS\">Number of Questions Asked: <B>")
        .Number(course.NumQuestions)
        .Line(" </B></font><br>");
    page.Text("<font face = \"Trebuchet MS\">Session Average: <B>")
        .Formatted(course.Questions[0].AveragePoints)
        .Line(" </B> </font><br>");
    page.Line("</td>");
    page.Line("<td colspan=3 align=left>");
    page.Text("<font face = \"Trebuchet MS\">Participation Points Available: <B>")
        .Number(participation)
        .Line(" </B></font> <br>");
    // The whole performance points beside a total with two places: instructors know it so.
    page.Text("<font face = \"Trebuchet MS\">Performance Points Available: <B>")
        .Number(Int(maximum))
        .Line(" </B></font><br>");
    page.Text("<font face = \"Trebuchet MS\">Total Points Available: <B>")
        .Number(TotalPointsAvailable(course))
        .Line(" </B></font><br>");
    page.Line("</td>");
    page.Line("</tr> ");
    page.Text("<td bgcolor=#FFFDA6 colspan=").Number(6).Line(" align=left>");
    page.Line(
        "<font face = \"Trebuchet MS\"><B>Session Average = Average calculation based only on "
        "students who voted in this session.</B> </font><br>");
    page.Line(
        "<font face = \"Trebuchet MS\"><B>Average Score per Question = Average calculation based "
        "only on students who responded to this question.</B> </font><br>");
    page.Line("</td>");
    page.Line("<tr>");
    page.Line(
        "<th align=left bgcolor=#FFFDA6 ><font face = \"Trebuchet MS\"> Question </font> </th>");
    page.Line(
        "<th align=center bgcolor=#FFFDA6><font face = \"Trebuchet MS\">Time Started</font></th>");
    page.Line(
        "<th align=center bgcolor=#FFFDA6><font face = \"Trebuchet MS\">Time Stopped</font></th>");
    page.Line(
        "<th align=center bgcolor=#FFFDA6><font face = \"Trebuchet MS\"> Number of <br> "
        "Responses</font></th>");
    page.Line(
        "<th align=center bgcolor=#FFFDA6><font face = \"Trebuchet MS\"> Maximum <br> "
        "Score</font></th>");
    page.Line(
        "<th align=center bgcolor=#FFFDA6><font face = \"Trebuchet MS\"> Average <br> "
        "Score</font></th>");
    page.Line("</tr>");
}

// A live question's row. Its figures are worked out from the votes and choice points here, not
// taken from the scored maximum; the row is left open.
void WriteQuestionRow(PageWriter& page, const QuestionRec& question, int q) {
    double most = 0;
    double sum = 0;
    double responses = 0;
    for (int j = 1; j <= 5; ++j) {
        if (question.ChoicePoints[j] > most) most = question.ChoicePoints[j];
        sum += question.ResponseCount[j] * question.ChoicePoints[j];
        responses += question.ResponseCount[j];
    }
    page.Text("<tr bgcolor=").Text(RowColour(q)).Line(">");
    page.Text("<td align=left> <A HREF=\"#Q" + std::to_string(q) + "\">")
        .Text(kPageFont)
        .Text(PageQuestionName(question.Name))
        .Line("</A> </font> </td>");
    page.Text("<td align=center>").Text(kPageFont).Text(question.StartTime).Line("  </font></td>");
    page.Text("<td align=center>").Text(kPageFont).Text(question.StopTime).Line("  </font></td>");
    page.Text("<td align=right>")
        .Text(kPageFont)
        .Text(" ")
        .Number(responses)
        .Line("  </font></td>");
    page.Text("<td align=right>").Text(kPageFont).Text(" ").Number(most).Line("  </font></td>");
    // The average is cut to two places, not rounded.
    page.Text("<td align=right>").Text(kPageFont).Text(" ");
    if (sum > 0)
        page.Number(Int(question.AveragePoints * 100) / 100);
    else
        page.Number(0);
    page.Line("  </font></td>");
}

}  // namespace

void WriteQuestionBlock(PageWriter& page, const Course& course, int q, int session) {
    const QuestionRec& question = course.Questions[q];
    if (!page.IsOpen() || !IsLiveQuestion(question)) return;
    const double responses = question.ResponseCount[0] - question.ResponseCount[6];
    const std::string& file = course.SessionFile[session];
    const std::string stem = Left(file, file.size() < 4 ? 0 : file.size() - 4);
    const std::string number = std::to_string(q);

    page.Text("<A name=")
        .Text("\"")
        .Text("Q" + number)
        .Text("\"")
        .Line(">" + std::string(kPageFont));
    page.Text("<h3>").Text(PageQuestionName(question.Name)).Line(" </font><br> </h3>");
    page.Line("<table border=4 cellpadding=6> ");
    page.Line("<tr>");
    page.Text("<td colspan=1 align=left>").Line(kPageFont);
    page.Text("Time Started: <B>").Text(question.StartTime).Line(" </B></font> <br>");
    page.Text(kPageFont)
        .Text("Number of Responses: <B>")
        .Number(responses)
        .Line("</B></font><br> ");
    page.Text(kPageFont)
        .Text("Number Missing: <B>")
        .Number(question.ResponseCount[6])
        .Line("</B> </font> <br> ");
    page.Line("<td colspan=5 align=left>");
    page.Text("<font face = \"Trebuchet MS\" color= #0000FF> Correct Answer: <B>")
        .Text("<font face = \"Trebuchet MS\" Color = #000000>" +
              AnswerLetter(question.CorrectAnswer))
        .Line(" </B> <br>");
    page.Text(kPageFont)
        .Text("Maximum Score: <B>")
        .Number(question.MaxPoints)
        .Line(" </B></font> <br>");
    page.Text(kPageFont)
        .Text("Class Average: <B>")
        .Formatted(question.AveragePoints)
        .Line(" </B> </font><br>");
    page.Line("</td>");
    page.Line("</tr> <tr bgcolor=#FFFDA6>");
    page.Text("<th align=left>").Text(kPageFont).Line(" Choice </font></th>");
    for (char letter : std::string_view("ABCDE"))
        page.Text("<th align=center>")
            .Text(kPageFont)
            .Text(" ")
            .Text({&letter, 1})
            .Line("</font></th>");
    page.Line("</tr>");
    page.Text("<tr> <td align=left> ").Text(kPageFont).Line("Number </font></td>");
    for (int j = 1; j <= 5; ++j)
        page.Text("<td align=right> ")
            .Text(kPageFont)
            .Number(question.ResponseCount[j])
            .Line("</font></td>");
    page.Text(" </tr> <tr> <td align=left>").Text(kPageFont).Line(" Percentage </font></td>");
    for (int j = 1; j <= 5; ++j) {
        if (responses > 0)
            page.Text("<td align=right> ")
                .Number(Round(question.ResponseCount[j] * 100.0 / responses))
                .Line("% </td>");
        else
            page.Line("<td align=right> -- </td>");
    }
    page.Text("<tr> <td align=left>").Text(kPageFont).Line(" Performance Points </font></td>");
    for (int j = 1; j <= 5; ++j)
        page.Text("<td align=right>")
            .Text(kPageFont)
            .Text(" ")
            .Number(question.ChoicePoints[j])
            .Line("</font></td>");
    page.Line("</tr> <tr>");
    page.Text("<td colspan=3> ")
        .Text(kPageFont)
        .Text("<img SRC=")
        .Text("../Images/" + stem + "_Q" + number + ".jpg")
        .Line(" align=center> </font></td>");
    page.Text("<td colspan=3>")
        .Text(kPageFont)
        .Text("<img SRC=")
        .Text("../Images/" + stem + "_C" + number + ".jpg")
        .Line(" align=center></font></td>");
    page.Line("</table>");
}

void WriteSessionSummary(Course& course, PageWriter& page, int session) {
    OpenSession(course, session);
    WriteOpenedSessionSummary(course, page, session);
}

void WriteOpenedSessionSummary(const Course& course, PageWriter& page, int session) {
    page.Open(SessionSummaryPath(course, session));
    page.SessionHead("Session " + SessionLabel(course, session) + " Summary");
    WriteHeadTable(page, course, session);
    // Colours go by the question's number, so a deleted question leaves two rows of one colour.
    for (int q = 1; q <= course.NumQuestions; ++q)
        if (IsLiveQuestion(course.Questions[q])) WriteQuestionRow(page, course.Questions[q], q);
    page.Line("</table>");
    for (int q = 1; q <= course.NumQuestions; ++q) WriteQuestionBlock(page, course, q, session);
    page.Tail();
    page.Close();
}

}  // namespace tallory
