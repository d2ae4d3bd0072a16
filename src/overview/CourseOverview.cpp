#include "overview/CourseOverview.h"

#include <cmath>

#include "common/Text.h"
#include "logs/QuestionName.h"
#include "registration/Roster.h"
#include "reports/PageWriter.h"
#include "scoring/Grading.h"
#include "scoring/SessionStore.h"

namespace tallory {

namespace {

constexpr int kRecentSessions = 3;

int Attended(const StudentRec& student, int numSessions) {
    int attended = 0;
    for (int s = 1; s <= numSessions; ++s)
        if (student.Present[s]) ++attended;
    return attended;
}

// Who answered live question q of the session in Questions and Votes, and how many got it right.
QuestionFigures QuestionOf(const Course& course, int q) {
    const QuestionRec& question = course.Questions[q];
    QuestionFigures figures;
    figures.number = q;
    figures.question = ShownQuestionName(question.Name);
    const int key = question.CorrectAnswer;
    const bool hasKey = key >= 1 && key <= 5;
    int correct = 0;
    for (int v = 1; v <= course.NumVoters; ++v) {
        const int answer = course.Votes[v].Answer[q];
        if (answer < 1 || answer > 5) continue;
        ++figures.answered;
        if (answer == key) ++correct;
    }
    if (hasKey) figures.correct = correct;
    return figures;
}

}  // namespace

bool IsRosterStudent(const StudentRec& student) {
    return !StartsWith(student.StudentId, "#");
}

int TotalBin(double total, double available) {
    if (total >= available) return kTotalBins - 1;
    if (total < 0 || available <= 0) return 0;
    int bin = static_cast<int>(std::floor(total * kTotalBins / available));
    // The division may land a hair off a bin's edge; the edges are k tenths of the whole.
    while (bin < kTotalBins - 1 && total * kTotalBins >= (bin + 1) * available) ++bin;
    while (bin > 0 && total * kTotalBins < bin * available) --bin;
    return bin < 0 ? 0 : bin;
}

bool IsAtRisk(const StudentRec& student, int numSessions) {
    if (numSessions < 1) return false;
    // Fewer than 60%, in whole numbers: attended / sessions < 3 / 5.
    if (Attended(student, numSessions) * 5 < numSessions * 3) return true;
    if (numSessions < kRecentSessions) return false;
    for (int s = numSessions - kRecentSessions + 1; s <= numSessions; ++s)
        if (student.Present[s]) return false;
    return true;
}

std::string LastFirstName(const RosterRec& entry) {
    const std::string last = Trim(entry.LastName), first = Trim(entry.FirstName);
    if (last.empty()) return first;
    if (first.empty()) return last;
    return last + ", " + first;
}

CourseOverview MakeCourseOverview(Course& course) {
    CourseOverview overview;
    const int numSessions = course.NumSessions;

    int students = 0;
    for (int i = 1; i <= course.NumStudents; ++i)
        if (IsRosterStudent(course.Students[i])) ++students;

    for (int s = 1; s <= numSessions; ++s) {
        OpenSession(course, s);
        SessionFigures figures;
        figures.session = s;
        figures.label = SessionLabel(course, s);
        figures.available = TotalPointsAvailable(course);
        figures.students = students;
        double sum = 0;
        for (int i = 1; i <= course.NumStudents; ++i) {
            const StudentRec& student = course.Students[i];
            if (!IsRosterStudent(student) || !student.Present[s]) continue;
            ++figures.present;
            sum += student.Score[s];
        }
        if (students > 0) figures.attendance = static_cast<double>(figures.present) / students;
        if (figures.present > 0) figures.average = sum / figures.present;
        overview.available += figures.available;

        for (int q = 1; q <= course.NumQuestions; ++q) {
            if (!IsLiveQuestion(course.Questions[q])) continue;
            QuestionFigures question = QuestionOf(course, q);
            question.session = s;
            question.label = figures.label;
            overview.questions.push_back(std::move(question));
        }
        overview.sessions.push_back(std::move(figures));
    }

    for (int i = 1; i <= course.NumStudents; ++i) {
        const StudentRec& student = course.Students[i];
        if (!IsRosterStudent(student)) continue;
        ++overview.bins[TotalBin(student.Score[0], overview.available)];
        if (!IsAtRisk(student, numSessions)) continue;
        StudentAtRisk risk;
        risk.row = i;
        risk.id = student.StudentId;
        risk.name = LastFirstName(GetRosterEntry(course, student.StudentId));
        risk.attended = Attended(student, numSessions);
        risk.total = student.Score[0];
        overview.atRisk.push_back(std::move(risk));
    }
    return overview;
}

}  // namespace tallory
