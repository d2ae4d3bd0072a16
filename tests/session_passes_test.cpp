#include "TestSupport.h"
#include "grid/CourseLoad.h"
#include "logs/QuestionName.h"
#include "reports/Reports.h"
#include "reports/RunReports.h"
#include "reports/SessionPasses.h"
#include "scoring/Grading.h"

namespace tallory {
namespace {

using test::LogAnswer;
using test::LogPlan;
using test::LogText;

// What one pass gave a page of a session: session, voters, questions asked, participation,
// points, average.
using Seen = std::tuple<int, int, int, double, double, double>;
Seen SeenOf(int session, const SessionFigures& f) {
    return {session, f.voters, f.asked, f.participation, f.maxPoints, f.average};
}

// The walk as the pages did it before passes were kept: every session opened in turn.
std::vector<Seen> OpenEverySession(Course& course, PassRule rule) {
    std::vector<Seen> seen;
    for (int i = 1; i <= course.NumSessions; ++i) {
        if (rule == PassRule::WhileTitleLive && !IsLiveQuestion(course.Questions[0])) continue;
        OpenSession(course, i);
        seen.push_back({i, course.NumVoters, course.NumQuestions, course.SessParticipation,
                        course.Questions[0].MaxPoints, course.Questions[0].AveragePoints});
    }
    return seen;
}

// Two voters answering every question with `letter`.
LogPlan Plan(const std::string& title, std::vector<test::LogQuestion> questions,
             const std::string& letter = "A") {
    LogPlan plan;
    plan.title = title;
    plan.questions = std::move(questions);
    std::vector<LogAnswer> answers(plan.questions.size(), LogAnswer(letter));
    plan.voters = {{"#A1", "S1", answers}, {"#A2", "S2", answers}};
    return plan;
}

// The log with its Response lines `first` to `last` (0 for Response A) cut to their first
// `groups` questions: the questions after them keep the values of the log read before.
std::string ShortResponses(const LogPlan& plan, int first, int last, int groups) {
    std::string text = LogText(plan);
    for (int choice = first; choice <= last; ++choice) {
        const std::string label = std::string("Response ") + static_cast<char>('A' + choice);
        const size_t begin = text.find(label);
        const size_t end = text.find("\r\n", begin);
        size_t cut = begin;
        // The label, two fillers, then six fields per question.
        for (int field = 0; field < 3 + 6 * groups; ++field) cut = text.find(',', cut) + 1;
        text.replace(cut, end - cut, "");
    }
    return text;
}

test::LogQuestion Question(const std::string& name, double pointsForA, double countB = 0) {
    return {.name = name, .points = {pointsForA, 0, 0, 0, 0}, .counts = {2, countB, 0, 0, 0}};
}

// A course of the logs as sessions 1, 2, ..., loaded.
void WriteLogs(test::LoadedCourse& course, const std::vector<std::string>& logs) {
    for (size_t i = 0; i < logs.size(); ++i)
        course.Write("SessionData/" + test::SeptemberLog(static_cast<int>(i) + 1), logs[i]);
    course.Load();
}

struct Case {
    const char* name;
    std::vector<std::string> logs;  // sessions 1, 2, ...
    int openedBefore;               // the session in the tables when the walks start
    const char* walks;              // T a pass while the title is live, E over every session
    int passesRead;
};

// Courses whose passes start, end and stop in each way there is.
std::vector<Case> PassCases() {
    const std::string steady1 = LogText(Plan("Optics", {Question("Q1", 1), Question("Q2", 2)}));
    const std::string steady2 = LogText(Plan("Lenses", {Question("Q1", 3), Question("Q2", 1)}));
    // Session 1 scores its second question with the points the log read before left.
    const std::string borrowing =
        ShortResponses(Plan("Borrow", {Question("Q1", 1), Question("Q2", 1)}), 0, 4, 1);
    const std::string fivePoints = LogText(Plan("Five", {Question("Q1", 1), Question("Q2", 5)}));
    const std::string threePoints = LogText(Plan("Three", {Question("Q1", 1), Question("Q2", 3)}));
    // A dropped session: no later session passes the live test once it is read.
    const std::string dropped = LogText(Plan("Dropped|Y", {Question("Q1", 1)}));
    // An anonymous question whose Response A line is short: its response total grows at every
    // opening, so no pass ends on the tables it started from.
    const std::string growing = ShortResponses(Plan("Grow", {Question("Q1", 1, 2)}, "X"), 0, 0, 0);

    return {
        {"the same tables after every pass", {steady1, steady2, steady1}, 3, "TTEEE", 1},
        {"first pass ends on other tables", {borrowing, fivePoints, threePoints}, 2, "TTTEE", 2},
        {"a dropped session ends the title's pass", {steady1, dropped, steady2}, 1, "TTEEE", 4},
        {"tables that never come back", {growing, growing}, 2, "TEE", 3},
    };
}

TEST(SessionPasses, EveryPassSeesWhatOpeningEachSessionWouldShow) {
    for (const Case& c : PassCases()) {
        SCOPED_TRACE(c.name);
        test::LoadedCourse kept, opened;
        WriteLogs(kept, c.logs);
        WriteLogs(opened, c.logs);
        ASSERT_EQ(kept.course.NumSessions, static_cast<int>(c.logs.size()));
        OpenSession(kept.course, c.openedBefore);
        OpenSession(opened.course, c.openedBefore);

        SessionPasses passes;
        for (size_t w = 0; c.walks[w]; ++w) {
            const PassRule rule = c.walks[w] == 'T' ? PassRule::WhileTitleLive : PassRule::Every;
            std::vector<int> before;
            std::vector<Seen> seen;
            passes.Walk(
                kept.course, rule, [&](int i) { before.push_back(i); },
                [&](int i, const SessionFigures& figures) { seen.push_back(SeenOf(i, figures)); });
            const std::vector<Seen> expected = OpenEverySession(opened.course, rule);
            EXPECT_EQ(seen, expected) << "walk " << w;
            std::vector<int> expectedBefore;
            for (const Seen& s : expected) expectedBefore.push_back(std::get<0>(s));
            EXPECT_EQ(before, expectedBefore) << "walk " << w;
            EXPECT_TRUE(SessionTables(opened.course).SameAs(kept.course)) << "walk " << w;
        }
        EXPECT_EQ(passes.passesRead(), c.passesRead);
    }
}

TEST(SessionPasses, TablesChangedBetweenPassesAreReadAgain) {
    test::LoadedCourse kept;
    WriteLogs(kept, {LogText(Plan("One", {Question("Q1", 1)})),
                     LogText(Plan("Two", {Question("Q1", 4)}))});
    OpenSession(kept.course, 2);
    SessionPasses passes;
    auto walk = [&] {
        passes.Walk(
            kept.course, PassRule::Every, [](int) {}, [](int, auto&) {});
    };
    walk();
    walk();
    EXPECT_EQ(passes.passesRead(), 1);
    // Another opening between the pages: the kept pass started on other tables.
    OpenSession(kept.course, 1);
    walk();
    EXPECT_EQ(passes.passesRead(), 2);
}

TEST(ReopeningChangesNothing, OnlyWhereOpeningTheLogAgainLeavesTheTablesAsTheyAre) {
    LogPlan wide = Plan("Wide", {Question("Q1", 1), Question("Q2", 2), Question("Q3", 3)}, "B");
    LogPlan odd = Plan("Odd", {Question("Q1", 2), Question("Q2", 1)});
    // A short line keeps the answers of the wider log before, a blank line and a line of two
    // fields take no row, and a deleted question is not scored.
    odd.voters.push_back(test::RawLine("#A3,\"S3\",0,C ,1,5,1,C ,5,"));
    odd.voters.push_back(test::RawLine(""));
    odd.voters.push_back(test::RawLine("#A4,\"S4\""));
    LogPlan deleted = Plan("Dropping", {Question("Q1", 1), Question("Gone|Y", 1)});
    LogPlan anonymous = Plan("Anonymous", {Question("Q1", 1, 2)}, "X");
    LogPlan headerOnly;
    headerOnly.title = "Settings";

    // What the check says of each last log.
    const std::vector<std::tuple<const char*, std::string, bool>> cases = {
        {"a log as the polling application writes it", LogText(Plan("Plain", {Question("Q1", 1)})),
         true},
        {"short, blank and cut lines", LogText(odd), true},
        {"a deleted question", LogText(deleted), true},
        {"anonymous answers", LogText(anonymous), true},
        {"every Response line short alike", ShortResponses(anonymous, 0, 4, 0), true},
        {"a short Response A line with nothing after it to add",
         ShortResponses(Plan("Zero", {Question("Q1", 1)}, "X"), 0, 0, 0), true},
        {"a short Response A line before counts added onto the tables",
         ShortResponses(anonymous, 0, 0, 0), false},
        {"a header alone", LogText(headerOnly).substr(0, LogText(headerOnly).find("\r\n")), false},
    };
    for (const auto& [name, log, says] : cases) {
        SCOPED_TRACE(name);
        test::LoadedCourse course;
        WriteLogs(course, {LogText(wide), log});
        OpenSession(course.course, 1);
        OpenSession(course.course, course.course.NumSessions);
        const bool unchanged = ReopeningChangesNothing(course.course, course.course.NumSessions);
        EXPECT_EQ(unchanged, says);
        const SessionTables once(course.course);
        OpenSession(course.course, course.course.NumSessions);
        EXPECT_TRUE(!unchanged || once.SameAs(course.course));
    }
}

// The report run against each page opening its own session, the term pages after them.
TEST(RunReports, PagesAreThoseOfEveryPageOpeningItsSession) {
    std::vector<std::vector<std::string>> courses;
    for (const Case& c : PassCases()) courses.push_back(c.logs);
    // The dropped session's course with a last log whose count is no number: the load reads it,
    // but it is no session, so the report starts on its tables and ends on the dropped session's.
    courses.push_back(courses[2]);
    std::string& unreadable = courses.back()[2];
    unreadable.replace(unreadable.find("Response A,    ,   ,") + 20, 1, "x");
    for (size_t c = 0; c < courses.size(); ++c) {
        SCOPED_TRACE("course " + std::to_string(c));
        test::LoadedCourse run;
        WriteLogs(run, courses[c]);
        run.host.option = OptionChoice{0, false};
        MemoryPageOutput written;
        ASSERT_EQ(RunReports(run.course, run.host, written), ReportRunEnd::Written);

        // The same folder read afresh: the pages name it.
        Course opened;
        opened.AppPath = run.Path();
        HeadlessScreen screen;
        LoadCourse(opened, run.host, screen, ReadOnlyLoad());
        opened.ReportDisplayMode = 0;
        MemoryPageOutput expected;
        PageWriter page(opened, run.host, expected);
        for (int i = 1; i <= opened.NumSessions; ++i) {
            WriteSessionSummary(opened, page, i);
            WriteSessionDetail(opened, page, i);
        }
        WriteTermSummary(opened, page);
        WriteStudentTermReport(opened, page);

        EXPECT_EQ(written.order, expected.order);
        for (const auto& [path, text] : expected.pages)
            EXPECT_EQ(written.pages[path], text) << path;
        EXPECT_TRUE(SessionTables(opened).SameAs(run.course));
    }
}

}  // namespace
}  // namespace tallory
