#pragma once

#include <string>
#include <string_view>

namespace tallory {

// Captions of a session's date and time on the Set Scores screen, from the texts that the log's
// file name gives ("09/15/2008" and "10:30"). A text that is not a valid date or time is shown as
// it stands.

// "09/15/2008" gives "Sep/15/2008".
std::string SessionDateCaption(std::string_view dateText);
// "10:30" gives "10:30 AM", "13:05" gives "01:05 PM", "00:15" gives "12:15 AM".
std::string SessionTimeCaption(std::string_view timeText);

}  // namespace tallory
