// Canvas: the grade book an instructor downloads from Canvas ("Export Entire Gradebook", left in
// the course folder under the name Canvas gives it), which is also the course's roster, and the
// upload CanvasUpload.csv that the grade import of Canvas takes: one column per session or one
// total column, with a Points Possible row.

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <unordered_map>
#include <vector>

#include "common/ChangeJournal.h"
#include "common/Numbers.h"
#include "common/Paths.h"
#include "common/Text.h"
#include "export/ExportTarget.h"
#include "logs/SessionLog.h"
#include "registration/Roster.h"
#include "scoring/Grading.h"
#include "scoring/ScreenParts.h"
#include "scoring/SessionStore.h"
#include "start/Settings.h"

namespace tallory {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
// The identifying columns of an upload, in the order Canvas reads them.
constexpr std::string_view kIdentityHeader = "Student,ID,SIS User ID,SIS Login ID,Section";
constexpr std::string_view kPointsPossible = "Points Possible";
// The settings that remember the layout chosen in the export dialog.
constexpr Setting kColumnsSetting{"CanvasColumns", "Sessions"};  // or "Total"
constexpr Setting kAbsentSetting{"CanvasAbsent", "Blank"};       // or "Zero"

// ---- Comma-separated text as Canvas writes and reads it

// One record from `at` on: fields split at `separator`; a field that begins with a double quote
// runs to its closing quote and may hold separators, line ends and doubled quotes. The record ends
// at CR LF, LF or CR outside quotes. Text after a closing quote joins the field, and a quote
// inside an unquoted field is text, so a hand-edited file still reads.
std::vector<std::string> ReadRecord(std::string_view text, size_t& at, char separator) {
    std::vector<std::string> fields(1);
    bool quoted = false;
    bool fieldStart = true;
    while (at < text.size()) {
        const char c = text[at++];
        if (quoted) {
            if (c != '"') {
                fields.back() += c;
            } else if (at < text.size() && text[at] == '"') {
                fields.back() += '"';
                ++at;
            } else {
                quoted = false;
            }
        } else if (c == '"' && fieldStart) {
            quoted = true;
            fieldStart = false;
        } else if (c == separator) {
            fields.emplace_back();
            fieldStart = true;
        } else if (c == '\r' || c == '\n') {
            if (c == '\r' && at < text.size() && text[at] == '\n') ++at;
            break;
        } else {
            fields.back() += c;
            fieldStart = false;
        }
    }
    return fields;
}

// Canvas takes ";" as the separator of a file only when it gives more fields than "," over the
// first three lines; the reading here does the same.
char SeparatorOf(std::string_view text) {
    auto fieldsOfFirstLines = [text](char separator) {
        size_t at = 0, count = 0;
        for (int line = 0; line < 3 && at < text.size(); ++line)
            count += ReadRecord(text, at, separator).size();
        return count;
    };
    return fieldsOfFirstLines(';') > fieldsOfFirstLines(',') ? ';' : ',';
}

// A field as RFC 4180 writes it: in double quotes, inner quotes doubled, when it holds a comma, a
// quote or a line end.
std::string CsvField(std::string_view text) {
    if (text.find_first_of(",\"\r\n") == std::string_view::npos) return std::string(text);
    return "\"" + ReplaceAll(text, "\"", "\"\"") + "\"";
}

// A figure as Canvas reads it whatever the instructor's locale: "." before at most four decimals,
// no exponent and no thousands separator ("12", "7.5", "0.3333").
std::string CanvasNumber(double value) {
    char digits[400];
    std::snprintf(digits, sizeof digits, "%.4f", value);
    std::string text = digits;
    while (text.back() == '0') text.pop_back();
    if (text.back() == '.') text.pop_back();
    return text == "-0" ? "0" : text;
}

// ---- The grade book

struct GradeBookStudent {
    std::string student;  // "Last, First", as the grade book gives it
    std::string canvasId, sisLoginId, section;
    std::string studentId;  // SIS User ID, else SIS Login ID
};

struct CanvasGradeBook {
    std::string file;  // its name in the course folder
    std::vector<std::string> header;
    std::vector<GradeBookStudent> students;  // in file order, the first row of each student ID
    std::unordered_map<std::string, size_t> studentOf;  // NormalKey(student ID) -> students row

