// ReadConfig over any Config.csv, followed by the look-ups every screen makes.
#include <cstddef>
#include <cstdint>

#include "FuzzFolder.h"
#include "common/Course.h"
#include "common/RecordingHost.h"
#include "start/Settings.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string& folder = tallory::fuzz::FuzzFolder();
    tallory::fuzz::WriteInput(folder + "/SessionData/Config.csv", data, size);
    tallory::Course course;
    course.AppPath = folder;
    tallory::RecordingHost host;
    tallory::ReadConfig(course, host);  // tolerates anything: no exception may escape
    tallory::GetParam(course, "ParticipationRequirement", "1");
    tallory::GetParam(course, "CMS", "General");
    return 0;
}
