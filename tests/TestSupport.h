#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "LogBuilder.h"
#include "common/Course.h"
#include "common/RecordingHost.h"
#include "grid/HeadlessGrid.h"

namespace tallory::test {

using Strings = std::vector<std::string>;

// The messages the host showed, each as "[title] text".
Strings Messages(const RecordingHost& host);

// A course folder under /tmp that disappears with the object.
class TempCourse {
  public:
    TempCourse();
    ~TempCourse();
    TempCourse(const TempCourse&) = delete;
    TempCourse& operator=(const TempCourse&) = delete;

    const std::string& Path() const { return path_; }
    // Writes a file below the folder (relative path with "/"), creating folders as needed.
    void Write(std::string_view relative, std::string_view content) const;
    std::string Read(std::string_view relative) const;
    bool Exists(std::string_view relative) const;
    std::string File(std::string_view relative) const {
        return path_ + "/" + std::string(relative);
    }
    // Copies a whole folder (a sample course of tests/data, the demo course) into this one.
    void CopyFrom(const std::string& folder) const;

    // The course's own files: Roster.txt, RemoteID.csv, Config.csv ("key" ,"value" ,"" lines),
    // and a session log of SessionData by its file name.
    void WriteRoster(std::string_view text) const { Write("Roster.txt", text); }
    void WriteRemotes(std::string_view text) const { Write("SessionData/RemoteID.csv", text); }
    void WriteSettings(const std::vector<std::pair<std::string, std::string>>& settings) const;
    void WriteLog(std::string_view name, const LogPlan& plan) const {
        Write("SessionData/" + std::string(name), LogText(plan));
    }
    std::string Log(std::string_view name) const {
        return Read("SessionData/" + std::string(name));
    }
    std::string Remotes() const { return Read("SessionData/RemoteID.csv"); }

  private:
    std::string path_;
};

// A course folder with the course read from it as tallory-cli reads it (nothing in the folder
// changes), a recording host and a main window without windows. Write the files, then Load.
struct LoadedCourse : TempCourse {
    Course course;
    RecordingHost host;
    HeadlessSessionGrid grid{course};

    LoadedCourse& Load(DisplayOrder order = DisplayOrder::StudentId);
    // Row of Students holding the ID; 0 when none.
    int Row(std::string_view id) const;
    const StudentRec& Student(std::string_view id) const { return course.Students[Row(id)]; }
    std::vector<std::string> StudentIds() const;
};

// "Lnnnnnnnnnn.csv" of September 2026, day `day`, at 10:00.
std::string SeptemberLog(int day);

std::string ReadBytes(const std::string& path);

// Every plain file below a folder, by its path in the folder, with its bytes; the temporary files
// of a write cut short only when `temporaries` is set.
using Files = std::map<std::string, std::string>;
Files FolderFiles(const std::string& folder, bool temporaries = true);

struct CliResult {
    int status = -1;  // -1 when a signal ended it
    int signal = 0;   // the signal that ended it; 0 when it exited
    std::string out;
    std::string err;
};

// tallory-cli started in the background, with extra environment variables; Wait collects it.
class CliProcess {
  public:
    explicit CliProcess(const std::vector<std::string>& arguments,
                        const std::vector<std::pair<std::string, std::string>>& environment = {});
    CliProcess(const CliProcess&) = delete;
    CliProcess& operator=(const CliProcess&) = delete;
    void Kill() const;
    CliResult Wait();

  private:
    int child_ = -1;
    std::string outName_, errName_;
};

// Runs tallory-cli with the arguments; standard input is empty.
CliResult RunCli(const std::vector<std::string>& arguments);
// The arguments of tallory-cli on the course folder: --course, the command's words, then `more`.
std::vector<std::string> CliArguments(const std::string& course, std::vector<std::string> command,
                                      const std::vector<std::string>& more = {});
// Runs tallory-cli on the course folder: --course, the command's words, then `more`.
CliResult RunCliOn(const std::string& course, std::vector<std::string> command,
                   const std::vector<std::string>& more = {});

// Three registered students (S1-S3), two stray clickers (#2B0001, #2B0002) and three logs of two
// questions, every clicker voting in each.
struct StrayClickersCourse : TempCourse {
    StrayClickersCourse();
    std::string NewestLog() const { return File("SessionData/" + SeptemberLog(3)); }
};

// How `work` ended: the number and message of its run-time error, number 0 when it ran through.
struct Ending {
    int number = 0;
    std::string message;
};
Ending EndingOf(const std::function<void()>& work);

// Folder of golden files and sample logs of the tests.
std::string DataPath(std::string_view relative);
// The demo course the program ships with.
std::string DemoCourse();

// Whether `text` holds `part` (or begins with it); either way the message shows the whole text.
inline testing::AssertionResult Holds(std::string_view text, std::string_view part) {
    if (text.find(part) != std::string_view::npos) return testing::AssertionSuccess();
    return testing::AssertionFailure() << "'" << part << "' is not in:\n" << text;
}
testing::AssertionResult BeginsWith(const std::string& text, std::string_view start);

// The grid of the course as the next command opens it, without the course's name (its folder's)
// and the messages of the load.
nlohmann::json GridOf(const TempCourse& course);

}  // namespace tallory::test
