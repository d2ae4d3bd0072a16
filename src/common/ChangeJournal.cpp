#include "common/ChangeJournal.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <vector>

#include <chrono>

#include "common/AtomicFile.h"
#include "common/History.h"
#include "common/Paths.h"
#include "common/ReadGuard.h"

namespace tallory {

namespace {

ChangeJournal* active = nullptr;
bool unkept = false;  // an UnkeptChanges lives

constexpr const char* kJournalName = ".tallory-change";
constexpr const char* kPathSuffix = ".path";
// Beside each record: the hashes of the contents the change gave the file after its first.
constexpr const char* kLaterSuffix = ".later";
constexpr const char* kActionFile = "action";
// Names the change in the history once it is finished: a journal whose token stands there was
// finished, and only its removal was cut short.
constexpr const char* kTokenFile = "token";
constexpr const char* kDoneSuffix = "-done";
// The second line of an entry's record: whether the file stood before the change.
constexpr const char* kStood = "stood";
constexpr const char* kNew = "new";
// The first line of a record whose file the change removed.
constexpr const char* kGone = "gone";

bool ReadWhole(const std::string& path, std::string& text) {
    int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return false;
    text.clear();
    char buffer[1 << 16];
    for (;;) {
        ssize_t got = ::read(fd, buffer, sizeof buffer);
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) {
            ::close(fd);
            return got == 0;
        }
        text.append(buffer, static_cast<size_t>(got));
    }
}

// Writes all of `size` bytes; false when the file takes no more.
bool WriteAll(int fd, const char* data, size_t size) {
    size_t done = 0;
    while (done < size) {
        WriteEvent();
        ssize_t wrote = ::write(fd, data + done, size - done);
        if (wrote < 0 && errno == EINTR) continue;
        if (wrote <= 0) return false;
        done += static_cast<size_t>(wrote);
    }
    return true;
}

// Writes `text` to a journal file opened with `flags` and syncs its bytes: a journal file is
// durable before the file it keeps is touched.
bool WriteSynced(const std::string& path, int flags, const std::string& text) {
    WriteEvent();
    int fd = ::open(path.c_str(), O_WRONLY | O_CLOEXEC | flags, 0600);
    if (fd < 0) return false;
    const bool ok = WriteAll(fd, text.data(), text.size()) && ::fdatasync(fd) == 0;
    return ::close(fd) == 0 && ok;
}

bool WriteDurably(const std::string& path, const std::string& text) {
    return WriteSynced(path, O_CREAT | O_TRUNC, text);
}

enum class Copy { Done, NoFile, Failed };

// Copies a file as it stands into the journal, a piece at a time: a page of the reports can be
// larger than everything else the program holds at once. NoFile when it cannot be opened.
Copy CopyDurably(const std::string& from, const std::string& to) {
    int in = ::open(from.c_str(), O_RDONLY | O_CLOEXEC);
    if (in < 0) return Copy::NoFile;
    WriteEvent();
    int out = ::open(to.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    bool ok = out >= 0;
    char buffer[1 << 16];
    while (ok) {
        ssize_t got = ::read(in, buffer, sizeof buffer);
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) {
            ok = got == 0;
            break;
        }
        ok = WriteAll(out, buffer, static_cast<size_t>(got));
    }
    ::close(in);
    if (out < 0) return Copy::Failed;
    ok = ok && ::fdatasync(out) == 0;
    return ::close(out) == 0 && ok ? Copy::Done : Copy::Failed;
}

// Keeps a file as it stands under `entry`. A report page is written by this program alone and
// only ever replaced whole, never in place: once the new page is renamed over it, the old file
// is the journal's alone, so a second name for it keeps it as well as a copy would, without
// writing its bytes again. Its bytes are as durable as whoever wrote them made them (this
// program syncs every file it writes): the journal can put back what the disk held, no more.
// Whatever another program may write in place (a log the polling application appends to, the
// roster in an editor) is copied.
Copy KeepAsItStands(const std::string& path, const std::string& entry) {
    // A name left over must not be written through: it may be a second name of a course file.
    WriteEvent();
    ::unlink(entry.c_str());
    if (!path.ends_with(".html")) return CopyDurably(path, entry);
    WriteEvent();
    if (::link(path.c_str(), entry.c_str()) == 0) return Copy::Done;
    if (errno == ENOENT) return Copy::NoFile;
    return CopyDurably(path, entry);  // a folder that takes no second names
}

// A file written again in the change adds its new content's hash to the entry's list of later
// contents: one synced append, where replacing the record would cost a sync of the record and one
// of the journal folder. Once the list exists an append needs no folder sync; an append cut
// short leaves a part of a hash that no content has, and nothing after it.
bool AppendDurably(const std::string& path, const std::string& text) {
    return WriteSynced(path, O_APPEND, text);
}

// What a change left in a file: its content's hash, or that it removed the file.
std::string Wrote(std::optional<uint64_t> hash) {
    return hash ? std::to_string(*hash) : std::string(kGone);
}

// True when `hash` is one of `hashes` (blank-separated): the contents the change wrote.
bool WroteContent(const std::string& hashes, const std::string& hash) {
    size_t at = 0;
    while (at <= hashes.size()) {
        size_t end = hashes.find(' ', at);
        if (end == std::string::npos) end = hashes.size();
        if (hashes.compare(at, end - at, hash) == 0) return true;
        at = end + 1;
    }
    return false;
}

void ClearFolder(const std::string& folder) {
    for (const std::string& name : ListFiles(folder)) {
        WriteEvent();
        ::unlink(JoinPath(folder, name).c_str());
    }
    WriteEvent();
    ::rmdir(folder.c_str());
}

// A journal goes in two steps: renamed out of the way at once (a journal is never seen half
// removed), then emptied. What a kill leaves of the second step is cleared at the next opening.
void RemoveJournal(const std::string& journal) {
    const std::string done = journal + kDoneSuffix;
    if (FolderExists(done)) ClearFolder(done);
    WriteEvent();
    if (::rename(journal.c_str(), done.c_str()) != 0) return;
    SyncFolder(journal.substr(0, journal.rfind('/')));
    ClearFolder(done);
}

std::string NewToken() {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    static int count = 0;
    return std::to_string(std::chrono::duration_cast<std::chrono::nanoseconds>(now).count()) + "-" +
           std::to_string(::getpid()) + "-" + std::to_string(++count);
}

}  // namespace

