// The registration files of a course: the first byte chooses RemoteID.csv or Roster.txt, the rest
// is the file. Each is read into a fresh course and looked up as the load does.
#include <cstddef>
#include <cstdint>

#include "FuzzFolder.h"
#include "common/Course.h"
#include "common/RecordingHost.h"
#include "logs/SessionLog.h"
#include "registration/RemoteTable.h"
#include "registration/Roster.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 1) return 0;
    static const std::string folder = tallory::fuzz::FuzzFolder();
    static const std::string remotes = folder + "/SessionData/RemoteID.csv";
    static const std::string roster = folder + "/Roster.txt";
    const bool remoteFile = data[0] & 1;
    const std::string& path = remoteFile ? remotes : roster;
    tallory::fuzz::WriteInput(path, data + 1, size - 1);
    tallory::Course course;
    course.AppPath = folder;
    tallory::RecordingHost host;
    // Both readers end quietly on anything; no exception may escape them.
    if (remoteFile) {
        tallory::ReadRemoteIds(course, host, path);
        for (int row = 1; row <= course.NumRemotes; ++row)
            tallory::RemoteToStudent(course, course.RemoteTable[row].RemoteId);
    } else {
        tallory::ReadRoster(course, path);
    }
    return 0;
}
