#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "common/Course.h"

namespace tallory {

// The tables an opening of a session reads and leaves behind: Questions, Votes and the session
// values. Opening a session overwrites only part of them (a short line keeps what an earlier log
// left), so what an opening gives can depend on every session opened before it; two openings of
// the same log from equal tables give equal tables.
class SessionTables {
  public:
    explicit SessionTables(const Course& course);
    // Whether the course's tables hold exactly these values, bit for bit.
    bool SameAs(const Course& course) const;

  private:
    bool SameVotes(const Course& course) const;

    Table<QuestionRec, kMaxQuestions> questions_;
    // The voters' rows laid end to end, in a few blocks rather than a few thousand: a copy held
    // while every page is written would otherwise sit among the pages' own memory.
    std::string ids_;               // each row's StudentId then RemoteId
    std::vector<size_t> idEnds_;    // two per row
    std::vector<VoteSlot> slots_;   // each row's touched slots
    std::vector<size_t> slotEnds_;  // one per row
    int numQuestions_;
    int numVoters_;
    double performance_;
    double participation_;
    int16_t minReply_;
    int16_t minCorrect_;
};

// What the term pages show of a session just opened.
struct SessionFigures {
    int voters = 0;
    int asked = 0;
    double participation = 0;
    double maxPoints = 0;  // the scored performance maximum
    double average = 0;    // the class average
};

// Whether opening session `session` again, right after it was opened, leaves every table as the
// first opening left it, so that the pages of that session may share one opening. A log's data
// lines and its scoring overwrite whatever they read; its header does too, but for a response
// total that a Response A line shorter than a later Response line leaves to be added onto what
// the tables held. The header is read twice over tables of its own to find out; false whenever
// that cannot tell, or the log cannot be read.
bool ReopeningChangesNothing(const Course& course, int session);

// Which sessions a term page's pass over the course opens.
enum class PassRule {
    // A session is passed over while the tables hold a title that fails the question's live
    // test: once such a title is read, no later session of the pass is opened.
    WhileTitleLive,
    Every,
};

// The passes of the term pages over the sessions, 1 to NumSessions. Each page opens the sessions
// once or twice in turn; a pass that ends on the very tables it started from leaves the course as
// it found it, so the next pass by the same rule from those tables would open the same logs from
// the same tables and see the same figures. Such a pass is kept and its figures are given again
// without reading the logs; any other pass reads them.
class SessionPasses {
  public:
    using BeforeOpening = std::function<void(int session)>;
    using Opened = std::function<void(int session, const SessionFigures& figures)>;

    // Calls `before(i)` then `opened(i, figures)` for every session i the rule opens, in order.
    void Walk(Course& course, PassRule rule, const BeforeOpening& before, const Opened& opened);

    // The report's own walk over the sessions, ahead of the term pages, which opens each for its
    // pages: StartWalk before it, WalkOpened each time it opened a session, FinishWalk after it.
    // When it opened sessions 1 to NumSessions once each, in turn, and ended on the tables it
    // started from, it was a pass by rule Every (and by WhileTitleLive, if every title it read
    // before the last passed the live test), and is kept as one.
    void StartWalk(const Course& course);
    void WalkOpened(const Course& course, int session);
    void FinishWalk(const Course& course);

    // Lets go of the kept passes and the tables they started on, once no pass is to come.
    void Forget();

    // How many passes read the logs: for the benchmark's doubts and for tests.
    int passesRead() const { return passesRead_; }

  private:
    // The figures of the sessions one pass opened, by session; none for those it passed over.
    using PassFigures = std::vector<std::optional<SessionFigures>>;

    void Replay(const PassFigures& kept, const BeforeOpening& before, const Opened& opened) const;
    PassFigures Read(Course& course, PassRule rule, const BeforeOpening& before,
                     const Opened& opened);

    // The tables the kept passes started and ended on.
    std::optional<SessionTables> start_;
    std::map<PassRule, PassFigures> kept_;
    int passesRead_ = 0;

    // The report's walk while it goes on.
    PassFigures walk_;
    int walkOpened_ = 0;  // the sessions opened in turn so far; -1 once out of turn
    bool walkTitlesLive_ = false;
};

}  // namespace tallory
