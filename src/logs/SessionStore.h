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
    virtual void SetPageNo(int pageNo) = 0;
    virtual void SetMaxPages(int maxPages) = 0;
    virtual void HideStudentScroll() = 0;
    virtual void SetStudentScroll(int minimum, int maximum, int largeChange) = 0;
    virtual DisplayOrder Order() const = 0;
};

// A main screen that shows nothing, for scripts and tests.
class HeadlessScreen : public MainScreen {
public:
    explicit HeadlessScreen(DisplayOrder order = DisplayOrder::StudentId) : order(order) {}
    void ClearTable() override {}
    void UpdateTable() override {}
    void SetPageNo(int value) override { pageNo = value; }
    void SetMaxPages(int value) override { maxPages = value; }
    void HideStudentScroll() override { studentScrollVisible = false; }
    void SetStudentScroll(int, int maximum, int) override {
        studentScrollVisible = true;
        studentScrollMaximum = maximum;
    }
    DisplayOrder Order() const override { return order; }

    DisplayOrder order;
    int pageNo = 0;
    int maxPages = 0;
    bool studentScrollVisible = true;
    int studentScrollMaximum = 0;
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
