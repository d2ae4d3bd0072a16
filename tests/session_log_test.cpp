#include <gtest/gtest.h>

#include <iterator>
#include <random>

#include "TestSupport.h"
#include "common/Numbers.h"
#include "logs/SessionLog.h"
#include "registration/RemoteTable.h"
#include "start/Fields.h"

namespace tallory {
namespace {

using test::LogVoter;

// A log of the given questions, where choice A earns 1 point and B .5, and voters.
std::string Polling(const std::vector<std::string>& names,
                    const std::vector<LogVoter>& voters = {}) {
    test::LogPlan plan = test::QuestionsPlan(names, {1, .5, 0, 0, 0});
    plan.voters = voters;
    return test::LogText(plan);
}

struct LogReading {
    test::TempCourse folder;
    Course course;

    void Read(const std::string& text) {
        folder.Write("SessionData/L2609151030.csv", text);
        ReadSessionLog(course, folder.File("SessionData/L2609151030.csv"));
    }
};

TEST(SessionLog, NamesAndTextHelpers) {
    EXPECT_EQ(SessionDate("L0809151030.csv"), "09/15/2008");
    EXPECT_EQ(SessionTime("L0809151030.csv"), "10:30");
    EXPECT_EQ(SessionDate("L08"), "//2008");
    struct Case {
        const char* text;
        const char* hashless;
        const char* zeroless;
        const char* leadingTrimmed;
    } cases[] = {
        {"#0012", "0012", "#0012", "#0012"},
        {"###", "#", "###", "###"},
        {"000", "000", "0", "000"},
        {"", "", "", ""},
        {"  Q", "  Q", "  Q", ""},
        {" Q1", " Q1", " Q1", "Q1"},
        {"Q", "Q", "Q", ""},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(StripLeadingHash(c.text), c.hashless) << c.text;
        EXPECT_EQ(StripLeadingZeros(c.text), c.zeroless) << c.text;
        EXPECT_EQ(TrimLeadingSpaces(c.text), c.leadingTrimmed) << c.text;
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
    struct Case {
        const char* line1;
        double performance, participation;
        int minReply, minCorrect;
        const char* title;
        int deleted;
    } cases[] = {
        {"Scoring", 0, 1, 1, 1, "", kFalse},
        {"Scoring,  Performance = -1 , Participation =  .5 , Min Reply =  2.5 , Min Correct =  0 "
         ",\"Review\"",
         -1, 0.5, 2, 0, "Review", kFalse},
        {"Scoring, Performance = lots, 3,Min Reply=,x, \"Review |y\" ", 0, 3, 1, 1, "Review ",
         kTrue},
    };
    for (const auto& c : cases) {
        LogReading log;
        log.Read(std::string(c.line1) + "\r\n");
        EXPECT_EQ(log.course.SessPerformance, c.performance) << c.line1;
        EXPECT_EQ(log.course.SessParticipation, c.participation) << c.line1;
        EXPECT_EQ(log.course.SessMinReply, c.minReply) << c.line1;
        EXPECT_EQ(log.course.SessMinCorrect, c.minCorrect) << c.line1;
        EXPECT_EQ(log.course.Questions[0].Name, c.title) << c.line1;
        EXPECT_EQ(log.course.Questions[0].Deleted, c.deleted) << c.line1;
    }
}

TEST(SessionLog, QuestionLinesGiveNamesMarksCorrectAnswersAndPoints) {
    LogReading log;
    std::string text = Polling({"Q1|Y", " Why? ", "Q3|y", "Q4", "Q5", "Q6", "Q"});
    size_t line5 = text.find("Correct Answer");
    text.replace(line5, text.find("\r\nResponse A") - line5,
                 "Correct Answer, , ,,, , , , , ,, , , , ,C,, , , , ,BC,, , , , ,c,, , , , ,4,,");
    log.Read(text);
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
    LogReading log;
    AddRemote(log.course, "12AB34", "S1");
    log.Read(
        Polling({"Q1"}, {{"#0012AB34", "", {"A"}}, {"12ab34", "S9", {"B"}}, {"#000", "", {""}}}));
    const Course& course = log.course;
    ASSERT_EQ(course.NumVoters, 3);
    EXPECT_EQ(course.Votes[1].RemoteId, "12AB34");
    EXPECT_EQ(course.Votes[1].StudentId, "S1");
    EXPECT_EQ(course.Votes[2].RemoteId, "12ab34");
    EXPECT_EQ(course.Votes[2].StudentId, "S9");
    EXPECT_EQ(course.Votes[3].RemoteId, "0");
    EXPECT_EQ(course.Votes[3].StudentId, "#0");
}

TEST(SessionLog, ShortAndBadValuesKeepWhatTheRowHeldBefore) {
    LogReading log;
    log.Read(Polling({"Q1", "Q2"}, {{"#A1", "", {"B", "B"}}}));
    ASSERT_EQ(log.course.Votes[1].Answer[2], 2);
    // The second log's line stops after question 1, and its values there do not convert.
    log.Read(Polling({"Q1", "Q2"}, {test::RawLine("#A1, , 0 ,C , x , y , z ,D , w ,")}));
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
        LogReading log;
        log.Read(Polling({"Q1"}, c.data));
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
    struct Case {
        std::string text;
        int questions, voters;
    } cases[] = {
        {"", 0, 0},            // empty file
        {upToLine(1), 5, 0},   // ends after line 1: the count of the log read before stays
        {upToLine(2), 2, 0},   // ends after line 2
        {upToLine(7), 2, 0},   // ends inside the response lines
        {badCount, 0, 0},      // a count that does not convert
        {upToLine(10), 2, 0},  // no voters
        {full, 2, 1},
    };
    for (const auto& c : cases) {
        LogReading log;
        log.course.NumQuestions = 5;
        log.Read(c.text);
        EXPECT_EQ(log.course.NumQuestions, c.questions) << c.text;
        EXPECT_EQ(log.course.NumVoters, c.voters) << c.text;
    }
}

// A bad session total, and more than 4000 rows: the run ends naming file and line.
TEST(SessionLog, ErrorsEndTheRunNamingFileAndLine) {
    std::vector<LogVoter> many;
    for (int i = 0; i <= kMaxVoters; ++i) many.push_back({"#A" + std::to_string(i), "", {"A"}});
    struct Case {
        std::vector<LogVoter> voters;
        int number;
        const char* message;
    } cases[] = {
        {{{"#A1", "", {"A"}}, test::RawLine("#B2, , lots ,A")},
         kTypeMismatch,
         "Run-time error '13': Type mismatch\nFile {log}, line 12"},
        {many, kSubscriptOutOfRange,
         "Run-time error '9': Subscript out of range\nTable Votes, row 4001 (rows 0 to 4000)\nFile "
         "{log}, line 4011"},
    };
    for (const Case& c : cases) {
        LogReading log;
        const test::Ending ending = test::EndingOf([&] { log.Read(Polling({"Q1"}, c.voters)); });
        std::string message = c.message;
        message.replace(message.find("{log}"), 5, log.folder.File("SessionData/L2609151030.csv"));
        EXPECT_EQ(ending.number, c.number);
        EXPECT_EQ(ending.message, message);
    }
}

// The data-line reader against the meaning of a data line, stated field by field through the
// splitter and the reference conversion: the same row values, the same row and group count, for
// random lines of every shape (odd number forms, letters, quotes, line feeds, lines past field
// 999, whose rest is joined onto field 999 with ":"), read over rows that already hold values.
struct ExpectedVote {
    std::vector<int16_t> answer, attempts, firstAnswer;
    std::vector<double> score, finalTime, firstTime;
};

void KeepIfReferenceNumeric(std::string_view text, double& target) {
    ToDoubleReference(text, target);
}
void KeepIfReferenceNumeric(std::string_view text, int16_t& target) {
    double value;
    if (ToDoubleReference(text, value)) RoundToInt16(value, target);
}

std::string RandomField(std::mt19937& random) {
    static const char* const kTexts[] = {
        " 0 ",     " 1 ",    " 38.7 ",       "-0",        "+2",   "1.",   ".5",
        "1E2",     "2D1",    "\t3 ",         " 12 x",     "E ",   "A",    "x",
        "",        " ",      "1e999",        "\"4\"",     "a\"b", "1\n2", " 99999",
        "65535.5", "-32769", "123456789012", "0.1234567", "BX"};
    return kTexts[random() % std::size(kTexts)];
}

TEST(SessionLog, DataLinesReadAsTheSplitterAndReferenceConversionSay) {
    std::mt19937 random(20261125);
    for (int trial = 0; trial < 3000; ++trial) {
        Course course;
        course.NumQuestions = 200;
        VoteRec& vote = course.Votes[1];
        const int width = 1 + static_cast<int>(random() % 200);
        ExpectedVote expected;
        for (auto* counts : {&expected.answer, &expected.attempts, &expected.firstAnswer})
            counts->resize(width + 2);
        for (auto* figures : {&expected.score, &expected.finalTime, &expected.firstTime})
            figures->resize(width + 2);
        for (int q = 1; q <= width + 1; ++q) {
            vote.Answer[q] = expected.answer[q] = static_cast<int16_t>(random() % 8);
            vote.Attempts[q] = expected.attempts[q] = static_cast<int16_t>(random() % 5);
            vote.FirstAnswer[q] = expected.firstAnswer[q] = static_cast<int16_t>(random() % 8);
            vote.Score[q] = expected.score[q] = random() % 7;
            vote.FinalTime[q] = expected.finalTime[q] = random() % 90;
            vote.FirstTime[q] = expected.firstTime[q] = random() % 90;
        }
        // Mostly plain lines, a few with quotes or line feeds, some cut short anywhere.
        std::string line = "#A1, S1 , 3 ";
        const int fields = trial % 10 == 0 ? 1000 + static_cast<int>(random() % 40)
                                           : 6 * width + static_cast<int>(random() % 6);
        for (int f = 0; f < fields; ++f) {
            std::string text = RandomField(random);
            if (trial % 3 != 0 &&
                (text.find('"') != std::string::npos || text.find('\n') != std::string::npos))
                text = " 7 ";
            line += "," + text;
        }
        if (random() % 4 == 0) line += ",";

        Fields split(kMaxLogFieldIndex);
        SplitFields(line, split);
        const int groups = split.Count() < 3 ? 0 : (split.Count() - 3) / 6 + 1;
        for (int q = 1; q <= groups && q <= width + 1; ++q) {
            auto field = [&](int column) { return split[3 + 6 * (q - 1) + column]; };
            expected.answer[q] = AnswerFromLetter(field(0));
            KeepIfReferenceNumeric(field(1), expected.score[q]);
            KeepIfReferenceNumeric(field(2), expected.finalTime[q]);
            KeepIfReferenceNumeric(field(3), expected.attempts[q]);
            KeepIfReferenceNumeric(field(4), expected.firstAnswer[q]);
            KeepIfReferenceNumeric(field(5), expected.firstTime[q]);
        }

        int row = 1, groupCount = -1;
        ReadVoteLine(course, line, row, groupCount);
        ASSERT_EQ(row, 1) << line;
        ASSERT_EQ(groupCount, groups) << line;
        EXPECT_EQ(vote.StudentId, "S1");
        EXPECT_EQ(vote.Score[0], 3);
        for (int q = 1; q <= width + 1; ++q) {
            ASSERT_EQ(vote.Answer[q], expected.answer[q]) << "question " << q << ": " << line;
            ASSERT_EQ(vote.Attempts[q], expected.attempts[q]) << "question " << q << ": " << line;
            ASSERT_EQ(vote.FirstAnswer[q], expected.firstAnswer[q]) << "question " << q;
            ASSERT_EQ(vote.Score[q], expected.score[q]) << "question " << q << ": " << line;
            ASSERT_EQ(vote.FinalTime[q], expected.finalTime[q]) << "question " << q;
            ASSERT_EQ(vote.FirstTime[q], expected.firstTime[q]) << "question " << q;
        }
    }
}

}  // namespace
}  // namespace tallory
