#pragma once

#include "common/Course.h"
#include "common/Host.h"

namespace tallory {

// The save of the Set Scores screen. The session's log has been read into Questions and Votes and
// changed there; this writes it back in place, reads it again and posts the new totals to the
// session's column of Students. A session with no live question earns no participation points.
// A failed write has shown its message; the session is read and posted from whatever the file
// then holds, and false is returned.
bool SaveSession(Course& course, Host& host, int session);

}  // namespace tallory
