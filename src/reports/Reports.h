#pragma once

#include "common/Course.h"
#include "reports/PageWriter.h"
#include "reports/SessionPasses.h"

namespace tallory {

// The writers of the report pages, one file each. Every writer that needs a session's figures
// reads and scores its log into Questions and Votes, so the tables are left as the last page read
// them. The term pages of one run share their passes over the sessions.

// "\Reports\SessionSummary_n.html": the class-wide page of session n.
void WriteSessionSummary(Course& course, PageWriter& page, int session);
// The same for the session the tables hold.
void WriteOpenedSessionSummary(const Course& course, PageWriter& page, int session);
// One live question's block on the session summary; nothing for a deleted question.
void WriteQuestionBlock(PageWriter& page, const Course& course, int question, int session);

// "\Reports\SessionDetail_n.html": the votes of every student of session n.
void WriteSessionDetail(Course& course, PageWriter& page, int session);
void WriteOpenedSessionDetail(const Course& course, PageWriter& page, int session);

// "\Term_Session Summary and Review.html", then the student voting data.
void WriteTermSummary(Course& course, PageWriter& page);
void WriteTermSummary(Course& course, PageWriter& page, SessionPasses& passes);
// "\Student Voting Data.html".
void WriteStudentVotingData(Course& course, PageWriter& page);
void WriteStudentVotingData(Course& course, PageWriter& page, SessionPasses& passes);

// "\Reports\StudentTermReport.html".
void WriteStudentTermReport(Course& course, PageWriter& page);
void WriteStudentTermReport(Course& course, PageWriter& page, SessionPasses& passes);

}  // namespace tallory
