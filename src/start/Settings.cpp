#include "start/Settings.h"

#include <vector>

#include "common/AtomicFile.h"
#include "common/LineReader.h"
#include "common/Paths.h"
#include "common/Text.h"
#include "start/Fields.h"

namespace tallory {

namespace {

constexpr std::string_view kConfigFile = "\\SessionData\\Config.csv";
// A setting line carries key, value and note; anything past the tenth field joins the last one.
constexpr int kConfigTopField = 9;

std::string WithoutQuotes(std::string_view text) {
    return ReplaceAll(text, "\"", "");
}

// The plain comma split of the two small files that are not read as CSV: quotes are removed first,
// and a comma is always a separator.
std::vector<std::string_view> SplitAtCommas(std::string_view line) {
    std::vector<std::string_view> parts;
    size_t from = 0;
    for (size_t comma; (comma = line.find(',', from)) != std::string_view::npos; from = comma + 1)
        parts.push_back(line.substr(from, comma - from));
    parts.push_back(line.substr(from));
    return parts;
}

// The second part of the first line whose first part is `key`, as the two small files hold it.
bool FindPlainSetting(const std::string& path, std::string_view key, std::string& value) {
    LineReader reader(path);
    if (!reader.IsOpen()) return false;
    for (std::string line; reader.ReadLine(line);) {
        std::string bare = WithoutQuotes(line);
        std::vector<std::string_view> parts = SplitAtCommas(bare);
        if (parts.size() < 2) continue;
        if (NormalKey(parts[0]) == key) {
            value = std::string(parts[1]);
            return true;
        }
    }
    return false;
}

// The one reading of the settings lines, from the file or from a text.
void ReadConfigLines(Course& course, Host& host, LineReader& reader) {
    course.NumParams = 0;
    host.SetProgressText("Reading Configuration File ....");
    if (!reader.IsOpen()) return;
    Fields fields(kConfigTopField);
    for (std::string_view line; reader.ReadLine(line);) {
        SplitFields(line, fields);
        if (fields.Count() < 1) continue;
        // The table is full: the read ends here and keeps the settings before this line.
        if (course.NumParams >= kMaxParams) return;
        ParamRec& param = course.Params[course.NumParams + 1];
        param.Key = ToUpper(fields[0]);
        param.Value = fields.Text(1);
        // Field 2 is where a rewrite puts the note; only what follows it is kept as note.
        param.Note.clear();
        for (int i = 3; i <= fields.Count(); ++i) param.Note.append(",").append(fields[i]);
        ++course.NumParams;
    }
    host.SetProgressText("File read sucessfully ....");
}

}  // namespace

void ReadConfig(Course& course, Host& host) {
    LineReader reader(CoursePath(course.AppPath, kConfigFile));
    ReadConfigLines(course, host, reader);
}

void ReadConfigText(Course& course, Host& host, std::string_view text) {
    LineReader reader("Config.csv", text);
    ReadConfigLines(course, host, reader);
}

void WriteConfig(const Course& course, Host& host) {
    std::string text;
    for (int i = 1; i <= course.NumParams; ++i) {
        const ParamRec& param = course.Params[i];
        text += "\"" + Trim(param.Key) + "\" ,\"" + param.Value + "\" ,\"" + param.Note + "\"\r\n";
    }
    // The polling application owns this file too; a failed write leaves its copy as it was.
    ReplaceFile(CoursePath(course.AppPath, kConfigFile), text, nullptr, &host);
}

std::string GetParam(const Course& course, std::string_view key, std::string_view defaultValue) {
    std::string wanted = NormalKey(key);
    for (int i = 1; i <= course.NumParams; ++i) {
        if (NormalKey(course.Params[i].Key) == wanted) return Trim(course.Params[i].Value);
    }
    return std::string(defaultValue);
}

std::string GetParam(const Course& course, const Setting& setting) {
    return GetParam(course, setting.key, setting.defaultValue);
}

void SetParam(Course& course, std::string_view key, std::string_view value) {
    std::string wanted = NormalKey(key);
    for (int i = 1; i <= course.NumParams; ++i) {
        if (NormalKey(course.Params[i].Key) == wanted) {
            course.Params[i].Value = std::string(value);
            return;
        }
    }
    // A full table takes no new setting; nothing is reported.
    if (course.NumParams >= kMaxParams) return;
    ParamRec& param = course.Params[course.NumParams + 1];
    param.Key = Trim(key);
    param.Value = Trim(value);
    ++course.NumParams;
}

bool IsWebVotingEnabled(const std::string& folder) {
    std::string path = CoursePath(folder, "\\SessionData\\Config.CSV");
    if (!FileExists(path)) return false;
    std::string value;
    return FindPlainSetting(path, "ENABLEWEBVOTING", value) && NormalKey(value) == "TRUE";
}

std::string ReadSelectedClass(const std::string& programFolder) {
    std::string path = CoursePath(programFolder, "\\Classes\\Options.csv");
    if (!FileExists(path)) return {};
    std::string value;
    if (!FindPlainSetting(path, "SELECTEDCLASS", value)) return {};
    return Trim(value);
}

void SaveSelectedClass(const std::string& programFolder, std::string_view rowText, Host& host) {
    std::string line = "\"SelectedClass\",\"" + std::string(rowText) + "\"\r\n";
    ReplaceFile(CoursePath(programFolder, "\\Classes\\Options.csv"), line, nullptr, &host);
}

std::string CourseName(const Course& course) {
    std::string name = GetParam(course, kCourseNameSetting);
    if (TrimView(name).empty()) name = LastComponent(course.AppPath);
    return name;
}

}  // namespace tallory
