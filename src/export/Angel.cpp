// Angel: the grade book gradebook.csv at fixed columns, and an upload that lists every student of
// the grade book, with zeros where the course has no scores.

#include "common/LineReader.h"
#include "common/Numbers.h"
#include "common/RunTimeError.h"
#include "common/Text.h"
#include "export/ExportTarget.h"
#include "registration/Roster.h"

namespace tallory {

namespace {

constexpr std::string_view kTitle = "Angel Roster not found";
constexpr std::string_view kWithoutTool =
    "Exporting in Angel format requires the grade book to be  downloaded and placed in the main "
    "directory with name gradebook.csv.";

// Cells: last name, first name, user ID. The reader puts the students straight into Roster from
// row 1 on, behind the roster's own count.
void StoreRow(Course& course, const std::vector<std::string>& cells, int& next) {
    if (TrimView(CellAt(cells, 2)).empty()) return;
    RosterRec& row = RosterRow(course, next);
    row.FirstName = Trim(cells[1]);
    row.LastName = Trim(cells[0]);
    row.StudentId = Trim(cells[2]);
    ++next;
}

// The second pass, for a file with CR or CR LF line ends: the header line is skipped.
int ReadByLine(Course& course, Host& host, const GradeBookText& file) {
    LineReader reader(file.name, *file.text);
    int next = 1;
    std::string line;
    reader.ReadLine(line);
    while (reader.ReadLine(line))
        if (!TrimView(line).empty()) StoreRow(course, SplitAt(WithoutQuotes(line), ","), next);
    if (next >= 2) return next;
    host.Message(std::string(kWithoutTool) + "\r\n" + GradeBookHelpLine(), kTitle,
                 Icon::Information);
    return 0;
}

}  // namespace

int ReadAngelGradebook(Course& course, Host& host, GradeBook&, const GradeBookText& file) {
    ClearRoster(course);
    try {
        if (!file.text) throw GradeBookError{};
        LineReader reader(file.name, *file.text);
        // Only the last line stays: the whole file when its lines end in bare line feeds. Its
        // quotes stay too.
        std::string text;
        for (std::string line; reader.ReadLine(line);) text = line;
        int next = 1;
        if (!TrimView(text).empty()) {
            const std::vector<std::string> lines = SplitAt(text, "\n");
            for (size_t i = 1; i < lines.size(); ++i)
                if (!lines[i].empty()) StoreRow(course, SplitAt(lines[i], ","), next);
        }
        if (next < 2) next = ReadByLine(course, host, file);
        // The reader's own table of names is never filled: what it hands on is empty, so the
        // roster count ends at one empty row and RosterIDs holds nothing.
        for (int i = 1; i <= next; ++i) {
            course.RosterIDs[i] = "";
            AddRosterEntry(course, "", "", "");
        }
        course.NumRosterIDs = next;
        return next;
    } catch (const GradeBookError&) {
    } catch (const RunTimeError&) {
    }
    ShowGradeBookMissing(
        course, host, kTitle, Icon::Information,
        "Uploading your Polvane scores into Angel format requires that your course gradebook has "
        "already been imported from Angel into your Polvane course folder. Please run 'Campus "
        "Bridgeline' to import your gradebook prior to exporting scores from Tallory.",
        kWithoutTool, true);
    course.NumRosterIDs = 0;
    return 0;
}

namespace {

std::string Header(const GradeBook&) {
    return "Name,User ID";
}

std::string Heading(const std::string& label) {
    return "," + label;
}

// The whole name in one quoted cell, the ID bare.
std::string NameCells(const GradeBook&, const Course&, const UploadRow& row) {
    return Quoted(row.roster->LastName + "," + row.roster->FirstName) + "," + row.roster->StudentId;
}

std::string Score(double score) {
    return ", " + NumberText(score) + " ";
}

}  // namespace

const UploadLayout kAngelUpload{
    .emptyText = "No students found in angel download file. Grades not exported",
    .doneText = "Wrote data to file ",
    .headerCells = Header,
    .heading = Heading,
    .nameCells = NameCells,
    .scoreCell = Score,
    .unmatched = UnmatchedRow::NameCells,
    .unmatchedCell = ", 0",
};

}  // namespace tallory
