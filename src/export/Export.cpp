// The steps every export shares: the grade-book text helpers, the roster rows the readers store,
// the one upload skeleton and the grade-book targets' upload.

#include <utility>

#include "common/AtomicFile.h"
#include "common/LineReader.h"
#include "common/Numbers.h"
#include "common/Paths.h"
#include "common/RunTimeError.h"
#include "common/Text.h"
#include "export/ExportTarget.h"
#include "registration/Roster.h"
#include "scoring/SessionStore.h"

namespace tallory {

bool ColumnWanted(const Course& course, bool fullUpload, int session) {
    CheckSubscript(session, 0, kSessionTableUpper, "ExportSel");
    return fullUpload || course.ExportSel[session] != 0;
}

std::vector<std::string> SplitAt(std::string_view text, std::string_view separator) {
    std::vector<std::string> pieces;
    if (text.empty()) return pieces;
    size_t start = 0;
    for (;;) {
        size_t end = text.find(separator, start);
        if (end == std::string_view::npos) break;
        pieces.emplace_back(text.substr(start, end - start));
        start = end + separator.size();
    }
    pieces.emplace_back(text.substr(start));
    return pieces;
}

const std::string& CellAt(const std::vector<std::string>& cells, size_t index) {
    if (index >= cells.size()) throw GradeBookError{};
    return cells[index];
}

std::string WithoutQuotes(std::string_view text) {
    return ReplaceAll(text, "\"", "");
}

std::string Quoted(std::string_view text) {
    return "\"" + std::string(text) + "\"";
}

GradeBookText ReadGradeBookFile(const std::string& path) {
    LineReader reader(path);
    if (!reader.IsOpen()) return {path, std::nullopt};
    return {path, std::string(reader.Text())};
}

RosterRec& RosterRow(Course& course, int row) {
    try {
        return course.Roster[row];
    } catch (const RunTimeError&) {
        // A grade book of more rows than the roster holds ends its read as a short row does.
        throw GradeBookError{};
    }
}

void AddGradeBookEntry(std::vector<GradeBookEntry>& entries, GradeBookEntry entry) {
    if (entries.size() > static_cast<size_t>(kMaxRoster)) throw GradeBookError{};
    entries.push_back(std::move(entry));
}

int StoreGradeBookEntries(Course& course, std::vector<GradeBookEntry>& entries) {
    const int next = static_cast<int>(entries.size());
    entries.emplace_back();
    for (int i = 1; i <= next; ++i) {
        const GradeBookEntry& entry = entries[i];
        course.RosterIDs[i] = entry.id;
        AddRosterEntry(course, entry.id, entry.firstName, entry.lastName);
    }
    course.NumRosterIDs = next;
    return next;
}

void AppendRosterRow(Course& course, const std::vector<std::string>& cells, size_t id,
                     size_t lastName, size_t firstName) {
    const std::string studentId = Trim(CellAt(cells, id));
    RosterRec& row = RosterRow(course, course.NumRoster);
    course.RosterIDs[course.NumRoster] = studentId;
    row.StudentId = studentId;
    row.LastName = Trim(CellAt(cells, lastName));
    row.FirstName = Trim(CellAt(cells, firstName));
    ++course.NumRoster;
}

std::string UploadErrorText(std::string_view file) {
    const std::string name(file);
    return "The " + name +
           " is already open (with write access by another program). Please close this file "
           "before attempting to export scores from Tallory.\r\nWhile " +
           name +
           " is open, any changes you make in Tallory will not be saved and will be "
           "overwritten.  Please close " +
           name + " before continuing with your work and exporting session data from Tallory";
}

bool WriteUploadFile(Host& host, const std::string& path, std::string_view failureText,
                     const std::function<std::string()>& buildText) {
    AtomicFile file(path, &host);
    bool written = false;
    try {
        if (file.Open()) {
            file.Write(buildText());
            written = file.Commit();
        }
    } catch (const RunTimeError&) {
        written = false;
    }
    if (!written) host.Message(failureText, "Error", Icon::Information);
    return written;
}

void ShowGradeBookMissing(const Course& course, Host& host, std::string_view title, Icon icon,
                          std::string_view withTool, std::string_view withoutTool, bool helpLine) {
    std::string text(CampusBridgelineInstalled(course) ? withTool : withoutTool);
    if (helpLine) text += "\r\n" + GradeBookHelpLine();
    host.Message(text, title, icon);
}

namespace {

// The header and the rows of a grade-book target's upload.
std::string UploadText(Course& course, Host& host, const UploadLayout& layout, GradeBook& book,
                       bool fullUpload) {
    course.SessionTitle[0] = std::string(layout.totalTitle);
    std::string text = layout.headerCells(book);
    for (int k = 0; k <= course.NumSessions; ++k)
        if (ColumnWanted(course, fullUpload, k)) text += layout.heading(SessionLabel(course, k));
    text += layout.headerEnd;

    // The first Students row of each ID, and the first Roster row, as the searches find them.
    std::unordered_map<std::string, int> studentRow;
    for (int j = 1; j <= course.NumStudents; ++j)
        studentRow.emplace(NormalKey(course.Students[j].StudentId), j);
    const auto& roster = std::as_const(course).Roster;
    for (long i = 0; i < roster.Allocated(); ++i)
        book.rosterRowOf.emplace(NormalKey(roster[i].StudentId), static_cast<int>(i));

    std::vector<UploadRow> rows;
    if (layout.userOf) {
        // Grade-book lines are written back whole; their user IDs are found one by one, as the
        // lines are written.
        for (const std::string& line : book.lines) rows.push_back(UploadRow{"", line, nullptr});
    } else {
        for (long i = 0; i < roster.Allocated(); ++i) {
            if (layout.skipEmptyIds && TrimView(roster[i].StudentId).empty()) continue;
            rows.push_back(UploadRow{roster[i].StudentId, "", &roster[i]});
        }
    }
    for (UploadRow& row : rows) {
        if (layout.userOf) row.id = layout.userOf(course, host, row.line);
        auto found = studentRow.find(NormalKey(row.id));
        std::string line;
        if (found != studentRow.end()) {
            const StudentRec& student = course.Students[found->second];
            line = layout.nameCells(book, course, row);
            for (int k = 0; k <= course.NumSessions; ++k)
                if (ColumnWanted(course, fullUpload, k)) line += layout.scoreCell(student.Score[k]);
        } else if (layout.unmatched != UnmatchedRow::Left) {
            line = layout.unmatched == UnmatchedRow::FirstName
                       ? row.roster->FirstName
                       : layout.nameCells(book, course, row);
            if (TrimView(line).empty()) continue;
            for (int k = layout.unmatchedFrom; k <= course.NumSessions; ++k)
                if (ColumnWanted(course, fullUpload, k)) line += layout.unmatchedCell;
        } else {
            continue;
        }
        text += line;
        text += layout.lineEnd;
    }
    return text;
}

}  // namespace

std::vector<UploadColumn> WriteGradeBookUpload(Course& course, Host& host,
                                               const ExportTarget& target, const ExportRun& run) {
    const UploadLayout& layout = *target.layout;
    if (layout.clearFirst) ClearRoster(course);
    GradeBook book;
    const std::string rosterFile =
        CoursePath(course.AppPath, "\\" + std::string(target.rosterFile));
    if (target.read(course, host, book, ReadGradeBookFile(rosterFile)) < 1) {
        host.Message(layout.emptyText);
        return {};
    }
    const std::string name(target.uploadFile);
    const std::string path =
        layout.bareName ? JoinPath(course.AppPath, name) : CoursePath(course.AppPath, "\\" + name);
    if (!WriteUploadFile(host, path, UploadErrorText(name),
                         [&] { return UploadText(course, host, layout, book, run.fullUpload); }))
        return {};
    host.Message(std::string(layout.doneText) + name);
    if (CampusBridgelineInstalled(course))
        host.StartProgram(course.AppPath + "/Campus Bridgeline.exe", "upload");
    return {};
}

}  // namespace tallory
