#include "scoring/ScreenParts.h"

#include "common/Paths.h"

namespace tallory {

std::string SessionLogPath(const Course& course, const std::string& fileName) {
    return CoursePath(course.AppPath, "\\SessionData\\" + fileName);
}

void SweepSessionScroll(SessionGrid& grid) {
    grid.SetSessionScrollValue(grid.SessionScrollMinimum());
    grid.SetSessionScrollValue(grid.SessionScrollMaximum());
}

}  // namespace tallory
