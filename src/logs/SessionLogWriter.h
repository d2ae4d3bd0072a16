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

// What a rewrite does to one clicker's vote lines. Only the pass over the logs that takes a
// clicker out of the course acts on one; every other rewrite leaves all lines as they are.
struct ClickerVotes {
    std::string remoteId;   // empty: no clicker is acted on
    std::string studentId;  // not empty: the clicker's votes go back to its registered owner
    int16_t deleteRemote = 0;
};

// The clicker's vote lines are dropped from the log.
ClickerVotes DropClickerVotes(std::string remoteId);
// The clicker's vote lines lose their student ID, so the next read gives them to the clicker's
// registered owner. `studentId` is the student the pass acts for; it only has to be non-empty.
ClickerVotes ReturnVotesToOwner(std::string remoteId, std::string studentId);

bool WriteSessionLog(Course& course, Host& host, const std::string& fileName,
                     const ClickerVotes& clicker);

}  // namespace tallory
