// A session log of any content is read from memory and its session scored. A run-time error is an
// allowed end of the read (a session total that is not a number, too many rows); anything else the
// sanitizers see is a fault.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "common/Course.h"
#include "logs/SessionLog.h"
#include "registration/RemoteTable.h"
#include "scoring/Grading.h"

namespace {

// One course for the run, as in the program: the tables keep what earlier logs left in them.
tallory::Course& FuzzCourse() {
    static tallory::Course course = [] {
        tallory::Course made;
        tallory::AddRemote(made, "1A2B3C", "S1");
        tallory::AddRemote(made, "#00FF", "S2");
        return made;
    }();
    return course;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const std::string name = "L2609151030.csv";
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    tallory::Course& course = FuzzCourse();
    try {
        tallory::ReadSessionLogText(course, name, text);
        tallory::RecomputeSession(course);
        tallory::CountLiveQuestions(course);
    } catch (const tallory::RunTimeError&) {
    }
    return 0;
}
