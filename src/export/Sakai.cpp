// Sakai: the grade book sakaigradebook.csv, and an upload whose total column is "Cumulative".

#include <vector>

#include "common/LineReader.h"
#include "common/Numbers.h"
#include "common/RunTimeError.h"
#include "common/Text.h"
#include "export/ExportTarget.h"
#include "registration/Roster.h"

namespace tallory {

namespace {

struct Columns {
    int id = -1;
    int name = -1;  // the name takes this cell and the next
};

// The header's cells keep their quotes: a quoted header names no column.
Columns FindColumns(std::string_view header) {
    Columns columns;
    const std::vector<std::string> cells = SplitAt(header, ",");
    for (size_t i = 0; i < cells.size(); ++i) {
        const std::string key = NormalKey(cells[i]);
        if (key == "STUDENT ID") columns.id = static_cast<int>(i);
        if (key == "STUDENT NAME") columns.name = static_cast<int>(i);
    }
    return columns;
}

void ReadRow(std::string_view line, const Columns& columns, std::vector<GradeBookEntry>& entries) {
    const std::vector<std::string> cells = SplitAt(WithoutQuotes(line), ",");
    if (columns.id < 0 || TrimView(CellAt(cells, columns.id)).empty()) return;
    GradeBookEntry entry;
    // The grade book writes "Last, First": the cell after the name's first is the first name, or
    // whatever cell follows a name without comma.
    if (columns.name >= 0) {
        entry.firstName = Trim(CellAt(cells, columns.name + 1));
        entry.lastName = Trim(cells[columns.name]);
    }
    entry.id = Trim(cells[columns.id]);
    AddGradeBookEntry(entries, std::move(entry));
}

// Line by line, for a file with CR or CR LF line ends.
std::vector<GradeBookEntry> ReadEachLine(LineReader& reader) {
    std::vector<GradeBookEntry> entries(1);
    std::string line;
    if (!reader.ReadLine(line)) throw GradeBookError{};
    const Columns columns = FindColumns(line);
    while (reader.ReadLine(line))
        if (!TrimView(line).empty()) ReadRow(line, columns, entries);
    return entries;
}

// The other pass: a file with bare line feeds is one line, which holds all the rows.
std::vector<GradeBookEntry> ReadFirstLine(const GradeBookText& file) {
    LineReader reader(file.name, *file.text);
    std::vector<GradeBookEntry> entries(1);
    std::string text;
    if (!reader.ReadLine(text)) return entries;
    const std::vector<std::string> lines = SplitAt(text, "\n");
    if (lines.empty()) return entries;
    const Columns columns = FindColumns(lines[0]);
    for (size_t i = 1; i < lines.size(); ++i)
        if (!TrimView(lines[i]).empty()) ReadRow(lines[i], columns, entries);
    return entries;
}

}  // namespace

int ReadSakaiGradebook(Course& course, Host& host, GradeBook&, const GradeBookText& file) {
    try {
        if (!file.text) throw GradeBookError{};
        LineReader reader(file.name, *file.text);
        std::vector<GradeBookEntry> entries = ReadEachLine(reader);
        if (entries.size() < 2) entries = ReadFirstLine(file);
        if (entries.size() >= 2) return StoreGradeBookEntries(course, entries);
    } catch (const GradeBookError&) {
    } catch (const RunTimeError&) {
    }
    ShowGradeBookMissing(
        course, host, "Sakai Roster not found", Icon::Information,
        "Uploading your Polvane scores into Sakai requires that your course gradebook has already "
        "been imported from Sakai into your Polvane course folder. Please run 'Campus Bridgeline' "
        "to import your Sakai gradebook prior to exporting scores from Tallory.\r\n" +
            GradeBookHelpLine(),
        "To integrate Polvane with your Sakai system, you must download your Sakai Gradebook and "
        "place a copy in your course folder with the filename \"sakaigradebook.csv\".\r\n\r\nYou "
        "may conduct sessions without this file in place; your student's voting information will "
        "be saved,but may not display or export in the proper format until after the "
        "\"sakaigradebook.csv\" file has been added to your course folder.",
        false);
    course.NumRosterIDs = 0;
    return 0;
}

namespace {

std::string Header(const GradeBook&) {
    return "Student ID,Student Name";
}

std::string Heading(const std::string& label) {
    return "," + Trim(label);
}

// The name cell turns the grade book's "Last, First" round: "First,Last".
std::string NameCells(const GradeBook& book, const Course& course, const UploadRow& row) {
    std::string cells = Trim(row.id) + ",\"";
    auto found = book.rosterRowOf.find(NormalKey(row.id));
    if (found != book.rosterRowOf.end()) {
        const RosterRec& entry = course.Roster[found->second];
        cells += entry.FirstName + "," + entry.LastName;
    } else {
        cells += ",";
    }
    return cells + "\"";
}

std::string Score(double score) {
    return "," + NumberText(score);
}

}  // namespace

const UploadLayout kSakaiUpload{
    .clearFirst = true,
    .emptyText = "No students found in Sakai download file. Grades not exported",
    .totalTitle = "Cumulative",
    .headerCells = Header,
    .heading = Heading,
    .nameCells = NameCells,
    .scoreCell = Score,
};

}  // namespace tallory
