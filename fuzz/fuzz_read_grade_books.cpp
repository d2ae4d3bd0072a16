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

using Reader = void (*)(tallory::Course&, tallory::Host&, std::string_view);

constexpr Reader kReaders[] = {
    tallory::ReadAngelGradebookText, tallory::ReadBlackboardGradebookText,
    tallory::ReadD2LGradebookText,   tallory::ReadMoodleRosterText,
    tallory::ReadSakaiGradebookText, tallory::ReadCampusClassText,
    tallory::ReadWebCTRosterText,
};
constexpr size_t kCount = sizeof kReaders / sizeof kReaders[0];

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 1) return 0;
    const std::string_view text(reinterpret_cast<const char*>(data + 1), size - 1);
    tallory::Course course;
    // No course folder: the not-found messages look for the sibling tool in none.
    course.AppPath = "/nonexistent/tallory-fuzz";
    tallory::RecordingHost host;
    try {
        kReaders[data[0] % kCount](course, host, text);
    } catch (const tallory::RunTimeError&) {
        // A run-time error is how a reader's table overflows end the program.
    }
    return 0;
}
