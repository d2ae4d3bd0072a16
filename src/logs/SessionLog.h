#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "common/Course.h"
#include "common/LineReader.h"

namespace tallory {

// Reading one session log into Questions, Votes and the session values.

// Reads the whole log; throws RunTimeError (naming file and line) where a bad data line ends the
// run. An empty name only sets NumVoters to 0.
void ReadSessionLog(Course& course, const std::string& fileName);
// The same over a log's text, as if read from the file `fileName`.
void ReadSessionLogText(Course& course, const std::string& fileName, std::string_view text);
// The same over an open reader.
void ReadSessionLog(Course& course, LineReader& reader);
// Lines 1 to 10; returns the number of questions (0 after any failure in them).
int ReadLogHeader(Course& course, LineReader& reader);
// One data line into Votes(row); row is in and out, groupCount is out.
void ReadVoteLine(Course& course, std::string_view line, int& row, int& groupCount);

int16_t AnswerFromLetter(std::string_view field);
std::string RemoteToStudent(const Course& course, std::string_view remoteId);
std::string StripLeadingHash(std::string_view text);
std::string StripLeadingZeros(std::string_view text);
std::string TrimLeadingSpaces(std::string_view text);

// "L0809151030.csv" gives "09/15/2008" and "10:30".
std::string SessionDate(std::string_view fileName);
std::string SessionTime(std::string_view fileName);

}  // namespace tallory
