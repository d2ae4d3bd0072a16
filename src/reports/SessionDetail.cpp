#include <unordered_map>

#include "common/Numbers.h"
#include "common/Text.h"
#include "logs/QuestionName.h"
#include "logs/SessionLog.h"
#include "reports/Reports.h"
#include "scoring/Grading.h"

namespace tallory {

namespace {

void WriteHeadTable(PageWriter& page, const Course& course, int session, long firstSpan) {
    const double participation = course.SessParticipation;
    const double maximum = course.Questions[0].MaxPoints;
    const long columns = course.NumQuestions + 2;
    page.Line("<table border=4 cellpadding=6> ");
    page.Line("<tr>");
    page.Text("<td colspan=").Number(firstSpan).Line(" align=left>");
    page.Text(kPageFont)
        .Text("Date </font><B> <font face = \"Trebuchet MS\" color =#0000FF>")
        .Text(SessionDate(course.SessionFile[session]))
        .Line(" </B> <br> </font>");
    page.Text(" <font face = \"Trebuchet MS\"> Number of Students: <B>")
        .Number(course.NumVoters)
        .Line("</B></font><br> ");
    page.Text("<font face = \"Trebuchet MS\"> Number of Questions Asked: <B>")
        .Number(course.NumQuestions)
        .Line(" </B> </font><br>");
    // A session without performance points, or with participation worth nothing, shows no
    // average here, though its summary page does.
    page.Text(kPageFont).Text("Session Average: <B>");
    if (participation * maximum > 0)
        page.Formatted(course.Questions[0].AveragePoints);
    else
        page.Text("0.00");
    page.Line(" </B> </font><br>");
    page.Line("</td>");
    page.Text("<td colspan=").Number(columns - firstSpan).Line(" align=left>");
    page.Text(kPageFont)
        .Text("Participation Points Available: <B>")
        .Number(participation)
        .Line(" </B> </font><br>");
    page.Text(kPageFont)
        .Text("Performance Points Available: <B>")
        .Number(Int(maximum * 100 + 0.5) / 100)
        .Line(" </B> </font><br>");
    page.Text(kPageFont)
        .Text("Total Points Available: <B>")
        .Number(TotalPointsAvailable(course))
        .Line(" </B> </font><br>");
    page.Line("</td>");
    page.Line("</tr>");
    page.Text("<td bgcolor=#FFFDA6 colspan=").Number(columns + firstSpan).Line(" align=left>");
    page.Text(kPageFont).Line("<B>Ab = Absent (no votes collected) </B> </font><br>");
    page.Text(kPageFont).Line("<B>Ap = Anonymous Polling </B> </font><br>");
    page.Text(kPageFont).Line(
        "<B>Session Average = Calculation based only on students who voted in this "
        "session.</B> </font><br>");
    page.Text("<br>").Text(kPageFont).Line(
        "<B>Student vote selection (color coding applies only if you have specified a correct "
        "answer)</B> </font><br>");
    page.Text(kPageFont).Line("<B>Bold Green = Correct answer</B> </font><br>");
    page.Text(kPageFont).Line("<B>Bold Red = Incorrect answer</B> </font><br>");
    page.Text(kPageFont).Line("<B>Black = Correct answer not designated</B> </font><br>");
    page.Line("</td>");
    page.Line("<tr>");
    page.Line("<tr bgcolor=#FFFDA6>");
    page.Text("<th align=left bgcolor=#FFFDA6 >")
        .Text(kPageFont)
        .Line("Student Info/Total </font></th>");
    page.Text("<th align=center>").Text(kPageFont).Line("Average</font></th>");
    for (int q = 1; q <= course.NumQuestions; ++q) {
        const QuestionRec& question = course.Questions[q];
        if (!IsLiveQuestion(question)) continue;
        page.Text("<th align=center>")
            .Text("<font face = \"Trebuchet MS\"><A HREF=")
            .Text("\"")
            .Text(SessionSummaryLinkFromReports(session) + "#Q" + std::to_string(q))
            .Text("\"")
            .Text("></font> <font face = \"Trebuchet MS\" color=")
            .Text(kLinkColour)
            .Text(">")
            .Text(PageQuestionName(question.Name))
            .Line("</A></font></th>");
    }
    page.Line("</tr>");
}

// The vote row of a student: the first of rows 1..NumVoters with the student's ID; 0 when none.
// With no voters at all the search looks at row 1 alone, whatever it holds.
class VoteRows {
  public:
    explicit VoteRows(const Course& course) : course_(course) {
        for (long j = course.NumVoters; j >= 1; --j)
            rows_[NormalKey(course.Votes[j].StudentId)] = j;
    }

