#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "common/Course.h"
#include "common/Host.h"

namespace tallory {

// Writes the session in Questions and Votes back to a log, replacing the file as a whole. A
// failure shows "Unable to store changes to file ... Changes not saved!" and leaves the old file.
// remoteId/studentId/deleteRemote act on one clicker's lines (none when remoteId is empty).
// Returns false when the file was not written.
bool WriteSessionLog(Course& course, Host& host, const std::string& fileName,
                     std::string_view remoteId, std::string_view studentId, int16_t deleteRemote);

}  // namespace tallory
