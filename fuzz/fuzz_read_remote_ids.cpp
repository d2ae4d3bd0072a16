// ReadRemoteIds over the text of any RemoteID.csv, then each registered clicker looked up as the
// load does: every kept row must be found again. The reader ends quietly on anything.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "common/Course.h"
#include "common/RecordingHost.h"
#include "logs/SessionLog.h"
#include "registration/RemoteTable.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    tallory::Course course;
    tallory::RecordingHost host;
    tallory::ReadRemoteIdsText(course, host, text);
    for (int row = 1; row <= course.NumRemotes; ++row) {
        const std::string& remote = course.RemoteTable[row].RemoteId;
        if (tallory::FindRemoteRow(course, remote) <= 0) __builtin_trap();
        tallory::RemoteToStudent(course, remote);
    }
    return 0;
}
