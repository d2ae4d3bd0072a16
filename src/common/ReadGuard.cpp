#include "common/ReadGuard.h"

#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <bit>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <map>
#include <mutex>

#include "common/Paths.h"

namespace tallory {

namespace {

std::mutex& Lock() {
    static std::mutex lock;
    return lock;
}

std::map<std::string, ReadSnapshot>& Snapshots() {
    static std::map<std::string, ReadSnapshot> snapshots;
    return snapshots;
}

// The key of a file: its real path, so that every spelling of it meets the same entry.
std::optional<std::string> KeyOf(const std::string& path) {
    std::string key = RealPath(path);
    if (key.empty()) return std::nullopt;
    return key;
}

int64_t ModifiedNs(const struct stat& info) {
    return static_cast<int64_t>(info.st_mtim.tv_sec) * 1000000000 + info.st_mtim.tv_nsec;
}

bool SameFile(const struct stat& info, const ReadSnapshot& read) {
    return info.st_dev == read.device && info.st_ino == read.inode && info.st_size == read.size &&
           ModifiedNs(info) == read.modifiedNs;
}

bool SameBytes(int fd, const ReadSnapshot& read) {
    ContentHasher hash;
    int64_t total = 0;
    char buffer[1 << 16];
    for (off_t at = 0;;) {
        ssize_t got = ::pread(fd, buffer, sizeof buffer, at);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) return false;
        if (got == 0) break;
        hash.Add({buffer, static_cast<size_t>(got)});
        total += got;
        at += got;
    }
    return total == read.size && hash.Value() == read.hash;
}

// The lease's break is signalled; the default signal (SIGIO) would end the program, this one is
// ignored unless someone asked for it, and the lease's state is asked for instead.
constexpr int kLeaseBreakSignal = SIGURG;

}  // namespace

namespace {

// One step: every step maps the state one to one for a given word, so two texts of one length
// that differ in a single word never meet.
inline uint64_t HashStep(uint64_t state, uint64_t word) {
    state = (state ^ word) * 0x100000001b3ull;
    return (state << 29) | (state >> 35);
}

}  // namespace

void ContentHasher::Add(std::string_view bytes) {
    const char* p = bytes.data();
    size_t left = bytes.size();
    length_ += left;
    // Complete the word begun by the piece before.
    while (pendingCount_ != 0 && left != 0) {
        pending_ |= uint64_t{static_cast<unsigned char>(*p++)} << (8 * pendingCount_);
        --left;
        if (++pendingCount_ == 8) {
            state_ = HashStep(state_, pending_);
            pending_ = 0;
            pendingCount_ = 0;
        }
    }
    uint64_t state = state_;
    for (; left >= 8; p += 8, left -= 8) {
        uint64_t word;
        std::memcpy(&word, p, 8);
        if constexpr (std::endian::native == std::endian::big) word = __builtin_bswap64(word);
        state = HashStep(state, word);
    }
    state_ = state;
    for (; left != 0; --left)
        pending_ |= uint64_t{static_cast<unsigned char>(*p++)} << (8 * pendingCount_++);
}

uint64_t ContentHasher::Value() const {
    uint64_t state = pendingCount_ != 0 ? HashStep(state_, pending_) : state_;
    state = HashStep(state, length_);
    // Spread the last steps over every bit.
    state ^= state >> 33;
    state *= 0xff51afd7ed558ccdull;
    state ^= state >> 33;
    return state;
}

uint64_t ContentHash(std::string_view bytes) {
    ContentHasher hasher;
    hasher.Add(bytes);
    return hasher.Value();
}

void RememberRead(const std::string& path, std::string_view bytes) {
    std::optional<std::string> key = KeyOf(path);
    struct stat info;
    if (!key || ::stat(key->c_str(), &info) != 0) return;
    ReadSnapshot read{info.st_dev, info.st_ino, static_cast<int64_t>(bytes.size()),
                      ModifiedNs(info), ContentHash(bytes)};
    std::lock_guard<std::mutex> hold(Lock());
    Snapshots()[*key] = read;
}

std::optional<ReadSnapshot> RememberedRead(const std::string& path) {
    std::optional<std::string> key = KeyOf(path);
    if (!key) return std::nullopt;
    std::lock_guard<std::mutex> hold(Lock());
    auto found = Snapshots().find(*key);
    if (found == Snapshots().end()) return std::nullopt;
    return found->second;
}

