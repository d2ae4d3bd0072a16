#include "scoring/Grading.h"

#include <array>
#include <cstdint>
#include <limits>
#include <vector>

#include "common/Numbers.h"
#include "common/RunTimeError.h"
#include "common/Text.h"
#include "logs/SessionLog.h"
#include "scoring/ScreenParts.h"
#include "start/Settings.h"

namespace tallory {

namespace {

// What the available points of a session become while no live question has any, so that the
// percentages shown later never divide by zero.
constexpr double kNoPointsYet = 1E-10;

[[noreturn, gnu::noinline]] void CounterOverflow(const char* what) {
    throw RunTimeError(kOverflow, std::string("Counter ") + what);
}

// Counters are 16-bit: passing that range is an overflow that ends the run, never a wrap.
inline void Raise(int16_t& counter, int amount, const char* what) {
    int raised = counter + amount;
    if (raised < INT16_MIN || raised > INT16_MAX) [[unlikely]]
        CounterOverflow(what);
    counter = static_cast<int16_t>(raised);
}

// Which of the rows 1..NumQuestions are scored; a question that is not gets its Deleted flag.
std::vector<char> MarkLiveQuestions(Course& course) {
    std::vector<char> live(course.NumQuestions + 1, 0);
    for (int q = 1; q <= course.NumQuestions; ++q) {
        QuestionRec& question = course.Questions[q];
        live[q] = IsLiveQuestion(question);
        if (!live[q]) question.Deleted = kTrue;
    }
    return live;
}

// Each live question's best choice, and their sum: the session's available performance points,
// held at the session's cap.
void SumAvailablePoints(Course& course, const std::vector<char>& live) {
    QuestionRec& session = course.Questions[0];
    for (int q = 1; q <= course.NumQuestions; ++q) {
        if (!live[q]) continue;
        QuestionRec& question = course.Questions[q];
        question.AveragePoints = 0;
        question.MaxPoints = 0;
        for (int i = 1; i <= 5; ++i)
            if (question.ChoicePoints[i] > question.MaxPoints)
                question.MaxPoints = question.ChoicePoints[i];
        question.ResponseCount[kNoAnswer] = 0;
        session.MaxPoints += question.MaxPoints;
        if (session.MaxPoints == 0) session.MaxPoints = kNoPointsYet;
    }
    if (course.SessPerformance >= 0 && session.MaxPoints > course.SessPerformance)
        session.MaxPoints = course.SessPerformance;
}

// Rows 0 to `last` of a table as one array. Touching the last row allocates the rows before it,
// as touching each of them in turn would, so the values read and written stay the same.
template <class T, int Upper>
T* RowsUpTo(Table<T, Upper>& table, int last) {
    table[last];
    return &table[0];
}

// What each answer 0..6 of a live question earns, and adds to the question's average: its points
// divided by the number of voters, worked out once per question rather than once per voter, to the
// same double. The question's average and anonymity are kept here while the voters are scored, in
// the same order of additions, and written back to the question at the end.
struct LiveQuestion {
    int row;
    std::array<double, kNoAnswer + 1> points;
    std::array<double, kNoAnswer + 1> shares;
    double average;
    int16_t anonymous;  // the Anonymous flag the last voter left; unchanged before any voter
};

// One voter's session points: the final answers on live questions, held at the cap after every
// question, then the participation points, which the cap does not hold.
void ScoreVoter(const Course& course, VoteRec& vote, std::vector<LiveQuestion>& live) {
    // No cap is a cap nothing passes.
    const double cap = course.SessPerformance >= 0 ? course.SessPerformance
                                                   : std::numeric_limits<double>::infinity();
    VoteSlot* slots = vote.SlotsUpTo(course.NumQuestions);
    double total = 0;
    // At most one of each per question, and there are fewer than 16 bits' worth of questions.
    static_assert(kMaxQuestions <= INT16_MAX);
    int responses = 0;
    int earned = 0;
    for (LiveQuestion& question : live) {
        VoteSlot& slot = slots[question.row];
        const int answer = slot.Answer;
        if (static_cast<unsigned>(answer) > static_cast<unsigned>(kNoAnswer)) [[unlikely]] {
            if (answer != kAnonymousAnswer) {
                slots[0].Score = total;  // what the voter had when the run stopped
                CheckSubscript(answer, 0, kNoAnswer, "ChoicePoints");
            }
            // Nobody may see an anonymous answer: it counts as a response and earns nothing.
            ++responses;
            question.anonymous = kTrue;
            continue;
        }
        const double points = question.points[answer];
        question.average += question.shares[answer];
        slot.Score = points;
        total += points;
        total = cap < total ? cap : total;
        earned += points > 0;
        // A choice A to E is a response; no answer (6) and a row the log never filled (0) are not.
        responses += answer >= 1 && answer < kNoAnswer;
        question.anonymous = kFalse;
    }
    if (responses >= course.SessMinReply && earned >= course.SessMinCorrect)
        total += course.SessParticipation;
    slots[0].Score = total;
}

// ResponseCount[0] of a question with per-voter answers becomes the sum of its choices; an
// anonymous question keeps the sum its log gave.
void TotalResponseCounts(Course& course, const std::vector<char>& live) {
    for (int q = 1; q <= course.NumQuestions; ++q) {
        QuestionRec& question = course.Questions[q];
        if (question.Anonymous != kFalse) continue;
        question.ResponseCount[0] = 0;
        if (!live[q]) continue;
        for (int i = 1; i <= kNoAnswer; ++i)
            Raise(question.ResponseCount[0], question.ResponseCount[i], "ResponseCount");
    }
}

}  // namespace

int CountLiveQuestions(const Course& course) {
    int count = 0;
    for (int q = 1; q <= course.NumQuestions; ++q) {
        const QuestionRec& question = course.Questions[q];
        if (!TrimView(question.Name).empty() && question.Deleted == kFalse) ++count;
    }
    return count;
}

int16_t RequiredResponses(const Course& course) {
    const int live = CountLiveQuestions(course);
    if (live <= 0) return 0;
    std::string setting = GetParam(course, kParticipationSetting);
    int16_t rule;
    if (!RoundToInt16(LeadingNumber(setting), rule))
        throw RunTimeError(kOverflow, "Setting ParticipationRequirement = " + setting);
    switch (rule) {
        case 0:
            return static_cast<int16_t>(live - 1);  // all but one
        case 2:
            return static_cast<int16_t>(live / 2);  // half
        case 3:
            return static_cast<int16_t>(live);  // all
        case 4:
            return 1;  // any one
        default:
            return static_cast<int16_t>(Int(0.75 * live));  // three quarters
    }
}

void SetRequiredResponses(Course& course) {
    course.SessMinReply = RequiredResponses(course);
}

double TotalPointsAvailable(const Course& course) {
    const double maximum = course.Questions[0].MaxPoints;
    return Int(maximum * 100 + course.SessParticipation * 100 + 0.5) / 100;
}

void RecomputeSession(Course& course) {
    course.Questions[0].MaxPoints = 0;
    // The requirement in force always follows from the setting, whatever line 1 of the log says.
    SetRequiredResponses(course);
    const std::vector<char> live = MarkLiveQuestions(course);
    SumAvailablePoints(course, live);

    QuestionRec* questions = RowsUpTo(course.Questions, course.NumQuestions);
    std::vector<LiveQuestion> liveQuestions;
    for (int q = 1; q <= course.NumQuestions; ++q) {
        if (!live[q]) continue;
        const QuestionRec& question = questions[q];
        LiveQuestion& entry = liveQuestions.emplace_back();
        entry.row = q;
        for (int answer = 0; answer <= kNoAnswer; ++answer) {
            entry.points[answer] = question.ChoicePoints[answer];
            entry.shares[answer] = question.ChoicePoints[answer] / course.NumVoters;
        }
        entry.average = question.AveragePoints;
        entry.anonymous = question.Anonymous;
    }
    // The questions get their averages and flags back however the scoring ends, as if they had
    // been written voter by voter.
    auto writeBack = [&] {
        for (const LiveQuestion& entry : liveQuestions) {
            questions[entry.row].AveragePoints = entry.average;
            questions[entry.row].Anonymous = entry.anonymous;
        }
    };
    double classSum = 0;
    try {
        for (int r = 1; r <= course.NumVoters; ++r) {
            VoteRec& vote = course.Votes[r];
            ScoreVoter(course, vote, liveQuestions);
            classSum += vote.Score[0];
        }
    } catch (...) {
        writeBack();
        throw;
    }
    writeBack();
    course.Questions[0].AveragePoints = course.NumVoters > 0 ? classSum / course.NumVoters : 0;
    TotalResponseCounts(course, live);
}

void OpenSessionLog(Course& course, const std::string& path, Scoring scoring) {
    ReadSessionLog(course, path);
    if (scoring == Scoring::Scored) RecomputeSession(course);
}

void OpenSession(Course& course, int session) {
    CheckSubscript(session, 0, kSessionTableUpper, "SessionFile");
    OpenSessionLog(course, SessionLogPath(course, course.SessionFile[session]));
}

}  // namespace tallory
