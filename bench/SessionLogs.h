#pragma once

#include <string>
#include <vector>

#include "common/Paths.h"

namespace bench {

// The session logs of a course folder, as the program finds them: "L" and the ten digits of the
// session's date and hour, ".csv".
inline std::vector<std::string> SessionLogPaths(const std::string& course) {
    const std::string folder = tallory::CoursePath(course, "\\SessionData");
    std::vector<std::string> logs;
    for (const std::string& name : tallory::ListFiles(folder))
        if (name.size() == 15 && (name[0] == 'L' || name[0] == 'l'))
            logs.push_back(tallory::JoinPath(folder, name));
    return logs;
}

}  // namespace bench
