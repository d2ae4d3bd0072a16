#pragma once

#include <string>
#include <string_view>

#include "common/Course.h"
#include "common/Host.h"

namespace tallory {

// Course settings in "\SessionData\Config.csv" and the last chosen course in
// "\Classes\Options.csv".

void ReadConfig(Course& course, Host& host);
// The same over the text of a Config.csv.
void ReadConfigText(Course& course, Host& host, std::string_view text);
// A file that cannot be written is reported to the host; the old one stands.
void WriteConfig(const Course& course, Host& host);
// The trimmed value of the first row with this key (case and blanks ignored), or the default.
std::string GetParam(const Course& course, std::string_view key, std::string_view defaultValue);

// A setting of Config.csv: its key and the value a course without it has, in one place for every
// read of it.
struct Setting {
    std::string_view key;
    std::string_view defaultValue;
};
// The course's display name; empty means the course folder's name.
inline constexpr Setting kCourseNameSetting{"CourseName", ""};
// The course-management system: the roster read at course start and the grade-book format.
inline constexpr Setting kCmsSetting{"CMS", "General"};
// The course's key in web registration; a value of one character or none counts as the default.
inline constexpr Setting kWebCodeSetting{"webcode", "SQL"};
// How many replies earn participation points.
inline constexpr Setting kParticipationSetting{"ParticipationRequirement", "1"};

std::string GetParam(const Course& course, const Setting& setting);

// The course's display name: the CourseName setting, or the course folder's name when it is blank.
std::string CourseName(const Course& course);
void SetParam(Course& course, std::string_view key, std::string_view value);

// True when the folder's Config.csv holds ENABLEWEBVOTING = TRUE.
bool IsWebVotingEnabled(const std::string& folder);

// Options.csv under `programFolder` + "\Classes".
std::string ReadSelectedClass(const std::string& programFolder);
void SaveSelectedClass(const std::string& programFolder, std::string_view rowText, Host& host);

}  // namespace tallory