    const GradeBookStudent* Find(std::string_view studentId) const {
        auto found = studentOf.find(NormalKey(studentId));
        return found == studentOf.end() ? nullptr : &students[found->second];
    }
};

// The grade book in a text; none when its first line lacks the cells Student, ID and Section.
std::optional<CanvasGradeBook> ParseGradeBook(std::string_view text) {
    if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
    const char separator = SeparatorOf(text);
    size_t at = 0;
    CanvasGradeBook book;
    book.header = ReadRecord(text, at, separator);
    auto column = [&book](std::string_view name) {
        for (size_t i = 0; i < book.header.size(); ++i)
            if (NormalKey(book.header[i]) == name) return static_cast<int>(i);
        return -1;
    };
    const int student = column("STUDENT"), id = column("ID"), section = column("SECTION");
    if (student < 0 || id < 0 || section < 0) return std::nullopt;
    const int sisUserId = column("SIS USER ID"), sisLoginId = column("SIS LOGIN ID");
    while (at < text.size()) {
        const std::vector<std::string> cells = ReadRecord(text, at, separator);
        auto cell = [&cells](int index) {
            return index >= 0 && static_cast<size_t>(index) < cells.size() ? Trim(cells[index])
                                                                           : std::string();
        };
        // The Points Possible row and the rows of posting policies name no student.
        if (NormalKey(cell(student)) == NormalKey(kPointsPossible)) continue;
        GradeBookStudent entry{cell(student), cell(id), cell(sisLoginId), cell(section),
                               cell(sisUserId)};
        if (entry.studentId.empty()) entry.studentId = entry.sisLoginId;
        // A student without an SIS ID (the test student) cannot be matched to a clicker.
        if (entry.studentId.empty()) continue;
        if (!book.studentOf.emplace(NormalKey(entry.studentId), book.students.size()).second)
            continue;
        book.students.push_back(std::move(entry));
    }
    return book;
}

bool EndsWithNoCase(std::string_view text, std::string_view end) {
    return text.size() >= end.size() && ToUpper(text.substr(text.size() - end.size())) == end;
}

// The newest grade book of the course folder: of its *.csv files (the upload aside), the newest
// whose first line names the columns; of two equally new ones, the name that sorts last, as the
// date-stamped names Canvas gives its downloads do.
std::optional<CanvasGradeBook> FindGradeBook(const std::string& folder,
                                             std::string_view uploadFile) {
    struct Candidate {
        std::filesystem::file_time_type time;
        std::string name;
    };
    std::vector<Candidate> candidates;
    for (const std::string& name : ListFiles(folder)) {
        if (!EndsWithNoCase(name, ".CSV") || NormalKey(name) == NormalKey(uploadFile)) continue;
        std::error_code error;
        const auto time = std::filesystem::last_write_time(JoinPath(folder, name), error);
        if (!error) candidates.push_back({time, name});
    }
    std::sort(candidates.begin(), candidates.end(), [](const Candidate& a, const Candidate& b) {
        return a.time != b.time ? a.time > b.time : a.name > b.name;
    });
    for (const Candidate& candidate : candidates) {
        const GradeBookText file = ReadGradeBookFile(JoinPath(folder, candidate.name));
        if (!file.text) continue;
        std::optional<CanvasGradeBook> book = ParseGradeBook(*file.text);
        if (!book) continue;
        book->file = candidate.name;
        return book;
    }
    return std::nullopt;
}

void SplitStudentName(std::string_view name, std::string& last, std::string& first) {
    const size_t comma = name.find(',');
    last = Trim(name.substr(0, comma));
    first = comma == std::string_view::npos ? std::string() : Trim(name.substr(comma + 1));
}

// ---- What the upload holds

// The layout the person chose last, remembered in the course settings.
CanvasChoice RememberedChoice(const Course& course) {
    return CanvasChoice{NormalKey(GetParam(course, kColumnsSetting)) == "TOTAL",
                        NormalKey(GetParam(course, kAbsentSetting)) == "ZERO"};
}

// The export dialog's four layouts, in the order column kind, then absence; the fifth option
// button stays hidden.
OptionDialog CanvasDialog(const CanvasChoice& preselected) {
    OptionDialog dialog;
    dialog.title = "Canvas export options";
    dialog.heading = "How should your clicker scores appear in the Canvas grade book?";
    dialog.choices = {
        "One column per session; a session the student missed stays blank",
        "One column per session; a session the student missed counts 0",
        "One \"Clicker Total\" column; a student who missed every session stays blank",
        "One \"Clicker Total\" column; a student who missed every session gets 0",
        "",
    };
    dialog.footer =
        "Tallory writes CanvasUpload.csv in your course folder. In Canvas, open Grades, choose "
        "Import and upload that file. Your choice is remembered for this course.";
    dialog.preselected = (preselected.totalColumn ? 2 : 0) + (preselected.absentZero ? 1 : 0);
    return dialog;
}

// Asks for the layout; none when the person cancelled. A new choice is saved with the course.
std::optional<CanvasChoice> AskChoice(Course& course, Host& host) {
    const CanvasChoice remembered = RememberedChoice(course);
    const OptionDialog dialog = CanvasDialog(remembered);
    const OptionChoice answer = host.ChooseOption(dialog);
    if (answer.cancelled) return std::nullopt;
    const int index = answer.index >= 0 && answer.index <= 3 ? answer.index : dialog.preselected;
    const CanvasChoice chosen{index >= 2, index % 2 == 1};
    if (chosen != remembered) {
        // The layout chosen is a setting of the course's: one entry of its history.
        ChangeScope change(course.AppPath, "Change of the Canvas upload layout");
        SetParam(course, kColumnsSetting.key, chosen.totalColumn ? "Total" : "Sessions");
        SetParam(course, kAbsentSetting.key, chosen.absentZero ? "Zero" : "Blank");
        WriteConfig(course, host);
    }
    return chosen;
}

// The points a session offers, as its summary page gives them: performance plus participation
// points available, to the cent.
double PointsAvailable(Course& course, int session) {
    OpenSession(course, session);
    return TotalPointsAvailable(course);
}

// Canvas leaves out of an import every column whose heading holds one of its own score columns'
// phrases: such a phrase is broken with "-" instead of its blank.
std::string WithoutIgnoredPhrases(std::string title) {
    static constexpr std::string_view kFirst[] = {"CURRENT", "FINAL", "OVERRIDE"};
    static constexpr std::string_view kSecond[] = {"SCORE", "POINTS", "GRADE", "STATUS"};
    const std::string upper = ToUpper(title);
    for (size_t blank = upper.find(' '); blank != std::string::npos;
         blank = upper.find(' ', blank + 1)) {
        const std::string_view before = std::string_view(upper).substr(0, blank);
        const std::string_view after = std::string_view(upper).substr(blank + 1);
        const bool first =
            std::any_of(std::begin(kFirst), std::end(kFirst),
                        [&](std::string_view word) { return before.ends_with(word); });
        const bool second =
            std::any_of(std::begin(kSecond), std::end(kSecond),
                        [&](std::string_view word) { return after.starts_with(word); });
        if (first && second) title[blank] = '-';
    }
    return title;
}

// Where a heading ends in " (" digits ")", the position of that blank; npos otherwise. Canvas
// reads such an ending as the number of an existing assignment.
size_t AssignmentNumberBlank(std::string_view heading) {
    if (!heading.ends_with(')')) return std::string_view::npos;
    const size_t open = heading.rfind('(');
    if (open == std::string_view::npos || open == 0 || heading[open - 1] != ' ' ||
        open + 2 >= heading.size())
        return std::string_view::npos;
    const std::string_view digits = heading.substr(open + 1, heading.size() - open - 2);
    if (!std::all_of(digits.begin(), digits.end(), [](char c) { return c >= '0' && c <= '9'; }))
        return std::string_view::npos;
    return open - 1;
}

// The headings of the grade columns: each title made safe for the import and distinct from the
// ones before it (case ignored); a title the grade book already has as "Title (N)" is written as
// there, so that Canvas updates that assignment instead of making another.
std::vector<std::string> Headings(const std::vector<std::string>& titles,
                                  const CanvasGradeBook* book) {
    std::unordered_map<std::string, std::string> existing;
    if (book) {
        for (const std::string& cell : book->header) {
            const std::string heading = DisplayText(Trim(cell));
            const size_t blank = AssignmentNumberBlank(heading);
            if (blank != std::string::npos)
                existing.emplace(ToUpper(heading.substr(0, blank)), heading);
        }
    }
    std::vector<std::string> chosen;
    std::vector<std::string> headings;
    for (const std::string& title : titles) {
        std::string safe = WithoutIgnoredPhrases(title);
        if (const size_t blank = AssignmentNumberBlank(safe); blank != std::string::npos)
            safe[blank] = '-';
        std::string candidate = safe;
        for (int n = 2; std::any_of(chosen.begin(), chosen.end(),
                                    [&](const std::string& earlier) {
                                        return ToUpper(earlier) == ToUpper(candidate);
                                    });
             ++n)
            candidate = safe + "-" + std::to_string(n);
        chosen.push_back(candidate);
        auto found = existing.find(ToUpper(candidate));
        headings.push_back(found != existing.end() ? found->second : candidate);
    }
    return headings;
}

// One grade column: its heading, its points possible and the sessions it adds up.
struct GradeColumn {
    std::string heading;
    double points = 0;
    std::vector<int> sessions;
};

std::vector<GradeColumn> GradeColumns(Course& course, bool fullUpload, const CanvasChoice& choice,
                                      const CanvasGradeBook* book) {
    std::vector<GradeColumn> columns;
    std::vector<std::string> titles;
    if (choice.totalColumn) {
        columns.emplace_back();
        titles.push_back("Clicker Total");
    }
    for (int k = 1; k <= course.NumSessions; ++k) {
        if (!ColumnWanted(course, fullUpload, k)) continue;
        const double points = PointsAvailable(course, k);
        if (choice.totalColumn) {
            columns[0].points += points;
            columns[0].sessions.push_back(k);
        } else {
            columns.push_back(GradeColumn{"", points, {k}});
            titles.push_back("Clicker " + DisplayText(SessionLabel(course, k)));
        }
    }
    const std::vector<std::string> headings = Headings(titles, book);
    for (size_t i = 0; i < columns.size(); ++i) columns[i].heading = headings[i];
    return columns;
}

// A cell of a student and a column: the points of the sessions the student has a score in, or
// the absence mark when there is none.
std::string ScoreCell(const StudentRec& student, const GradeColumn& column,
                      const CanvasChoice& choice) {
    double sum = 0;
    bool present = false;
    for (int k : column.sessions) {
        if (student.Present[k] == 0) continue;
        present = true;
        sum += student.Score[k];
    }
    if (present) return CanvasNumber(sum);
    return choice.absentZero ? "0" : "";
}

// The identifying cells of a student: from the grade book where the student is in it, else the
// roster's name and the student ID alone, for Canvas to match by SIS User ID.
std::string IdentityCells(const Course& course, const CanvasGradeBook* book,
                          const std::string& studentId) {
    const GradeBookStudent* entry = book ? book->Find(studentId) : nullptr;
    std::string name;
    if (entry) {
        name = entry->student;
    } else {
        const RosterRec roster = GetRosterEntry(course, studentId);
        name = Trim(roster.LastName);
        const std::string first = Trim(roster.FirstName);
        if (!name.empty() && !first.empty()) name += ", ";
        name += first;
    }
    std::string cells = CsvField(DisplayText(name)) + ",";
    if (entry) cells += CsvField(DisplayText(entry->canvasId));
    cells += "," + CsvField(DisplayText(studentId)) + ",";
    if (entry)
        cells +=
            CsvField(DisplayText(entry->sisLoginId)) + "," + CsvField(DisplayText(entry->section));
    else
        cells += ",";
    return cells;
}

std::string DoneText(const std::string& path, const CanvasGradeBook* book) {
    std::string text = "Wrote the Canvas upload file " + path +
                       "\r\n\r\nIn Canvas, open Grades, choose Import, and upload this file. "
                       "Canvas shows what will change before it saves the grades.";
    if (!book) {
        text +=
            "\r\n\r\nNo Canvas grade book was found in the course folder, so Canvas will match "
            "students by their SIS User ID alone. To match them by their Canvas ID, download the "
            "grade book from Canvas (Grades > Export > Export Entire Gradebook) into the course "
            "folder.";
    }
    return text;
}

}  // namespace

