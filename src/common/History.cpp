#include "common/History.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <set>
#include <sstream>

#include "common/AtomicFile.h"
#include "common/ChangeJournal.h"
#include "common/Paths.h"
#include "common/ReadGuard.h"

namespace tallory {

namespace {

constexpr const char* kEntries = "entries";
constexpr const char* kCopies = "copies";
constexpr const char* kAbsent = "-";

std::optional<std::string> ReadBytesOf(const std::string& path) {
    int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (fd < 0) return std::nullopt;
    struct stat info {};
    if (::fstat(fd, &info) != 0 || !S_ISREG(info.st_mode)) {
        ::close(fd);
        return std::nullopt;
    }
    std::string text;
    char buffer[1 << 16];
    for (;;) {
        ssize_t got = ::read(fd, buffer, sizeof buffer);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) {
            ::close(fd);
            return std::nullopt;
        }
        if (got == 0) break;
        text.append(buffer, static_cast<size_t>(got));
    }
    ::close(fd);
    return text;
}

std::string KeyText(const ContentKey& key) {
    return key ? *key : kAbsent;
}

ContentKey KeyFrom(const std::string& text) {
    if (text == kAbsent) return std::nullopt;
    return text;
}

// The length a key names: its part after the hash.
uint64_t KeyLength(const std::string& key) {
    const size_t dash = key.find('-');
    return dash == std::string::npos ? 0 : std::strtoull(key.c_str() + dash + 1, nullptr, 10);
}

std::string EntryName(int id) {
    char name[16];
    std::snprintf(name, sizeof name, "%08d", id);
    return name;
}

std::string Relative(const std::string& courseFolder, const std::string& path) {
    const std::string prefix = courseFolder + "/";
    return path.starts_with(prefix) ? path.substr(prefix.size()) : path;
}

std::string RealFolder(const std::string& folder) {
    std::string real = RealPath(folder);
    return real.empty() ? folder : real;
}

std::string EntryText(const HistoryEntry& entry) {
    std::string text = "time " + std::to_string(static_cast<long long>(entry.time)) + "\n" +
                       "undoes " + std::to_string(entry.undoes) + "\n" + "token " + entry.token +
                       "\n" + "action " + entry.action + "\n";
    for (const HistoryFile& file : entry.files)
        text += "file " + KeyText(file.before) + " " + KeyText(file.after) + " " + file.path + "\n";
    return text;
}

std::optional<HistoryEntry> ParseEntry(int id, const std::string& text) {
    HistoryEntry entry;
    entry.id = id;
    std::istringstream lines(text);
    std::string line;
    while (std::getline(lines, line)) {
        const size_t blank = line.find(' ');
        if (blank == std::string::npos) continue;
        const std::string word = line.substr(0, blank), rest = line.substr(blank + 1);
        if (word == "time") {
            entry.time = static_cast<std::time_t>(std::strtoll(rest.c_str(), nullptr, 10));
        } else if (word == "undoes") {
            entry.undoes = std::atoi(rest.c_str());
        } else if (word == "token") {
            entry.token = rest;
        } else if (word == "action") {
            entry.action = rest;
        } else if (word == "file") {
            const size_t second = rest.find(' ');
            const size_t third = second == std::string::npos ? second : rest.find(' ', second + 1);
            if (third == std::string::npos) return std::nullopt;
            entry.files.push_back({rest.substr(third + 1), KeyFrom(rest.substr(0, second)),
                                   KeyFrom(rest.substr(second + 1, third - second - 1))});
        }
    }
    if (entry.action.empty()) return std::nullopt;
    return entry;
}

std::vector<HistoryEntry> ReadEntries(const std::string& historyFolder) {
    std::vector<HistoryEntry> entries;
    const std::string folder = JoinPath(historyFolder, kEntries);
    for (const std::string& name : ListFiles(folder)) {
        if (name.empty() || name.find_first_not_of("0123456789") != std::string::npos) continue;
        const std::optional<std::string> text = ReadBytesOf(JoinPath(folder, name));
        if (!text) continue;
        if (std::optional<HistoryEntry> entry = ParseEntry(std::atoi(name.c_str()), *text))
            entries.push_back(std::move(*entry));
    }
    std::sort(entries.begin(), entries.end(),
              [](const HistoryEntry& a, const HistoryEntry& b) { return a.id < b.id; });
    return entries;
}

std::string DataHome() {
    const char* dataHome = std::getenv("XDG_DATA_HOME");
    const char* home = std::getenv("HOME");
    if (dataHome && dataHome[0] == '/') return dataHome;
    if (home && home[0] == '/') return std::string(home) + "/.local/share";
    return {};
}

}  // namespace

