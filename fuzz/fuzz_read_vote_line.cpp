// The data-line reader against the meaning of a data line, stated field by field through the
// splitter and the reference conversion: the same row values and the same group count for any
// line (odd number forms, letters, quotes, line feeds, lines past field 999, whose rest is joined
// onto field 999), read over a row that already holds values. The first byte sets how many
// questions the row holds and the values it holds before the read; the rest follows the remote,
// the student and the session total on the line.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "common/Course.h"
#include "common/Numbers.h"
#include "logs/SessionLog.h"
#include "start/Fields.h"

namespace {

bool Same(double a, double b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

void KeepIfReferenceNumeric(std::string_view text, double& target) {
    tallory::ToDoubleReference(text, target);
}

void KeepIfReferenceNumeric(std::string_view text, int16_t& target) {
    double value;
    if (tallory::ToDoubleReference(text, value)) tallory::RoundToInt16(value, target);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 1) return 0;
    tallory::Course course;
    course.NumQuestions = 200;
    tallory::VoteRec& vote = course.Votes[1];
    const int width = 1 + data[0] % 200;
    const std::string line =
        "#A1, S1 , 3 ," + std::string(reinterpret_cast<const char*>(data + 1), size - 1);

    struct Expected {
        std::vector<int16_t> answer, attempts, firstAnswer;
        std::vector<double> score, finalTime, firstTime;
    } expected;
    for (auto* counts : {&expected.answer, &expected.attempts, &expected.firstAnswer})
        counts->resize(width + 2);
    for (auto* figures : {&expected.score, &expected.finalTime, &expected.firstTime})
        figures->resize(width + 2);
    for (int q = 1; q <= width + 1; ++q) {
        vote.Answer[q] = expected.answer[q] = static_cast<int16_t>((data[0] + q) % 8);
        vote.Attempts[q] = expected.attempts[q] = static_cast<int16_t>(q % 5);
        vote.FirstAnswer[q] = expected.firstAnswer[q] = static_cast<int16_t>(q % 7);
        vote.Score[q] = expected.score[q] = q % 3;
        vote.FinalTime[q] = expected.finalTime[q] = q % 90;
        vote.FirstTime[q] = expected.firstTime[q] = (q * 7) % 90;
    }

    tallory::Fields split(tallory::kMaxLogFieldIndex);
    tallory::SplitFields(line, split);
    const int groups = split.Count() < 3 ? 0 : (split.Count() - 3) / 6 + 1;
    for (int q = 1; q <= groups && q <= width + 1; ++q) {
        auto field = [&](int column) { return split[3 + 6 * (q - 1) + column]; };
        expected.answer[q] = tallory::AnswerFromLetter(field(0));
        KeepIfReferenceNumeric(field(1), expected.score[q]);
        KeepIfReferenceNumeric(field(2), expected.finalTime[q]);
        KeepIfReferenceNumeric(field(3), expected.attempts[q]);
        KeepIfReferenceNumeric(field(4), expected.firstAnswer[q]);
        KeepIfReferenceNumeric(field(5), expected.firstTime[q]);
    }

    int row = 1, groupCount = -1;
    tallory::ReadVoteLine(course, line, row, groupCount);
    if (row != 1 || groupCount != groups) std::abort();
    if (vote.StudentId != "S1" || vote.Score[0] != 3) std::abort();
    for (int q = 1; q <= width + 1; ++q) {
        if (vote.Answer[q] != expected.answer[q] || vote.Attempts[q] != expected.attempts[q] ||
            vote.FirstAnswer[q] != expected.firstAnswer[q])
            std::abort();
        if (!Same(vote.Score[q], expected.score[q]) ||
            !Same(vote.FinalTime[q], expected.finalTime[q]) ||
            !Same(vote.FirstTime[q], expected.firstTime[q]))
            std::abort();
    }
    return 0;
}
