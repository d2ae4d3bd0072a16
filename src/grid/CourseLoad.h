#pragma once

#include <functional>
#include <string>

#include "common/Course.h"
#include "common/Host.h"
#include "export/ExportFormat.h"
#include "scoring/SessionStore.h"

namespace tallory {

// The part of the main window's start sequence that reads the course: settings, stray images,
// version stamp, course name, registrations, roster, every session log. The desktop program runs
// it with every step; tallory-cli runs it read-only (no images moved, no version stamped).
struct LoadedCourse;

struct CourseLoadOptions {
    bool moveStrayImages = true;
    bool stampVersion = true;
    // Removes the temporary files that writes killed in an earlier run left in the course folder
    // and SessionData.
    bool removeStaleTemporaries = true;
    // Called once the course name is known and again once the format is, so that the window
    // shows its caption and format label while the logs are still loading.
    std::function<void(const LoadedCourse&)> shown;
};

// What tallory-cli, tests and the benchmark use: nothing in the course folder changes.
inline CourseLoadOptions ReadOnlyLoad() {
    CourseLoadOptions options;
    options.moveStrayImages = false;
    options.stampVersion = false;
    options.removeStaleTemporaries = false;
    return options;
}

struct LoadedCourse {
    std::string courseName;   // "Tallory-" + courseName is the window caption
    std::string courseLabel;  // lblSubject: the first 40 characters
    ExportFormat format;      // lblCMS caption and tag
};

LoadedCourse LoadCourse(Course& course, Host& host, MainScreen& screen,
                        const CourseLoadOptions& options);

// Moves every *.JPG of SessionData into Images, replacing a file of the same name.
void MoveStrayImages(const Course& course);
// Sets the three version settings to this program's version; rewrites Config.csv only when it
// exists and a number differed.
void StampVersion(Course& course, Host& host);

}  // namespace tallory
