#include <sys/stat.h>

#include <array>
#include <functional>
#include <vector>

#include "SupportForFiles.h"
#include "TestSupport.h"
#include "grid/CourseLoad.h"
#include "logs/SessionLog.h"
#include "scoring/Grading.h"
#include "scoring/SessionDateText.h"
#include "scoring/SetScoresScreen.h"
#include "start/Settings.h"

namespace tallory {
namespace {

using test::LogPlan;
using test::QuestionsPlan;

constexpr const char* kLog = "L0809151030.csv";

// A course with one session log, loaded as the main window loads it, and its Set Scores screen.
struct ScoringCourse : test::LoadedCourse {
    explicit ScoringCourse(const LogPlan& log,
                           const std::vector<std::pair<std::string, std::string>>& settings = {}) {
        WriteRoster("Alpha, Ann, S1\r\n");
        WriteRemotes("#A1,\"S1\"\r\n");
        if (!settings.empty()) WriteSettings(settings);
        WriteLog(kLog, log);
        Load();
    }

    SetScoresScreen Open(SetScoresOptions options = {}) {
        ReadSessionForScoring(course, 1);
        SetScoresScreen screen(course, host, grid, std::move(options));
        screen.Load();
        return screen;
    }
};

using Answers = std::vector<test::LogAnswer>;

// `count` voters on remotes #B1, #B2, ... answering the letters of `answers` (one per question).
std::vector<test::LogVoter> Voters(int count, const std::function<Answers(int)>& answers) {
    std::vector<test::LogVoter> voters;
    for (int i = 1; i <= count; ++i) voters.push_back({"#B" + std::to_string(i), "", answers(i)});
    return voters;
}

template <typename Controls>
test::Strings TextsOf(const Controls& controls) {
    test::Strings texts;
    for (const ControlState& control : controls) texts.push_back(control.text);
    return texts;
}

TEST(SessionCaptions, DateAndTimeOfTheFileName) {
    using Row = std::pair<const char*, const char*>;
    for (auto [date, shown] : {Row{"09/15/2008", "Sep/15/2008"}, Row{"02/29/2008", "Feb/29/2008"},
                               Row{"02/29/2009", "02/29/2009"},  // not a date: as it stands
                               Row{"13/01/2008", "13/01/2008"}, Row{"ab/cd/20ef", "ab/cd/20ef"}})
        EXPECT_EQ(SessionDateCaption(date), shown) << date;
    for (auto [time, shown] :
         {Row{"10:30", "10:30 AM"}, Row{"13:05", "01:05 PM"}, Row{"00:15", "12:15 AM"},
          Row{"12:00", "12:00 PM"}, Row{"25:00", "25:00"}})
        EXPECT_EQ(SessionTimeCaption(time), shown) << time;
}

TEST(SetScores, PointTextDropsTheZeroBeforeThePoint) {
    const std::pair<double, const char*> rows[] = {{0.25, ".25"}, {2.5, "2.5"}, {0, "0"},
                                                   {1, "1"},      {-0.5, ".5"}, {0.5, ".5"}};
    for (auto [value, shown] : rows) EXPECT_EQ(PointText(value), shown) << value;
}

TEST(SetScores, ShowsTheSessionAndPercentagesRoundedToEven) {
    LogPlan log = QuestionsPlan({"Q1"}, {2, 0, 0, 0, 0});
    log.voters = Voters(40, [](int i) { return Answers{i <= 19 ? "A" : "B"}; });
    ScoringCourse fixture(log, {{"CourseName", "Mechanics"}});
    SetScoresScreen screen = fixture.Open();
    // Counts are the polling application's: the reader takes them from the log as they stand.
    fixture.course.Questions[1].ResponseCount[1] = 19;
    fixture.course.Questions[1].ResponseCount[2] = 21;
    screen.UpdateQuestion();
    const SetScoresControls& c = screen.Controls();
    EXPECT_EQ(TextsOf(std::array{c.lblClass, c.lblSession, c.lblTime, c.lblStudents}),
              (test::Strings{"Mechanics", "Sep/15/2008", "10:30 AM", "40"}));
    EXPECT_EQ(TextsOf(c.lblNum), (test::Strings{"19", "21", "0", "0", "0"}));
    EXPECT_EQ(TextsOf(c.lblPer), (test::Strings{"48", "52", "0", "0", "0"}));
    // The 19 on A earn 2 and, having earned points, the participation point: 57 / 40 = 1.425.
    EXPECT_EQ(TextsOf(std::array{c.lblAverage, c.lblTotalPerfPoints, c.lblTotalPoints}),
              (test::Strings{"1.42", "2.00", "3.00"}));
    EXPECT_FALSE(c.lblNext.enabled || c.lblPrevious.enabled);
}

TEST(SetScores, LargeFontLayoutCutsTheAvailablePoints) {
    ScoringCourse fixture(QuestionsPlan({"Q1"}, {7.5, 0, 0, 0, 0}));
    EXPECT_EQ(fixture.Open().Controls().lblTotalPerfPoints.text, "7.50");
    EXPECT_EQ(
        fixture.Open({.largeFonts = true, .imageLoads = {}}).Controls().lblTotalPerfPoints.text,
        "7");
}

TEST(SetScores, CorrectAnswerTakesTheDefaultPointsOfTheSettings) {
    ScoringCourse fixture(QuestionsPlan(1),
                          {{"PerformanceCorrectChoice", "3"}, {"PerformanceAnyChoice", "1"}});
    SetScoresScreen screen = fixture.Open();
    screen.cmbCorrectClick(3);
    const QuestionRec& question = fixture.course.Questions[1];
    EXPECT_EQ(question.CorrectAnswer, 3);
    EXPECT_EQ(TextsOf(screen.Controls().txtPoints), (test::Strings{"1", "1", "4", "1", "1"}));
    screen.cmbCorrectClick(0);
    EXPECT_EQ(question.CorrectAnswer, 0);
    EXPECT_EQ(TextsOf(screen.Controls().txtPoints), (test::Strings{"1", "1", "1", "1", "1"}));
}

TEST(SetScores, AnonymousQuestionShowsCountsButTakesNoPoints) {
    LogPlan log = QuestionsPlan(2);
    // The last voter decides that the question was polled anonymously.
    log.voters = Voters(4, [](int i) { return Answers{"A", i == 1 ? "" : "X"}; });
    ScoringCourse fixture(log);
    SetScoresScreen screen = fixture.Open();
    screen.lblNextClick();
    const SetScoresControls& c = screen.Controls();
    ASSERT_EQ(screen.CurQuestion(), 2);
    EXPECT_EQ(
        std::tuple(c.lblQuestionDelete.visible, c.lblQuestionDelete.text, c.cmbCorrect.enabled),
        std::tuple(true, "Anonymous Polling Question", false));
    for (const ControlState& box : c.txtPoints) EXPECT_FALSE(box.enabled);
    EXPECT_TRUE(c.lblNum[0].visible);
    EXPECT_TRUE(screen.txtPointsValidate(0, "5"));
    EXPECT_EQ(fixture.course.Questions[2].ChoicePoints[1], 1);
    screen.lblPreviousClick();
    EXPECT_TRUE(c.txtPoints[0].enabled);
}

TEST(SetScores, RefusedInputShowsItsMessageAndKeepsTheOldValue) {
    // An entry gives whether its box took it, and what the box shows afterwards.
    using Entry = std::function<std::pair<bool, std::string>(SetScoresScreen&)>;
    const std::tuple<Entry, const char*, const char*> cases[] = {
        // clang-format off
        {[](SetScoresScreen& s) { return std::pair{s.txtPointsValidate(0, "abc"), s.Controls().txtPoints[0].text}; },
         "[Tallory] Must enter a numberic value for points ", "1"},
        {[](SetScoresScreen& s) { return std::pair{s.txtPerfMaxPointsValidate("ten"), s.Controls().txtPerfMaxPoints.text}; },
         "[Max Points] Not a valid number", "10"},
        {[](SetScoresScreen& s) { return std::pair{s.txtMinResponsesValidate("x"), s.Controls().txtMinResponses.text}; },
         "[Min Responses] Not a valid number", "2"},
        {[](SetScoresScreen& s) { return std::pair{s.txtMinResponsesValidate("4"), s.Controls().txtMinResponses.text}; },
         "[Tallory] Minimum number of required responses (to qualify for points) cannot be "
         "greater than the total number of question(s) available for this session", "2"},
        // clang-format on
    };
    for (const auto& [enter, message, kept] : cases) {
        SCOPED_TRACE(message);
        ScoringCourse fixture(QuestionsPlan(3));
        SetScoresScreen screen = fixture.Open();
        EXPECT_EQ(enter(screen), std::pair(false, std::string(kept)));
        EXPECT_EQ(test::Messages(fixture.host), test::Strings{message});
        const Course& course = fixture.course;
        EXPECT_EQ(std::tuple(course.Questions[1].ChoicePoints[1], course.SessPerformance,
                             course.SessMinReply),
                  std::tuple(1, 10, 2));
    }
}

TEST(SetScores, SessionBoxesTakeNumbersQuietly) {
    ScoringCourse fixture(QuestionsPlan(3));
    SetScoresScreen screen = fixture.Open();
    EXPECT_TRUE(screen.txtMinResponsesValidate("3"));  // all questions, not above them
    EXPECT_EQ(fixture.course.SessMinReply, 3);
    EXPECT_TRUE(screen.txtMinResponsesValidate(" "));
    EXPECT_EQ(fixture.course.SessMinReply, 3);
    EXPECT_TRUE(screen.txtPointsAwardedValidate("0.25"));
    EXPECT_FALSE(screen.txtPointsAwardedValidate("lots"));
    EXPECT_EQ(screen.Controls().txtPointsAwarded.text, ".25");
    EXPECT_TRUE(fixture.host.messages.empty());
    screen.lblNextClick();
    EXPECT_EQ(screen.Controls().lblTotalPoints.text, "3.25");
    // The requirement follows the setting again at the next scoring.
    EXPECT_EQ(screen.Controls().txtMinResponses.text, "2");
}

TEST(SetScores, UntickedCapIsStoredAsMinusOne) {
    ScoringCourse fixture(QuestionsPlan(2));
    SetScoresScreen screen = fixture.Open();
    EXPECT_TRUE(screen.Controls().chkTruncPerf.checked);
    EXPECT_FALSE(screen.chkTruncPerfClick(false));
    EXPECT_FALSE(screen.Controls().txtPerfMaxPoints.enabled);
    EXPECT_EQ(screen.Controls().txtPerfMaxPoints.text, "");
    EXPECT_TRUE(screen.chkTruncPerfClick(true));       // the box takes the focus
    EXPECT_TRUE(screen.txtPerfMaxPointsValidate(""));  // left blank: unticked again
    EXPECT_FALSE(screen.Controls().chkTruncPerf.checked);
    screen.cmdSetClick();
    EXPECT_TRUE(test::BeginsWith(fixture.Log(kLog), "Scoring,  Performance = -1 , Participation"));
}

// Six questions with the requirement at three quarters: 4 of 6, and 3 of the 5 that stay.
TEST(SetScores, DeletingAndRestoringNameTheShiftOfTheRequirement) {
    ScoringCourse fixture(QuestionsPlan(6), {{"ParticipationRequirement", "1"}});
    SetScoresScreen screen = fixture.Open();
    ASSERT_EQ(fixture.course.SessMinReply, 4);
    screen.OptYesClick();
    EXPECT_EQ(test::Messages(fixture.host),
              test::Strings{test::Said("deleting a question shifts the requirement")});
    const SetScoresControls& c = screen.Controls();
    EXPECT_EQ(
        TextsOf(std::array{c.txtQuestionName, c.lblQuestionDelete, c.lblDeleteNo, c.lblNonDeleted}),
        (test::Strings{"Deleted :- 'Q1'", "Question Deleted", "1", "5"}));
    // The question's own controls close; the session's stay open.
    EXPECT_EQ(std::tuple(c.cmbCorrect.enabled, c.txtPoints[0].enabled, c.txtMinResponses.enabled),
              std::tuple(false, false, true));

    screen.OptNoClick();
    ASSERT_EQ(fixture.host.messages.size(), 2u);
    EXPECT_EQ(fixture.host.messages[1].title, "Restoring a Question");
    EXPECT_TRUE(test::BeginsWith(fixture.host.messages[1].text,
                                 "Because you are un-deleting this question and the number of "
                                 "overall questions in your session will increase, \r\nTallory"));
    EXPECT_TRUE(test::Holds(fixture.host.messages[1].text, "from 3 to 4."));
    EXPECT_EQ(c.txtQuestionName.text, "Q1");
}

TEST(SetScores, LastLiveQuestionAsksFirst) {
    for (Answer answer : {Answer::No, Answer::Yes}) {
        ScoringCourse fixture(QuestionsPlan(2));
        SetScoresScreen screen = fixture.Open();
        screen.OptYesClick();  // the first of two: no question asked
        ASSERT_EQ(fixture.host.messages.back().buttons, Buttons::Ok);
        screen.lblNextClick();
        fixture.host.answers = {answer};
        screen.OptYesClick();
        const auto& asked = fixture.host.messages.back();
        EXPECT_EQ(test::Messages(fixture.host).back(),
                  "[Confirm deletion: Last question available in this session.] This is the last "
                  "remaining question in this session. Are you sure you don\xE2\x80\x99t want to "
                  "simply delete the session?");
        EXPECT_EQ(std::tuple(asked.buttons, asked.defaultButton),
                  std::tuple(Buttons::YesNo, Answer::No));
        bool deleted = answer == Answer::Yes;
        EXPECT_EQ(fixture.course.Questions[2].Deleted != 0, deleted);
        EXPECT_EQ(screen.Controls().OptNo.checked, !deleted);
        if (deleted) {
            EXPECT_EQ(fixture.course.SessMinReply, 0);
            EXPECT_EQ(fixture.course.SessParticipation, 0);
        }
    }
}

TEST(SetScores, SetWritesTheLogAndPostsTheColumn) {
    LogPlan log = QuestionsPlan({"Q1", "Q2"}, {});
    log.voters = {{"#A1", "", {"C", "A"}}, {"#B7", "", {"B", "A"}}};
    ScoringCourse fixture(log, {{"PerformanceCorrectChoice", "2"}});
    ASSERT_EQ(fixture.Student("S1").Score[1], 0);  // no points, so no participation either
    SetScoresScreen screen = fixture.Open();
    screen.cmbCorrectClick(3);
    screen.txtQuestionNameChange("Friction");
    screen.lblNextClick();
    EXPECT_TRUE(screen.txtPointsValidate(0, "0.5"));
    screen.lblPreviousClick();
    EXPECT_EQ(screen.Controls().txtQuestionName.text, "Friction");
    int redraws = fixture.grid.screen.redraws;
    screen.cmdSetClick();
    EXPECT_TRUE(screen.WriteSucceeded());
    EXPECT_GT(fixture.grid.screen.redraws, redraws);

    std::string bytes = fixture.Log(kLog);
    for (const char* part :
         {"\"FRICTION\" ,", "Correct Answer, , ,3,", "Response C,    ,   , 1 , 2 ,",
          "Response A,    ,   , 0 , 0 ,, , , , 2 , .5 ,"})
        EXPECT_TRUE(test::Holds(bytes, part));
    // S1 answered C and A: 2 + 0.5 + 1; the stray clicker B and A: 0.5 + 1.
    EXPECT_EQ(std::tuple(fixture.Student("S1").Score[1], fixture.Student("S1").Score[0],
                         fixture.Student("#B7").Score[1]),
              std::tuple(3.5, 3.5, 1.5));
}

TEST(SetScores, FailedWriteKeepsTheOldLogAndPostsWhatItHolds) {
    LogPlan log = QuestionsPlan(1);
    log.voters = {{"#A1", "", {"B"}}};
    ScoringCourse fixture(log, {{"PerformanceCorrectChoice", "2"}});
    std::string before = fixture.Log(kLog);
    SetScoresScreen screen = fixture.Open();
    screen.cmbCorrectClick(2);
    ::chmod(fixture.File(std::string("SessionData/") + kLog).c_str(), 0444);
    screen.cmdSetClick();
    EXPECT_FALSE(screen.WriteSucceeded());
    ASSERT_EQ(fixture.host.messages.size(), 1u);
    EXPECT_TRUE(test::Holds(fixture.host.messages[0].text, kLog));
    EXPECT_EQ(fixture.Log(kLog), before);
    EXPECT_DOUBLE_EQ(fixture.Student("S1").Score[1], 0);  // B earns nothing in the old log
    EXPECT_TRUE(screen.Closed());
}

TEST(SetScores, PicturesOfTheQuestion) {
    ScoringCourse fixture(QuestionsPlan(2));
    fixture.Write("Images/L0809151030_Q1.jpg", "picture");
    fixture.Write("Images/L0809151030_c1.JPG", "chart");
    SetScoresScreen screen = fixture.Open();
    const SetScoresControls& c = screen.Controls();
    EXPECT_EQ(screen.cmdHistogramClick(), fixture.File("Images/L0809151030_c1.JPG"));
    screen.cmdViewScreenShotClick();
    EXPECT_TRUE(c.Image1.visible);
    EXPECT_EQ(c.cmdViewScreenShot.text, "HIDE SCREENSHOT");
    screen.lblNextClick();  // question 2 has neither picture
    EXPECT_EQ(std::tuple(c.Image1.visible, c.cmdViewScreenShot.enabled, c.cmdViewScreenShot.text),
              std::tuple(false, false, "VIEW SCREENSHOT / IMAGE"));
    EXPECT_EQ(screen.cmdHistogramClick(), "");
}

TEST(SetScores, UnsavedEditsAreWhatTheInstructorChanged) {
    const std::tuple<const char*, std::function<void(SetScoresScreen&)>, bool> cases[] = {
        // clang-format off
        {"nothing", [](SetScoresScreen&) {}, false},
        // Showing a deleted question rewrites its name in the box; that is no edit.
        {"walking the questions",
         [](SetScoresScreen& s) { s.lblNextClick(); s.lblNextClick(); s.lblPreviousClick(); },
         false},
        {"the same points again", [](SetScoresScreen& s) { s.txtPointsValidate(0, "1"); }, false},
        {"points", [](SetScoresScreen& s) { s.txtPointsValidate(1, "2"); }, true},
        {"a correct answer", [](SetScoresScreen& s) { s.cmbCorrectClick(3); }, true},
        {"a cap", [](SetScoresScreen& s) { s.chkTruncPerfClick(false); }, true},
        {"participation", [](SetScoresScreen& s) { s.txtPointsAwardedValidate("3"); }, true},
        {"a title typed", [](SetScoresScreen& s) { s.txtQuestionNameChange("Lenses"); }, true},
        {"a deletion", [](SetScoresScreen& s) { s.OptYesClick(); }, true},
        {"a deletion undone", [](SetScoresScreen& s) { s.OptYesClick(); s.OptNoClick(); }, false},
        // clang-format on
    };
    LogPlan plan = test::QuestionsPlan({"Q1", "Q2|Y", "Q3"});
    for (const auto& [what, act, unsaved] : cases) {
        ScoringCourse fixture(plan);
        SetScoresScreen screen = fixture.Open();
        act(screen);
        EXPECT_EQ(screen.HasUnsavedEdits(), unsaved) << what;
    }
}

// ---- The scoring of a session in memory

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
    EXPECT_EQ(std::tuple(CountLiveQuestions(session.course), session.course.SessMinReply,
                         session.course.Questions[2].Deleted, vote.Score[2], session.Total(1)),
              std::tuple(0, 0, kTrue, 7, 2));
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
    EXPECT_EQ(
        std::tuple(course.Questions[1].Anonymous, course.Questions[2].Anonymous,
                   course.Questions[1].ResponseCount[0], course.Questions[2].ResponseCount[0]),
        std::tuple(kTrue, kFalse, 9, 2));
    // The first responded, but earned nothing.
    EXPECT_EQ(std::tuple(session.Total(1), session.Total(2), session.Total(3)),
              std::tuple(0, 1 + 1, 0.5 + 1));
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
        EXPECT_EQ(test::EndingOf([&] { RecomputeSession(session.course); }).number,
                  badAnswer ? kSubscriptOutOfRange : 0);
        const Course& course = session.course;
        EXPECT_EQ(std::tuple(session.Total(1), session.Total(2), course.Votes[2].Score[1]),
                  std::tuple(first, second, 1));
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
