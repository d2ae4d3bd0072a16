#pragma once

#include <functional>
#include <map>
#include <optional>
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
    Table<QuestionRec, kMaxQuestions> questions_;
    Table<VoteRec, kMaxVoters> votes_;
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
};

}  // namespace tallory
