// Blackboard: the grade book gb_export.csv, in one of two layouts, and the two upload writers.

#include <vector>

#include "common/LineReader.h"
#include "common/Numbers.h"
#include "common/RunTimeError.h"
#include "common/Text.h"
#include "export/ExportTarget.h"
#include "registration/Roster.h"

namespace tallory {

namespace {

// What one pass over gb_export.csv found. Row 0 of `entries` stands for the header.
struct Pass {
    bool columns = false;  // the three separate columns, rather than names joined with the ID
    std::vector<GradeBookEntry> entries = std::vector<GradeBookEntry>(1);
    std::vector<std::pair<std::string, std::string>> raw;  // username and raw name cells per row
};

// The mark of 16-bit text as 8-bit text shows it; the file is not decoded any further.
std::string WithoutQuotesAndMark(std::string_view text) {
    return ReplaceAllNoCase(WithoutQuotes(text), "\xFF\xFE", "");
}

bool IsColumnsHeader(const std::vector<std::string>& cells) {
    return cells.size() >= 3 && NormalKey(cells[0]) == "LAST NAME" &&
           NormalKey(cells[1]) == "FIRST NAME" && NormalKey(cells[2]) == "USERNAME";
}

// The header: its first two cells are the upload's header cell.
void ReadHeader(std::string_view line, bool keepRaw, Pass& pass, GradeBook& book) {
    if (TrimView(line).empty()) return;
    const std::vector<std::string> cells = SplitAt(line, ",");
    if (keepRaw) book.header = CellAt(cells, 0) + "," + CellAt(cells, 1);
    if (IsColumnsHeader(cells)) pass.columns = true;
}

// A student row. Joined layout: "Doe","Ann (adoe)|12345", the username in parentheses.
void ReadRow(std::string_view line, Pass& pass) {
    const std::vector<std::string> cells = SplitAt(line, ",");
    GradeBookEntry entry;
    if (pass.columns) {
        entry.lastName = Trim(WithoutQuotes(CellAt(cells, 0)));
        entry.firstName = Trim(WithoutQuotes(CellAt(cells, 1)));
        entry.id = Trim(WithoutQuotes(CellAt(cells, 2)));
    } else {
        const std::string raw = CellAt(cells, 0) + "," + CellAt(cells, 1);
        const std::string names = Trim(cells[1]);
        entry.lastName = WithoutQuotes(Trim(cells[0]));
        entry.firstName = WithoutQuotes(Trim(names.substr(0, names.find('('))));
        const std::vector<std::string> beforeId = SplitAt(names, "|");
        const std::vector<std::string> nameAndUser = SplitAt(Trim(CellAt(beforeId, 0)), "(");
        std::string user = Trim(CellAt(nameAndUser, 1));
        for (std::string_view mark : {")", "|", "\""}) user = ReplaceAll(user, mark, "");
        entry.id = Trim(user);
        pass.raw.emplace_back(entry.id, raw);
    }
    AddGradeBookEntry(pass.entries, std::move(entry));
}

// The first pass reads the file as one text. A file with bare line feeds keeps its rows that way;
// a file with CR LF becomes one long line and gives no rows.
Pass ReadWhole(const GradeBookText& file, GradeBook& book) {
    if (!file.text) throw GradeBookError{};
    LineReader reader(file.name, *file.text);
    std::string text;
    for (std::string line; reader.ReadLine(line);) text += line;
    Pass pass;
    if (TrimView(text).empty()) return pass;
    const std::vector<std::string> lines = SplitAt(WithoutQuotesAndMark(text), "\n");
    // A text of quotes alone splits into no line at all, and its header is out of range.
    if (lines.empty()) CheckSubscript(0, 0, -1, "lines");
    ReadHeader(lines[0], lines.size() > 1, pass, book);
    for (size_t i = 1; i < lines.size(); ++i)
        if (!TrimView(lines[i]).empty()) ReadRow(lines[i], pass);
    return pass;
}

// The second pass, line by line, for a file with CR or CR LF line ends.
Pass ReadByLine(const GradeBookText& file, GradeBook& book) {
    if (!file.text) throw GradeBookError{};
    LineReader reader(file.name, *file.text);
    Pass pass;
    std::string line;
    if (reader.ReadLine(line)) ReadHeader(WithoutQuotesAndMark(line), true, pass, book);
    while (reader.ReadLine(line)) {
        const std::string text = WithoutQuotesAndMark(line);
        if (!TrimView(text).empty()) ReadRow(text, pass);
    }
    return pass;
}

}  // namespace

int ReadBlackboardGradebook(Course& course, Host& host, GradeBook& book,
                            const GradeBookText& file) {
    try {
        Pass pass = ReadWhole(file, book);
        if (pass.entries.size() < 2) pass = ReadByLine(file, book);
        if (pass.entries.size() < 2) throw GradeBookError{};
        const int next = StoreGradeBookEntries(course, pass.entries);
        for (const auto& [user, raw] : pass.raw) book.rawByUser.emplace(NormalKey(user), raw);
        return next;
    } catch (const GradeBookError&) {
    } catch (const RunTimeError&) {
    }
    ShowGradeBookMissing(
        course, host, "Blackboard Roster not found", Icon::Information,
        "Uploading your Polvane scores into Blackboard requires that your course gradebook has "
        "already been imported from Blackboard into your Polvane course folder. Please run "
        "'Campus Bridgeline' to import your Blackboard gradebook prior to exporting scores from "
        "Tallory.",
        "Exporting in Blackboard format requires the grade book to be  downloaded and placed in "
        "the main directory with name gb_export.csv.",
        true);
    course.NumRosterIDs = 0;
    return 0;
}

namespace {

std::string RawHeader(const GradeBook& book) {
    return Quoted(book.header);
}

std::string SeparateHeader(const GradeBook&) {
    return "\"Last Name\",\"First Name\",\"Username\"";
}

std::string PlainHeading(const std::string& label) {
    return "," + label;
}

std::string QuotedHeading(const std::string& label) {
    return "," + Quoted(label);
}

// The grade book's own name cells of the student, as one cell; empty in the three-column layout.
std::string GradeBookRawOf(const GradeBook& book, const Course&, const UploadRow& row) {
    auto found = book.rawByUser.find(NormalKey(row.id));
    return Quoted(found == book.rawByUser.end() ? std::string() : found->second);
}

std::string RosterCellsOf(const GradeBook& book, const Course& course, const UploadRow& row) {
    auto found = book.rosterRowOf.find(NormalKey(row.id));
    if (found == book.rosterRowOf.end()) return Quoted(row.id);
    const RosterRec& entry = course.Roster[found->second];
    return Quoted(entry.LastName + "\",\"" + entry.FirstName + "\",\"" + entry.StudentId);
}

std::string QuotedScore(double score) {
    return "," + Quoted(NumberText(score));
}

// The two uploads differ in the header and the name cells: the grade book's own, or the roster's
// in three quoted columns.
constexpr UploadLayout BlackboardLayout(bool separateColumns) {
    return UploadLayout{
        .clearFirst = true,
        .emptyText = "No students found in Black Board download file. Grades not exported",
        .headerCells = separateColumns ? SeparateHeader : RawHeader,
        .heading = separateColumns ? QuotedHeading : PlainHeading,
        .nameCells = separateColumns ? RosterCellsOf : GradeBookRawOf,
        .scoreCell = QuotedScore,
    };
}

}  // namespace

const UploadLayout kBlackboardUpload = BlackboardLayout(false);
const UploadLayout kBlackboard8Upload = BlackboardLayout(true);

}  // namespace tallory
