// The grade-book and class files of the course-management systems: the first byte chooses the
// format, the rest is its file, read by that format's reader at course start.
#include <cstddef>
#include <cstdint>

#include "FuzzFolder.h"
#include "common/Course.h"
#include "common/RecordingHost.h"
#include "export/Export.h"
#include "registration/Roster.h"

namespace {

struct Format {
    const char* file;
    void (*read)(tallory::Course&, tallory::Host&);
};

constexpr Format kFormats[] = {
    {"/gradebook.csv", tallory::ReadAngelGradebook},
    {"/gb_export.csv", tallory::ReadBlackboardGradebook},
    {"/gradesexport.csv", tallory::ReadD2LGradebook},
    {"/MoodleRoster.txt", tallory::ReadMoodleRoster},
    {"/sakaigradebook.csv", tallory::ReadSakaiGradebook},
    {"/class.txt", tallory::ReadCampusClass},
    {"/class.txt", tallory::ReadWebCTRoster},
};
constexpr size_t kCount = sizeof kFormats / sizeof kFormats[0];

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 1) return 0;
    static const std::string& folder = tallory::fuzz::FuzzFolder();
    const Format& format = kFormats[data[0] % kCount];
    const std::string path = folder + format.file;
    tallory::fuzz::WriteInput(path, data + 1, size - 1);
    tallory::Course course;
    course.AppPath = folder;
    tallory::RecordingHost host;
    try {
        format.read(course, host);
    } catch (const tallory::RunTimeError&) {
        // A run-time error is how a reader's table overflows end the program.
    }
    return 0;
}
