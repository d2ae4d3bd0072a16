#pragma once

#include <cstdint>
#include <ctime>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "common/Host.h"

namespace tallory {

// The course's history: every finished change the instructor made, newest last, each with the
// bytes every file it touched held before it. Kept outside the course folder, beside the copies of
// removed logs ($XDG_DATA_HOME/tallory/history/<course folder name>-<path key>), one copy per
// distinct file content, so that a purge that rewrites forty logs twice keeps forty copies.

// A file's content as the history names it: its hash and length, or none when it did not stand.
using ContentKey = std::optional<std::string>;
ContentKey KeyOf(const std::string& bytes);
// The key of the file as it stands now; none when it does not.
ContentKey CurrentKey(const std::string& path);

struct HistoryFile {
    std::string path;  // relative to the course folder, "/"-separated
    ContentKey before;
    ContentKey after;
};

struct HistoryEntry {
    int id = 0;
    std::time_t time = 0;
    std::string action;  // "Set Scores of 09/15/2026"
    int undoes = 0;      // the entry this one undid; 0 for a change of its own
    std::string token;   // the change journal that made it
    std::vector<HistoryFile> files;
};

// How much history a course keeps: at least the newest `entries`, and everything of the last
// `days` while the copies of the entries kept stay within `bytes`.
struct HistoryBounds {
    size_t entries = 50;
    int days = 30;
    uint64_t bytes = uint64_t{1} << 30;
};

// The folder of a course's history; empty when neither XDG_DATA_HOME nor HOME names a folder.
std::string HistoryFolder(const std::string& courseFolder);

// One file of a finished change: its path and where its bytes before the change are kept.
struct ChangedFile {
    std::string path;  // full path, inside the course folder
    // A file holding its bytes before the change (the change journal's entry); none when it did
    // not stand. Read one file at a time, so that a purge of a large course is not held whole.
    std::optional<std::string> beforeFile;
};

// Adds a finished change to the course's history, then drops what the bounds no longer keep.
// Files the change left as they were are not named; a change that left everything as it was makes
// no entry. False when the history could not be written.
bool RecordChange(const std::string& courseFolder, const std::string& action, int undoes,
                  const std::string& token, const std::vector<ChangedFile>& files,
                  std::time_t when = std::time(nullptr), const HistoryBounds& bounds = {});

// The entries, oldest first.
std::vector<HistoryEntry> ReadHistory(const std::string& courseFolder);
// True when an entry of the journal `token` stands in the history.
bool HistoryHasToken(const std::string& courseFolder, const std::string& token);

// Drops the entries the bounds no longer keep, and the copies no entry kept names.
void PruneHistory(const std::string& historyFolder, const HistoryBounds& bounds, std::time_t now);

// Whether the entry's change is undone now: undone by an undo that is not undone itself.
bool IsUndone(const std::vector<HistoryEntry>& entries, int id);
// The entry "Undo" takes back: the newest change of the instructor's own (not an undo) that is not
// undone; 0 when there is none.
int NewestUndoable(const std::vector<HistoryEntry>& entries);

// "2026-09-15T10:04:31", local time.
std::string HistoryTime(std::time_t time);

// What an undo did.
struct UndoResult {
    bool done = false;
    std::vector<std::string> restored;  // relative paths
    std::vector<std::string> changed;   // files changed since the entry, named in the question
};

// Puts back every file of entry `id` as it was before that change, as a change of its own. Files
// changed since are named in a question; unless the answer is Yes nothing is touched. Messages go
// to the host. Run with the course's edit lock held.
UndoResult UndoEntry(const std::string& courseFolder, int id, Host& host);

}  // namespace tallory
