// A session log of any content is read from memory and scored; some logs that gave questions are
// then written back and read again from the file. A run-time error is an allowed end of the read (a
// session total that is not a number, too many rows); anything else the sanitizers see is a fault.
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

#include "FuzzFolder.h"
#include "common/Course.h"
#include "common/RecordingHost.h"
#include "logs/SessionLog.h"
#include "logs/SessionLogWriter.h"
#include "registration/RemoteTable.h"
#include "scoring/Grading.h"

namespace {

// One course for the run, as in the program: the tables keep what earlier logs left in them.
tallory::Course& FuzzCourse() {
    static auto course = [] {
        auto made = std::make_unique<tallory::Course>();
        made->AppPath = tallory::fuzz::FuzzFolder();
        tallory::AddRemote(*made, "1A2B3C", "S1");
        tallory::AddRemote(*made, "#00FF", "S2");
        return made;
    }();
    return *course;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const std::string path = tallory::fuzz::FuzzFolder() + "/SessionData/L2609151030.csv";
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    tallory::Course& course = FuzzCourse();
    tallory::RecordingHost host;
    try {
        tallory::ReadSessionLogText(course, path, text);
        tallory::RecomputeSession(course);
        // The rewrite goes through the file system, as every save does, and costs as much as
        // the read: one input in eight (by its length) takes it. Only a log with questions is
        // ever saved by the program.
        if (size % 8 == 0 && course.NumQuestions > 0 &&
            tallory::WriteSessionLog(course, host, path, "1A2B3C", "", 0)) {
            tallory::ReadSessionLog(course, path);
            tallory::RecomputeSession(course);
        }
    } catch (const tallory::RunTimeError&) {
    }
    return 0;
}
