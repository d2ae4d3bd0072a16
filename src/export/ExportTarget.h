#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "common/Course.h"
#include "common/Host.h"

// What the exporters of src/export share: the description of a target system and the one run of
// the steps every target takes. Not for use outside src/export.

namespace tallory {

// A grade-book row too short for a cell its layout needs: the read ends as for a missing file.
struct GradeBookError {};

// Plain splitting at a separator, quotes or not; an empty text gives no piece at all.
std::vector<std::string> SplitAt(std::string_view text, std::string_view separator);
// Piece `index` of a split row; a row without it is a GradeBookError.
const std::string& CellAt(const std::vector<std::string>& cells, size_t index);
std::string WithoutQuotes(std::string_view text);
// A grade book's text as every pass of its reader sees it: read from the file once, or given
// whole. No text when the file cannot be opened (missing, or no regular file).
struct GradeBookText {
    std::string name;  // the file a run-time error names
    std::optional<std::string> text;
};
GradeBookText ReadGradeBookFile(const std::string& path);

// The row of Roster a grade-book reader fills directly, bounds-checked as the table is.
RosterRec& RosterRow(Course& course, int row);

// What a grade-book reader leaves for its writer besides Roster.
struct GradeBook {
    int count = 0;                   // students found; below 1 the export stops
    std::string header;              // the header cells the upload copies from the grade book
    std::vector<std::string> lines;  // rows that are written back whole (WebCT), in file order
    // Blackboard: the raw name cells of the first grade-book row of each username.
    std::unordered_map<std::string, std::string> rawByUser;
    // The first Roster row of each ID, for the writers that name a student by ID; set by RunExport.
    std::unordered_map<std::string, int> rosterRowOf;
};

// One row of an upload: a Roster row, or a grade-book line written back whole.
struct UploadRow {
    std::string id;    // the student ID searched among Students
    std::string line;  // the grade-book line, when the target writes lines back
    const RosterRec* roster = nullptr;
};

// What a grade-book row without scores in this course becomes.
enum class UnmatchedRow {
    Left,       // no line
    NameCells,  // the row's name cells, then blank cells
    FirstName,  // the first name alone, then blank cells
};

// A target system: its files and words, its reader and how its upload is laid out.
struct ExportTarget {
    std::string_view uploadFile;
    bool bareName;  // opened by bare name, in the current directory, which is the course folder
    std::string_view emptyText;
    std::string_view doneText;    // followed by the upload file's name
    std::string_view totalTitle;  // SessionTitle(0) while the export runs
    // Reads the grade book again; returns the number of students found.
    int (*read)(Course& course, Host& host, GradeBook& book);
    // Gives the user ID of a grade-book line, for targets that walk the lines rather than Roster.
    std::string (*userOf)(const Course& course, Host& host, const std::string& line);
    bool skipEmptyIds;  // Roster rows with an empty ID get no line
    std::string (*headerCells)(const GradeBook& book);
    std::string (*heading)(const std::string& label);
    std::string_view headerEnd;
    std::string (*nameCells)(const GradeBook& book, const Course& course, const UploadRow& row);
    std::string (*scoreCell)(double score);
    std::string_view lineEnd;
    UnmatchedRow unmatched;
    int unmatchedFrom;  // the first session of an unmatched row's cells: 0 is the total
    std::string_view unmatchedCell;
};

// The steps every grade-book target shares: read, stop on an empty list, write header and rows,
// report, start the upload tool; on a write failure the one error message.
void RunExport(Course& course, Host& host, const ExportTarget& target, bool fullUpload);

// The message of a failed upload write, for the file name given.
void ShowUploadError(Host& host, std::string_view text);
std::string UploadErrorText(std::string_view file);

// A grade-book reader's not-found message: the text for a course with the sibling tool or without
// it, each followed by the help line when `helpLine`.
void ShowGradeBookMissing(const Course& course, Host& host, std::string_view title, Icon icon,
                          std::string_view withTool, std::string_view withoutTool, bool helpLine);

}  // namespace tallory
