#include "registration/Roster.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "common/LineReader.h"
#include "common/Paths.h"
#include "common/RunTimeError.h"
#include "common/Text.h"
#include "start/Fields.h"

namespace tallory {

namespace {

constexpr std::string_view kSupportWebAddress = "https://www.tallory.example/support";

// Roster.txt: LastName,FirstName,StudentId; anything past the sixth field joins the last one.
constexpr int kRosterTopField = 5;
// class.txt carries the whole grade book, so its lines can be wide.
constexpr int kClassTopField = 999;

// Stores the IDs a reader collected as RosterIDs(1..n), in ascending binary order.
void StoreRosterIds(Course& course, std::vector<std::string>& ids) {
    std::sort(ids.begin(), ids.end());
    for (size_t i = 0; i < ids.size(); ++i) course.RosterIDs[static_cast<long>(i) + 1] = ids[i];
    course.NumRosterIDs = static_cast<int>(ids.size());
}

struct ClassEntry {
    std::string userId;
    std::string lastName;
    std::string firstName;
};

struct ClassColumns {
    int last = -1;
    int first = -1;
    int user = -1;
};

// The columns of class.txt, named by its header; a missing one is reported and takes a fixed
// column (last name and user ID share theirs).
ClassColumns FindClassColumns(std::string_view header, Host& host) {
    Fields cells(kClassTopField);
    SplitFields(header.substr(0, header.find('\n')), cells);
    ClassColumns columns;
    for (int i = 0; i <= cells.Count(); ++i) {
        if (columns.last < 0 && SameText(cells[i], "Last Name")) columns.last = i;
        if (columns.first < 0 && SameText(cells[i], "First Name")) columns.first = i;
        if (columns.user < 0 && SameText(cells[i], "User ID")) columns.user = i;
    }
    if (columns.user < 0) {
        host.Message("Unable to find UserID field using LastName");
        columns.user = 2;
    }
    if (columns.last < 0) {
        host.Message("Unable to find Last Name field in class.txt using LastName");
        columns.last = 2;
    }
    if (columns.first < 0) {
        host.Message("Unable to find First Name field in class.txt using LastName");
        columns.first = 0;
    }
    return columns;
}

// A line of class.txt may hold several rows separated by bare line feeds. Each row with a user ID
// of two characters or more becomes an entry; the header itself is the first one.
void AddClassEntries(std::string_view line, const ClassColumns& columns, Fields& cells,
                     std::vector<ClassEntry>& entries) {
    size_t start = 0;
    while (start < line.size()) {
        size_t end = line.find('\n', start);
        if (end == std::string_view::npos) end = line.size();
        SplitFields(line.substr(start, end - start), cells);
        start = end + 1;
        if (cells.Count() < 0) continue;
        ClassEntry entry{cells.Text(columns.user), cells.Text(columns.last),
                         cells.Text(columns.first)};
        if (entry.userId.size() <= 1) continue;
        // Entry 0 and the students after it fill Entries(0..4000); the read ends when it is full.
        if (entries.size() > static_cast<size_t>(kMaxRoster)) return;
        entries.push_back(std::move(entry));
    }
}

void ShowWebCTRosterMissing(const Course& course, Host& host) {
    std::string text =
        CampusBridgelineInstalled(course)
            ? "Uploading your Polvane scores into WebCT requires that your course gradebook has "
              "already been imported from WebCT into your Polvane course folder. Please run "
              "'Campus Bridgeline' to import your gradebook prior to exporting scores from "
              "Tallory."
            : "Exporting in WebCT format requires the grade book to be  downloaded and placed in "
              "the main directory with name class.txt.";
    host.Message(text + "\r\n" + GradeBookHelpLine(), "WebCT Roster not found", Icon::Information);
}

}  // namespace

std::string GradeBookHelpLine() {
    return "Please see manual for more information or go to " + std::string(kSupportWebAddress) +
           " for help.";
}

bool CampusBridgelineInstalled(const Course& course) {
    return FileExists(CoursePath(course.AppPath, "\\Campus Bridgeline.exe"));
}

namespace {

// The one reading of a roster, from its file or from a text.
void ReadRosterLines(Course& course, LineReader& reader) {
    std::vector<std::string> ids;
    Fields fields(kRosterTopField);
    try {
        for (std::string_view line; reader.IsOpen() && reader.ReadLine(line);) {
            SplitFields(line, fields);
            if (fields.Count() < 0 || StartsWith(fields[0], "!")) continue;
            // RosterIDs is full: the read ends at this line and keeps the students before it.
            if (ids.size() >= static_cast<size_t>(kMaxRoster)) break;
            std::string first = Trim(fields[1]);
            std::string last = Trim(fields[0]);
            std::string id = Trim(fields[2]);
            // A file of bare IDs is a roster too; a one-character third field is no ID.
            if (id.size() <= 1) id = last;
            AddRosterEntry(course, id, first, last);
            // A one-character ID is a student of the roster but never one of the exports' IDs.
            if (id.size() > 1) ids.push_back(id);
        }
    } catch (const RunTimeError&) {
        // A full Roster ends the read quietly, with the students so far kept.
    }
    StoreRosterIds(course, ids);
}

// The one reading of class.txt at course start, from the file or from a text.
void ReadWebCTRosterLines(Course& course, Host& host, LineReader& reader) {
    course.NumRosterIDs = 0;
    std::vector<ClassEntry> entries;
    std::string_view line;
    if (reader.IsOpen() && reader.ReadLine(line)) {
        ClassColumns columns = FindClassColumns(line, host);
        // The WebCT export finds each line's user ID in the same column.
        course.WebCTLastCol = columns.last;
        course.WebCTFirstCol = columns.first;
        course.WebCTUserCol = columns.user;
        Fields cells(kClassTopField);
        do {
            AddClassEntries(line, columns, cells, entries);
        } while (reader.ReadLine(line));
    }
    if (entries.empty()) {
        ShowWebCTRosterMissing(course, host);
        return;
    }
    // Entry 0 is the header. The students are ordered by last name, byte for byte; among equal
    // last names the later row of the file comes first.
    std::reverse(entries.begin() + 1, entries.end());
    std::stable_sort(
        entries.begin() + 1, entries.end(),
        [](const ClassEntry& a, const ClassEntry& b) { return a.lastName < b.lastName; });
    course.NumRosterIDs = static_cast<int>(entries.size()) - 1;
    for (size_t i = 1; i < entries.size(); ++i) {
        course.RosterIDs[static_cast<long>(i)] = entries[i].userId;
        AddRosterEntry(course, entries[i].userId, entries[i].firstName, entries[i].lastName);
    }
}

}  // namespace

void ReadRoster(Course& course, const std::string& path) {
    if (path.empty()) return;
    LineReader reader(path);
    ReadRosterLines(course, reader);
}

void ReadRosterText(Course& course, std::string_view text) {
    LineReader reader("Roster.txt", text);
    ReadRosterLines(course, reader);
}

void ReadWebCTRoster(Course& course, Host& host) {
    LineReader reader(CoursePath(course.AppPath, "\\class.txt"));
    ReadWebCTRosterLines(course, host, reader);
}

void ReadWebCTRosterText(Course& course, Host& host, std::string_view text) {
    LineReader reader("class.txt", text);
    ReadWebCTRosterLines(course, host, reader);
}

void AddRosterEntry(Course& course, std::string_view studentId, std::string_view firstName,
                    std::string_view lastName) {
    int row = FindRosterRow(course, studentId, true);
    RosterRec& entry = course.Roster[row];
    entry.StudentId = std::string(studentId);
    entry.FirstName = std::string(firstName);
    entry.LastName = std::string(lastName);
}

int FindRosterRow(const Course& course, std::string_view studentId) {
    auto found = course.RosterIndex.find(NormalKey(studentId));
    return found == course.RosterIndex.end() ? -1 : found->second;
}

int FindRosterRow(Course& course, std::string_view studentId, bool addIfMissing) {
    int row = FindRosterRow(std::as_const(course), studentId);
    if (row >= 0 || !addIfMissing) return row;
    row = course.NumRoster;
    course.Roster[row].StudentId = std::string(studentId);  // past the bounds: error 9
    course.RosterIndex.emplace(NormalKey(studentId), row);
    ++course.NumRoster;
    return row;
}

RosterRec GetRosterEntry(const Course& course, std::string_view studentId) {
    int row = FindRosterRow(course, studentId);
    return row < 0 ? RosterRec{} : course.Roster[row];
}

int UpdateRosterRemote(Course& course, std::string_view studentId, std::string_view remoteId,
                       bool keepLarger) {
    int row = FindRosterRow(course, studentId, true);
    std::string& held = course.Roster[row].RemoteId;
    if (keepLarger && !held.empty() && held > remoteId) return row;
    held = std::string(remoteId);
    return row;
}

void ClearRoster(Course& course) {
    course.Roster.Reset();
    course.NumRoster = 0;
    course.RosterIndex.clear();
}

void RebuildRosterIndex(Course& course) {
    course.RosterIndex.clear();
    for (int row = 0; row < course.NumRoster; ++row)
        course.RosterIndex.emplace(NormalKey(course.Roster[row].StudentId), row);
}

}  // namespace tallory
