#pragma once

// Session logs laid out as the polling application writes them, for the tests and for the
// benchmark's course generator: a plan of the session, its questions and its voters, and the
// text it gives.

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "common/Numbers.h"

namespace tallory::test {

struct LogQuestion {
    std::string name = "Q1";                         // as it stands between the quotes
    std::array<double, 5> points = {1, 0, 0, 0, 0};  // choices A to E
    std::string correct = "A";                       // the Correct Answer field
    std::array<double, 5> counts = {};               // the Response lines' counts
    std::string start = "10:00:00", stop = "10:01:00";
};

// One question's group on a data line: by default one attempt, 5 seconds, no points.
struct LogAnswer {
    LogAnswer(const char* letter) : letter(letter) {}
    LogAnswer(std::string letter) : letter(std::move(letter)) {}
    std::string letter;  // "" no answer, "X" polled anonymously
    double score = 0, seconds = 5, attempts = 1;
    std::optional<std::string> first;  // the First Response field; the letter when not given
};

struct LogVoter {
    std::string remote = {};   // field 0 as it stands, e.g. "#1A2B3C"
    std::string student = {};  // field 1, quoted; empty for " "
    std::vector<LogAnswer> answers = {};
    double total = 0;
    std::optional<std::string> line =
        {};  // a data line written as it stands instead (blank, short)
};

inline LogVoter RawLine(std::string text) {
    LogVoter voter;
    voter.line = std::move(text);
    return voter;
}

struct LogPlan {
    std::string title = {};
    double performance = 10, participation = 1, minReply = 1, minCorrect = 1;
    std::vector<LogQuestion> questions = {LogQuestion{}};
    std::vector<LogVoter> voters = {};
    std::string eol = "\r\n";
    // Writes the numbers of the answer groups; the benchmark puts odd forms here.
    std::function<std::string(double)> number = NumberItem;
};

// A plan of questions of the given names, each with the same points.
inline LogPlan QuestionsPlan(const std::vector<std::string>& names,
                             std::array<double, 5> points = {1, 0, 0, 0, 0}) {
    LogPlan plan;
    plan.questions.clear();
    for (const std::string& name : names) plan.questions.push_back({name, points});
    return plan;
}

// Questions Q1, Q2, ... each worth a point for A.
inline LogPlan QuestionsPlan(int count) {
    std::vector<std::string> names;
    for (int q = 1; q <= count; ++q) names.push_back("Q" + std::to_string(q));
    return QuestionsPlan(names);
}

inline std::string DataLine(const LogPlan& plan, const LogVoter& voter) {
    if (voter.line) return *voter.line;
    std::string text = voter.remote + "," +
                       (voter.student.empty() ? " " : "\"" + voter.student + "\"") + "," +
                       NumberItem(voter.total) + ",";
    for (const LogAnswer& answer : voter.answers) {
        // One number at a time, in the order of the fields, so that a drawing number writer
        // draws in a fixed order.
        text += answer.letter + " ,";
        text += plan.number(answer.score) + ",";
        text += plan.number(answer.seconds) + ",";
        text += plan.number(answer.attempts) + ",";
        text += answer.first.value_or(answer.letter + " ") + ",";
        text += plan.number(answer.seconds) + ",";
    }
    return text;
}

inline std::string LogText(const LogPlan& plan) {
    const std::string& eol = plan.eol;
    std::string text = "Scoring,  Performance = " + NumberItem(plan.performance) +
                       ", Participation = " + NumberItem(plan.participation) +
                       ", Min Reply = " + NumberItem(plan.minReply) +
                       ", Min Correct = " + NumberItem(plan.minCorrect) + ",\"" + plan.title +
                       "\"" + eol + "Question, ,";
    for (const LogQuestion& q : plan.questions)
        text += " ,\"" + q.name +
                "\" ,Score   ,  Final Answer Time, Number of Attempts, First Response,  Time ";
    text += eol + "Start Time, , ";
    for (const LogQuestion& q : plan.questions) text += " ," + q.start + ",, , , ,";
    text += eol + "Stop Time, ,";
    for (const LogQuestion& q : plan.questions) text += " ," + q.stop + ",, , , ,";
    text += eol + "Correct Answer, ,";
    for (const LogQuestion& q : plan.questions) text += " ," + q.correct + ",, , , ,";
    for (int i = 0; i < 5; ++i) {
        text += eol + "Response " + std::string(1, static_cast<char>('A' + i)) + ",    ,   ,";
        for (const LogQuestion& q : plan.questions)
            text += NumberItem(q.counts[i]) + "," + NumberItem(q.points[i]) + ",, , , ,";
    }
    text += eol;
    for (const LogVoter& voter : plan.voters) text += DataLine(plan, voter) + eol;
    return text;
}

}  // namespace tallory::test
