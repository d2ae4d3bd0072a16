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
    std::string SetAndStart();

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
