#pragma once

#include <memory>

#include "../TestSupport.h"
#include "ui/MainWindow.h"
#include "ui/QtHost.h"

namespace tallory::test {

// The main window started on a course folder, as the program starts it there.
struct OpenWindow {
    Course course;
    QtHost host;
    std::unique_ptr<MainWindow> window;

    explicit OpenWindow(const std::string& folder, bool largeFonts = false) {
        course.AppPath = course.ProgramFolder = folder;
        window = std::make_unique<MainWindow>(course, host, largeFonts);
        window->show();
        window->Load();
    }
};

struct CourseFolder {
    TempCourse folder;
    explicit CourseFolder(const std::function<void(const TempCourse&)>& write) { write(folder); }
};

// A course folder made by `write` (files written, a sample copied), then the window opened on it.
struct CourseWindow : CourseFolder, OpenWindow {
    explicit CourseWindow(const std::function<void(const TempCourse&)>& write,
                          bool largeFonts = false)
        : CourseFolder(write), OpenWindow(folder.Path(), largeFonts) {}
};

}  // namespace tallory::test
