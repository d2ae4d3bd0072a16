#pragma once

#include <string>
#include <vector>

namespace tallory::test {

// Builds the text of a session log as the polling application writes it, for course fixtures.
struct LogVoter {
    std::string remote;                // as it stands in field 0, e.g. "#1A2B3C"
    std::string student;               // field 1; empty for " "
    std::vector<std::string> answers;  // one letter (or "") per question
};

struct LogPlan {
    std::string title;
    double performance = 10;
    std::vector<std::string> names = {"Q1"};
    std::vector<std::vector<double>> points = {{1, 0, 0, 0, 0}};  // per question, A..E
    std::vector<LogVoter> voters;
};

inline std::string LogText(const LogPlan& plan) {
    auto number = [](double value) {
        char buffer[40];
        std::snprintf(buffer, sizeof buffer, "%.15g", value < 0 ? -value : value);
        std::string digits = buffer;
        if (digits.rfind("0.", 0) == 0) digits.erase(0, 1);
        return (value < 0 ? "-" : " ") + digits + " ";
    };
    std::string text = "Scoring,  Performance = " + number(plan.performance) +
                       ", Participation = " + number(1) + ", Min Reply = " + number(1) +
                       ", Min Correct = " + number(1) + ",\"" + plan.title + "\"\r\nQuestion, ,";
    for (const auto& name : plan.names)
        text += " ,\"" + name +
                "\" ,Score   ,  Final Answer Time, Number of Attempts, First Response,  Time ";
    for (const char* heading : {"\r\nStart Time, , ", "\r\nStop Time, ,", "\r\nCorrect Answer, ,"})
        for (size_t q = 0; q < plan.names.size(); ++q) {
            if (q == 0) text += heading;
            text += " ,10:00:00,, , , ,";
        }
    for (int i = 0; i < 5; ++i) {
        text += "\r\nResponse " + std::string(1, static_cast<char>('A' + i)) + ",    ,   ,";
        for (size_t q = 0; q < plan.names.size(); ++q)
            text += number(0) + "," + number(plan.points[q][i]) + ",, , , ,";
    }
    for (const auto& voter : plan.voters) {
        text += "\r\n" + voter.remote + "," +
                (voter.student.empty() ? " " : "\"" + voter.student + "\"") + ", 0 ,";
        for (const auto& answer : voter.answers)
            text += answer + " , 0 , 5 , 1 ," + answer + " , 5 ,";
    }
    return text + "\r\n";
}

}  // namespace tallory::test
