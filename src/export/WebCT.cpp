// WebCT and its Campus Edition, both from class.txt. The WebCT upload writes the grade-book lines
// back with the scores appended; the Campus Edition uploads write three fresh name columns.

#include <algorithm>
#include <vector>

#include "common/LineReader.h"
#include "common/Numbers.h"
#include "common/Paths.h"
#include "common/RunTimeError.h"
#include "common/Text.h"
#include "export/ExportTarget.h"
#include "registration/Roster.h"
#include "start/Fields.h"

namespace tallory {

namespace {

// class.txt carries the whole grade book, so its lines can be wide.
constexpr int kClassTopField = 999;

// ---- WebCT: the grade-book lines themselves

// The lines of class.txt cut to the name columns, the header first. A line may hold several rows
// separated by bare line feeds; a row too short for the name columns is left out.
}  // namespace

int ReadClassLines(Course& course, Host& host, GradeBook& book, const GradeBookText& file) {
    if (!file.text) {
        host.Message(
            "Exporting in WebCT format requires the grade book to be downloaded and placed in "
            "the main directory with name class.txt");
        return -1;
    }
    LineReader reader(file.name, *file.text);
    const int widest = std::max({course.WebCTLastCol, course.WebCTFirstCol, course.WebCTUserCol});
    Fields cells(kClassTopField);
    std::vector<std::string> lines;
    for (std::string line; reader.ReadLine(line);) {
        for (size_t start = 0; start < line.size();) {
            size_t end = line.find('\n', start);
            if (end == std::string::npos) end = line.size();
            SplitFields(std::string_view(line).substr(start, end - start), cells);
            start = end + 1;
            if (cells.Count() < widest) continue;
            std::string kept;
            for (int i = 0; i <= widest; ++i) kept += (i > 0 ? "," : "") + cells.Text(i);
            // ClassLines(0..4000): the grade book ends at that row.
            if (lines.size() > static_cast<size_t>(kMaxRoster)) break;
            lines.push_back(std::move(kept));
        }
    }
    if (lines.empty()) return -1;
    book.header = lines.front();
    book.lines.assign(lines.begin() + 1, lines.end());
    return static_cast<int>(book.lines.size());
}

void ReadClassRoster(Course& course, Host& host, const ExportTarget&) {
    ReadWebCTRoster(course, host);
}

namespace {

// The user ID of a kept line, from the column the course found at start.
std::string WebCTUserOf(const Course& course, Host& host, const std::string& line) {
    Fields cells(kClassTopField);
    SplitFields(line, cells);
    if (course.WebCTUserCol < 0 || cells.Count() < course.WebCTUserCol) {
        host.Message("Unable to convert username:" + line);
        return {};
    }
    return cells.Text(course.WebCTUserCol);
}

std::string LineHeader(const GradeBook& book) {
    return book.header;
}

std::string Heading(const std::string& label) {
    return "," + label;
}

std::string KeptLine(const GradeBook&, const Course&, const UploadRow& row) {
    return row.line;
}

std::string SpacedScore(double score) {
    return ", " + NumberText(score) + " ";
}

constexpr std::string_view kEmpty = "No students found in WebCT download file. Grades not exported";

}  // namespace

// The one upload opened by its bare name: it lands in the current directory, the course folder.
const UploadLayout kWebCTUpload{
    .bareName = true,
    .emptyText = kEmpty,
    .userOf = WebCTUserOf,
    .skipEmptyIds = false,
    .headerCells = LineHeader,
    .heading = Heading,
    .nameCells = KeptLine,
    .scoreCell = SpacedScore,
    .unmatched = UnmatchedRow::NameCells,
    .unmatchedFrom = 1,
    .unmatchedCell = ",  ",
};

namespace {

// ---- Campus Edition: a plain split at commas, quotes or not

struct CampusColumns {
    size_t lastName = 0;
    size_t firstName = 1;
    size_t user = 2;
};

CampusColumns FindCampusColumns(std::string_view header) {
    CampusColumns columns;
    if (TrimView(header).empty()) return columns;
    const std::vector<std::string> cells = SplitAt(header, ",");
    bool last = false, first = false, user = false;
    for (size_t i = 0; i < cells.size(); ++i) {
        const std::string key = NormalKey(cells[i]);
        if (key == "LAST NAME" && !last) last = true, columns.lastName = i;
        if (key == "FIRST NAME" && !first) first = true, columns.firstName = i;
        if (key == "USER ID" && !user) user = true, columns.user = i;
    }
    return columns;
}

// A row with a second cell enters Roster at NumRoster, whichever column that cell is.
void ReadCampusRow(Course& course, std::string_view line, const CampusColumns& columns) {
    const std::vector<std::string> cells = SplitAt(line, ",");
    if (TrimView(CellAt(cells, 1)).empty()) return;
    AppendRosterRow(course, cells, columns.user, columns.lastName, columns.firstName);
}

// Only Roster rows 0..NumRoster-1 count for the look-up; the counts come down to zero after a
// reader's failure.
int CampusRows(Course& course, int count) {
    course.NumRoster = count;
    course.NumRosterIDs = count;
    RebuildRosterIndex(course);
    return count;
}

}  // namespace

// The second pass, one row per line: a file with CR or CR LF line ends.
int ReadCampusClassByLine(Course& course, Host& host, GradeBook&, const GradeBookText& file) {
    course.NumRoster = 1;
    try {
        if (!file.text) throw GradeBookError{};
        LineReader reader(file.name, *file.text);
        std::string line;
        if (reader.ReadLine(line)) {
            ClearRoster(course);
            const CampusColumns columns = FindCampusColumns(line);
            while (reader.ReadLine(line))
                if (!TrimView(line).empty()) ReadCampusRow(course, line, columns);
        }
        // The file is there: too few rows make it a corrupt one.
        if (course.NumRoster < 2)
            host.Message("Unable to read class.txt, The file may be corrupt.",
                         "Unable to read class.txt", Icon::Information);
        return CampusRows(course, course.NumRoster);
    } catch (const GradeBookError&) {
    } catch (const RunTimeError&) {
    }
    host.Message(
        "Exporting in Blackboard (WebCT) Campus Edition {Ver 6,6.1.1,6.1.2} format requires the "
        "grade book to be  downloaded and placed in the main directory with name class.txt.\r\n" +
            GradeBookHelpLine(),
        "Blackboard (WebCT) Campus Edition {Ver 6,6.1.1,6.1.2} Roster Not Found",
        Icon::Information);
    return CampusRows(course, 0);
}

// The first pass reads one line, which is the whole file when its lines end in bare line feeds.
int ReadCampusClass(Course& course, Host& host, GradeBook& book, const GradeBookText& file) {
    course.NumRoster = 1;
    try {
        if (!file.text) throw GradeBookError{};
        LineReader reader(file.name, *file.text);
        std::string text;
        if (reader.ReadLine(text)) {
            ClearRoster(course);
            const std::vector<std::string> lines = SplitAt(text, "\n");
            const CampusColumns columns = FindCampusColumns(lines.empty() ? "" : lines[0]);
            for (size_t i = 1; i < lines.size(); ++i)
                if (!TrimView(lines[i]).empty()) ReadCampusRow(course, lines[i], columns);
        }
        if (course.NumRoster >= 2) return CampusRows(course, course.NumRoster);
        return ReadCampusClassByLine(course, host, book, file);
    } catch (const GradeBookError&) {
    } catch (const RunTimeError&) {
    }
    ShowGradeBookMissing(
        course, host, "File Not Found", Icon::Information,
        "Uploading your Polvane scores into WebCT Campus Edition requires that your course "
        "gradebook has already been imported from WebCT Campus Edition into your Polvane course "
        "folder. Please run 'Campus Bridgeline' to import your WebCT Campus Edition gradebook "
        "prior to exporting scores from Tallory.",
        "Exporting in WebCT Campus Edition format requires the grade book to be  downloaded and "
        "placed in the main directory with name class.txt.",
        true);
    return CampusRows(course, 0);
}

namespace {

std::string CampusHeader(const GradeBook&) {
    return "Last Name,First Name,User ID";
}

std::string CampusNames(const GradeBook&, const Course&, const UploadRow& row) {
    return row.roster->LastName + "," + row.roster->FirstName + "," + row.roster->StudentId;
}

std::string CampusScore(double score) {
    return "," + NumberText(score) + " ";
}

}  // namespace

const UploadLayout kCampusUpload{
    .emptyText = kEmpty,
    .skipEmptyIds = false,
    .headerCells = CampusHeader,
    .heading = Heading,
    .nameCells = CampusNames,
    .scoreCell = CampusScore,
    .unmatched = UnmatchedRow::FirstName,
    .unmatchedFrom = 1,
    .unmatchedCell = ", ",
};

}  // namespace tallory
