#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/Course.h"
#include "common/Host.h"

namespace tallory {

// How the Canvas upload is laid out: what the desktop program's export dialog asks (and the course
// settings remember), and what a command line gives instead.
struct CanvasChoice {
    bool totalColumn = false;  // one "Clicker Total" column instead of one per session
    bool absentZero = false;   // a session without a score counts 0 instead of staying blank
    bool operator==(const CanvasChoice&) const = default;
};

// A grade column an export wrote: its heading and its points possible.
struct UploadColumn {
    std::string title;
    double points = 0;
};

// The two export commands of the main window (lblExportAll, lblExportSelected), dispatched on the
// lblCMS Tag the course was opened with. Export all takes every session and the total column;
// export selected the sessions whose ExportSel flag is set, and refuses when none is. A Canvas
// export takes `canvas` as its layout, or asks for one without it; it returns the grade columns it
// wrote (none for the other targets).
std::vector<UploadColumn> ExportAll(Course& course, Host& host, std::string_view tag,
                                    const std::optional<CanvasChoice>& canvas = std::nullopt);
std::vector<UploadColumn> ExportSelected(Course& course, Host& host, std::string_view tag,
                                         const std::optional<CanvasChoice>& canvas = std::nullopt);

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
// Canvas writes CanvasUpload.csv in the layout given, or the one the person chooses.
std::vector<UploadColumn> ExportCanvas(Course& course, Host& host, bool fullUpload,
                                       const std::optional<CanvasChoice>& choice);

// The course-start readers of the grade books, which fill Roster and RosterIDs and report a
// missing or unreadable file in their system's words.
void ReadCampusClass(Course& course, Host& host);
void ReadBlackboardGradebook(Course& course, Host& host);
void ReadAngelGradebook(Course& course, Host& host);
void ReadD2LGradebook(Course& course, Host& host);
void ReadMoodleRoster(Course& course, Host& host);
void ReadSakaiGradebook(Course& course, Host& host);
// The newest Canvas grade book of the course folder, or Roster.txt when there is none.
void ReadCanvasRoster(Course& course, Host& host);
// The same readers over the text of their file.
void ReadCampusClassText(Course& course, Host& host, std::string_view text);
void ReadBlackboardGradebookText(Course& course, Host& host, std::string_view text);
void ReadAngelGradebookText(Course& course, Host& host, std::string_view text);
void ReadD2LGradebookText(Course& course, Host& host, std::string_view text);
void ReadMoodleRosterText(Course& course, Host& host, std::string_view text);
void ReadSakaiGradebookText(Course& course, Host& host, std::string_view text);

}  // namespace tallory
