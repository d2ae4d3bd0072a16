#include "logs/SessionLog.h"

#include <sys/stat.h>

#include <optional>

#include "common/Numbers.h"
#include "common/ReadGuard.h"
#include "common/RemoteKey.h"
#include "common/RunTimeError.h"
#include "common/Text.h"
#include "logs/QuestionName.h"
#include "start/Fields.h"

namespace tallory {

namespace {

// Every line after the first is built of one group of six fields per question, from field 3 on.
// The first three fields are the line's label and two fillers (a data line: remote, student,
// session total).
constexpr int kFirstGroupField = 3;
constexpr int kGroupWidth = 6;

// Columns of a group on a data line.
enum VoteColumn {
    kAnswerColumn,
    kPointsColumn,
    kFinalTimeColumn,
    kAttemptsColumn,
    kFirstAnswerColumn,
    kFirstTimeColumn
};

constexpr std::string_view kHeaderFailure = "Error reading log file in LoadQuestion";

// The reader's diagnostics have no audience: this hook is where they go, and it does nothing.
void DebugMessage([[maybe_unused]] std::string_view text) {}

// Number of the question groups of a line whose last field has index `count`: a group counts when
// its first field is there.
int GroupsOfCount(int count) {
    return count < kFirstGroupField ? 0 : (count - kFirstGroupField) / kGroupWidth + 1;
}

int GroupsOf(const Fields& fields) {
    return GroupsOfCount(fields.Count());
}

std::string_view GroupField(const Fields& fields, int question, int column) {
    return fields[kFirstGroupField + kGroupWidth * (question - 1) + column];
}

// Conversions the read cannot go on without: a text that is not a number is a type mismatch, a
// number outside 16 bits an overflow.
double FloatOf(std::string_view text) {
    double value;
    if (!ToDouble(text, value)) throw RunTimeError(kTypeMismatch);
    return value;
}

int16_t CounterOf(double value) {
    int16_t counter;
    if (!RoundToInt16(value, counter)) throw RunTimeError(kOverflow);
    return counter;
}

// A setting of line 1 ("  Performance =  5 "): the number after the first "=", or the whole
// field when there is no "="; the default when the field is missing or holds no number.
double SettingOf(const Fields& fields, int index, double defaultValue) {
    if (!fields.Has(index)) return defaultValue;
    std::string_view text = fields[index];
    size_t equals = text.find('=');
    if (equals != std::string_view::npos) text.remove_prefix(equals + 1);
    double value;
    return ToDouble(text, value) ? value : defaultValue;
}

// The instructor's deletion mark "|Y" (any case) behind a name: removed from the name, and the
// row flagged.
void TakeMarkedName(QuestionRec& row, std::string_view field) {
    row.Deleted = HasDeletionMark(field) ? kTrue : kFalse;
    row.Name = WithoutDeletionMark(field);
}

// The polling application writes either the choice's number or its letter. A letter is looked up
// as a whole in "ABCDE", with case, so "C" is 3, "BC" 2, " C" 0, and an empty field 1.
int16_t CorrectAnswerOf(std::string_view field) {
    if (IsNumeric(field)) return CounterOf(FloatOf(field));
    size_t at = std::string_view("ABCDE").find(field);
    return at == std::string_view::npos ? 0 : static_cast<int16_t>(at + 1);
}

// Line 1: the session's settings and its title.
void ReadSettingsLine(Course& course, const Fields& fields) {
    course.SessPerformance = SettingOf(fields, 1, 0);
    course.SessParticipation = SettingOf(fields, 2, 1);
    course.SessMinReply = CounterOf(SettingOf(fields, 3, 1));
    course.SessMinCorrect = CounterOf(SettingOf(fields, 4, 1));
    TakeMarkedName(course.Questions[0], fields[5]);
}

// Reads the next header line into `fields`; false at the end of the file, which ends the header
// quietly with what it has.
bool NextHeaderLine(LineReader& reader, std::string& line, Fields& fields,
                    std::string_view whereMissing) {
    if (!reader.ReadLine(line)) {
        DebugMessage(whereMissing);
        return false;
    }
    SplitFields(line, fields);
    return true;
}

// Lines 6 to 10: how many voters chose the choice, and what it earns.
void ReadChoiceLine(Course& course, const Fields& fields, int choice) {
    for (int q = 1, groups = GroupsOf(fields); q <= groups; ++q) {
        QuestionRec& question = course.Questions[q];
        if (choice == 1) question.ResponseCount[0] = 0;
        question.ResponseCount[choice] = CounterOf(FloatOf(GroupField(fields, q, 0)));
        question.ChoicePoints[choice] = FloatOf(GroupField(fields, q, 1));
        question.ResponseCount[0] = CounterOf(static_cast<double>(question.ResponseCount[0]) +
                                              question.ResponseCount[choice]);
        question.ChoicePoints[kNoAnswer] = 0;
    }
}

// Lines 1 to 10 after line 1 was read into `line`.
int ReadHeaderLines(Course& course, LineReader& reader, std::string& line) {
    Fields fields(kMaxLogFieldIndex);
    SplitFields(line, fields);
    ReadSettingsLine(course, fields);

    // A log that ends after its settings leaves the question count of the log read before.
    if (!NextHeaderLine(reader, line, fields, "Error reading log file on line 2"))
        return course.NumQuestions;
    int count = 0;
    for (int q = 1, groups = GroupsOf(fields); q <= groups; ++q) {
        ++count;
        TakeMarkedName(course.Questions[count], GroupField(fields, q, 0));
    }

    // Lines 3 to 10 each fill as many questions as they have groups themselves.
    if (!NextHeaderLine(reader, line, fields, "Error reading log file on line 3")) return count;
    for (int q = 1, groups = GroupsOf(fields); q <= groups; ++q)
        course.Questions[q].StartTime = GroupField(fields, q, 0);
    if (!NextHeaderLine(reader, line, fields, "Error reading log file on line 4")) return count;
    for (int q = 1, groups = GroupsOf(fields); q <= groups; ++q)
        course.Questions[q].StopTime = GroupField(fields, q, 0);
    if (!NextHeaderLine(reader, line, fields, "Error reading log file on line 5")) return count;
    for (int q = 1, groups = GroupsOf(fields); q <= groups; ++q)
        course.Questions[q].CorrectAnswer = CorrectAnswerOf(GroupField(fields, q, 0));
    for (int choice = 1; choice <= 5; ++choice) {
        if (!NextHeaderLine(reader, line, fields, "Error reading log file on line 4-9"))
            return count;
        ReadChoiceLine(course, fields, choice);
    }
    return count;
}

// The values of question `q` of a data line from its six fields, `field(0)` to `field(5)`. A value
// that does not convert leaves what the row held before, which is how the letter in the First
// Response column is passed over; so does a count outside 16 bits. `readable` when 8 bytes from
// the start of each number field may be read.
template <bool readable = false, class FieldOf>
void ConvertGroup(VoteSlot& slot, const FieldOf& field) {
    auto keepDouble = [](std::string_view text, double& value) {
        readable ? ToDoubleReadable(text, value) : ToDouble(text, value);
    };
    auto keepInt16 = [](std::string_view text, int16_t& value) {
        readable ? ToInt16Readable(text, value) : ToInt16(text, value);
    };
    slot.Answer = AnswerFromLetter(field(kAnswerColumn));
    keepDouble(field(kPointsColumn), slot.Score);
    keepDouble(field(kFinalTimeColumn), slot.FinalTime);
    keepInt16(field(kAttemptsColumn), slot.Attempts);
    keepInt16(field(kFirstAnswerColumn), slot.FirstAnswer);
    keepDouble(field(kFirstTimeColumn), slot.FirstTime);
}

// A data line's fields straight from the line, for the lines that make up nearly every log: no
// quotes and no fields past the top index. Field i lies between ends[i - 1] + 1 and ends[i].
struct PlainLine {
    std::string_view line;
    uint32_t ends[kMaxLogFieldIndex + 1];
    int count;  // index of the last field, as Fields counts it

