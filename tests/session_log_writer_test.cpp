#include <gtest/gtest.h>

#include "TestSupport.h"
#include "common/Paths.h"
#include "common/RecordingHost.h"
#include "logs/SessionLog.h"
#include "logs/SessionLogWriter.h"
#include "registration/RemoteTable.h"
#include "scoring/Grading.h"

namespace tallory {
namespace {

using test::DataPath;
using test::LogVoter;
using test::ReadBytes;

// A log of the given questions, where choice A earns 1 point and B .5, and voters.
test::LogPlan Polling(const std::vector<std::string>& names,
                      const std::vector<LogVoter>& voters = {}) {
    test::LogPlan plan = test::QuestionsPlan(names, {1, .5, 0, 0, 0});
    plan.voters = voters;
    return plan;
}

constexpr const char* kLog = "SessionData/L2609151030.csv";

// A course folder holding one log; Rewrite reads it, scores it and writes it back in place, as
// every edit of a session does.
struct LogRewrite {
    test::TempCourse folder;
    Course course;
    RecordingHost host;

    explicit LogRewrite(const std::string& text) {
        folder.Write(kLog, text);
        course.AppPath = folder.Path();
    }
    std::string Path() const { return folder.File(kLog); }
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

TEST(SessionLogWriter, RewritesAPollingLogAndThenKeepsItAsItIs) {
    LogRewrite log(ReadBytes(DataPath("logs/L2609151030.csv")));
    ReadRemoteIds(log.course, log.host, DataPath("logs/RemoteID.csv"));
    std::string first = log.Rewrite();
    EXPECT_EQ(first, ReadBytes(DataPath("logs/L2609151030.rewritten.csv")));
    EXPECT_EQ(log.course.SessMinCorrect, 0);
    EXPECT_EQ(log.Rewrite(), first);
    EXPECT_TRUE(log.host.messages.empty());
}

TEST(SessionLogWriter, TitleWithoutMarkAndNoVotersEndWithResponseE) {
    test::LogPlan plan = Polling({"why's"});
    plan.title = "Review |y";
    LogRewrite log(LogText(plan));
    std::string text = log.Rewrite();
    EXPECT_EQ(text.substr(0, text.find("\r\n")),
              "Scoring,  Performance =  10 , Participation =  1 , Min Reply =  0 , "
              "Min Correct =  0 ,\"Review \"");
    EXPECT_NE(text.find(",\"WHYS\" ,"), std::string::npos);
    const std::string end = "\r\nResponse E,    ,   , 0 , 0 ,, , , ,";
    ASSERT_GE(text.size(), end.size());
    EXPECT_EQ(text.substr(text.size() - end.size()), end);
}

// Values the log cannot hold: the writer refuses the file with the message of a failed write.
TEST(SessionLogWriter, RefusalKeepsTheOldFileAndSaysSo) {
    const std::string original = LogText(Polling({"Q1"}, {{"#A1", "", {"A"}}}));
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
        LogRewrite log(original);
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
    const std::string text = LogText(Polling({"Q1"}, {{"#A1", "S9", {"A"}}, {"#B2", "", {"A"}}}));
    {
        LogRewrite log(text);
        std::string written = log.Rewrite("#00a1", "", -1);
        EXPECT_EQ(written.find("#A1,"), std::string::npos);
        // Counted before the line was dropped: the count follows at the next rewrite.
        EXPECT_NE(written.find("Response A,    ,   , 2 , 1 ,"), std::string::npos);
        EXPECT_NE(log.Rewrite().find("Response A,    ,   , 1 , 1 ,"), std::string::npos);
    }
    {
        LogRewrite log(text);
        AddRemote(log.course, "A1", "S1");
        std::string written = log.Rewrite("a1", "S1", 0);
        EXPECT_NE(written.find("\r\n#A1,\"\", 1 ,"), std::string::npos);
        log.Read();
        EXPECT_EQ(log.course.Votes[1].StudentId, "S1");
        EXPECT_NE(log.Rewrite().find("\r\n#A1, , 1 ,"), std::string::npos);
    }
}

TEST(SessionLogWriter, AnonymousQuestionsKeepTheirCountsAndEarnNothing) {
    test::LogPlan plan = Polling({"Q1", "Q2"}, {{"#A1", "", {"X", "A"}}, {"#B2", "", {"x", "B"}}});
    plan.questions[0].counts[0] = 4;
    LogRewrite log(LogText(plan));
    std::string text = log.Rewrite();
    EXPECT_NE(text.find("Response A,    ,   , 4 ,0,, , , , 1 , 1 ,"), std::string::npos);
    EXPECT_NE(text.find("Response B,    ,   , 0 ,0,, , , , 1 , .5 ,"), std::string::npos);
    EXPECT_NE(text.find("\r\n#A1, , 1 ,X ,  0  ,  5  ,  1  , X ,  5  , A ,  1  ,"),
              std::string::npos);
    EXPECT_EQ(log.course.Questions[1].ChoicePoints[1], 0);
}

TEST(SessionLogWriter, AnonymousAnswerWipesTheFileTotalSoFar) {
    LogRewrite log(LogText(Polling({"Q1", "Q2", "Q3"}, {{"#A1", "", {"A", "X", "B"}}})));
    EXPECT_NE(log.Rewrite().find("\r\n#A1, , .5 ,"), std::string::npos);
}

}  // namespace
}  // namespace tallory
