#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "common/Course.h"

namespace tallory {

// The course at a glance: how attendance and scores run over the term, how the term totals
// spread, who is slipping away and which questions were hard. Figures are of roster students
// only; a clicker nobody registered is not a student of the class.

// One session column of the grid.
struct SessionFigures {
    int session = 0;                // 1..NumSessions
    std::string label;              // SessionLabel
    double available = 0;           // performance plus participation points the session offers
    int present = 0;                // roster students with a score in the session
    int students = 0;               // roster students of the course
    double attendance = 0;          // present / students; 0 for a course without students
    std::optional<double> average;  // mean session total of those present; none when nobody was
};

// A student who needs a word from the instructor, in the grid's order.
struct StudentAtRisk {
    int row = 0;       // the Students row, as the grid opens it
    std::string id;    // StudentId
    std::string name;  // "Last, First", an empty part left out
    int attended = 0;  // sessions with a score
    double total = 0;  // Score(0)
};

// One live question of a session.
struct QuestionFigures {
    int session = 0;
    std::string label;     // the session's label
    int number = 0;        // the question's row in its log
    std::string question;  // the name as the instructor typed it
    int answered = 0;      // voters (registered or not) who chose one of A to E
    std::optional<int>
        correct;  // of those, the ones who chose the correct answer; none without one
};

inline constexpr int kTotalBins = 10;

struct CourseOverview {
    std::vector<SessionFigures> sessions;
    double available = 0;  // of the term: the sum over the sessions
    // Roster students by term total in tenths of the term's available points: bin k holds totals
    // in [k, k+1) tenths, a total below 0 falls in bin 0 and one at or above the whole in bin 9.
    std::array<int, kTotalBins> bins{};
    std::vector<StudentAtRisk> atRisk;
    std::vector<QuestionFigures> questions;
};

// Whether a Students row is a student of the roster rather than an unregistered clicker.
bool IsRosterStudent(const StudentRec& student);

// The bin of a term total out of `available` points.
int TotalBin(double total, double available);

// A student is at risk when present in fewer than 60% of the sessions, or absent from each of the
// last three.
bool IsAtRisk(const StudentRec& student, int numSessions);

// "Last, First" of a roster entry, an empty part left out.
std::string LastFirstName(const RosterRec& entry);

// The figures of the loaded course. Every session's log is read and scored again, as the report
// pages read them, so Questions and Votes are left holding the last session.
CourseOverview MakeCourseOverview(Course& course);

}  // namespace tallory
