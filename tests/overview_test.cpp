#include "TestSupport.h"
#include "overview/CourseOverview.h"
#include "overview/OverviewPage.h"

namespace tallory {
namespace {

using nlohmann::json;

// The demo course, worked out by hand from its files. Roster.txt holds 30 students (29 named and
// the bare ID 20269930); RemoteID.csv registers a clicker for every one of them but 20260220
// (Rossi, Giulia). Each question is worth 1 point for its correct choice; ParticipationRequirement
// 1 asks for three quarters of the live questions (whole part) and a question earned, for 1 point.
//
// Session 1 (L2609081000): cap 4, 4 questions of 1 point, participation 1: available 4 + 1 = 5.
//   30 vote lines, 3 of them clickers nobody registered (#00C3D4E5, #7F00B2, #7F00A1): 27 of the
//   30 present. Their points, from the answers (B, B, C, B correct; 3 answers needed):
//     2 3 0 3 3 3 4 5 4 5 4 2 5 3 4 2 4 1 4 3 5 4 3 5 3 4 4  = 92, so the average is 92 / 27.
// Session 2 (L2609101000): cap 5, 5 questions, participation 1: available 6.
//   23 vote lines, 2 unregistered (#7F00B2, #00C3D4E5): 21 present. Points (C, D, C, C, E
//   correct): 5 4 6 3 5 5 6 3 5 3 5 4 5 3 3 3 6 3 6 4 2 = 89, average 89 / 21.
//   Question 1 "Speed vs velocity": 21 of the 23 voters chose a letter (#1A3381 and 1A34B8 left
//   it blank), 13 of them C.
// The term offers 5 + 6 + 5 + 4 + 7 + 4 + 4 + 6 + 5 = 46 points (session 7 deletes a question,
// session 9 has no cap).
// Three students over the nine sessions:
//   20260220 Rossi, Giulia: no clicker, so absent everywhere: 0 of 9, total 0, bin 0, at risk.
//   20260101 Alvarez, Maria: 2 Ab Ab 3 0 3 2 6 3 = 19 in 7 of 9 sessions, present in the last
//     three: not at risk; 19 / 46 = 0.41, bin 4.
//   20260122 Dubois, Camille: 3 4 3 2 4.5 4 2 5 4 = 31.5 in all nine: not at risk; 0.68, bin 6.
// Nobody else is at risk: every other student attended at least 6 of the 9 sessions and one of the
// last three.
TEST(Overview, DemoCourseMatchesTheFiguresWorkedOutByHand) {
    const test::CliResult result =
        test::RunCli({"--course", test::DemoCourse(), "overview", "--json"});
    ASSERT_EQ(result.status, 0) << result.err;
    const json overview = json::parse(result.out);

    ASSERT_EQ(overview["sessions"].size(), 9u);
    // Label, points available, students present and the sum of their points.
    const std::tuple<const char*, double, int, double> sessions[] = {{"09/08/2026", 5, 27, 92},
                                                                     {"09/10/2026", 6, 21, 89}};
    for (int s = 0; s < 2; ++s) {
        const json& figures = overview["sessions"][s];
        const auto& [label, available, present, sum] = sessions[s];
        SCOPED_TRACE(label);
        EXPECT_EQ(std::tuple(figures["label"], figures["available"], figures["present"],
                             figures["students"]),
                  std::tuple(label, available, present, 30));
        EXPECT_DOUBLE_EQ(figures["attendance"].get<double>(), present / 30.0);
        EXPECT_DOUBLE_EQ(figures["average"].get<double>(), sum / present);
    }
    EXPECT_EQ(overview["totals"]["available"], 46);

    const json& question = overview["questions"][4];  // session 1 has 4 live questions
    EXPECT_EQ(question, json::parse(R"({"session": "09/10/2026", "question": "Speed vs velocity",
                                        "answered": 21, "correct": 13})"));

    // Rossi in tenth 0, Alvarez in 4, Dubois in 6; all 30 roster students, no stray clicker.
    EXPECT_EQ(overview["totals"]["bins"], json::parse("[1, 0, 0, 1, 4, 14, 8, 2, 0, 0]"));

    ASSERT_EQ(overview["at_risk"].size(), 1u);
    EXPECT_EQ(overview["at_risk"][0], json::parse(R"({"id": "20260220", "name": "Rossi, Giulia",
                                                      "attended": 0, "total": 0})"));
}

TEST(Overview, TotalBins) {
    const std::tuple<double, double, int> cases[] = {
        {-3, 46, 0},   {0, 46, 0},    {4.59, 46, 0}, {4.6, 46, 1}, {19, 46, 4},
        {45.9, 46, 9}, {46, 46, 9},   {50, 46, 9},   {3, 10, 3},   {0.3, 1, 3},
        {0.7, 1, 7},   {0.99, 10, 0}, {0, 0, 9},     {-1, 0, 0},   {2, 0, 9},
    };
    for (const auto& [total, available, bin] : cases)
        EXPECT_EQ(TotalBin(total, available), bin) << total << " of " << available;
}

TEST(Overview, AtRisk) {
    // Present marks for sessions 1..n, "x" present, "." absent.
    const std::tuple<const char*, bool> cases[] = {
        {"", false},      {"x", false},         {".", true},         {"x.", true},
        {"xx", false},    {"xx.", false},       {"x..", true},       {"...xx", true},
        {"xxx..", false}, {"xxx..x", false},    {"xxxxxx...", true}, {"xxx.xx.x..", false},
        {"xx..x.", true}, {"xxxx.....x", true},
    };
    for (const auto& [sessions, atRisk] : cases) {
        StudentRec student;
        const int n = static_cast<int>(std::string(sessions).size());
        for (int s = 1; s <= n; ++s) student.Present[s] = sessions[s - 1] == 'x' ? kTrue : kFalse;
        EXPECT_EQ(IsAtRisk(student, n), atRisk) << sessions;
    }
}

// Two sessions over a small roster. Day 1: Q1 (A correct), Q2 deleted, Q3 without a correct
// answer ("0"), Q4 polled anonymously. Day 2: one question, nobody from the roster but S2 present.
struct SmallCourse : test::LoadedCourse {
    SmallCourse() {
        WriteRoster("Doe, Jane, S1\r\nAmes, Bob, S2\r\n, Solo, S3\r\n<b>&Co, Al's, S4\r\n");
        WriteRemotes("#A1,\"S1\"\r\n#A2,\"S2\"\r\n#A3,\"S3\"\r\n#A4,\"S4\"\r\n");
        test::LogPlan day1 = test::QuestionsPlan({"Q1", "Q2|Y", "Q3", "Q4"});
        day1.questions[2].correct = "0";
        day1.voters = {{"#A1", "", {"A", "A", "B", "X"}},
                       {"#A2", "", {"B", "A", "", "X"}},
                       {"#B9", "", {"A", "C", "C", "X"}}};
        test::LogPlan day2 = test::QuestionsPlan(1);
        day2.voters = {{"#A2", "", {"A"}}};
        WriteLog(test::SeptemberLog(1), day1);
        WriteLog(test::SeptemberLog(2), day2);
        Load();
    }
};

TEST(Overview, QuestionsCountEveryVoterWithALetterAndThePageStandsAlone) {
    SmallCourse folder;
    const CourseOverview overview = MakeCourseOverview(folder.course);
    // Session, question, answered, correct ("-" for none).
    std::vector<std::string> rows;
    for (const QuestionFigures& q : overview.questions)
        rows.push_back(std::to_string(q.session) + " " + q.question + " " +
                       std::to_string(q.answered) + " " +
                       (q.correct ? std::to_string(*q.correct) : "-"));
    // The unregistered clicker #B9 counts among those who answered; the deleted Q2 is left out;
    // a blank or an anonymous vote is no letter.
    EXPECT_EQ(rows, (test::Strings{"1 Q1 3 2", "1 Q3 2 -", "1 Q4 0 0", "2 Q1 1 1"}));

    ASSERT_EQ(overview.sessions.size(), 2u);
    EXPECT_EQ(std::tuple(overview.sessions[0].students, overview.sessions[0].present,
                         overview.sessions[1].present),
              std::tuple(4, 2, 1));

    // S1 and S3, S4 were present in fewer than 60% of the two sessions, in the grid's order.
    test::Strings atRisk;
    for (const StudentAtRisk& student : overview.atRisk) {
        atRisk.push_back(student.id + " " + student.name);
        EXPECT_EQ(folder.course.Students[student.row].StudentId, student.id);
    }
    EXPECT_EQ(atRisk, (test::Strings{"S1 Doe, Jane", "S3 Solo", "S4 <b>&Co, Al's"}));

    // The page stands alone, escapes the names, and links only the summary the reports wrote.
    folder.Write("Reports/SessionSummary_2.html", "<html></html>");
    const std::string page = OverviewPageText(folder.course, overview);
    for (const char* present :
         {"&lt;b&gt;&amp;Co, Al&#39;s", "@media print", "href=\"SessionSummary_2.html\""})
        EXPECT_TRUE(test::Holds(page, present));
    for (const char* absent : {"<b>&Co", "<script", "http://", "https://", "<link", "@import",
                               "url(", "SessionSummary_1.html"})
        EXPECT_FALSE(test::Holds(page, absent));
}

}  // namespace
}  // namespace tallory
