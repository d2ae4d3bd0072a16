// ReadRoster over the text of any Roster.txt, then the look-ups the load makes. The reader ends
// quietly on anything: no exception may escape it.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "common/Course.h"
#include "registration/Roster.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    tallory::Course course;
    tallory::ReadRosterText(course, text);
    for (int row = 1; row <= course.NumRosterIDs; ++row)
        if (tallory::FindRosterRow(course, course.RosterIDs[row]) < 0) __builtin_trap();
    return 0;
}
