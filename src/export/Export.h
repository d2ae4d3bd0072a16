#pragma once

#include <string>
#include <string_view>

#include "common/Course.h"
#include "common/Host.h"

namespace tallory {

// The two export commands of the main window (lblExportAll, lblExportSelected), dispatched on the
// lblCMS Tag the course was opened with. Export all takes every session and the total column;
// export selected the sessions whose ExportSel flag is set, and refuses when none is.
void ExportAll(Course& course, Host& host, std::string_view tag);
void ExportSelected(Course& course, Host& host, std::string_view tag);

// The exporters' column test: an export-all takes every column, an export-selected the marked
// sessions (ExportSel(0), the total column, is never marked).
bool ColumnWanted(const Course& course, bool fullUpload, int session);

// The General export to `path` (AppPath\UploadFile.csv): asks which identifying columns to write.
void ExportGeneral(Course& course, Host& host, const std::string& path, bool fullUpload);

// The grade-book exporters, each reading its system's grade book again first.
void ExportWebCT(Course& course, Host& host, bool fullUpload);
void ExportWebCTCampus(Course& course, Host& host, bool fullUpload);
void ExportWebCTCampus6(Course& course, Host& host, bool fullUpload);
void ExportBlackboard(Course& course, Host& host, bool fullUpload);
void ExportBlackboard8(Course& course, Host& host, bool fullUpload);
void ExportAngel(Course& course, Host& host, bool fullUpload);
void ExportD2L(Course& course, Host& host, bool fullUpload);
void ExportSakai(Course& course, Host& host, bool fullUpload);
// Moodle's dispatch step: the grade book must be there before ExportMoodle runs.
void CheckMoodleRoster(Course& course, Host& host, bool fullUpload);
void ExportMoodle(Course& course, Host& host, bool fullUpload);

// The course-start readers of the grade books, which fill Roster and RosterIDs and report a
// missing or unreadable file in their system's words.
void ReadCampusClass(Course& course, Host& host);
void ReadBlackboardGradebook(Course& course, Host& host);
void ReadAngelGradebook(Course& course, Host& host);
void ReadD2LGradebook(Course& course, Host& host);
void ReadMoodleRoster(Course& course, Host& host);
void ReadSakaiGradebook(Course& course, Host& host);
// The same readers over the text of their file.
void ReadCampusClassText(Course& course, Host& host, std::string_view text);
void ReadBlackboardGradebookText(Course& course, Host& host, std::string_view text);
void ReadAngelGradebookText(Course& course, Host& host, std::string_view text);
void ReadD2LGradebookText(Course& course, Host& host, std::string_view text);
void ReadMoodleRosterText(Course& course, Host& host, std::string_view text);
void ReadSakaiGradebookText(Course& course, Host& host, std::string_view text);

}  // namespace tallory
