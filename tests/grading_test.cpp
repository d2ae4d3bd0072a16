#include <gtest/gtest.h>

#include <array>
#include <vector>

#include "TestSupport.h"
#include "scoring/Grading.h"
#include "start/Settings.h"

namespace tallory {
namespace {

constexpr int16_t A = 1, B = 2, None = kNoAnswer, Anon = kAnonymousAnswer;

// A session in memory, as the log reader leaves it: questions with points per choice, and one
// row of final answers per voter.
struct Session {
    Course course;

    explicit Session(double cap, double participation = 1) {
        course.SessPerformance = cap;
        course.SessParticipation = participation;
    }
    QuestionRec& AddQuestion(std::array<double, 5> points, const char* name = "Q") {
        QuestionRec& question = course.Questions[++course.NumQuestions];
        question.Name = name;
        for (int i = 1; i <= 5; ++i) question.ChoicePoints[i] = points[i - 1];
        return question;
    }
    VoteRec& AddVoter(std::vector<int16_t> answers) {
        VoteRec& vote = course.Votes[++course.NumVoters];
        for (size_t q = 0; q < answers.size(); ++q) vote.Answer[q + 1] = answers[q];
        return vote;
    }
    double Total(int voter) { return course.Votes[voter].Score[0]; }
};

TEST(Grading, RequiredResponsesFollowTheSetting) {
    // The setting (nullptr: none), the live questions, the responses required.
    const std::tuple<const char*, int, int> cases[] = {
        {"0", 6, 5},     {"1", 6, 4},         {"2", 6, 3},    {"3", 6, 6}, {"4", 6, 1}, {"9", 6, 4},
        {nullptr, 6, 4}, {"2 of them", 6, 3}, {"none", 6, 5}, {"2", 5, 2}, {"1", 5, 3}, {"3", 0, 0},
    };
    for (const auto& [setting, questions, required] : cases) {
        Session session(-1);
        if (setting) SetParam(session.course, "ParticipationRequirement", setting);
        for (int q = 0; q < questions; ++q) session.AddQuestion({1, 0, 0, 0, 0});
        // Neither a deleted nor a nameless question counts.
        session.AddQuestion({1, 0, 0, 0, 0}).Deleted = kTrue;
        session.AddQuestion({1, 0, 0, 0, 0}, " ");
        EXPECT_EQ(RequiredResponses(session.course), required)
            << (setting ? setting : "default") << " with " << questions;
        SetRequiredResponses(session.course);
        EXPECT_EQ(session.course.SessMinReply, required);
    }
}

TEST(Grading, CapHoldsAtEveryStepButNotForParticipation) {
    const std::tuple<double, std::vector<double>, double, double> cases[] = {
        {5, {3, 3, 3, 3}, 5 + 1, 5},     // 3, 5, 5, 5
        {5, {3, 3, -2}, 3 + 1, 5},       // 3, 5, 3
        {-1, {3, 3, 3, 3}, 12 + 1, 12},  // no cap
        {0, {3, 3}, 0 + 1, 0},           // a cap of zero pays participation only
        // Questions without points still leave a trace of available points, once per session.
        {-1, {0}, 0, 1E-10},
        {-1, {0, 2}, 2 + 1, 1E-10 + 2},
    };
    for (const auto& [cap, pointsOfA, total, available] : cases) {
        Session session(cap);
        for (double points : pointsOfA) session.AddQuestion({points, 0, 0, 0, 0});
        session.AddVoter(std::vector<int16_t>(pointsOfA.size(), A));
        RecomputeSession(session.course);
        EXPECT_EQ(session.Total(1), total) << cap;
        EXPECT_EQ(session.course.Questions[0].MaxPoints, available) << cap;
    }
}

TEST(Grading, DeletedQuestionsScoreNothingAndAllDeletedPaysParticipation) {
    Session session(-1, 2);
    session.course.SessMinCorrect = 0;
    session.AddQuestion({1, 0, 0, 0, 0}).Deleted = kTrue;
    session.AddQuestion({1, 0, 0, 0, 0}, "Q2 |y");
    VoteRec& vote = session.AddVoter({A, A});
    vote.Score[2] = 7;
    RecomputeSession(session.course);
    EXPECT_EQ(CountLiveQuestions(session.course), 0);
    EXPECT_EQ(session.course.SessMinReply, 0);
    EXPECT_EQ(session.course.Questions[2].Deleted, kTrue);
    EXPECT_EQ(vote.Score[2], 7);
    EXPECT_EQ(session.Total(1), 2);
}

TEST(Grading, AnonymousAnswersCountAsResponsesButEarnNothing) {
    Session session(-1);
    session.course.SessMinCorrect = 1;
    session.AddQuestion({1, 0, 0, 0, 0}).ResponseCount = {9, 0, 0, 0, 0, 0, 0};
    session.AddQuestion({1, 0.5, 0, 0, 0}).ResponseCount = {0, 1, 1, 0, 0, 0, 4};
    session.AddVoter({Anon, None});
    session.AddVoter({Anon, A});
    session.AddVoter({Anon, B});
    RecomputeSession(session.course);
    const Course& course = session.course;
    EXPECT_EQ(course.Questions[1].Anonymous, kTrue);
    EXPECT_EQ(course.Questions[2].Anonymous, kFalse);
    EXPECT_EQ(course.Questions[1].ResponseCount[0], 9);
    EXPECT_EQ(course.Questions[2].ResponseCount[0], 2);
    EXPECT_EQ(session.Total(1), 0);  // responded, but earned nothing
    EXPECT_EQ(session.Total(2), 1 + 1);
    EXPECT_EQ(session.Total(3), 0.5 + 1);
    EXPECT_DOUBLE_EQ(course.Questions[2].AveragePoints, 0.5);
    EXPECT_DOUBLE_EQ(course.Questions[0].AveragePoints, (0 + 2 + 1.5) / 3);
}

// The cap holds the running total after every question (none when negative); an answer outside
// 0..7 stops the run with error 9 and leaves what the voters before it had, as voter by voter.
TEST(Grading, CapAndAnAnswerOutOfRange) {
    // The bad answer is the second voter's to question 2 (0: none).
    const std::tuple<double, int16_t, double, double> cases[] = {
        {-1, 0, 2 + 3 + 1, 1 + 3 + 1}, {4, 0, 4 + 1, 4 + 1},  {2.5, 0, 2.5 + 1, 2.5 + 1},
        {0, 0, 0 + 1, 0 + 1},          {-1, 9, 2 + 3 + 1, 1}, {-1, -1, 2 + 3 + 1, 1},
    };
    for (const auto& [cap, badAnswer, first, second] : cases) {
        SCOPED_TRACE(std::to_string(cap) + " " + std::to_string(badAnswer));
        Session session(cap);
        session.AddQuestion({1, 2, 0, 0, 0});
        session.AddQuestion({0, 0, 3, 0, 0});
        session.AddQuestion({0, 0, 0, 0, 0}, "Q3").Anonymous = kTrue;
        session.AddVoter({B, 3, None});
        session.AddVoter({A, badAnswer ? badAnswer : int16_t{3}, Anon});
        if (badAnswer) {
            EXPECT_EQ(test::EndingOf([&] { RecomputeSession(session.course); }).number,
                      kSubscriptOutOfRange);
        } else {
            RecomputeSession(session.course);
        }
        const Course& course = session.course;
        EXPECT_EQ(session.Total(1), first);
        EXPECT_EQ(session.Total(2), second);
        EXPECT_EQ(course.Votes[2].Score[1], 1);
        EXPECT_DOUBLE_EQ(course.Questions[1].AveragePoints, (2 + 1) / 2.0);
        EXPECT_DOUBLE_EQ(course.Questions[2].AveragePoints, badAnswer ? 1.5 : 3);
        // The third question was reached by the first voter only when the second stopped.
        EXPECT_EQ(course.Questions[3].Anonymous, badAnswer ? kFalse : kTrue);
    }
}

TEST(Grading, CountersThatPass16BitsAreAnOverflow) {
    Session session(-1);
    session.AddQuestion({1, 0, 0, 0, 0}).ResponseCount = {0, 30000, 3000, 0, 0, 0, 0};
    EXPECT_EQ(test::EndingOf([&] { RecomputeSession(session.course); }).number, kOverflow);
}

}  // namespace
}  // namespace tallory
