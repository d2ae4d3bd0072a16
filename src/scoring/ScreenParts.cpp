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

bool DropUnsavedEdits(Host& host) {
    return host.Message(kUnsavedEditsText, kUnsavedEditsTitle, Icon::Question, Buttons::YesNo,
                        kDestructive) == Answer::Yes;
}

}  // namespace tallory