// The newest grade book of the course folder, or Roster.txt when there is none.
void ReadCanvasRoster(Course& course, Host&, const ExportTarget& target) {
    const std::optional<CanvasGradeBook> book = FindGradeBook(course.AppPath, target.uploadFile);
    if (!book) {
        ReadRoster(course, CoursePath(course.AppPath, "\\Roster.Txt"));
        return;
    }
    std::vector<std::string> ids;
    for (const GradeBookStudent& student : book->students) {
        if (ids.size() >= static_cast<size_t>(kMaxRoster)) break;
        std::string last, first;
        SplitStudentName(student.student, last, first);
        AddRosterEntry(course, student.studentId, first, last);
        ids.push_back(student.studentId);
    }
    std::sort(ids.begin(), ids.end());
    for (size_t i = 0; i < ids.size(); ++i) course.RosterIDs[static_cast<long>(i) + 1] = ids[i];
    course.NumRosterIDs = static_cast<int>(ids.size());
}

// CanvasUpload.csv in the layout given, or the one the person chooses.
std::vector<UploadColumn> WriteCanvasUpload(Course& course, Host& host, const ExportTarget& target,
                                            const ExportRun& run) {
    const bool fullUpload = run.fullUpload;
    const std::optional<CanvasChoice> choice = run.canvas ? run.canvas : AskChoice(course, host);
    if (!choice) return {};

    // Every student of the grid in its order; the rows of unregistered clickers are nobody's.
    std::vector<int> rows;
    for (int j = 1; j <= course.NumStudents; ++j) {
        const std::string_view id = TrimView(course.Students[j].StudentId);
        if (!id.empty() && !id.starts_with('#')) rows.push_back(j);
    }
    if (rows.empty()) {
        host.Message(
            "No students found in the Canvas grade book or Roster.txt. Grades not exported");
        return {};
    }
    const std::optional<CanvasGradeBook> found = FindGradeBook(course.AppPath, target.uploadFile);
    const CanvasGradeBook* book = found ? &*found : nullptr;
    const std::vector<GradeColumn> columns = GradeColumns(course, fullUpload, *choice, book);

    std::string text(kIdentityHeader);
    std::string points(kPointsPossible);
    points += ",,,,";
    for (const GradeColumn& column : columns) {
        text += "," + CsvField(column.heading);
        points += "," + CanvasNumber(column.points);
    }
    text += "\r\n" + points + "\r\n";
    for (int j : rows) {
        const StudentRec& student = course.Students[j];
        text += IdentityCells(course, book, Trim(student.StudentId));
        for (const GradeColumn& column : columns) text += "," + ScoreCell(student, column, *choice);
        text += "\r\n";
    }

    const std::string path = CoursePath(course.AppPath, "\\" + std::string(target.uploadFile));
    if (!WriteUploadFile(host, path, UploadErrorText(target.uploadFile), [&] { return text; }))
        return {};
    host.Message(DoneText(path, book));
    std::vector<UploadColumn> writtenColumns;
    for (const GradeColumn& column : columns)
        writtenColumns.push_back(UploadColumn{column.heading, column.points});
    return writtenColumns;
}

}  // namespace tallory
