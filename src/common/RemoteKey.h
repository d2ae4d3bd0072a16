#pragma once

#include <string>
#include <string_view>

#include "common/Course.h"

namespace tallory {

// Which remote IDs name the same clicker, and the registration row of one. The log reader and
// writer resolve voters through it as much as the registrations themselves do.

// Drops leading `mark` characters but keeps the last character, so "000" stays "0".
std::string_view StripLeading(std::string_view text, char mark);
// Upper case, trimmed, without leading "#" and "0" (a text of only those keeps its last character).
std::string NormalRemote(std::string_view remoteId);
bool SameRemote(std::string_view a, std::string_view b);
// The first registered row of a remote (compared in normal form), 0 when none.
int FindRemoteRow(const Course& course, std::string_view remoteId);

}  // namespace tallory