ContentKey KeyOf(const std::string& bytes) {
    char hash[24];
    std::snprintf(hash, sizeof hash, "%016llx",
                  static_cast<unsigned long long>(ContentHash(bytes)));
    return std::string(hash) + "-" + std::to_string(bytes.size());
}

ContentKey CurrentKey(const std::string& path) {
    const std::optional<std::string> bytes = ReadBytesOf(path);
    if (!bytes) return std::nullopt;
    return KeyOf(*bytes);
}

std::string HistoryFolder(const std::string& courseFolder) {
    const std::string base = DataHome();
    if (base.empty()) return {};
    // Two courses of one name in different places keep apart histories.
    const std::string real = RealFolder(courseFolder);
    char key[12];
    std::snprintf(key, sizeof key, "%08llx",
                  static_cast<unsigned long long>(ContentHash(real) & 0xffffffffull));
    return base + "/tallory/history/" + LastComponent(real) + "-" + key;
}

bool RecordChange(const std::string& courseFolder, const std::string& action, int undoes,
                  const std::string& token, const std::vector<ChangedFile>& files, std::time_t when,
                  const HistoryBounds& bounds) {
    const std::string folder = HistoryFolder(courseFolder);
    if (folder.empty()) return false;
    const std::string course = RealFolder(courseFolder);
    HistoryEntry entry;
    entry.time = when;
    entry.action = action;
    entry.undoes = undoes;
    entry.token = token;
    const std::string copies = JoinPath(folder, kCopies);
    CreateFolderPath(copies);
    CreateFolderPath(JoinPath(folder, kEntries));
    for (const ChangedFile& file : files) {
        std::optional<std::string> before;
        if (file.beforeFile) {
            before = ReadBytesOf(*file.beforeFile);
            if (!before) continue;  // the journal lost it: nothing to put back
        }
        HistoryFile changed{Relative(course, file.path), before ? KeyOf(*before) : std::nullopt,
                            CurrentKey(file.path)};
        if (changed.before == changed.after) continue;
        if (changed.before) {
            const std::string copy = JoinPath(copies, *changed.before);
            if (!FileExists(copy) && !ReplaceFile(copy, *before)) return false;
        }
        entry.files.push_back(std::move(changed));
    }
    if (entry.files.empty()) return true;
    const std::vector<HistoryEntry> entries = ReadEntries(folder);
    entry.id = entries.empty() ? 1 : entries.back().id + 1;
    if (!ReplaceFile(JoinPath(JoinPath(folder, kEntries), EntryName(entry.id)), EntryText(entry)))
        return false;
    PruneHistory(folder, bounds, when);
    return true;
}

std::vector<HistoryEntry> ReadHistory(const std::string& courseFolder) {
    const std::string folder = HistoryFolder(courseFolder);
    if (folder.empty()) return {};
    return ReadEntries(folder);
}

bool HistoryHasToken(const std::string& courseFolder, const std::string& token) {
    if (token.empty()) return false;
    for (const HistoryEntry& entry : ReadHistory(courseFolder))
        if (entry.token == token) return true;
    return false;
}