std::string JournalFolder(const std::string& courseFolder) {
    return JoinPath(courseFolder, kJournalName);
}

ChangeJournal::ChangeJournal(std::string courseFolder, std::string action, bool onlyDescribed)
    : folder_(RealPath(courseFolder)),
      action_(std::move(action)),
      onlyDescribed_(onlyDescribed),
      token_(NewToken()) {
    if (!folder_.empty()) active = this;
}

ChangeJournal::~ChangeJournal() {
    Finish();
}

void ChangeJournal::Finish() {
    if (finished_) return;
    finished_ = true;
    if (active == this) active = nullptr;
    Commit();
}

void ChangeJournal::Commit() {
    // The files' renames are made durable before the journal that could undo them goes.
    for (const std::string& folder : unsynced_) SyncFolder(folder);
    unsynced_.clear();
    Record();
    if (!journal_.empty()) RemoveJournal(journal_);
    journal_.clear();
    kept_.clear();
    laterListed_.clear();
    files_.clear();
    described_.clear();
    undoes_ = 0;
    token_ = NewToken();
}

void ChangeJournal::Record() {
    if (described_.empty() || files_.empty()) return;
    std::vector<ChangedFile> files;
    for (const KeptFile& kept : files_)
        files.push_back({kept.path, kept.stood ? std::optional(kept.entry) : std::nullopt});
    RecordChange(folder_, described_, undoes_, token_, files);
}

bool ChangeJournal::Open() {
    return active != nullptr;
}

void ChangeJournal::Describe(const std::string& action, int undoes) {
    if (!active) return;
    if (!active->files_.empty()) active->Commit();
    active->described_ = action;
    active->undoes_ = undoes;
}

bool ChangeJournal::BeforeReplace(const std::string& target, uint64_t newHash) {
    return active == nullptr || active->Keep(target, newHash);
}

bool ChangeJournal::SyncFolderLater(const std::string& target, const std::string& folder) {
    if (active == nullptr) return false;
    const std::string real = RealPath(target);
    if (!active->kept_.contains(real.empty() ? target : real)) return false;
    active->unsynced_.insert(folder);
    return true;
}

bool ChangeJournal::RemoveFile(const std::string& target) {
    if (active && !active->Keep(target, std::nullopt)) return false;
    return ::unlink(target.c_str()) == 0 || errno == ENOENT;
}

