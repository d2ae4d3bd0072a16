// Moodle: the tab-separated grade book MoodleRoster.txt, and the tab-separated upload
// MoodleUpload.xls. The email address serves as the student's ID.

#include <vector>

#include "common/LineReader.h"
#include "common/Numbers.h"
#include "common/Paths.h"
#include "common/RunTimeError.h"
#include "common/Text.h"
#include "export/ExportTarget.h"
#include "registration/Roster.h"

namespace tallory {

namespace {

// A header without one of the names reads that name from the first cell.
struct Columns {
    size_t firstName = 0;
    size_t surname = 0;
    size_t email = 0;
};

Columns FindColumns(std::string_view header) {
    Columns columns;
    const std::vector<std::string> cells = SplitAt(header, "\t");
    for (size_t i = 0; i < cells.size(); ++i) {
        const std::string key = NormalKey(cells[i]);
        if (key == "FIRST NAME") columns.firstName = i;
        if (key == "SURNAME") columns.surname = i;
        if (ContainsNoCase(cells[i], "Email")) columns.email = i;
    }
    return columns;
}

// Students fill Roster from row 0, counted by NumRoster.
void ReadRow(Course& course, std::string_view line, const Columns& columns) {
    const std::vector<std::string> cells = SplitAt(line, "\t");
    if (TrimView(CellAt(cells, 0)).empty()) return;
    AppendRosterRow(course, cells, columns.email, columns.surname, columns.firstName);
}

// The file with CR or CR LF line ends, one line at a time.
void ReadByLine(Course& course, const GradeBookText& file) {
    LineReader reader(file.name, *file.text);
    std::string line;
    if (!reader.ReadLine(line)) return;
    const Columns columns = FindColumns(line);
    while (reader.ReadLine(line))
        if (!TrimView(line).empty()) ReadRow(course, line, columns);
}

}  // namespace

int ReadMoodleRoster(Course& course, Host& host, GradeBook&, const GradeBookText& file) {
    course.NumRoster = 1;
    try {
        if (!file.text) throw GradeBookError{};
        LineReader reader(file.name, *file.text);
        std::string text;
        if (reader.ReadLine(text)) {
            ClearRoster(course);
            const std::vector<std::string> lines = SplitAt(text, "\n");
            if (lines.size() > 1) {
                const Columns columns = FindColumns(lines[0]);
                for (size_t i = 1; i < lines.size(); ++i)
                    if (!TrimView(lines[i]).empty()) ReadRow(course, lines[i], columns);
            } else {
                ReadByLine(course, file);
            }
        }
    } catch (const GradeBookError&) {
    } catch (const RunTimeError&) {
    }
    // The rows so far stay, even after a short row.
    if (course.NumRoster >= 2) {
        RebuildRosterIndex(course);
        course.NumRosterIDs = course.NumRoster;
        return course.NumRoster;
    }
    ShowGradeBookMissing(
        course, host, "File Not Found", Icon::Information,
        "Uploading your Polvane scores into Moodle requires that your course gradebook has "
        "already been imported from Moodle into your Polvane course folder. Please run 'Campus "
        "Bridgeline' to import your Moodle gradebook prior to exporting scores from Tallory.",
        "Exporting in Moodle {Ver 1.6, 1.8} format requires the grade book to be  downloaded and "
        "placed in the main directory with name MoodleRoster.txt.",
        true);
    course.NumRoster = 0;
    RebuildRosterIndex(course);
    return 0;
}

namespace {

std::string Header(const GradeBook&) {
    return "First name\tSurname\tID number";
}

std::string Heading(const std::string& label) {
    return "\t" + label;
}

std::string NameCells(const GradeBook&, const Course&, const UploadRow& row) {
    return row.roster->FirstName + "\t" + row.roster->LastName + "\t" + row.roster->StudentId;
}

std::string Score(double score) {
    return "\t" + NumberText(score) + " ";
}

}  // namespace

const UploadLayout kMoodleUpload{
    .emptyText = "No students found in Moodle download file. Grades not exported",
    .skipEmptyIds = false,
    .headerCells = Header,
    .heading = Heading,
    .nameCells = NameCells,
    .scoreCell = Score,
    .unmatched = UnmatchedRow::FirstName,
    .unmatchedFrom = 1,
    .unmatchedCell = "\t ",
};

// The grade book must be there before the export runs.
std::vector<UploadColumn> WriteMoodleUpload(Course& course, Host& host, const ExportTarget& target,
                                            const ExportRun& run) {
    if (!FileExists(CoursePath(course.AppPath, "\\MoodleRoster.Txt"))) {
        host.Message("Please copy student Grade Book (Exported in Text File)from Moodle in '\r\n" +
                         course.AppPath +
                         "' folder and rename it to 'MoodleRoster.Txt' and then try again",
                     "MoodleRoster Not found", Icon::Information);
        return {};
    }
    return WriteGradeBookUpload(course, host, target, run);
}

}  // namespace tallory