void RememberWritten(const std::string& path, int64_t size, uint64_t hash) {
    std::optional<std::string> key = KeyOf(path);
    struct stat info;
    if (!key || ::stat(key->c_str(), &info) != 0) return;
    std::lock_guard<std::mutex> hold(Lock());
    Snapshots()[*key] = ReadSnapshot{info.st_dev, info.st_ino, size, ModifiedNs(info), hash};
}

bool OpenForWritingElsewhere(const std::string& path) {
    std::optional<std::string> key = KeyOf(path);
    if (!key) return false;
    const std::string self = std::to_string(::getpid());
    DIR* processes = ::opendir("/proc");
    if (!processes) return false;
    bool found = false;
    while (dirent* process = ::readdir(processes)) {
        const std::string pid = process->d_name;
        if (pid.empty() || pid.find_first_not_of("0123456789") != std::string::npos) continue;
        if (pid == self) continue;
        const std::string fdFolder = "/proc/" + pid + "/fd";
        DIR* fds = ::opendir(fdFolder.c_str());
        if (!fds) continue;  // another user's process, or gone
        while (dirent* fd = ::readdir(fds)) {
            if (fd->d_name[0] == '.') continue;
            char target[PATH_MAX];
            ssize_t length =
                ::readlink((fdFolder + "/" + fd->d_name).c_str(), target, sizeof target - 1);
            if (length <= 0 || std::string_view(target, static_cast<size_t>(length)) != *key)
                continue;
            std::ifstream info("/proc/" + pid + "/fdinfo/" + fd->d_name);
            std::string word;
            while (info >> word) {
                if (word != "flags:") continue;
                std::string octal;
                info >> octal;
                const long flags = std::strtol(octal.c_str(), nullptr, 8);
                if ((flags & O_ACCMODE) != O_RDONLY) found = true;
                break;
            }
            if (found) break;
        }
        ::closedir(fds);
        if (found) break;
    }
    ::closedir(processes);
    return found;
}

GuardOutcome ReplaceGuarded(const std::string& temporary, const std::string& target,
                            const ReadSnapshot& read) {
    int fd = ::open(target.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
        if (errno == ENOENT) return GuardOutcome::Changed;  // removed since it was read
        return GuardOutcome::Failed;
    }
    struct stat info;
    if (::fstat(fd, &info) != 0 || !SameFile(info, read)) {
        ::close(fd);
        return GuardOutcome::Changed;
    }
    ::fcntl(fd, F_SETSIG, kLeaseBreakSignal);
    bool leased = ::fcntl(fd, F_SETLEASE, F_RDLCK) == 0;
    if (!leased) {
        // EAGAIN: some process has it open for writing. Otherwise leases are not ours to take
        // (another owner, a network file system): /proc tells what it can.
        if (errno == EAGAIN || OpenForWritingElsewhere(target)) {
            ::close(fd);
            return GuardOutcome::BeingWritten;
        }
    }
    auto finish = [&](GuardOutcome outcome) {
        if (leased) ::fcntl(fd, F_SETLEASE, F_UNLCK);
        ::close(fd);
        return outcome;
    };
    if (::fstat(fd, &info) != 0 || !SameFile(info, read) || !SameBytes(fd, read))
        return finish(GuardOutcome::Changed);
    if (!leased) {
        if (::rename(temporary.c_str(), target.c_str()) != 0) return finish(GuardOutcome::Failed);
        return finish(GuardOutcome::Replaced);
    }
    // The exchange keeps the old file under the temporary name, so that it can come back.
    if (::renameat2(AT_FDCWD, temporary.c_str(), AT_FDCWD, target.c_str(), RENAME_EXCHANGE) != 0) {
        if (errno != EINVAL && errno != ENOSYS && errno != EOPNOTSUPP)
            return finish(GuardOutcome::Failed);
        // A file system that cannot exchange: the plain rename, with no way back.
        if (::rename(temporary.c_str(), target.c_str()) != 0) return finish(GuardOutcome::Failed);
        return finish(GuardOutcome::Replaced);
    }
    if (::fcntl(fd, F_GETLEASE) != F_RDLCK) {
        // A writer opened the old file while it was being replaced: it gets it back in place.
        ::renameat2(AT_FDCWD, temporary.c_str(), AT_FDCWD, target.c_str(), RENAME_EXCHANGE);
        return finish(GuardOutcome::BeingWritten);
    }
    ::unlink(temporary.c_str());
    return finish(GuardOutcome::Replaced);
}

}  // namespace tallory
