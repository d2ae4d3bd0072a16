#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "common/Course.h"
#include "common/Host.h"

namespace tallory {

// How the program begins: which folder is the course, the roster name repairs, the choice of
// layout and the lock that keeps a second start off the same course.

// The folder the program was started from, as invoked: a link to the program placed in a course
// folder opens that course, so links are not resolved. A program found through PATH (no "/" in
// its name) runs on the current folder.
std::string ProgramFolderOf(std::string_view invokedAs, const std::string& currentFolder);

// True when the command line, the arguments joined with blanks, is the word DEBUG in any case.
bool IsDebugCommand(const std::vector<std::string>& arguments);

// The installation the running program belongs to: the folder of the program file, links
// resolved, and the shared data beside it (../share/tallory, holding the demo course). Both empty
// when the program runs where it was built.
struct Installation {
    std::string programFolder;
    std::string dataFolder;
};
// `programFile` is the running program's file ("/proc/self/exe").
Installation FindInstallation(const std::string& programFile);

// Where a start runs.
struct StartPlace {
    // Stands for the program's own folder: the course of a plain start, the owner of Classes.
    std::string programFolder;
    // The course screen comes first.
    bool chooseCourse = false;
    // The folder is the user's own Tallory folder, made on the first start (MakeUserClasses).
    bool userFolder = false;
};

// A start through a link placed in a course folder, or of a program run where it was built, runs
// on the folder it was started from, or with DEBUG on its Classes. The installed program started
// as itself (from the menu, or by its name through PATH) stands in no course: it offers the course
// screen over `home`/Tallory/Classes.
StartPlace ChooseStartPlace(std::string_view invokedAs, const std::string& currentFolder,
                            const std::vector<std::string>& arguments,
                            const Installation& installation, const std::string& home);

// The user's home folder: $HOME, else the password database's entry.
std::string HomeFolder();

// Makes `userFolder`/Classes when it is missing, with a copy of the installation's demo course in
// it, so that the first start has a course to open. A Classes folder that exists, even empty, is
// left as it is. Failures are silent: they show up as an empty course list.
void MakeUserClasses(const std::string& userFolder, const Installation& installation);

// Where the original text of each removed log is kept for the user, outside the course folder:
// $XDG_DATA_HOME/tallory/removed/<course folder name> ($HOME/.local/share when the variable is
// not set or not absolute). Empty when neither variable helps.
std::string RemovedLogsFolder(const Course& course);

// Removes the temporary files that killed writes left in every folder the program writes for the
// course: the course folder, SessionData, Reports and the kept copies of removed logs.
void RemoveLeftTemporaries(const Course& course);

// Gives Roster.txt.txt and class.txt.txt the names they were meant to have. The first failure is
// reported and ends the repair; the start goes on in every case.
void FixRosterFileNames(const Course& course, Host& host);

// The two layouts of the main window.
enum class MainLayout { Subject, Large120Dpi };

// Only a 1024 x 768 screen with large fonts gets the large-font layout.
MainLayout ChooseLayout(int width, int height, double logicalDpi);

// The course screen of a DEBUG start: one row per folder under Classes.
class CourseList {
  public:
    explicit CourseList(std::string programFolder) : programFolder_(std::move(programFolder)) {}

    // Fills the rows: each folder's name, with " (*)" when web voting is on for it.
    void Load();
    // Selects the course chosen last time, when a row still reads the same.
    void Activate();
    // cmdSetAndStart: remembers the row and returns the course folder, with its folders made.
    std::string SetAndStart(Host& host);

    const std::vector<std::string>& Rows() const { return rows_; }
    bool StartEnabled() const { return !rows_.empty(); }
    int Selected() const { return selected_; }
    void Select(int row) { selected_ = row; }

  private:
    std::string ClassesFolder() const;

    std::string programFolder_;
    std::vector<std::string> rows_;
    int selected_ = -1;
};

// Held by the program that has a course open, so that a second start on the same course can tell.
// The lock is an abstract socket name: the system drops it with the process, and nothing is left
// in the course folder.
class InstanceLock {
  public:
    InstanceLock() = default;
    ~InstanceLock();
    InstanceLock(const InstanceLock&) = delete;
    InstanceLock& operator=(const InstanceLock&) = delete;

    // False when another process holds the lock of this course folder.
    bool Acquire(const std::string& courseFolder);

  private:
    int socket_ = -1;
};

}  // namespace tallory