bool ChangeJournal::Keep(const std::string& target, std::optional<uint64_t> newHash) {
    if (onlyDescribed_ && described_.empty()) return true;
    // Only the course's own files; a file outside it is no part of the course's state.
    const std::string real = RealPath(target);
    const std::string path = real.empty() ? target : real;
    if (!path.starts_with(folder_ + "/")) return true;
    if (auto kept = kept_.find(path); kept != kept_.end()) {
        // The state before the change is kept already; the file is written once more (a purge
        // of several clickers passes over every log once for each), and what it is given now
        // is the change's too. The list is made at the second writing, as most files of a
        // change (every report page) are written once; from then on each is one synced append.
        const std::string later = kept->second + kLaterSuffix;
        if (laterListed_.contains(later)) return AppendDurably(later, " " + Wrote(newHash));
        if (!WriteDurably(later, " " + Wrote(newHash))) return false;
        SyncFolder(journal_);
        laterListed_.insert(later);
        return true;
    }
    if (journal_.empty()) {
        const std::string journal = JournalFolder(folder_);
        WriteEvent();
        if (::mkdir(journal.c_str(), 0700) != 0 && errno != EEXIST) return false;
        if (!WriteDurably(JoinPath(journal, kActionFile), action_)) return false;
        if (!WriteDurably(JoinPath(journal, kTokenFile), token_)) return false;
        SyncFolder(folder_);
        journal_ = journal;
    }
    const std::string entry = JoinPath(journal_, std::to_string(kept_.size() + 1));
    // A file that does not stand yet is written down as new: undoing removes it.
    const Copy copy = KeepAsItStands(path, entry);
    if (copy == Copy::Failed) return false;
    const bool stood = copy == Copy::Done;
    const std::string record = Wrote(newHash) + "\n" + (stood ? kStood : kNew) + "\n" + path;
    if (!WriteDurably(entry + kPathSuffix, record)) return false;
    SyncFolder(journal_);
    kept_[path] = entry;
    files_.push_back({path, entry, stood});
    return true;
}

ChangeScope::ChangeScope(const std::string& courseFolder, const std::string& action, int undoes) {
    if (unkept) return;
    if (!ChangeJournal::Open()) own_.emplace(courseFolder, action);
    ChangeJournal::Describe(action, undoes);
}

ChangeScope::~ChangeScope() {
    if (own_) {
        own_->Finish();
    } else if (active) {
        active->Commit();
    }
}

UnkeptChanges::UnkeptChanges() : waiting_(active), wasUnkept_(unkept) {
    active = nullptr;
    unkept = true;
}

UnkeptChanges::~UnkeptChanges() {
    active = waiting_;
    unkept = wasUnkept_;
}

std::string UndoInterruptedChange(const std::string& courseFolder) {
    const std::string journal = JournalFolder(courseFolder);
    if (FolderExists(journal + kDoneSuffix)) ClearFolder(journal + kDoneSuffix);
    if (!FolderExists(journal)) return {};
    std::string action, token;
    ReadWhole(JoinPath(journal, kActionFile), action);
    // A change that reached the history was finished: only the journal's removal was cut short.
    if (ReadWhole(JoinPath(journal, kTokenFile), token) && HistoryHasToken(courseFolder, token)) {
        RemoveJournal(journal);
        return {};
    }
    int restored = 0, left = 0;
    std::vector<std::string> names = ListFiles(journal);
    std::sort(names.begin(), names.end());
    for (const std::string& name : names) {
        if (!name.ends_with(kPathSuffix)) continue;
        const std::string entry = JoinPath(journal, name.substr(0, name.size() - 5));
        std::string record, text, current;
        if (!ReadWhole(JoinPath(journal, name), record)) continue;
        std::string later;
        ReadWhole(entry + kLaterSuffix, later);
        const size_t first = record.find('\n');
        const size_t second = first == std::string::npos ? first : record.find('\n', first + 1);
        if (second == std::string::npos) continue;  // written only in part: nothing was replaced
        const std::string flag = record.substr(first + 1, second - first - 1);
        const std::string target = record.substr(second + 1);
        const bool before = flag == kStood;
        if (before && !ReadWhole(entry, text)) continue;
        const bool stands = ReadWhole(target, current);
        if (before == stands && (!stands || current == text)) continue;  // never replaced
        const std::string now = stands ? std::to_string(ContentHash(current)) : kGone;
        if (!WroteContent(record.substr(0, first) + later, now)) {
            ++left;  // what the change wrote was changed again since, by someone else
            continue;
        }
        if (before) {
            if (!ReplaceFile(target, text)) {
                return "A change of the course that was cut short (" + action +
                       ") could not be undone: " + target +
                       " cannot be written. The undoing is done again at the next opening of "
                       "the course.";
            }
        } else {
            ::unlink(target.c_str());
        }
        ++restored;
    }
    RemoveJournal(journal);
    std::string message = "A change of the course that was cut short (" + action +
                          ") was undone: " + std::to_string(restored) +
                          (restored == 1 ? " file was" : " files were") + " put back as before.";
    if (left > 0)
        message += " " + std::to_string(left) +
                   (left == 1 ? " file was changed since by another program and is left as it "
                                "stands."
                              : " files were changed since by another program and are left as "
                                "they stand.");
    return message;
}

}  // namespace tallory