    long Find(const std::string& studentId) const {
        const std::string key = NormalKey(studentId);
        if (course_.NumVoters < 1) return NormalKey(course_.Votes[1].StudentId) == key ? 1 : 0;
        auto found = rows_.find(key);
        return found == rows_.end() ? 0 : found->second;
    }

  private:
    const Course& course_;
    std::unordered_map<std::string, long> rows_;
};

void WriteNameCell(PageWriter& page, const StudentRec& student, int session) {
    const std::string total = FormatFixed(student.Score[session], 2);
    if (page.ShowsName(student.StudentId)) {
        page.Text("<td align=left>")
            .Text("<font face = \"Trebuchet MS\" color=")
            .Text(kLinkColour)
            .Text("><b>")
            .Text(page.StudentDisplayName(student.StudentId))
            .Text("</b></font> <br>")
            .Text("Total: ")
            .Text(total)
            .Line("</td>");
        return;
    }
    // The ID alone, red for a remote nobody registered; the cell is left open.
    const bool unregistered = StartsWith(student.StudentId, "#");
    page.Text("<td align=left>")
        .Text("<font face = \"Trebuchet MS\"color=")
        .Text(unregistered ? kWrongColour : kLinkColour)
        .Text(">")
        .Text(student.StudentId)
        .Text("</font> <br>")
        .Text("Total: ")
        .Line(total);
}

// The letter of an answer code as a cell compares and shows it: A to E, nothing for any other
// code. A negative code fails as AnswerLetter fails it. The page has a cell for every voter and
// question of every session, so no text is built for it.
std::string_view CellLetter(int code) {
    static constexpr std::string_view kLetters = "ABCDE";
    if (code < 0) AnswerLetter(code);
    return code >= 1 && code <= 5 ? kLetters.substr(code - 1, 1) : std::string_view();
}

void WriteAnswerCell(PageWriter& page, int answer, int correct) {
    const std::string_view given = CellLetter(answer);
    std::string_view colour = kNeutralColour;
    std::string_view shown;
    bool bold = false;
    if (correct > 0 && given == CellLetter(correct)) {
        colour = kRightColour;
        shown = given;
        bold = true;
    } else if (correct > 0 && answer >= 1 && answer <= 5) {
        colour = kWrongColour;
        shown = given;
        bold = true;
    } else if (answer >= 1 && answer <= 5) {
        shown = given;
    } else if (answer == kAnonymousAnswer) {
        shown = "Ap";
    } else {
        shown = "Ab";
    }
    page.Text("<td align=center><font face = \"Trebuchet MS\"color=").Text(colour).Text(">");
    if (bold)
        page.Text("<b>").Text(shown).Line("</b></font></td>");
    else
        page.Text(shown).Line("</font></td>");
}

}  // namespace

void WriteSessionDetail(Course& course, PageWriter& page, int session) {
    OpenSession(course, session);
    WriteOpenedSessionDetail(course, page, session);
}

void WriteOpenedSessionDetail(const Course& course, PageWriter& page, int session) {
    double available = course.SessParticipation + course.Questions[0].MaxPoints;
    if (available == 0) available = 0.0001;

    page.Open(SessionDetailPath(course, session));
    page.SessionHead("Student Session ");
    double firstSpan = Round((course.NumQuestions + 2) / 2.0);
    if (firstSpan > 3) firstSpan = 3;
    WriteHeadTable(page, course, session, static_cast<long>(firstSpan));

    const VoteRows voteRows(course);
    bool grey = false;  // rows alternate by the students written
    for (int i = 1; i <= course.NumStudents; ++i) {
        const StudentRec& student = course.Students[i];
        if (student.Present[session] == 0) continue;
        const long row = voteRows.Find(student.StudentId);
        if (row == 0) continue;
        const VoteRec& vote = course.Votes[row];
        page.Text("<tr bgcolor=").Text(grey ? kEvenRowColour : kOddRowColour).Line(">");
        grey = !grey;
        WriteNameCell(page, student, session);
        page.Text("<td align=center>").Text(kPageFont);
        if (available > 0 && course.NumSessions > 0)
            page.Number(Int(student.Score[session] * 100 / available)).Line("% </font></td>");
        else
            page.Line("0% </font></td>");
        for (int q = 1; q <= course.NumQuestions; ++q) {
            const QuestionRec& question = course.Questions[q];
            if (IsLiveQuestion(question))
                WriteAnswerCell(page, vote.Answer[q], question.CorrectAnswer);
        }
        page.Line("</tr>");
    }
    page.Line("</table>");
    page.Tail();
    page.Close();
}

}  // namespace tallory
