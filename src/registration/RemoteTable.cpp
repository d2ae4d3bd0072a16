#include "registration/RemoteTable.h"

#include <cstdio>

#include "common/AtomicFile.h"
#include "common/LineReader.h"
#include "common/Paths.h"
#include "common/RunTimeError.h"
#include "common/Support.h"
#include "common/Text.h"
#include "start/Fields.h"

namespace tallory {

namespace {

constexpr std::string_view kRemoteIdFile = "\\SessionData\\RemoteID.csv";
// A registration line has remote and student; further fields are carried along unread.
constexpr int kRemoteTopField = 25;

// Drops leading `mark` characters but keeps the last character, so "000" stays "0".
std::string_view StripLeading(std::string_view text, char mark) {
    while (text.size() > 1 && text.front() == mark) text.remove_prefix(1);
    return text;
}

// The key under which two remotes are the same clicker.
// The part of a remote ID that names the clicker, before case is folded. Case folding touches
// neither blanks, "#" nor "0", so these are taken off the ID as written.
std::string_view RemoteKeyPart(std::string_view remoteId) {
    return TrimView(StripLeading(StripLeading(TrimView(remoteId), '#'), '0'));
}

// Upper case of the ASCII letters only, as the registrations compare them.
char UpperAscii(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

// The key written into `key`, reusing its storage: looking up a clicker happens for nearly every
// vote line read or written.
void RemoteKeyInto(std::string_view remoteId, std::string& key) {
    key.assign(RemoteKeyPart(remoteId));
    for (char& c : key) c = UpperAscii(c);
}

std::string RemoteKey(std::string_view remoteId) {
    std::string key;
    RemoteKeyInto(remoteId, key);
    return key;
}

void RebuildRemoteIndex(const Course& course) {
    course.RemoteIndex.clear();
    for (int row = 1; row <= course.NumRemotes; ++row)
        course.RemoteIndex.emplace(RemoteKey(course.RemoteTable[row].RemoteId), row);
    course.RemoteIndexValid = true;
}

std::string ConflictText(std::string_view remote, std::string_view holder,
                         std::string_view student) {
    std::string text;
    text.append("Error: The following Polvane remote ID (clicker ID ")
        .append(remote)
        .append(") and all accompanying votes/points have already been assigned to ")
        .append(holder)
        .append(".\r\nWe cannot assign this same clicker ID to ")
        .append(student)
        .append(".");
    text +=
        "\r\n\r\nOften, this can occur when a student is accidentally registered to the wrong "
        "clicker. "
        "\r\nAnother possible cause for this error could be 2 students sharing the same Polvane. "
        "\r\nStudents can share Polvane remotes as long as they are taking different "
        "classes/sections. "
        "\r\nThey cannot share an Polvane for the same class/section."
        "\r\n\r\nTo resolve this problem,"
        "\r\n1. Find these two students(s) on the main screen of Tallory."
        "\r\n2. Click on the underlined students' names to view all clickers registered to each "
        "student."
        "\r\n3. Confirm the correct ID with the students and add or remove the incorrect clicker."
        "\r\n\r\n" +
        std::string(kContactSentence);
    return text;
}

// Reads one registration line into `row`; false when the line has no student field.
bool ReadRegistration(std::string_view line, Fields& fields, RemoteRec& row, RemoteRec& raw) {
    SplitFields(ReplaceAll(line, "\"", ""), fields);
    if (fields.Count() < 1) return false;
    raw.RemoteId = NormalKey(fields[0]);
    raw.StudentId = Trim(fields[1]);
    std::string remote = TrimRightBlanks(TrimLeftBlanks(raw.RemoteId));
    row.RemoteId = std::string(StripLeading(StripLeading(remote, '#'), '0'));
    row.StudentId = TrimRightBlanks(TrimLeftBlanks(raw.StudentId));
    return true;
}

// The one reading of the registrations, from RemoteID.csv or from a text.
void ReadRemoteIdLines(Course& course, Host& host, LineReader& reader) {
    host.SetProgressText("Reading Remote Id(s) .... Patience requested");
    course.RemoteRaw.Reset();
    course.NumRemotes = 0;
    // The index grows with the table, row by row, so the conflict test of each line sees exactly
    // the registrations kept before it.
    course.RemoteIndex.clear();
    course.RemoteIndexValid = true;
    if (!reader.IsOpen()) return;
    Fields fields(kRemoteTopField);
    try {
        for (std::string_view line; reader.ReadLine(line);) {
            int row = course.NumRemotes + 1;
            RemoteRec& entry = course.RemoteTable[row];
            if (!ReadRegistration(line, fields, entry, course.RemoteRaw[row])) continue;
            int first = FindRemoteRow(course, entry.RemoteId);
            const std::string& holder =
                first > 0 ? course.RemoteTable[first].StudentId : entry.StudentId;
            if (holder == entry.StudentId) {
                // A repeated registration is kept as a row of its own.
                course.RemoteIndex.emplace(RemoteKey(entry.RemoteId), row);
                course.NumRemotes = row;
                continue;
            }
            // The first registration of a clicker wins; the later line is dropped.
            host.Message(ConflictText(entry.RemoteId, holder, entry.StudentId),
                         "Remote Assigned to more than one Student", Icon::Exclamation);
            entry = RemoteRec{};
        }
    } catch (const RunTimeError&) {
        // A full table ends the read; the registrations so far stay.
        return;
    }
    host.SetProgressText("Remote Id(s) file read sucessfully");
}

}  // namespace

void ReadRemoteIds(Course& course, Host& host, const std::string& path) {
    LineReader reader(path);
    ReadRemoteIdLines(course, host, reader);
}

void ReadRemoteIdsText(Course& course, Host& host, std::string_view text) {
    LineReader reader("RemoteID.csv", text);
    ReadRemoteIdLines(course, host, reader);
}

void WriteRemoteIds(const Course& course, Host& host, const std::string& path) {
    AtomicFile file(path, &host);
    if (file.Open()) {
        host.SetProgressText("Updating File for the changed Information");
        for (int row = 1; row <= course.NumRemotes; ++row) {
            const RemoteRec& entry = course.RemoteTable[row];
            file.Write("#" + entry.RemoteId + ",\"" + entry.StudentId + "\"\r\n");
        }
        if (file.Commit()) return;
    }
    host.Message("Unable to write remote id file " + path + " new registrations not stored.");
}

void AddRemote(Course& course, std::string_view remoteId, std::string_view studentId) {
    int row = course.NumRemotes + 1;
    RemoteRec& entry = course.RemoteTable[row];
    entry.RemoteId = std::string(StripLeading(remoteId, '#'));
    entry.StudentId = Trim(studentId);
    course.NumRemotes = row;
    ++course.NumNewRemotes;
    // The new row is the last, so it can only be the first row of a clicker not yet registered.
    if (course.RemoteIndexValid) course.RemoteIndex.emplace(RemoteKey(entry.RemoteId), row);
}

void RemoveRemote(Course& course, Host& host, std::string_view remoteId) {
    int row = 1;
    while (row <= course.NumRemotes && course.RemoteTable[row].RemoteId != remoteId) ++row;
    host.SetProgressText("Removing Remote ID from Memory");
    if (row <= course.NumRemotes) {
        int last = course.NumRemotes;
        for (; row < last; ++row) course.RemoteTable[row] = std::move(course.RemoteTable[row + 1]);
        course.RemoteTable[last] = RemoteRec{"??", "??"};
        course.NumRemotes = last - 1;
        course.RemoteIndexValid = false;
    }
    WriteRemoteIds(course, host, CoursePath(course.AppPath, kRemoteIdFile));
}

int FindRemoteRow(const Course& course, std::string_view remoteId) {
    if (!course.RemoteIndexValid) RebuildRemoteIndex(course);
    thread_local std::string key;
    RemoteKeyInto(remoteId, key);
    auto found = course.RemoteIndex.find(key);
    return found == course.RemoteIndex.end() ? 0 : found->second;
}

std::string StudentOfRemote(const Course& course, std::string_view remoteId) {
    int row = FindRemoteRow(course, remoteId);
    return row > 0 ? course.RemoteTable[row].StudentId : std::string();
}

std::string RemotesOfStudent(const Course& course, std::string_view studentId) {
    std::string list;
    for (int row = 1; row <= course.NumRemotes; ++row) {
        const RemoteRec& entry = course.RemoteTable[row];
        if (!SameText(entry.StudentId, studentId)) continue;
        if (list.find(entry.RemoteId) == std::string::npos) list += entry.RemoteId + ",";
    }
    return list;
}

bool SameRemote(std::string_view a, std::string_view b) {
    const std::string_view keyA = RemoteKeyPart(a), keyB = RemoteKeyPart(b);
    if (keyA.size() != keyB.size()) return false;
    for (size_t i = 0; i < keyA.size(); ++i)
        if (UpperAscii(keyA[i]) != UpperAscii(keyB[i])) return false;
    return true;
}

std::string NormalRemote(std::string_view remoteId) {
    return RemoteKey(remoteId);
}

std::string TrimLeftBlanks(std::string_view text) {
    size_t at = 0;
    while (at + 1 < text.size() && text[at] == ' ') ++at;
    // Reaching the last character counts as reaching the end: one character never survives.
    if (at + 1 >= text.size()) return {};
    return std::string(text.substr(at));
}

std::string TrimRightBlanks(std::string_view text) {
    return TrimRight(text);
}

void LogClickerCheck(Course& course, Host& host, std::string_view text) {
    std::string path = CoursePath(course.AppPath, "\\SessionData\\ClickerCheck.txt");
    // The first line of a web registration run starts the file afresh; later lines are added to
    // what the run wrote, and the file is replaced whole each time.
    std::string content;
    if (course.ClickerCheckStarted) {
        if (std::FILE* old = std::fopen(path.c_str(), "rb")) {
            char buffer[4096];
            for (size_t got; (got = std::fread(buffer, 1, sizeof buffer, old)) > 0;)
                content.append(buffer, got);
            std::fclose(old);
        }
    }
    course.ClickerCheckStarted = true;
    content.append(text);
    content.append("\r\n");
    ReplaceFile(path, content, nullptr, &host);
}

bool IsRemoteIdKey(int key) {
    return (key >= '0' && key <= '9') || (key >= 'A' && key <= 'F') || (key >= 'a' && key <= 'f') ||
           key == 8 || key == 13;
}

}  // namespace tallory
