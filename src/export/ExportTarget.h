#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "common/Course.h"
#include "common/Host.h"
#include "export/Export.h"

// The export targets of src/export: the one table of targets, what a target's grade-book reader
// and row writer are given, and the steps every export shares. Not for use outside src/export.

namespace tallory {

// ---- Reading a grade book

// A grade-book row too short for a cell its layout needs: the read ends as for a missing file.
struct GradeBookError {};

// Plain splitting at a separator, quotes or not; an empty text gives no piece at all.
std::vector<std::string> SplitAt(std::string_view text, std::string_view separator);
// Piece `index` of a split row; a row without it is a GradeBookError.
const std::string& CellAt(const std::vector<std::string>& cells, size_t index);
std::string WithoutQuotes(std::string_view text);
// The text in double quotes, as the upload files write a cell and the explanations a file name.
std::string Quoted(std::string_view text);

// A grade book's text as every pass of its reader sees it: read from the file once, or given
// whole. No text when the file cannot be opened (missing, or no regular file).
struct GradeBookText {
    std::string name;  // the file a run-time error names
    std::optional<std::string> text;
};
GradeBookText ReadGradeBookFile(const std::string& path);

// The row of Roster a grade-book reader fills directly, bounds-checked as the table is.
RosterRec& RosterRow(Course& course, int row);

// A student a grade-book reader found, before the roster takes it.
struct GradeBookEntry {
    std::string id;
    std::string lastName;
    std::string firstName;
};
// Adds an entry after the header's place (entry 0); Entries(0..4000): one more ends the read as
// a short row does.
void AddGradeBookEntry(std::vector<GradeBookEntry>& entries, GradeBookEntry entry);
// The entries 1.. enter Roster and RosterIDs(1..), followed by one empty row as the readers leave
// it; returns the count with that row.
int StoreGradeBookEntries(Course& course, std::vector<GradeBookEntry>& entries);
// A row of cells stored at Roster(NumRoster) and RosterIDs(NumRoster), which then counts it. A
// row too short for the last or first name stops the read with the ID already stored.
void AppendRosterRow(Course& course, const std::vector<std::string>& cells, size_t id,
                     size_t lastName, size_t firstName);

// What a grade-book reader leaves for its writer besides Roster.
struct GradeBook {
    std::string header;              // the header cells the upload copies from the grade book
    std::vector<std::string> lines;  // rows that are written back whole (WebCT), in file order
    // Blackboard: the raw name cells of the first grade-book row of each username.
    std::unordered_map<std::string, std::string> rawByUser;
    // The first Roster row of each ID, for the writers that name a student by ID; set by the
    // export before the rows are written.
    std::unordered_map<std::string, int> rosterRowOf;
};

// A target's reader of its grade book over the file's text; returns the number of students found.
using GradeBookReader = int (*)(Course& course, Host& host, GradeBook& book,
                                const GradeBookText& file);

// ---- Writing an upload

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

// How a grade-book target lays its upload out: the header, then a row per student of the grade
// book, the name cells and a score cell per column.
struct UploadLayout {
    bool clearFirst = false;  // the roster is emptied before the grade book is read again
    bool bareName = false;    // opened by bare name, in the current directory (the course folder)
    std::string_view emptyText = {};
    std::string_view doneText = "Wrote upload file: ";  // followed by the upload file's name
    std::string_view totalTitle = "Total";              // SessionTitle(0) while the export runs
    // Gives the user ID of a grade-book line, for targets that walk the lines rather than Roster.
    std::string (*userOf)(const Course& course, Host& host, const std::string& line) = nullptr;
    bool skipEmptyIds = true;  // Roster rows with an empty ID get no line
    std::string (*headerCells)(const GradeBook& book) = nullptr;
    std::string (*heading)(const std::string& label) = nullptr;
    std::string_view headerEnd = " \r\n";
    std::string (*nameCells)(const GradeBook& book, const Course& course,
                             const UploadRow& row) = nullptr;
    std::string (*scoreCell)(double score) = nullptr;
    std::string_view lineEnd = " \r\n";
    UnmatchedRow unmatched = UnmatchedRow::Left;
    int unmatchedFrom = 0;  // the first session of an unmatched row's cells: 0 is the total
    std::string_view unmatchedCell = {};
};

// The exporters' column test: an export-all takes every column, an export-selected the marked
// sessions (ExportSel(0), the total column, is never marked).
bool ColumnWanted(const Course& course, bool fullUpload, int session);

// The skeleton of every upload: the file opened, its text built and written, replaced whole. On
// any failure (the file cannot be opened, a run-time error while the text is built, the write)
// the person sees `failureText` under "Error" and false comes back.
bool WriteUploadFile(Host& host, const std::string& path, std::string_view failureText,
                     const std::function<std::string()>& buildText);
// The message of a failed upload write, for the file name given.
std::string UploadErrorText(std::string_view file);

// A grade-book reader's not-found message: the text for a course with the sibling tool or without
// it, each followed by the help line when `helpLine`.
void ShowGradeBookMissing(const Course& course, Host& host, std::string_view title, Icon icon,
                          std::string_view withTool, std::string_view withoutTool, bool helpLine);

// ---- The targets

// What the explanation of a format says beyond the pairing of its two files.
enum class Explanation {
    None,          // the general format explains nothing
    Pairing,       // roster file and upload file
    WebCTPairing,  // the same, with the upload file spelled as the WebCT help spells it
    Important,     // the pairing and a reminder to export names with the IDs
    Moodle,        // the pairing and Moodle's three download choices
    ChooseSystem,  // an unknown setting: why a course-management system should be chosen
    Canvas,        // the downloaded grade book under its own name, and the upload
};

struct ExportTarget;
// What an export is asked for.
struct ExportRun {
    bool fullUpload = false;
    std::optional<CanvasChoice> canvas;
};
// Writes a target's upload; returns the grade columns written where the target reports them.
using UploadWriter = std::vector<UploadColumn> (*)(Course& course, Host& host,
                                                   const ExportTarget& target,
                                                   const ExportRun& run);

// The upload of a grade-book target: read the grade book again, stop on an empty list, write the
// header and the rows of its layout, report, start the upload tool.
std::vector<UploadColumn> WriteGradeBookUpload(Course& course, Host& host,
                                               const ExportTarget& target, const ExportRun& run);

// A target system: what the course's CMS setting chooses, its files and words, its reader and
// its writer.
struct ExportTarget {
    std::string_view cms = {};  // the setting's value; none for a target reached by its tag alone
    std::string_view caption = {};
    std::string_view tag = {};  // the key the export commands dispatch on
    std::string_view rosterFile = {};
    std::string_view uploadFile = "UploadFile.csv";
    Explanation explanation = Explanation::Pairing;
    GradeBookReader read = nullptr;  // over the text of rosterFile in the course folder
    // A target whose roster is read at course start some other way.
    void (*readAtStart)(Course& course, Host& host, const ExportTarget& target) = nullptr;
    const UploadLayout* layout = nullptr;
    UploadWriter write = WriteGradeBookUpload;
    std::string_view allAs = {};  // export all runs the target of this tag instead
};

// The targets' own parts, each in its target's file.
int ReadAngelGradebook(Course& course, Host& host, GradeBook& book, const GradeBookText& file);
int ReadBlackboardGradebook(Course& course, Host& host, GradeBook& book, const GradeBookText& file);
int ReadD2LGradebook(Course& course, Host& host, GradeBook& book, const GradeBookText& file);
int ReadMoodleRoster(Course& course, Host& host, GradeBook& book, const GradeBookText& file);
int ReadSakaiGradebook(Course& course, Host& host, GradeBook& book, const GradeBookText& file);
int ReadCampusClass(Course& course, Host& host, GradeBook& book, const GradeBookText& file);
int ReadCampusClassByLine(Course& course, Host& host, GradeBook& book, const GradeBookText& file);
int ReadClassLines(Course& course, Host& host, GradeBook& book, const GradeBookText& file);
void ReadGeneralRoster(Course& course, Host& host, const ExportTarget& target);
void ReadClassRoster(Course& course, Host& host, const ExportTarget& target);
void ReadCanvasRoster(Course& course, Host& host, const ExportTarget& target);

extern const UploadLayout kAngelUpload;
extern const UploadLayout kBlackboardUpload;
extern const UploadLayout kBlackboard8Upload;
extern const UploadLayout kD2LUpload;
extern const UploadLayout kMoodleUpload;
extern const UploadLayout kSakaiUpload;
extern const UploadLayout kWebCTUpload;
extern const UploadLayout kCampusUpload;

std::vector<UploadColumn> WriteGeneralUpload(Course& course, Host& host, const ExportTarget& target,
                                             const ExportRun& run);
std::vector<UploadColumn> WriteMoodleUpload(Course& course, Host& host, const ExportTarget& target,
                                            const ExportRun& run);
std::vector<UploadColumn> WriteCanvasUpload(Course& course, Host& host, const ExportTarget& target,
                                            const ExportRun& run);

// Fills the roster as the course opens, with the target's reader.
void ReadTargetRoster(Course& course, Host& host, const ExportTarget& target);

// The row of a CMS value (the fall-back General row for any other), and of a tag.
const ExportTarget& TargetOfSetting(std::string_view cms);
const ExportTarget* TargetOfTag(std::string_view tag);

}  // namespace tallory
