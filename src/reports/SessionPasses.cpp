#include "reports/SessionPasses.h"

#include <algorithm>
#include <bit>
#include <cstdint>

#include "common/LineReader.h"
#include "logs/QuestionName.h"
#include "logs/SessionLog.h"
#include "scoring/Grading.h"
#include "scoring/ScreenParts.h"

namespace tallory {

namespace {

// Doubles compare by their bits: 0 and -0 print differently, and a NaN is never the same as
// itself by value.
bool Same(double a, double b) {
    return std::bit_cast<uint64_t>(a) == std::bit_cast<uint64_t>(b);
}

template <size_t N>
bool Same(const std::array<double, N>& a, const std::array<double, N>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), [](double x, double y) { return Same(x, y); });
}

bool Same(const QuestionRec& a, const QuestionRec& b) {
    return a.Name == b.Name && a.StartTime == b.StartTime && a.StopTime == b.StopTime &&
           a.CorrectAnswer == b.CorrectAnswer && a.ResponseCount == b.ResponseCount &&
           Same(a.ChoicePoints, b.ChoicePoints) && Same(a.MaxPoints, b.MaxPoints) &&
           Same(a.AveragePoints, b.AveragePoints) && a.Deleted == b.Deleted &&
           a.Anonymous == b.Anonymous;
}

bool Same(const VoteSlot& a, const VoteSlot& b) {
    return Same(a.Score, b.Score) && Same(a.FinalTime, b.FinalTime) &&
           Same(a.FirstTime, b.FirstTime) && a.Answer == b.Answer &&
           a.FirstAnswer == b.FirstAnswer && a.Attempts == b.Attempts;
}

// Slots 0 up to the last a column touched.
long TouchedSlots(const VoteRec& vote) {
    long count = 0;
    while (count <= kMaxQuestions && vote.Slot(count, "Answer") != nullptr) ++count;
    return count;
}

// Rows never allocated read as the row a table starts with.
template <class T, int Upper>
bool SameRows(const Table<T, Upper>& a, const Table<T, Upper>& b) {
    const long rows = std::max(a.Allocated(), b.Allocated());
    for (long i = 0; i < rows; ++i)
        if (!Same(a[i], b[i])) return false;
    return true;
}

// Room for sessions 1 to NumSessions.
size_t Sessions(const Course& course) {
    return static_cast<size_t>(std::max(course.NumSessions, 0)) + 1;
}

SessionFigures FiguresOf(const Course& course) {
    SessionFigures figures;
    figures.voters = course.NumVoters;
    figures.asked = course.NumQuestions;
    figures.participation = course.SessParticipation;
    figures.maxPoints = course.Questions[0].MaxPoints;
    figures.average = course.Questions[0].AveragePoints;
    return figures;
}

// The lines of a log's header: its settings, the questions' names, times and correct answers, and
// the five Response lines.
constexpr int kHeaderLines = 10;

}  // namespace

bool ReopeningChangesNothing(const Course& course, int session) {
    if (session < 1 || session > course.NumSessions) return false;
    LineReader file(SessionLogPath(course, course.SessionFile[session]));
    if (!file.IsOpen()) return false;
    const std::string_view text = file.Text();
    std::string_view line;
    size_t headEnd = 0;
    for (int i = 0; i < kHeaderLines && file.ReadLine(line); ++i)
        headEnd = static_cast<size_t>(line.data() + line.size() - text.data());
    const std::string_view head = text.substr(0, headEnd);

    // Any tables serve: what the header adds onto them it adds again the second time.
    Course tables;
    LineReader first(file.Path(), head);
    const int asked = ReadLogHeader(tables, first);
    const SessionTables once(tables);
    LineReader second(file.Path(), head);
    // A header that failed may have failed on a total it added up.
    return asked > 0 && ReadLogHeader(tables, second) == asked && once.SameAs(tables);
}

SessionTables::SessionTables(const Course& course)
    : questions_(course.Questions),
      numQuestions_(course.NumQuestions),
      numVoters_(course.NumVoters),
      performance_(course.SessPerformance),
      participation_(course.SessParticipation),
      minReply_(course.SessMinReply),
      minCorrect_(course.SessMinCorrect) {
    const long rows = course.Votes.Allocated();
    size_t idBytes = 0;
    size_t slots = 0;
    for (long i = 0; i < rows; ++i) {
        const VoteRec& vote = course.Votes[i];
        idBytes += vote.StudentId.size() + vote.RemoteId.size();
        slots += static_cast<size_t>(TouchedSlots(vote));
    }
    ids_.reserve(idBytes);
    slots_.reserve(slots);
    idEnds_.reserve(2 * static_cast<size_t>(rows));
    slotEnds_.reserve(static_cast<size_t>(rows));
    for (long i = 0; i < rows; ++i) {
        const VoteRec& vote = course.Votes[i];
        ids_ += vote.StudentId;
        idEnds_.push_back(ids_.size());
        ids_ += vote.RemoteId;
        idEnds_.push_back(ids_.size());
        for (long q = 0, touched = TouchedSlots(vote); q < touched; ++q)
            slots_.push_back(*vote.Slot(q, "Answer"));
        slotEnds_.push_back(slots_.size());
    }
}

