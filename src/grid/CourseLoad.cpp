#include "grid/CourseLoad.h"

#include <cstdio>

#include "common/AtomicFile.h"
#include "common/Paths.h"
#include "common/Text.h"
#include "registration/RemoteTable.h"
#include "start/ProgramStart.h"
#include "start/Settings.h"

namespace tallory {

namespace {

struct VersionPart {
    const char* key;
    int value;
};

constexpr VersionPart kVersion[] = {
    {"tallory.exe.major", TALLORY_VERSION_MAJOR},
    {"tallory.exe.minor", TALLORY_VERSION_MINOR},
    {"tallory.exe.rev", TALLORY_VERSION_REV},
};

}  // namespace

void MoveStrayImages(const Course& course) {
    std::string sessionData = CoursePath(course.AppPath, "\\SessionData");
    std::string images = CoursePath(course.AppPath, "\\Images");
    CreateFolderPath(images);
    for (const std::string& name : ListFiles(sessionData)) {
        size_t dot = name.rfind('.');
        if (dot == std::string::npos || ToUpper(name.substr(dot + 1)) != "JPG") continue;
        // The newer picture replaces one of the same name, whatever the case of its letters.
        std::string existing = CoursePath(course.AppPath, "\\Images\\" + name);
        if (FileExists(existing)) std::remove(existing.c_str());
        std::rename(JoinPath(sessionData, name).c_str(), JoinPath(images, name).c_str());
    }
}

void StampVersion(Course& course, Host& host) {
    bool differs = false;
    for (const VersionPart& part : kVersion)
        if (GetParam(course, part.key, "0") != std::to_string(part.value)) differs = true;
    if (!differs) return;
    for (const VersionPart& part : kVersion) SetParam(course, part.key, std::to_string(part.value));
    // A course without a settings file never gets one from here.
    if (FileExists(CoursePath(course.AppPath, "\\SessionData\\config.csv")))
        WriteConfig(course, host);
}

LoadedCourse LoadCourse(Course& course, Host& host, MainScreen& screen,
                        const CourseLoadOptions& options) {
    LoadedCourse loaded;
    if (options.removeStaleTemporaries) RemoveLeftTemporaries(course);
    ReadConfig(course, host);
    if (options.moveStrayImages) MoveStrayImages(course);
    if (options.stampVersion) StampVersion(course, host);

    course.CourseFolderName = LastComponent(course.AppPath);
    loaded.courseName = CourseName(course);
    loaded.courseLabel = loaded.courseName;
    if (options.shown) options.shown(loaded);

    ReadRemoteIds(course, host, CoursePath(course.AppPath, "\\SessionData\\RemoteID.csv"));

    host.YieldEvents();
    loaded.format = SetExportFormat(course, host, Trim(GetParam(course, kCmsSetting)));
    if (options.shown) options.shown(loaded);
    host.YieldEvents();

    screen.ClearTable();
    LoadSessions(course, host, screen);
    for (int s = 0; s <= course.NumSessions; ++s) course.ExportSel[s] = 0;

    loaded.courseLabel = Left(CourseName(course), 40);
    return loaded;
}

}  // namespace tallory
