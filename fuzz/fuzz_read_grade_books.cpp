// The grade-book and class files of the course-management systems: the first byte chooses the
// reader, the rest is the text of its file, read as at course start.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "common/Course.h"
#include "common/RecordingHost.h"
#include "export/Export.h"
#include "registration/Roster.h"

namespace {

// The settings whose targets read a grade book, by the first byte; the empty one stands for
// class.txt as the course start reads it, the one after it for the WebCT export's reading.
constexpr std::string_view kTargets[] = {"ANGEL",         "BB", "D2L",   "MOODLE", "SAKAI",
                                         "WEB CT CE 4.1", "",   "WEB CT"};
constexpr size_t kCount = sizeof kTargets / sizeof kTargets[0];

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 1) return 0;
    const std::string_view text(reinterpret_cast<const char*>(data + 1), size - 1);
    tallory::Course course;
    // No course folder: the not-found messages look for the sibling tool in none.
    course.AppPath = "/nonexistent/tallory-fuzz";
    tallory::RecordingHost host;
    try {
        const std::string_view cms = kTargets[data[0] % kCount];
        if (cms.empty())
            tallory::ReadWebCTRosterText(course, host, text);
        else
            tallory::ReadGradeBookText(course, host, cms, text);
    } catch (const tallory::RunTimeError&) {
        // A run-time error is how a reader's table overflows end the program.
    }
    return 0;
}
