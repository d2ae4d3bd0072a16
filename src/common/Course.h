#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "common/Table.h"

namespace tallory {

// Bounds of the course tables. Counters are held in int but never pass these.
constexpr int kMaxStudents = 4000;
constexpr int kMaxRoster = 4000;
constexpr int kMaxRemotes = 4000;
constexpr int kMaxVoters = 4000;
constexpr int kMaxSessions = 99;
constexpr int kSessionTableUpper = 99;
constexpr int kMaxQuestions = 1000;
constexpr int kMaxLogFieldIndex = 999;
constexpr int kMaxParams = 99;

// Answer codes of a vote: 1..5 are choices A..E.
constexpr int16_t kNoAnswer = 6;
constexpr int16_t kAnonymousAnswer = 7;

// Booleans in records are -1 for true, as the log writer's test "Deleted = -1" relies on.
constexpr int16_t kTrue = -1;
constexpr int16_t kFalse = 0;

struct ParamRec {
    std::string Key;
    std::string Value;
    std::string Note;
};

struct RemoteRec {
    std::string StudentId;
    std::string RemoteId;
};

struct RosterRec {
    std::string StudentId;
    std::string RemoteId;
    std::string FirstName;
    std::string LastName;
    int16_t MatchScore = 0;
    std::string Extra;
};

struct QuestionRec {
    std::string Name;
    std::string StartTime;
    std::string StopTime;
    int16_t CorrectAnswer = 0;
    std::array<int16_t, 7> ResponseCount{};
    std::array<double, 7> ChoicePoints{};
    double MaxPoints = 0;
    double AveragePoints = 0;
    int16_t Deleted = kFalse;
    int16_t Anonymous = kFalse;
};

// One question's values for one voter.
struct VoteSlot {
    double Score = 0;
    double FinalTime = 0;
    double FirstTime = 0;
    int16_t Answer = 0;
    int16_t FirstAnswer = 0;
    int16_t Attempts = 0;
};

// What a question no column has touched reads as.
inline constexpr VoteSlot kUntouchedSlot{};

class VoteRec;

// One per-question value of a voter, for questions 0..kMaxQuestions, read and written as a table
// of its own (vote.Answer[q]); the values live in the voter's slots, one per question.
template <class T, T VoteSlot::*Member>
class VoteColumn {
  public:
    VoteColumn(VoteRec* owner, const char* name) : owner_(owner), name_(name) {}
    VoteColumn(const VoteColumn&) = delete;
    VoteColumn& operator=(const VoteColumn&) = delete;

    inline T& operator[](long index);
    inline const T& operator[](long index) const;

  private:
    VoteRec* owner_;
    const char* name_;
};

// One voter of the session last read. The per-question values grow as questions are touched and
// are never cleared, so a short data line keeps what an earlier log left in the later questions.
// They are kept question by question, the six values of a question side by side, as the log
// reader and the scoring go through them.
class VoteRec {
  public:
    std::string StudentId;
    std::string RemoteId;
    VoteColumn<int16_t, &VoteSlot::Answer> Answer{this, "Answer"};
    VoteColumn<double, &VoteSlot::FinalTime> FinalTime{this, "FinalTime"};
    VoteColumn<double, &VoteSlot::FirstTime> FirstTime{this, "FirstTime"};
    VoteColumn<int16_t, &VoteSlot::FirstAnswer> FirstAnswer{this, "FirstAnswer"};
    VoteColumn<int16_t, &VoteSlot::Attempts> Attempts{this, "Attempts"};
    VoteColumn<double, &VoteSlot::Score> Score{this, "Score"};

    VoteRec() = default;
    // The columns stay with their own voter: only the values are copied or moved.
    VoteRec(const VoteRec& other)
        : StudentId(other.StudentId), RemoteId(other.RemoteId), slots_(other.slots_) {}
    VoteRec(VoteRec&& other) noexcept
        : StudentId(std::move(other.StudentId)),
          RemoteId(std::move(other.RemoteId)),
          slots_(std::move(other.slots_)) {}
    VoteRec& operator=(const VoteRec& other) {
        StudentId = other.StudentId;
        RemoteId = other.RemoteId;
        slots_ = other.slots_;
        return *this;
    }
    VoteRec& operator=(VoteRec&& other) noexcept {
        StudentId = std::move(other.StudentId);
        RemoteId = std::move(other.RemoteId);
        slots_ = std::move(other.slots_);
        return *this;
    }

