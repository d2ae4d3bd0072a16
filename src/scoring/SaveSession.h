#pragma once

#include <cstdint>
#include <string>

#include "common/Course.h"
#include "common/Host.h"

namespace tallory {

// What a save does to one clicker's vote lines; none by default. The two purges of a clicker are
// the only callers that act on a clicker.
struct ClickerVotes {
    std::string remoteId;   // empty: no clicker is acted on
    std::string studentId;  // not empty: the clicker's votes go back to its registered owner
    int16_t deleteRemote = 0;
};

// The clicker's vote lines are dropped from the log.
ClickerVotes DropClickerVotes(std::string remoteId);
// The clicker's vote lines lose their student ID, so the next read gives them to the clicker's
// registered owner. `studentId` is the student the purge acts for; it only has to be non-empty.
ClickerVotes ReturnVotesToOwner(std::string remoteId, std::string studentId);

// The one road of every session edit. The session's log has been read into Questions and Votes
// and changed there; this writes it back in place, reads it again and posts the new totals to the
// session's column of Students. A session with no live question earns no participation points,
// whoever saves it. A failed write has shown its message; the session is read and posted from
// whatever the file then holds, and false is returned.
bool SaveSession(Course& course, Host& host, int session, const ClickerVotes& clicker = {});

}  // namespace tallory
