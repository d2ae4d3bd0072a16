#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "common/Course.h"
#include "common/Host.h"
#include "scoring/SessionStore.h"

namespace tallory {

// Takes one clicker's votes out of every session log, or hands them back to their registered
// owner, one log at a time. `deleteRemote` not 0 drops the clicker's
// vote lines; otherwise a non-empty `studentId` sends them back to their owner. `reload` not 0
// reloads all sessions at the end.
void UpdateClickerLogs(Course& course, Host& host, MainScreen& screen, std::string_view remoteId,
                       std::string_view studentId, int16_t deleteRemote, int16_t reload);

// The progress text of session `i` of the pass.
std::string ClickerLogsProgressText(const Course& course, int i, std::string_view remoteId,
                                    int16_t deleteRemote);

}  // namespace tallory
