#pragma once

#include <string>
#include <string_view>

#include "common/Course.h"
#include "common/Host.h"

namespace tallory {

// The class roster: Roster rows 0..NumRoster-1, RosterIDs rows 1..NumRosterIDs in ascending order.

// Reads a "LastName,FirstName,StudentId" file (Roster.txt); an empty path does nothing.
void ReadRoster(Course& course, const std::string& path);
void ReadRosterText(Course& course, std::string_view text);
// Reads AppPath + "\class.txt"; the text version reads the text of such a file.
void ReadWebCTRoster(Course& course, Host& host);
void ReadWebCTRosterText(Course& course, Host& host, std::string_view text);
void AddRosterEntry(Course& course, std::string_view studentId, std::string_view firstName,
                    std::string_view lastName);
// First row with this ID (trimmed, case ignored); -1 when none, unless addIfMissing.
int FindRosterRow(Course& course, std::string_view studentId, bool addIfMissing);
int FindRosterRow(const Course& course, std::string_view studentId);
// A copy of the row, or an all-empty record.
RosterRec GetRosterEntry(const Course& course, std::string_view studentId);
int UpdateRosterRemote(Course& course, std::string_view studentId, std::string_view remoteId,
                       bool keepLarger);
// Empties all of Roster and its look-up.
void ClearRoster(Course& course);
// Rebuilds RosterIndex from rows 0..NumRoster-1; for whoever changes StudentId texts in place.
void RebuildRosterIndex(Course& course);

// The last line of the messages of the grade-book readers that find no students.
std::string GradeBookHelpLine();
// True when the sibling tool that fetches grade books lies in the course folder.
bool CampusBridgelineInstalled(const Course& course);

}  // namespace tallory
