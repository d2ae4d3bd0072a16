#include "reports/Reports.h"
#include "reports/TermPage.h"

namespace tallory {

// The instructor's term page: the term summary's walk, with links to every session's student
// responses and to the students' term report.
void WriteStudentVotingData(Course& course, PageWriter& page) {
    SessionPasses passes;
    WriteStudentVotingData(course, page, passes);
}

void WriteStudentVotingData(Course& course, PageWriter& page, SessionPasses& passes) {
    TermPage kind;
    kind.path = StudentVotingDataPath(course);
    kind.title = "Student Voting Data";
    kind.steps = "Exporting Student Voting Report Steps ";
    kind.finishedText = "Finalizing Student Voting Report 3 Of 3";
    kind.studentPage = true;
    WriteTermPage(course, page, kind, passes);
}

}  // namespace tallory