    // Slots 0 to `last` as one array, as touching question `last` of every column would leave
    // them; an index past the bounds is run-time error 9 under the name given.
    VoteSlot* SlotsUpTo(long last, const char* name = "Answer") {
        if (last < 0 || last > kMaxQuestions) CheckSubscript(last, 0, kMaxQuestions, name);
        if (static_cast<size_t>(last) >= slots_.size()) slots_.resize(last + 1);
        return slots_.data();
    }
    // The slot of a question, or nullptr when no column has touched it yet.
    const VoteSlot* Slot(long index, const char* name) const {
        if (index < 0 || index > kMaxQuestions) CheckSubscript(index, 0, kMaxQuestions, name);
        return static_cast<size_t>(index) < slots_.size() ? &slots_[index] : nullptr;
    }

  private:
    std::vector<VoteSlot> slots_;
};

template <class T, T VoteSlot::*Member>
T& VoteColumn<T, Member>::operator[](long index) {
    return owner_->SlotsUpTo(index, name_)[index].*Member;
}

template <class T, T VoteSlot::*Member>
const T& VoteColumn<T, Member>::operator[](long index) const {
    const VoteSlot* slot = static_cast<const VoteRec*>(owner_)->Slot(index, name_);
    if (slot == nullptr) return kUntouchedSlot.*Member;
    return slot->*Member;
}

struct StudentRec {
    std::string StudentId;
    std::string RemoteId;
    std::array<double, kSessionTableUpper + 1> Score{};
    std::array<int16_t, kSessionTableUpper + 1> Present{};
};

struct MultiRemoteRec {
    std::string Student;
    std::string Clickers;
    std::string Sessions;
};

// Everything the program knows about the open course. One instance lives for the run; tests make
// their own. Tables keep their bounds (0..Upper) and their row 0 conventions.
struct Course {
    std::string AppPath;           // the course folder, without a trailing separator
    std::string ProgramFolder;     // the folder the program was started from (Classes\Options.csv)
    std::string CourseFolderName;  // last component of AppPath, for reports

    // Settings (Config.csv): rows 1..NumParams.
    Table<ParamRec, kMaxParams> Params{"Params"};
    int NumParams = 0;

    // Registrations (RemoteID.csv): rows 1..NumRemotes.
    Table<RemoteRec, kMaxRemotes> RemoteTable{"RemoteTable"};
    Table<RemoteRec, kMaxRemotes> RemoteRaw{"RemoteRaw"};
    int NumRemotes = 0;
    int NumNewRemotes = 0;
    bool ClickerCheckStarted = false;
    // Look-up of the first row for a remote in normal form; rebuilt when RemoteIndexValid is false.
    // Whoever changes RemoteTable sets RemoteIndexValid to false.
    mutable std::unordered_map<std::string, int> RemoteIndex;
    mutable bool RemoteIndexValid = false;

    // Roster: rows 0..NumRoster-1; RosterIDs rows 1..NumRosterIDs sorted.
    Table<RosterRec, kMaxRoster> Roster{"Roster"};
    int NumRoster = 0;
    Table<std::string, kMaxRoster> RosterIDs{"RosterIDs"};
    int NumRosterIDs = 0;
    // Look-up of the first roster row by trimmed upper-case ID.
    std::unordered_map<std::string, int> RosterIndex;
    // The columns of the names in class.txt, found when the course opened; -1 while unknown.
    int WebCTLastCol = -1;
    int WebCTFirstCol = -1;
    int WebCTUserCol = -1;

    // The session last read: Questions rows 0..NumQuestions, Votes rows 1..NumVoters.
    Table<QuestionRec, kMaxQuestions> Questions{"Questions"};
    Table<VoteRec, kMaxVoters> Votes{"Votes"};
    int NumQuestions = 0;
    int NumVoters = 0;
    double SessPerformance = 0;
    double SessParticipation = 1;
    int16_t SessMinReply = 1;
    int16_t SessMinCorrect = 1;

    // All sessions: Students rows 1..NumStudents, sessions 1..NumSessions.
    Table<StudentRec, kMaxStudents> Students{"Students"};
    int NumStudents = 0;
    int NumSessions = 0;
    std::array<std::string, kSessionTableUpper + 1> SessionFile;
    std::array<std::string, kSessionTableUpper + 1> SessionTitle;
    std::array<int16_t, kSessionTableUpper + 1> ExportSel{};
    // Look-up of the first student row by trimmed upper-case ID, kept by the session store.
    std::unordered_map<std::string, int> StudentIndex;

    // Warnings of the current load about students with several clickers in one session.
    Table<MultiRemoteRec, kMaxStudents> MultiRemote{"MultiRemote"};
    std::string MultiRemoteText;

    // How the report pages show a student (0 to 4); kept from one report run to the next.
    int16_t ReportDisplayMode = 0;

    // The session chosen on the main window for its edit or scoring screen.
    int CurrentSession = 0;
    std::string CurrentLogFile;
};

}  // namespace tallory
