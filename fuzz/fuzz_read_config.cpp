// ReadConfig over the text of any Config.csv, followed by the look-ups every screen makes.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "common/Course.h"
#include "common/RecordingHost.h"
#include "start/Settings.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    tallory::Course course;
    tallory::RecordingHost host;
    tallory::ReadConfigText(course, host, text);  // tolerates anything: no exception may escape
    tallory::GetParam(course, "ParticipationRequirement", "1");
    tallory::GetParam(course, "CMS", "General");
    tallory::CourseName(course);
    return 0;
}
