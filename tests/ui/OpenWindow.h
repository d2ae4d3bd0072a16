#pragma once

#include <memory>
#include <string>

#include "common/Course.h"
#include "ui/MainWindow.h"
#include "ui/QtHost.h"

namespace tallory::test {

// The main window started on a course folder, as the program starts it there.
struct OpenWindow {
    Course course;
    QtHost host;
    std::unique_ptr<MainWindow> window;

    explicit OpenWindow(const std::string& folder, bool largeFonts = false) {
        course.AppPath = folder;
        course.ProgramFolder = folder;
        window = std::make_unique<MainWindow>(course, host, largeFonts);
        window->show();
        window->Load();
    }
};

}  // namespace tallory::test
