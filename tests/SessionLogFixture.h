#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tallory::test {

// Session logs laid out as the polling application writes them, for the reader, writer and
// scoring tests.

// Lines 1 to 10 for the given question names: choice A earns 1 point, B earns .5, the rest 0.
inline std::string PollingHeader(const std::vector<std::string>& names,
                                 std::string_view title = "Lecture") {
    std::string text =
        "Scoring,  Performance =  10 , Participation =  1 , Min Reply =  1 , Min Correct =  1 ,\"";
    text.append(title).append("\"\r\nQuestion, ,");
    for (const std::string& name : names)
        text += " ,\"" + name +
                "\" ,Score   ,  Final Answer Time, Number of Attempts, First Response,  Time ";
    const char* lines[][2] = {{"\r\nStart Time, , ", "10:00:00"},
                              {"\r\nStop Time, ,", "10:01:00"},
                              {"\r\nCorrect Answer, ,", "A"}};
    for (const auto& line : lines) {
        text += line[0];
        for (size_t q = 0; q < names.size(); ++q) text += std::string(" ,") + line[1] + ",, , , ,";
    }
    const char* points[] = {" 1 ", " .5 ", " 0 ", " 0 ", " 0 "};
    for (int i = 0; i < 5; ++i) {
        text += "\r\nResponse " + std::string(1, static_cast<char>('A' + i)) + ",    ,   ,";
        for (size_t q = 0; q < names.size(); ++q)
            text += std::string(" 0 ,") + points[i] + ",, , , ,";
    }
    return text + "\r\n";
}

// One data line: a letter (or "") per question, each with 1 attempt and 5 seconds.
inline std::string VoteLine(std::string_view remote, std::string_view student,
                            const std::vector<std::string>& answers) {
    std::string text(remote);
    text += student.empty() ? std::string(", ") : ",\"" + std::string(student) + "\"";
    text += ", 0 ,";
    for (const std::string& answer : answers) text += answer + " , 0 , 5 , 1 ," + answer + " , 5 ,";
    return text + "\r\n";
}

}  // namespace tallory::test
