// Desire2Learn: the grade book gradesexport.csv, and an upload in the system's import layout,
// with a " Points Grade" column per session and a "#" at the end of every row.

#include <vector>

#include "common/LineReader.h"
#include "common/Numbers.h"
#include "common/RunTimeError.h"
#include "common/Text.h"
#include "export/ExportTarget.h"
#include "registration/Roster.h"

namespace tallory {

namespace {

// The marks of 16-bit and of UTF-8 text, as 8-bit text shows them.
constexpr std::string_view kUnicodeMark = "\xFF\xFE";
constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

struct Columns {
    int username = -1;
    int lastName = -1;
    int firstName = -1;
};

// Header cells in any order and case; the last cell of a name wins.
Columns FindColumns(std::string_view header) {
    Columns columns;
    if (TrimView(header).empty()) return columns;
    const std::vector<std::string> cells = SplitAt(header, ",");
    if (cells.size() < 3) return columns;
    for (size_t i = 0; i < cells.size(); ++i) {
        const std::string key = NormalKey(cells[i]);
        if (key == "USERNAME") columns.username = static_cast<int>(i);
        if (key == "LAST NAME") columns.lastName = static_cast<int>(i);
        if (key == "FIRST NAME") columns.firstName = static_cast<int>(i);
    }
    return columns;
}

// Every row counts, whether or not a column of it is known.
void ReadRow(std::string_view line, const Columns& columns, std::vector<GradeBookEntry>& entries) {
    const std::vector<std::string> cells = SplitAt(line, ",");
    GradeBookEntry entry;
    if (columns.username >= 0) entry.id = Trim(CellAt(cells, columns.username));
    if (columns.lastName >= 0) entry.lastName = Trim(CellAt(cells, columns.lastName));
    if (columns.firstName >= 0) entry.firstName = Trim(CellAt(cells, columns.firstName));
    AddGradeBookEntry(entries, std::move(entry));
}

// The first pass takes the first line only: the whole file when it uses bare line feeds.
std::vector<GradeBookEntry> ReadWhole(const GradeBookText& file) {
    if (!file.text) throw GradeBookError{};
    LineReader reader(file.name, *file.text);
    std::string text;
    if (!reader.ReadLine(text)) throw GradeBookError{};
    std::vector<GradeBookEntry> entries(1);
    text = WithoutQuotes(text);
    if (TrimView(text).empty()) return entries;
    const std::vector<std::string> lines = SplitAt(ReplaceAllNoCase(text, kUtf8Mark, ""), "\n");
    // A line of the mark alone splits into no line at all, and its header is out of range.
    if (lines.empty()) CheckSubscript(0, 0, -1, "lines");
    const Columns columns = FindColumns(lines[0]);
    for (size_t i = 1; i < lines.size(); ++i)
        if (!TrimView(lines[i]).empty()) ReadRow(lines[i], columns, entries);
    return entries;
}

// The second pass, line by line; only the first line is looked at for the 16-bit mark.
std::vector<GradeBookEntry> ReadByLine(const GradeBookText& file) {
    LineReader reader(file.name, *file.text);
    std::vector<GradeBookEntry> entries(1);
    std::string line;
    if (!reader.ReadLine(line)) return entries;
    const std::string header =
        ReplaceAllNoCase(ReplaceAllNoCase(WithoutQuotes(line), kUnicodeMark, ""), kUtf8Mark, "");
    const Columns columns = FindColumns(header);
    while (reader.ReadLine(line)) {
        const std::string text = ReplaceAllNoCase(WithoutQuotes(line), kUtf8Mark, "");
        if (!TrimView(text).empty()) ReadRow(text, columns, entries);
    }
    return entries;
}

}  // namespace

int ReadD2LGradebook(Course& course, Host& host, GradeBook&, const GradeBookText& file) {
    try {
        std::vector<GradeBookEntry> entries = ReadWhole(file);
        if (entries.size() < 2) entries = ReadByLine(file);
        if (entries.size() >= 2) return StoreGradeBookEntries(course, entries);
    } catch (const GradeBookError&) {
    } catch (const RunTimeError&) {
    }
    ShowGradeBookMissing(
        course, host, "Desire2Learn Roster not found", Icon::None,
        "To integrate Polvane with your Desire2Learn system, \r\nPlease run 'Campus Bridgeline' "
        "to import your Desire2Learn gradebook prior to exporting scores from Tallory.",
        "To integrate Polvane with your Desire2Learn system, you must download your Desire2Learn "
        "Gradebook and place a copy in your course folder with the filename "
        "\"gradesexport.csv\".\r\n\r\nYou may conduct sessions without this file in place; your "
        "student's voting information will be saved,but may not display or export in the proper "
        "format until after the \"gradesexport.csv\" file has been added to your course folder.",
        false);
    course.NumRosterIDs = 0;
    return 0;
}

namespace {

std::string Header(const GradeBook&) {
    return "username";
}

// The system takes no "/" or "\" in a column name: 09/14/2009 becomes 09_14_2009.
std::string Heading(const std::string& label) {
    return ", " + ReplaceAll(ReplaceAll(Trim(label), "/", "_"), "\\", "_") + " Points Grade";
}

std::string NameCells(const GradeBook&, const Course&, const UploadRow& row) {
    return Trim(row.roster->StudentId);
}

// The file writer's own number item: a sign place, the digits, a blank.
std::string Score(double score) {
    return "," + NumberItem(score);
}

}  // namespace

const UploadLayout kD2LUpload{
    .clearFirst = true,
    .emptyText = "No students found in Black Board download file. Grades not exported",
    .headerCells = Header,
    .heading = Heading,
    .headerEnd = ", End-of-Line Indicator \r\n",
    .nameCells = NameCells,
    .scoreCell = Score,
    .lineEnd = ",#\r\n",
};

}  // namespace tallory
