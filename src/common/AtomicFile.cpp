#include "common/AtomicFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <signal.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <vector>

#include "common/ChangeJournal.h"
#include "common/Paths.h"
#include "common/ReadGuard.h"

namespace tallory {

namespace {

constexpr std::string_view kTemporaryMark = ".tmp-";
constexpr size_t kTemporaryLetters = 6;  // the X's of mkstemp's pattern

// Taken when the program starts, before any write of this run can have begun.
const std::time_t kProcessStart = std::time(nullptr);

std::string FolderOf(const std::string& path) {
    size_t slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

// The path with its symbolic links followed to the file they end at, which need not exist yet.
// A loop of links is left as it stands, so that the write fails on it rather than here.
std::string FollowLinks(const std::string& path) {
    std::string current = path;
    for (int hops = 0; hops < 40; ++hops) {
        struct stat info;
        if (::lstat(current.c_str(), &info) != 0 || !S_ISLNK(info.st_mode)) return current;
        std::vector<char> target(static_cast<size_t>(info.st_size > 0 ? info.st_size : 255) + 2);
        ssize_t length = ::readlink(current.c_str(), target.data(), target.size() - 1);
        if (length < 0) return current;
        std::string next(target.data(), static_cast<size_t>(length));
        current = next.starts_with('/') ? next : FolderOf(current) + "/" + next;
    }
    return path;
}

// A file the user made read-only: no write permission bit at all, or none for this process.
bool IsReadOnly(const std::string& path) {
    struct stat info;
    if (::stat(path.c_str(), &info) != 0 || !S_ISREG(info.st_mode)) return false;
    return (info.st_mode & 0222) == 0 || ::access(path.c_str(), W_OK) != 0;
}

// The new file takes the owner, group and mode of the one it replaces where the process may
// set them; a new file gets the usual mode.
void TakeOwnerAndMode(int fd, const std::string& path) {
    struct stat existing;
    if (::stat(path.c_str(), &existing) == 0) {
        if (::fchown(fd, existing.st_uid, existing.st_gid) != 0 &&
            ::fchown(fd, static_cast<uid_t>(-1), existing.st_gid) != 0) {
            // Neither may be given away: the file becomes the process's own, as a new one would.
        }
        // After the owner: a change of owner may clear the set-id bits.
        ::fchmod(fd, existing.st_mode & 07777);
        return;
    }
    mode_t mask = ::umask(0);
    ::umask(mask);
    ::fchmod(fd, 0666 & ~mask);
}

// ACL entries and extended attributes of the file replaced go to the new one (an ACL is one of
// them on this system). What the process may not set (another's security label) stays behind.
void TakeAttributes(int fd, const std::string& path) {
    ssize_t length = ::listxattr(path.c_str(), nullptr, 0);
    if (length <= 0) return;
    std::vector<char> names(static_cast<size_t>(length));
    length = ::listxattr(path.c_str(), names.data(), names.size());
    if (length <= 0) return;
    for (size_t at = 0; at < static_cast<size_t>(length);) {
        const char* name = names.data() + at;
        at += std::strlen(name) + 1;
        ssize_t size = ::getxattr(path.c_str(), name, nullptr, 0);
        if (size < 0) continue;
        std::vector<char> value(static_cast<size_t>(size) + 1);
        size = ::getxattr(path.c_str(), name, value.data(), value.size());
        if (size < 0) continue;
        ::fsetxattr(fd, name, value.data(), static_cast<size_t>(size), 0);
    }
}

// ---- The failure seam ------------------------------------------------------------------------

std::mutex& FaultLock() {
    static std::mutex lock;
    return lock;
}

std::optional<WriteFault>& CurrentFault() {
    static std::optional<WriteFault> fault = [] {
        const char* text = std::getenv("TALLORY_WRITE_FAULT");
        return text ? ParseWriteFault(text) : std::nullopt;
    }();
    return fault;
}

// True (with errno set) when a test wants this step of writing `path` to fail.
bool Injected(WriteStep step, const std::string& path) {
    std::lock_guard<std::mutex> hold(FaultLock());
    const std::optional<WriteFault>& fault = CurrentFault();
    if (!fault || fault->step != step || path.find(fault->pathPart) == std::string::npos)
        return false;
    errno = fault->error;
    return true;
}

long KillAtEvent() {
    static const long at = [] {
        const char* text = std::getenv("TALLORY_KILL_AT_EVENT");
        return text ? std::strtol(text, nullptr, 10) : 0L;
    }();
    return at;
}

struct NamedError {
    const char* name;
    int error;
};
constexpr NamedError kNamedErrors[] = {{"ENOSPC", ENOSPC}, {"EROFS", EROFS}, {"EACCES", EACCES},
                                       {"EISDIR", EISDIR}, {"EIO", EIO},     {"EDQUOT", EDQUOT}};

bool IsTemporaryLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

}  // namespace

AtomicFile::AtomicFile(std::string path, Host* host) : path_(std::move(path)), host_(host) {}

AtomicFile::~AtomicFile() {
    if (fd_ >= 0) ::close(fd_);
    if (!committed_ && !temporary_.empty()) ::unlink(temporary_.c_str());
}

void AtomicFile::Fail(const std::string& what) {
    if (failed_) return;
    Refuse(what + ": " + CauseText(errno));
}

void AtomicFile::Refuse(const std::string& sentence) {
    if (failed_) return;
    error_ = sentence;
    failed_ = true;
    if (host_) host_->FileNotWritten(path_, error_);
}

bool AtomicFile::Open() {
    target_ = FollowLinks(path_);
    if (IsReadOnly(target_)) {
        errno = EACCES;
        Fail("cannot replace the read-only file " + path_);
        return false;
    }
    std::string pattern = target_ + std::string(kTemporaryMark) + "XXXXXX";
    std::vector<char> name(pattern.begin(), pattern.end());
    name.push_back('\0');
    WriteEvent();
    fd_ = Injected(WriteStep::Open, target_) ? -1 : ::mkstemp(name.data());
    if (fd_ < 0) {
        Fail("cannot create a file beside " + path_);
        return false;
    }
    temporary_ = name.data();
    TakeOwnerAndMode(fd_, target_);
    TakeAttributes(fd_, target_);
    return true;
}

bool AtomicFile::WriteOut(std::string_view bytes) {
    size_t done = 0;
    while (done < bytes.size()) {
        WriteEvent();
        ssize_t wrote = Injected(WriteStep::Write, target_)
                            ? -1
                            : ::write(fd_, bytes.data() + done, bytes.size() - done);
        if (wrote < 0 && errno == EINTR) continue;
        if (wrote <= 0) {
            Fail("cannot write " + path_);
            return false;
        }
        done += static_cast<size_t>(wrote);
    }
    return true;
}

bool AtomicFile::Flush() {
    // Hashed here, in the buffer's large piece, rather than item by item as the printers hand
    // them over: the hash is that of the bytes in order however they are cut.
    hash_.Add(buffer_);
    const bool wrote = WriteOut(buffer_);
    buffer_.clear();
    return wrote;
}

void AtomicFile::Write(std::string_view text) {
    if (failed_ || fd_ < 0) return;
    size_ += static_cast<int64_t>(text.size());
    // A piece as large as the buffer, with nothing gathered before it, goes to the file as it
    // is: the printers hand over whole pieces, and copying them first only costs.
    if (buffer_.empty() && text.size() >= kBufferSize) {
        hash_.Add(text);
        WriteOut(text);
        return;
    }
    buffer_.append(text);
    if (buffer_.size() >= kBufferSize) Flush();
}

bool AtomicFile::Commit() {
    if (fd_ < 0 || failed_) return false;
    if (!Flush()) return false;
    WriteEvent();
    if (Injected(WriteStep::Sync, target_) || ::fsync(fd_) != 0) {
        Fail("cannot write " + path_);
        return false;
    }
    if (::close(fd_) != 0) {
        fd_ = -1;
        Fail("cannot write " + path_);
        return false;
    }
    fd_ = -1;
    if (Injected(WriteStep::Rename, target_)) {
        Fail("cannot replace " + path_);
        return false;
    }
    if (!ChangeJournal::BeforeReplace(target_, hash_.Value())) {
        Fail("cannot keep " + path_ + " as it was for the change journal");
        return false;
    }
    const std::optional<ReadSnapshot> read = RememberedRead(target_);
    WriteEvent();
    if (read) {
        switch (ReplaceGuarded(temporary_, target_, *read)) {
            case GuardOutcome::Replaced:
                break;
            case GuardOutcome::Changed:
                Refuse(path_ +
                       " was changed by another program after Tallory read it; nothing was "
                       "changed. Try again when polling has ended.");
                return false;
            case GuardOutcome::BeingWritten:
                Refuse(path_ +
                       " is being written by another program; nothing was changed. Try again "
                       "when polling has ended.");
                return false;
            case GuardOutcome::Failed:
                Fail("cannot replace " + path_);
                return false;
        }
    } else if (::rename(temporary_.c_str(), target_.c_str()) != 0) {
        Fail("cannot replace " + path_);
        return false;
    }
    committed_ = true;
    // A guarded file stays guarded: the next replacement checks against what was written now.
    if (read) RememberWritten(target_, size_, hash_.Value());
    const std::string folder = FolderOf(target_);
    if (!ChangeJournal::SyncFolderLater(target_, folder)) SyncFolder(folder);
    if (host_) host_->FileWritten(path_);
    return true;
}

void SyncFolder(const std::string& folder) {
    int fd = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) return;
    ::fsync(fd);
    ::close(fd);
}

bool ReplaceFile(const std::string& path, std::string_view content, std::string* error,
                 Host* host) {
    AtomicFile file(path, host);
    if (file.Open()) {
        file.Write(content);
        if (file.Commit()) return true;
    }
    if (error) *error = file.Error();
    return false;
}

void WriteEvent() {
    static std::atomic<long> events{0};
    const long killAt = KillAtEvent();
    if (killAt > 0 && ++events == killAt) ::kill(::getpid(), SIGKILL);
}

void SetWriteFault(std::optional<WriteFault> fault) {
    std::lock_guard<std::mutex> hold(FaultLock());
    CurrentFault() = std::move(fault);
}

std::optional<WriteFault> ParseWriteFault(std::string_view text) {
    size_t first = text.find(':');
    size_t second = first == std::string_view::npos ? first : text.find(':', first + 1);
    if (second == std::string_view::npos) return std::nullopt;
    const std::string_view step = text.substr(0, first);
    const std::string_view error = text.substr(first + 1, second - first - 1);
    WriteFault fault;
    fault.pathPart = std::string(text.substr(second + 1));
    if (step == "open")
        fault.step = WriteStep::Open;
    else if (step == "write")
        fault.step = WriteStep::Write;
    else if (step == "sync")
        fault.step = WriteStep::Sync;
    else if (step == "rename")
        fault.step = WriteStep::Rename;
    else
        return std::nullopt;
    for (const NamedError& named : kNamedErrors)
        if (error == named.name) fault.error = named.error;
    if (fault.error == 0) return std::nullopt;
    return fault;
}

std::string CauseText(int error) {
    switch (error) {
        case ENOSPC:
            return "the disk is full";
        case EDQUOT:
            return "the disk quota is used up";
        case EROFS:
            return "the disk is read-only";
        case EACCES:
        case EPERM:
            return "permission denied";
        case EISDIR:
            return "a folder is in the way";
        case ENOTDIR:
            return "a file stands where a folder should";
        case ENOENT:
            return "the folder does not exist";
        default:
            return std::strerror(error);
    }
}

bool IsTemporaryName(std::string_view name) {
    if (name.size() <= kTemporaryMark.size() + kTemporaryLetters) return false;
    std::string_view letters = name.substr(name.size() - kTemporaryLetters);
    std::string_view mark =
        name.substr(name.size() - kTemporaryLetters - kTemporaryMark.size(), kTemporaryMark.size());
    if (mark != kTemporaryMark) return false;
    for (char c : letters)
        if (!IsTemporaryLetter(c)) return false;
    return true;
}

int RemoveStaleTemporaries(const std::string& folder, std::time_t before, bool onlyOurs) {
    int removed = 0;
    if (folder.empty()) return 0;
    for (const std::string& name : ListFiles(folder)) {
        if (!IsTemporaryName(name)) continue;
        const std::string path = JoinPath(folder, name);
        // Ours are named after a course file standing beside them; "exam.tmp-draft1" is not.
        const std::string base =
            name.substr(0, name.size() - kTemporaryMark.size() - kTemporaryLetters);
        struct stat beside;
        if (!onlyOurs && ::stat(JoinPath(folder, base).c_str(), &beside) != 0) continue;
        // A write of another running copy of the program changed its file after this run began.
        struct stat info;
        if (::lstat(path.c_str(), &info) != 0 || !S_ISREG(info.st_mode)) continue;
        if (info.st_mtime >= before) continue;
        if (::unlink(path.c_str()) == 0) ++removed;
    }
    return removed;
}

std::time_t ProcessStartTime() {
    return kProcessStart;
}

}  // namespace tallory
