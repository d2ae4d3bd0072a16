#include "logs/SessionLogWriter.h"

#include <array>
#include <exception>
#include <utility>
#include <vector>

#include "common/AtomicFile.h"
#include "common/LinePrinter.h"
#include "common/RemoteKey.h"
#include "common/RunTimeError.h"
#include "common/Text.h"
#include "logs/QuestionName.h"
#include "logs/SessionLog.h"
#include "start/Fields.h"

namespace tallory {

namespace {

// Values of lines 3 to 5 are cut to this length.
constexpr size_t kHeaderValueWidth = 15;
// A remote ID of this length is written without the student ID column.
constexpr size_t kLongRemoteLength = 12;
// What a voter's RemoteId is set to when the clicker's lines are to be dropped.
constexpr std::string_view kDeletedRemote = "Delete";

constexpr std::string_view kGroupFillers = ", , , ,";

// The printed form of an answer code. An empty First Response becomes " ", no answer prints
// nothing. Code 7 has no label: only an anonymous question prints "X", for any other question
// that code fails the write.
std::string_view AnswerLabel(int code) {
    static constexpr std::string_view kLabels[] = {" ", "A", "B", "C", "D", "E", ""};
    if (code < 0 || code > kNoAnswer)
        throw RunTimeError(kSubscriptOutOfRange, "answer code " + std::to_string(code));
    return kLabels[code];
}

bool IsAnonymous(const QuestionRec& question) {
    return question.Anonymous != kFalse;
}

void WriteSettingsLine(Course& course, LinePrinter& out) {
    // The correct-answer requirement does not survive a rewrite: the file always holds 0.
    course.SessMinCorrect = 0;
    out.NewLine()
        .Text("Scoring,  Performance = ")
        .Number(course.SessPerformance)
        .Text(", Participation = ")
        .Number(course.SessParticipation)
        .Text(", Min Reply = ")
        .Number(course.SessMinReply)
        .Text(", Min Correct = ")
        .Number(course.SessMinCorrect)
        .Text(",\"")
        .Text(course.Questions[0].Name)
        .Text("\"");
}

void WriteNameLine(Course& course, LinePrinter& out) {
    out.NewLine().Text("Question, ,");
    for (int q = 1; q <= course.NumQuestions; ++q) {
        QuestionRec& question = course.Questions[q];
        question.Name = NormaliseQuestionName(question.Name);
        out.Text(" ,\"").Text(question.Name);
        if (question.Deleted == kTrue) out.Text("|Y");
        out.Text("\" ,Score   ,  Final Answer Time, Number of Attempts, First Response,  Time ");
    }
}

// Lines 3 to 5: one value per question in the first field of its group.
template <class ValueOf>
void WriteValueLine(const Course& course, LinePrinter& out, std::string_view label,
                    ValueOf valueOf) {
    out.NewLine().Text(label);
    for (int q = 1; q <= course.NumQuestions; ++q) {
        std::string value = valueOf(course.Questions[q]);
        out.Text(" ,").Text(Left(value, kHeaderValueWidth)).Text(",").Text(kGroupFillers);
    }
}

// How many voters chose each choice of each question, from one walk over the voters. A count
// keeps to 16 bits as the log does.
std::vector<std::array<int16_t, 6>> CountAnswers(Course& course) {
    std::vector<std::array<int, 6>> counts(course.NumQuestions + 1);
    for (int r = 1; r <= course.NumVoters; ++r) {
        const VoteSlot* slots = course.Votes[r].SlotsUpTo(course.NumQuestions);
        for (int q = 1; q <= course.NumQuestions; ++q) {
            const int16_t answer = slots[q].Answer;
            if (answer >= 1 && answer <= 5) ++counts[q][answer];
        }
    }
    std::vector<std::array<int16_t, 6>> narrow(counts.size());
    for (size_t q = 0; q < counts.size(); ++q)
        for (int choice = 1; choice <= 5; ++choice)
            narrow[q][choice] = static_cast<int16_t>(counts[q][choice]);
    return narrow;
}

// Lines 6 to 10. Counts are taken anew from the votes, except on an anonymous question, where
// no per-voter answers exist: its counts stand as read and its choices earn nothing.
void WriteChoiceLines(Course& course, LinePrinter& out) {
    static constexpr std::string_view kLetters = "ABCDE";
    const std::vector<std::array<int16_t, 6>> counts = CountAnswers(course);
    for (int choice = 1; choice <= 5; ++choice) {
        out.NewLine().Text("Response ").Text(kLetters.substr(choice - 1, 1)).Text(",    ,   ,");
        for (int q = 1; q <= course.NumQuestions; ++q) {
            QuestionRec& question = course.Questions[q];
            if (IsAnonymous(question)) {
                question.ChoicePoints[choice] = 0;
                out.Number(question.ResponseCount[choice]).Text(",").Text("0");
            } else {
                question.ResponseCount[choice] = counts[q][choice];
                out.Number(question.ResponseCount[choice])
                    .Text(",")
                    .Number(question.ChoicePoints[choice]);
            }
            out.Text(",").Text(kGroupFillers);
        }
    }
}

// The voter's file total, from the choices alone. It is not the score (every reader recomputes
// that): deletions, participation and the cap play no part, and an anonymous answer wipes the
// running total.
void RedoFileTotal(const Course& course, VoteRec& vote) {
    vote.Score[0] = 0;
    for (int q = 1; q <= course.NumQuestions; ++q) {
        int16_t answer = vote.Answer[q];
        if (answer == kAnonymousAnswer) {
            vote.Score[q] = 0;
            vote.Score[0] = 0;
        } else {
            vote.Score[q] = ChoicePointsOf(course.Questions[q], answer);
            vote.Score[0] += vote.Score[q];
        }
    }
}

// The student registered to the voter's clicker is the voter's own (any case).
bool RegisteredOwner(const Course& course, const VoteRec& vote) {
    const int row = FindRemoteRow(course, vote.RemoteId);
    return SameText(row > 0 ? std::string_view(course.RemoteTable[row].StudentId) : "",
                    vote.StudentId);
}

void WriteVoterLine(const Course& course, LinePrinter& out, VoteRec& vote) {
    // Nearly every remote ID holds no "#" to take out: only those are copied.
    std::string withoutHash;
    std::string_view remote = vote.RemoteId;
    if (remote.find('#') != std::string_view::npos)
        remote = withoutHash = ReplaceAll(remote, "#", "");
    remote = TrimView(remote);
    // The student ID is written only where the registrations would not give it back; the long
    // remote IDs never carry one.
    bool longRemote = remote.size() == kLongRemoteLength;
    bool ownerKnown =
        longRemote || StartsWith(vote.StudentId, "#") || RegisteredOwner(course, vote);
    out.NewLine().Text("#").Text(longRemote ? remote : vote.RemoteId).Text(",");
    if (ownerKnown)
        out.Text(" ");
    else
        out.Text("\"").Text(vote.StudentId).Text("\"");
    out.Text(",").Number((vote.Score[0] * 100) / 100).Text(",");
    const VoteSlot* slots = vote.SlotsUpTo(course.NumQuestions);
    for (int q = 1; q <= course.NumQuestions; ++q) {
        const VoteSlot& slot = slots[q];
        bool anonymous = IsAnonymous(course.Questions[q]);
        out.Text(anonymous ? "X" : AnswerLabel(slot.Answer)).Text(" , ");
        out.Number(slot.Score).Text(" , ");
        out.Number(slot.FinalTime).Text(" , ");
        out.Number(slot.Attempts).Text(" , ");
        out.Text(anonymous ? "X" : AnswerLabel(slot.FirstAnswer)).Text(" , ");
        out.Number(slot.FirstTime).Text(" , ");
    }
}

// The voters' lines. One clicker can be acted on: its lines dropped (deleteRemote), or handed
// back to the clicker's registered owner (a studentId given), by writing them without an ID.
void WriteVoterLines(Course& course, LinePrinter& out, std::string_view remoteId,
                     std::string_view studentId, int16_t deleteRemote) {
    for (int r = 1; r <= course.NumVoters; ++r) {
        VoteRec& vote = course.Votes[r];
        if (deleteRemote != 0 && SameRemote(vote.RemoteId, remoteId))
            vote.RemoteId = kDeletedRemote;
        else if (deleteRemote == 0 && !studentId.empty() && SameRemote(vote.RemoteId, remoteId))
            vote.StudentId.clear();
        if (SameRemote(vote.RemoteId, kDeletedRemote) || TrimView(vote.RemoteId).empty()) continue;
        RedoFileTotal(course, vote);
        WriteVoterLine(course, out, vote);
    }
}

void WriteLog(Course& course, LinePrinter& out, std::string_view remoteId,
              std::string_view studentId, int16_t deleteRemote) {
    WriteSettingsLine(course, out);
    WriteNameLine(course, out);
    WriteValueLine(course, out, "Start Time, , ",
                   [](const QuestionRec& question) { return question.StartTime; });
    WriteValueLine(course, out, "Stop Time, ,",
                   [](const QuestionRec& question) { return question.StopTime; });
    WriteValueLine(course, out, "Correct Answer, ,", [](const QuestionRec& question) {
        return std::to_string(question.CorrectAnswer);
    });
    WriteChoiceLines(course, out);
    WriteVoterLines(course, out, remoteId, studentId, deleteRemote);
}

}  // namespace

bool WriteSessionLog(Course& course, Host& host, const std::string& fileName,
                     std::string_view remoteId, std::string_view studentId, int16_t deleteRemote) {
    // The log is replaced only when the whole of it was written; until then the old file stands.
    AtomicFile file(fileName, &host);
    bool written = false;
    if (file.Open()) {
        try {
            LinePrinter out(file);
            WriteLog(course, out, remoteId, studentId, deleteRemote);
            out.Flush();
            written = file.Commit();
        } catch (const std::exception& error) {
            // The error's own text may run over lines: one sentence names the file and the cause.
            const std::string cause = ReplaceAll(error.what(), "\n", ": ");
            file.Refuse("cannot write " + fileName +
                        ": the session holds a value it cannot write (" + cause + ")");
            written = false;
        }
    }
    if (!written)
        host.Message("Unable to store changes to file " + fileName + " Changes not saved!",
                     kProgramTitle, Icon::None, Buttons::Ok);
    return written;
}

ClickerVotes DropClickerVotes(std::string remoteId) {
    return ClickerVotes{std::move(remoteId), "", kTrue};
}

ClickerVotes ReturnVotesToOwner(std::string remoteId, std::string studentId) {
    return ClickerVotes{std::move(remoteId), std::move(studentId), kFalse};
}

bool WriteSessionLog(Course& course, Host& host, const std::string& fileName,
                     const ClickerVotes& clicker) {
    return WriteSessionLog(course, host, fileName, clicker.remoteId, clicker.studentId,
                           clicker.deleteRemote);
}

}  // namespace tallory