void PruneHistory(const std::string& historyFolder, const HistoryBounds& bounds, std::time_t now) {
    const std::vector<HistoryEntry> entries = ReadEntries(historyFolder);
    const std::time_t oldest = now - static_cast<std::time_t>(bounds.days) * 24 * 60 * 60;
    std::set<std::string> counted, kept;
    uint64_t bytes = 0;
    size_t keep = 0;  // entries kept, counted from the newest
    for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry) {
        uint64_t added = 0;
        for (const HistoryFile& file : entry->files)
            if (file.before && !counted.count(*file.before)) added += KeyLength(*file.before);
        const bool needed = keep < bounds.entries;
        if (!needed && (entry->time < oldest || bytes + added > bounds.bytes)) break;
        for (const HistoryFile& file : entry->files)
            if (file.before) counted.insert(*file.before);
        bytes += added;
        ++keep;
    }
    const std::string entryFolder = JoinPath(historyFolder, kEntries);
    for (size_t i = 0; i + keep < entries.size(); ++i)
        ::unlink(JoinPath(entryFolder, EntryName(entries[i].id)).c_str());
    if (keep == entries.size()) return;
    const std::string copies = JoinPath(historyFolder, kCopies);
    for (const std::string& name : ListFiles(copies))
        if (!counted.count(name)) ::unlink(JoinPath(copies, name).c_str());
}

bool IsUndone(const std::vector<HistoryEntry>& entries, int id) {
    // The newest undo of the entry decides; an undo undone itself puts the change back.
    for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry)
        if (entry->undoes == id && !IsUndone(entries, entry->id)) return true;
    return false;
}

int NewestUndoable(const std::vector<HistoryEntry>& entries) {
    for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry)
        if (entry->undoes == 0 && !IsUndone(entries, entry->id)) return entry->id;
    return 0;
}

std::string HistoryTime(std::time_t time) {
    std::tm local{};
    ::localtime_r(&time, &local);
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &local);
    return text;
}

UndoResult UndoEntry(const std::string& courseFolder, int id, Host& host) {
    UndoResult result;
    const std::vector<HistoryEntry> entries = ReadHistory(courseFolder);
    auto entry = std::find_if(entries.begin(), entries.end(),
                              [id](const HistoryEntry& each) { return each.id == id; });
    if (entry == entries.end()) {
        host.Message(id == 0 ? "There is no change to undo."
                             : "There is no change " + std::to_string(id) + " in the history.",
                     kProgramTitle, Icon::Information);
        return result;
    }
    if (IsUndone(entries, id)) {
        host.Message("Change " + std::to_string(id) + " (" + entry->action + ") is undone already.",
                     kProgramTitle, Icon::Information);
        return result;
    }
    const std::string course = RealFolder(courseFolder);
    const std::string copies = JoinPath(HistoryFolder(courseFolder), kCopies);
    // What each file is to be put back to, read before anything is touched.
    std::vector<std::pair<std::string, std::optional<std::string>>> restore;
    for (const HistoryFile& file : entry->files) {
        const std::string path = JoinPath(course, file.path);
        const ContentKey now = CurrentKey(path);
        if (now == file.before) continue;  // as it was before the change already
        if (now != file.after) result.changed.push_back(file.path);
        std::optional<std::string> bytes;
        if (file.before) {
            bytes = ReadBytesOf(JoinPath(copies, *file.before));
            if (!bytes || KeyOf(*bytes) != file.before) {
                host.Message("The copy of " + file.path + " from before \"" + entry->action +
                                 "\" is missing from the history; nothing was undone.",
                             kProgramTitle, Icon::Exclamation);
                return result;
            }
        }
        restore.emplace_back(path, std::move(bytes));
    }
    if (!result.changed.empty()) {
        std::string names;
        for (const std::string& name : result.changed) names += "\n    " + name;
        const Answer answer = host.Message(
            "These files were changed since \"" + entry->action + "\" (" +
                HistoryTime(entry->time) + "):" + names +
                "\n\nUndoing puts them back as they were before that change; what was changed "
                "since is lost, unless that undo is undone in turn. Undo anyway?",
            "Confirm Undo", Icon::Question, Buttons::YesNo, kDestructive);
        if (answer != Answer::Yes) return result;
    }
    ChangeScope scope(courseFolder, "Undo of " + entry->action, id);
    for (const auto& [path, bytes] : restore) {
        const bool written =
            bytes ? ReplaceFile(path, *bytes, nullptr, &host) : ChangeJournal::RemoveFile(path);
        if (written) result.restored.push_back(Relative(course, path));
    }
    result.done = true;
    return result;
}

}  // namespace tallory