    // False for a line only the splitter can take apart.
    bool Split(std::string_view text) {
        line = text;
        const int separators = FindSeparators(text, ends, kMaxLogFieldIndex);
        if (separators < 0) return false;
        // An empty last field is not counted; a line of one empty field has none.
        const uint32_t lastBegin = separators == 0 ? 0 : ends[separators - 1] + 1;
        count = ends[separators] == lastBegin ? separators - 1 : separators;
        return true;
    }

    std::string_view operator[](int index) const {
        if (index > count) return {};
        const uint32_t begin = index == 0 ? 0 : ends[index - 1] + 1;
        return line.substr(begin, ends[index] - begin);
    }

    void ConvertGroups(VoteSlot* slots, int groups) const {
        const char* text = line.data();
        for (int q = 1; q <= groups; ++q) {
            const int first = kFirstGroupField + kGroupWidth * (q - 1);
            const int last = first + kGroupWidth - 1;
            if (last < count && ends[last] + sizeof(uint64_t) <= line.size()) {
                // Every number field of the group has 8 bytes of the line from its start.
                ConvertGroup<true>(slots[q], [&](int column) {
                    const uint32_t begin = ends[first + column - 1] + 1;
                    return std::string_view(text + begin, ends[first + column] - begin);
                });
            } else {
                ConvertGroup(slots[q], [&](int column) { return (*this)[first + column]; });
            }
        }
    }
};

// One data line, split into the caller's `fields` when it needs the splitter, so that a whole log
// reuses one buffer.
void ReadVoteFields(Course& course, std::string_view line, Fields& fields, int& row,
                    int& groupCount) {
    PlainLine plain;
    const bool isPlain = plain.Split(line);
    if (!isPlain) SplitFields(line, fields);
    auto field = [&](int index) { return isPlain ? plain[index] : fields[index]; };
    const int count = isPlain ? plain.count : fields.Count();
    if (count < 0) {  // a blank line takes no row
        --row;
        return;
    }
    const int groups = GroupsOfCount(count);
    VoteRec& vote = course.Votes[row];
    vote.RemoteId = StripLeading(StripLeading(TrimView(field(0)), '#'), '0');
    vote.StudentId = TrimView(field(1));
    if (vote.StudentId.empty()) vote.StudentId = RemoteToStudent(course, vote.RemoteId);
    if (vote.StudentId.empty()) vote.StudentId = "#" + vote.RemoteId;
    if (count < 2) {
        DebugMessage("Skipped " + std::string(line));
        --row;
        return;
    }
    vote.Score[0] = FloatOf(field(2));

    if (groups > 0) {
        VoteSlot* slots = vote.SlotsUpTo(groups);
        if (isPlain) {
            plain.ConvertGroups(slots, groups);
        } else {
            for (int q = 1; q <= groups; ++q) {
                const int first = kFirstGroupField + kGroupWidth * (q - 1);
                ConvertGroup(slots[q], [&](int column) { return fields[first + column]; });
            }
        }
    }
    groupCount = groups;
}

// Data lines from line 11 to the end. `groupCount` keeps the value of the last line that got
// through, so a blank or skipped line still adds a voter once any line was read.
void ReadVoteLines(Course& course, LineReader& reader) {
    Fields fields(kMaxLogFieldIndex);
    std::string_view line;
    int row = 1;
    int groupCount = 0;
    // A run-time error names the file and line by itself: the reader is the file being read.
    while (reader.ReadLine(line)) {
        ReadVoteFields(course, line, fields, row, groupCount);
        if (groupCount > 0) ++course.NumVoters;
        ++row;
    }
}

// Characters from the 1-based position `from`, at most `count`; nothing past the end.
std::string_view Mid(std::string_view text, size_t from, size_t count) {
    return from > text.size() ? std::string_view() : text.substr(from - 1, count);
}

// Keeps what was read of a log for the guard of its next replacement. A log this process read or
// wrote before, and that nobody changed since, is known already: hashing its bytes again would
// give the hash kept then. Should its bytes differ all the same, the guard finds that out before
// it replaces the file.
void RememberLogRead(const std::string& fileName, std::string_view bytes) {
    const std::optional<ReadSnapshot> known = RememberedRead(fileName);
    struct stat info {};
    if (known && ::stat(fileName.c_str(), &info) == 0 && info.st_dev == known->device &&
        info.st_ino == known->inode && info.st_size == known->size &&
        static_cast<int64_t>(bytes.size()) == known->size &&
        static_cast<int64_t>(info.st_mtim.tv_sec) * 1000000000 + info.st_mtim.tv_nsec ==
            known->modifiedNs)
        return;
    RememberRead(fileName, bytes);
}

}  // namespace

void ReadSessionLog(Course& course, const std::string& fileName) {
    course.NumVoters = 0;
    if (fileName.empty()) return;
    LineReader reader(fileName);
    if (!reader.IsOpen()) throw RunTimeError(kFileNotFound, "File " + fileName);
    // The polling application may append to the log: a later replacement checks it is unchanged.
    RememberLogRead(fileName, reader.Text());
    ReadSessionLog(course, reader);
}

void ReadSessionLogText(Course& course, const std::string& fileName, std::string_view text) {
    LineReader reader(fileName, text);
    ReadSessionLog(course, reader);
}

void ReadSessionLog(Course& course, LineReader& reader) {
    course.NumVoters = 0;
    course.NumQuestions = ReadLogHeader(course, reader);
    if (course.NumQuestions > 0) ReadVoteLines(course, reader);
    for (int q = 1; q <= course.NumQuestions; ++q) {
        QuestionRec& question = course.Questions[q];
        question.StartTime = TrimLeadingSpaces(question.StartTime);
        question.StopTime = TrimLeadingSpaces(question.StopTime);
        question.Name = TrimLeadingSpaces(question.Name);
    }
}

int ReadLogHeader(Course& course, LineReader& reader) {
    course.SessPerformance = 0;
    course.SessParticipation = 0;
    course.SessMinReply = 0;
    course.SessMinCorrect = 0;
    // A header that cannot be read, an empty file included, makes a session without questions,
    // and its data lines are not read.
    std::string line;
    try {
        if (reader.ReadLine(line)) return ReadHeaderLines(course, reader, line);
    } catch (const RunTimeError&) {
    }
    DebugMessage(kHeaderFailure);
    return 0;
}

void ReadVoteLine(Course& course, std::string_view line, int& row, int& groupCount) {
    Fields fields(kMaxLogFieldIndex);
    ReadVoteFields(course, line, fields, row, groupCount);
}

int16_t AnswerFromLetter(std::string_view field) {
    // Several letters: the last of A..E in that order wins, and an X (an anonymous response)
    // beats them all.
    int choice = 0;
    bool anonymous = false;
    for (char c : field) {
        char lower = static_cast<char>(c | 0x20);  // folds exactly the letters' upper case
        if (lower >= 'a' && lower <= 'e' && lower - 'a' + 1 > choice) choice = lower - 'a' + 1;
        if (lower == 'x') anonymous = true;
    }
    if (anonymous) return kAnonymousAnswer;
    return choice > 0 ? static_cast<int16_t>(choice) : kNoAnswer;
}

std::string RemoteToStudent(const Course& course, std::string_view remoteId) {
    int row = FindRemoteRow(course, remoteId);
    return row > 0 ? course.RemoteTable[row].StudentId : std::string();
}

std::string StripLeadingHash(std::string_view text) {
    return std::string(StripLeading(text, '#'));
}

std::string StripLeadingZeros(std::string_view text) {
    return std::string(StripLeading(text, '0'));
}

std::string TrimLeadingSpaces(std::string_view text) {
    size_t at = 0;
    while (at < text.size() && text[at] == ' ') ++at;
    // A text whose first non-blank is its last character comes back empty: a question named
    // with one character has no name, and so does not count as a live question.
    if (at + 1 >= text.size()) return std::string();
    return std::string(text.substr(at));
}

std::string SessionDate(std::string_view fileName) {
    std::string date;
    date.append(Mid(fileName, 4, 2)).append("/").append(Mid(fileName, 6, 2)).append("/20");
    date.append(Mid(fileName, 2, 2));
    return date;
}

std::string SessionTime(std::string_view fileName) {
    std::string time(Mid(fileName, 8, 2));
    return time.append(":").append(Mid(fileName, 10, 2));
}

}  // namespace tallory
