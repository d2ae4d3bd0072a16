#pragma once

#include <string>
#include <string_view>

#include "common/Course.h"
#include "common/Host.h"

namespace tallory {

// The rows of cmbDisplayName.
enum class DisplayOrder { LastName = 0, StudentId = 1 };

// What the session store needs of the main window while it loads.
class MainScreen {
  public:
    virtual ~MainScreen() = default;
    virtual void ClearTable() = 0;
    virtual void UpdateTable() = 0;
    // Every log is read and the roster students are added: the screen fits its own scroll bars
    // to the counts, before the students are sorted and the table is drawn.
    virtual void SessionsLoaded(int numSessions, int numStudents) = 0;
    virtual DisplayOrder Order() const = 0;
};

// The fixed text of the progress screen during a load.
std::string_view ProgressFixedText();

// Reads every log of the course into Students, adds roster students, sorts, redraws.
void LoadSessions(Course& course, Host& host, MainScreen& screen);
void ClearStudentTable(Course& course);
// Scores the session in Votes and posts each voter's total into Students.
void AddSessionToStudents(Course& course, int session);
void AddRosterStudents(Course& course, int numSessions);
void SortStudents(Course& course, DisplayOrder order);
std::string SessionLabel(const Course& course, int session);
void AddMultiRemote(Course& course, std::string_view student, std::string_view clickers,
                    std::string_view session);
std::string MultiRemoteReport(const Course& course);
// The full text of the several-clickers warning.
std::string MultiRemoteWarning(const Course& course);

}  // namespace tallory
