// Reading a session log into the tables, and writing the tables back as a log.
#include "TestSupport.h"
#include "common/Paths.h"
#include "logs/SessionLog.h"
#include "logs/SessionLogWriter.h"
#include "registration/RemoteTable.h"
#include "scoring/Grading.h"

namespace tallory {
namespace {

using test::LogVoter;

// A log of the given questions, where choice A earns 1 point and B .5, and voters.
test::LogPlan PollingPlan(const std::vector<std::string>& names,
                          const std::vector<LogVoter>& voters = {}) {
    test::LogPlan plan = test::QuestionsPlan(names, {1, .5, 0, 0, 0});
    plan.voters = voters;
    return plan;
}
std::string Polling(const std::vector<std::string>& names,
                    const std::vector<LogVoter>& voters = {}) {
    return test::LogText(PollingPlan(names, voters));
}

constexpr const char* kLog = "SessionData/L2609151030.csv";

// A course folder holding one log. ReadText takes a text into the tables as the load reads a log;
// Rewrite reads the log, scores it and writes it back in place, as every edit of a session does.
struct LogFile {
    test::TempCourse folder;
    Course course;
    RecordingHost host;

    explicit LogFile(const std::string& text = "") {
        folder.Write(kLog, text);
        course.AppPath = folder.Path();
    }
    std::string Path() const { return folder.File(kLog); }
    void ReadText(const std::string& text) {
        folder.Write(kLog, text);
        ReadSessionLog(course, Path());
    }
    void Read() {
        ReadSessionLog(course, Path());
        RecomputeSession(course);
    }
    bool Write(std::string_view remote = "", std::string_view student = "", int16_t drop = 0) {
        return WriteSessionLog(course, host, Path(), remote, student, drop);
    }
    std::string Rewrite(std::string_view remote = "", std::string_view student = "",
                        int16_t drop = 0) {
        Read();
        EXPECT_TRUE(Write(remote, student, drop));
        return folder.Read(kLog);
    }
};

TEST(SessionLog, NamesAndTextHelpers) {
    EXPECT_EQ(SessionDate("L0809151030.csv"), "09/15/2008");
    EXPECT_EQ(SessionTime("L0809151030.csv"), "10:30");
    EXPECT_EQ(SessionDate("L08"), "//2008");
    const std::tuple<const char*, const char*, const char*, const char*> cases[] = {
        {"#0012", "0012", "#0012", "#0012"},
        {"###", "#", "###", "###"},
        {"000", "000", "0", "000"},
        {"", "", "", ""},
        {"  Q", "  Q", "  Q", ""},
        {" Q1", " Q1", " Q1", "Q1"},
        {"Q", "Q", "Q", ""},
    };
    for (const auto& [text, hashless, zeroless, leadingTrimmed] : cases) {
        EXPECT_EQ(StripLeadingHash(text), hashless) << text;
        EXPECT_EQ(StripLeadingZeros(text), zeroless) << text;
        EXPECT_EQ(TrimLeadingSpaces(text), leadingTrimmed) << text;
    }
}

TEST(SessionLog, AnswerLettersTakeTheLastChoiceAndXBeatsAll) {
    struct Case {
        const char* field;
        int code;
    } cases[] = {{"A", 1}, {"b", 2}, {"ab", 2}, {"EA", 5}, {" C ", 3}, {"Ax", 7},
                 {"x", 7}, {"-", 6}, {"", 6},   {"F", 6},  {"\xc1", 6}};
    for (const auto& c : cases) EXPECT_EQ(AnswerFromLetter(c.field), c.code) << c.field;
}

TEST(SessionLog, SettingsLineTakesDefaultsAndTheDeletionMark) {
    const std::tuple<const char*, double, double, int, int, const char*, int> cases[] = {
        {"Scoring", 0, 1, 1, 1, "", kFalse},
        {"Scoring,  Performance = -1 , Participation =  .5 , Min Reply =  2.5 , Min Correct =  0 "
         ",\"Review\"",
         -1, 0.5, 2, 0, "Review", kFalse},
        {"Scoring, Performance = lots, 3,Min Reply=,x, \"Review |y\" ", 0, 3, 1, 1, "Review ",
         kTrue},
    };
    for (const auto& [line1, performance, participation, minReply, minCorrect, title, deleted] :
         cases) {
        LogFile log;
        log.ReadText(std::string(line1) + "\r\n");
        EXPECT_EQ(log.course.SessPerformance, performance) << line1;
        EXPECT_EQ(log.course.SessParticipation, participation) << line1;
        EXPECT_EQ(log.course.SessMinReply, minReply) << line1;
        EXPECT_EQ(log.course.SessMinCorrect, minCorrect) << line1;
        EXPECT_EQ(log.course.Questions[0].Name, title) << line1;
        EXPECT_EQ(log.course.Questions[0].Deleted, deleted) << line1;
    }
}

TEST(SessionLog, QuestionLinesGiveNamesMarksCorrectAnswersAndPoints) {
    LogFile log;
    std::string text = Polling({"Q1|Y", " Why? ", "Q3|y", "Q4", "Q5", "Q6", "Q"});
    size_t line5 = text.find("Correct Answer");
    text.replace(line5, text.find("\r\nResponse A") - line5,
                 "Correct Answer, , ,,, , , , , ,, , , , ,C,, , , , ,BC,, , , , ,c,, , , , ,4,,");
    log.ReadText(text);
    const Course& course = log.course;
    ASSERT_EQ(course.NumQuestions, 7);
    struct Case {
        const char* name;
        int deleted, correct;
    } expected[] = {{"Q1", kTrue, 1},  {"Why?", kFalse, 0}, {"Q3", kTrue, 3}, {"Q4", kFalse, 2},
                    {"Q5", kFalse, 0}, {"Q6", kFalse, 4},   {"", kFalse, 0}};
    for (int q = 1; q <= 7; ++q) {
        EXPECT_EQ(course.Questions[q].Name, expected[q - 1].name) << q;
        EXPECT_EQ(course.Questions[q].Deleted, expected[q - 1].deleted) << q;
        EXPECT_EQ(course.Questions[q].CorrectAnswer, expected[q - 1].correct) << q;
    }
    EXPECT_EQ(course.Questions[1].StartTime, "10:00:00");
    EXPECT_EQ(course.Questions[1].ChoicePoints[1], 1);
    EXPECT_EQ(course.Questions[1].ChoicePoints[2], 0.5);
}

TEST(SessionLog, RemotesAndStudentsOfDataLines) {
    LogFile log;
    AddRemote(log.course, "12AB34", "S1");
    log.ReadText(
        Polling({"Q1"}, {{"#0012AB34", "", {"A"}}, {"12ab34", "S9", {"B"}}, {"#000", "", {""}}}));
    const Course& course = log.course;
    ASSERT_EQ(course.NumVoters, 3);
    const std::pair<std::string, std::string> expected[] = {
        {"12AB34", "S1"}, {"12ab34", "S9"}, {"0", "#0"}};
    for (int r = 1; r <= 3; ++r)
        EXPECT_EQ(std::pair(course.Votes[r].RemoteId, course.Votes[r].StudentId), expected[r - 1]);
}

TEST(SessionLog, ShortAndBadValuesKeepWhatTheRowHeldBefore) {
    LogFile log;
    log.ReadText(Polling({"Q1", "Q2"}, {{"#A1", "", {"B", "B"}}}));
    ASSERT_EQ(log.course.Votes[1].Answer[2], 2);
    // The second log's line stops after question 1, and its values there do not convert.
    log.ReadText(Polling({"Q1", "Q2"}, {test::RawLine("#A1, , 0 ,C , x , y , z ,D , w ,")}));
    const VoteRec& vote = log.course.Votes[1];
    EXPECT_EQ(vote.Answer[1], 3);
    EXPECT_EQ(vote.FinalTime[1], 5);
    EXPECT_EQ(vote.Attempts[1], 1);
    EXPECT_EQ(vote.Answer[2], 2);
    EXPECT_EQ(vote.FinalTime[2], 5);
}

TEST(SessionLog, BlankAndShortLinesTakeNoRowButMayCountAVoter) {
    const LogVoter a{"#A1", "", {"A"}}, b{"#B2", "", {"B"}};
    struct Case {
        std::vector<LogVoter> data;
        int voters;
        const char* secondRemote;
    } cases[] = {
        {{test::RawLine(""), a, b}, 2, "B2"},  // nothing read yet: the blank line counts nothing
        {{a, test::RawLine(""), b}, 3, "B2"},  // counted, although row 2 holds B2
        {{a, b, test::RawLine("")}, 3, "B2"},  // an empty voter at the end
        {{a, test::RawLine("#C3,\"S3\""), b}, 3, "B2"},  // two fields: skipped, counted
        {{a, test::RawLine("#C3, , 4"), b}, 2, "C3"},    // no group: takes a row, not counted
    };
    for (const auto& c : cases) {
        LogFile log;
        log.ReadText(Polling({"Q1"}, c.data));
        EXPECT_EQ(log.course.NumVoters, c.voters) << &c - cases;
        EXPECT_EQ(log.course.Votes[2].RemoteId, c.secondRemote) << &c - cases;
    }
}

TEST(SessionLog, HeaderEndsAndFailures) {
    const std::string full = Polling({"Q1", "Q2"}, {{"#A1", "", {"A", "A"}}});
    auto upToLine = [&](int lines) {
        size_t at = 0;
        for (int i = 0; i < lines; ++i) at = full.find("\r\n", at) + 2;
        return full.substr(0, at);
    };
    std::string badCount = full;
    badCount.replace(badCount.find("Response C,    ,   , 0 "), 23, "Response C,    ,   , many ");
    const std::tuple<std::string, int, int> cases[] = {
        {"", 0, 0},            // empty file
        {upToLine(1), 5, 0},   // ends after line 1: the count of the log read before stays
        {upToLine(2), 2, 0},   // ends after line 2
        {upToLine(7), 2, 0},   // ends inside the response lines
        {badCount, 0, 0},      // a count that does not convert
        {upToLine(10), 2, 0},  // no voters
        {full, 2, 1},
    };
    for (const auto& [text, questions, voters] : cases) {
        LogFile log;
        log.course.NumQuestions = 5;
        log.ReadText(text);
        EXPECT_EQ(log.course.NumQuestions, questions) << text;
        EXPECT_EQ(log.course.NumVoters, voters) << text;
    }
}

// A bad session total, and more than 4000 rows: the run ends naming file and line.
TEST(SessionLog, ErrorsEndTheRunNamingFileAndLine) {
    std::vector<LogVoter> many;
    for (int i = 0; i <= kMaxVoters; ++i) many.push_back({"#A" + std::to_string(i), "", {"A"}});
    const std::tuple<std::vector<LogVoter>, int, const char*> cases[] = {
        {{{"#A1", "", {"A"}}, test::RawLine("#B2, , lots ,A")},
         kTypeMismatch,
         "Run-time error '13': Type mismatch\nFile {log}, line 12"},
        {many, kSubscriptOutOfRange,
         "Run-time error '9': Subscript out of range\nTable Votes, row 4001 (rows 0 to 4000)\nFile "
         "{log}, line 4011"},
    };
    for (const auto& [voters, number, expected] : cases) {
        LogFile log;
        const test::Ending ending = test::EndingOf([&] { log.ReadText(Polling({"Q1"}, voters)); });
        std::string message = expected;
        message.replace(message.find("{log}"), 5, log.Path());
        EXPECT_EQ(ending.number, number);
        EXPECT_EQ(ending.message, message);
    }
}

// ---- Writing ----------------------------------------------------------------------------------

using test::DataPath;
using test::ReadBytes;

TEST(SessionLogWriter, RewritesAPollingLogAndThenKeepsItAsItIs) {
    LogFile log(ReadBytes(DataPath("logs/L2609151030.csv")));
    ReadRemoteIds(log.course, log.host, DataPath("logs/RemoteID.csv"));
    std::string first = log.Rewrite();
    EXPECT_EQ(first, ReadBytes(DataPath("logs/L2609151030.rewritten.csv")));
    EXPECT_EQ(log.course.SessMinCorrect, 0);
    EXPECT_EQ(log.Rewrite(), first);
    EXPECT_TRUE(log.host.messages.empty());
}

TEST(SessionLogWriter, TitleWithoutMarkAndNoVotersEndWithResponseE) {
    test::LogPlan plan = PollingPlan({"why's"});
    plan.title = "Review |y";
    LogFile log(LogText(plan));
    std::string text = log.Rewrite();
    EXPECT_EQ(text.substr(0, text.find("\r\n")),
              "Scoring,  Performance =  10 , Participation =  1 , Min Reply =  0 , "
              "Min Correct =  0 ,\"Review \"");
    EXPECT_TRUE(test::Holds(text, ",\"WHYS\" ,"));
    const std::string end = "\r\nResponse E,    ,   , 0 , 0 ,, , , ,";
    ASSERT_GE(text.size(), end.size());
    EXPECT_EQ(text.substr(text.size() - end.size()), end);
}

// Values the log cannot hold: the writer refuses the file with the message of a failed write.
TEST(SessionLogWriter, RefusalKeepsTheOldFileAndSaysSo) {
    const std::string original = LogText(PollingPlan({"Q1"}, {{"#A1", "", {"A"}}}));
    struct Case {
        const char* what;
        void (*spoil)(Course&);
    } cases[] = {
        {"anonymous code on a question with answers",
         [](Course& course) { course.Votes[1].Answer[1] = kAnonymousAnswer; }},
        {"first response beyond the labels",
         [](Course& course) { course.Votes[1].FirstAnswer[1] = 9; }},
    };
    for (const auto& c : cases) {
        LogFile log(original);
        log.Read();
        c.spoil(log.course);
        EXPECT_FALSE(log.Write()) << c.what;
        EXPECT_EQ(test::Messages(log.host),
                  test::Strings{"[Tallory] Unable to store changes to file " + log.Path() +
                                " Changes not saved!"});
        EXPECT_EQ(log.host.messages[0].buttons, Buttons::Ok);
        EXPECT_EQ(log.folder.Read(kLog), original) << c.what;
        EXPECT_EQ(ListFiles(log.folder.File("SessionData")).size(), 1u) << c.what;
    }
}

TEST(SessionLogWriter, ClickerLinesDroppedOrHandedBackToTheirOwner) {
    const std::string text =
        LogText(PollingPlan({"Q1"}, {{"#A1", "S9", {"A"}}, {"#B2", "", {"A"}}}));
    {
        LogFile log(text);
        std::string written = log.Rewrite("#00a1", "", -1);
        EXPECT_FALSE(test::Holds(written, "#A1,"));
        // Counted before the line was dropped: the count follows at the next rewrite.
        EXPECT_TRUE(test::Holds(written, "Response A,    ,   , 2 , 1 ,"));
        EXPECT_TRUE(test::Holds(log.Rewrite(), "Response A,    ,   , 1 , 1 ,"));
    }
    {
        LogFile log(text);
        AddRemote(log.course, "A1", "S1");
        std::string written = log.Rewrite("a1", "S1", 0);
        EXPECT_TRUE(test::Holds(written, "\r\n#A1,\"\", 1 ,"));
        log.Read();
        EXPECT_EQ(log.course.Votes[1].StudentId, "S1");
        EXPECT_TRUE(test::Holds(log.Rewrite(), "\r\n#A1, , 1 ,"));
    }
}

TEST(SessionLogWriter, AnonymousQuestionsKeepTheirCountsAndEarnNothing) {
    test::LogPlan plan =
        PollingPlan({"Q1", "Q2"}, {{"#A1", "", {"X", "A"}}, {"#B2", "", {"x", "B"}}});
    plan.questions[0].counts[0] = 4;
    LogFile log(LogText(plan));
    std::string text = log.Rewrite();
    EXPECT_TRUE(test::Holds(text, "Response A,    ,   , 4 ,0,, , , , 1 , 1 ,"));
    EXPECT_TRUE(test::Holds(text, "Response B,    ,   , 0 ,0,, , , , 1 , .5 ,"));
    EXPECT_TRUE(test::Holds(text, "\r\n#A1, , 1 ,X ,  0  ,  5  ,  1  , X ,  5  , A ,  1  ,"));
    EXPECT_EQ(log.course.Questions[1].ChoicePoints[1], 0);
}

TEST(SessionLogWriter, AnonymousAnswerWipesTheFileTotalSoFar) {
    LogFile log(LogText(PollingPlan({"Q1", "Q2", "Q3"}, {{"#A1", "", {"A", "X", "B"}}})));
    EXPECT_TRUE(test::Holds(log.Rewrite(), "\r\n#A1, , .5 ,"));
}

}  // namespace
}  // namespace tallory