// A row never allocated, and a slot no column touched, read as the ones a table starts with.
bool SessionTables::SameVotes(const Course& course) const {
    const long kept = static_cast<long>(slotEnds_.size());
    const long rows = std::max(kept, course.Votes.Allocated());
    for (long i = 0; i < rows; ++i) {
        const VoteRec& vote = course.Votes[i];
        std::string_view studentId, remoteId;
        size_t slotBegin = 0, slotEnd = 0;
        if (i < kept) {
            const size_t idBegin = i == 0 ? 0 : idEnds_[2 * i - 1];
            studentId = std::string_view(ids_).substr(idBegin, idEnds_[2 * i] - idBegin);
            remoteId =
                std::string_view(ids_).substr(idEnds_[2 * i], idEnds_[2 * i + 1] - idEnds_[2 * i]);
            slotBegin = i == 0 ? 0 : slotEnds_[i - 1];
            slotEnd = slotEnds_[i];
        }
        if (vote.StudentId != studentId || vote.RemoteId != remoteId) return false;
        const long keptSlots = static_cast<long>(slotEnd - slotBegin);
        const long slots = std::max(keptSlots, TouchedSlots(vote));
        for (long q = 0; q < slots; ++q) {
            const VoteSlot* now = vote.Slot(q, "Answer");
            const VoteSlot& before = q < keptSlots ? slots_[slotBegin + q] : kUntouchedSlot;
            if (!Same(now ? *now : kUntouchedSlot, before)) return false;
        }
    }
    return true;
}

bool SessionTables::SameAs(const Course& course) const {
    return numQuestions_ == course.NumQuestions && numVoters_ == course.NumVoters &&
           Same(performance_, course.SessPerformance) &&
           Same(participation_, course.SessParticipation) && minReply_ == course.SessMinReply &&
           minCorrect_ == course.SessMinCorrect && SameRows(questions_, course.Questions) &&
           SameVotes(course);
}

void SessionPasses::Walk(Course& course, PassRule rule, const BeforeOpening& before,
                         const Opened& opened) {
    const bool fromStart = start_ && start_->SameAs(course);
    if (fromStart) {
        auto kept = kept_.find(rule);
        if (kept != kept_.end() && kept->second.size() == Sessions(course)) {
            Replay(kept->second, before, opened);
            return;
        }
    } else {
        start_.emplace(course);
        kept_.clear();
    }
    PassFigures figures = Read(course, rule, before, opened);
    if (!start_->SameAs(course)) {
        start_.reset();
        kept_.clear();
        return;
    }
    const bool openedEvery = std::all_of(figures.begin() + 1, figures.end(),
                                         [](const auto& session) { return session.has_value(); });
    if (openedEvery) kept_[PassRule::Every] = figures;
    kept_[rule] = std::move(figures);
}

void SessionPasses::StartWalk(const Course& course) {
    start_.emplace(course);
    kept_.clear();
    walk_.assign(Sessions(course), std::nullopt);
    walkOpened_ = 0;
    walkTitlesLive_ = IsLiveQuestion(course.Questions[0]);
}

void SessionPasses::WalkOpened(const Course& course, int session) {
    if (walkOpened_ < 0 || session != walkOpened_ + 1 || walk_[session]) {
        walkOpened_ = -1;
        return;
    }
    walkOpened_ = session;
    walk_[session] = FiguresOf(course);
    // The title the next session of a pass would be tested on.
    if (session < course.NumSessions && !IsLiveQuestion(course.Questions[0]))
        walkTitlesLive_ = false;
}

void SessionPasses::FinishWalk(const Course& course) {
    const bool pass = walkOpened_ == course.NumSessions && walk_.size() == Sessions(course);
    if (!pass || !start_ || !start_->SameAs(course)) {
        start_.reset();
        kept_.clear();
    } else {
        if (walkTitlesLive_) kept_[PassRule::WhileTitleLive] = walk_;
        kept_[PassRule::Every] = std::move(walk_);
    }
    walk_.clear();
}

void SessionPasses::Forget() {
    start_.reset();
    kept_.clear();
}

void SessionPasses::Replay(const PassFigures& kept, const BeforeOpening& before,
                           const Opened& opened) const {
    for (size_t i = 1; i < kept.size(); ++i) {
        if (!kept[i]) continue;
        before(static_cast<int>(i));
        opened(static_cast<int>(i), *kept[i]);
    }
}

SessionPasses::PassFigures SessionPasses::Read(Course& course, PassRule rule,
                                               const BeforeOpening& before, const Opened& opened) {
    ++passesRead_;
    const int count = course.NumSessions;
    PassFigures figures(Sessions(course));
    for (int i = 1; i <= count; ++i) {
        // The tables hold the session read last, so the test looks at the one before.
        if (rule == PassRule::WhileTitleLive && !IsLiveQuestion(course.Questions[0])) continue;
        before(i);
        OpenSession(course, i);
        figures[i] = FiguresOf(course);
        opened(i, *figures[i]);
    }
    return figures;
}

}  // namespace tallory
