#include "common/AtomicFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <vector>

namespace tallory {

AtomicFile::AtomicFile(std::string path, Host* host) : path_(std::move(path)), host_(host) {}

AtomicFile::~AtomicFile() {
    if (fd_ >= 0) ::close(fd_);
    if (!committed_ && !temporary_.empty()) ::unlink(temporary_.c_str());
}

void AtomicFile::Fail(const std::string& what) {
    if (!failed_) error_ = what + ": " + std::strerror(errno);
    failed_ = true;
}

bool AtomicFile::Open() {
    std::string pattern = path_ + ".tmp-XXXXXX";
    std::vector<char> name(pattern.begin(), pattern.end());
    name.push_back('\0');
    fd_ = ::mkstemp(name.data());
    if (fd_ < 0) {
        Fail("cannot create a file beside " + path_);
        return false;
    }
    temporary_ = name.data();
    // Keep the permissions of the file being replaced; a new file gets the usual ones.
    struct stat existing;
    mode_t mode;
    if (::stat(path_.c_str(), &existing) == 0) {
        mode = existing.st_mode & 07777;
    } else {
        mode_t mask = ::umask(0);
        ::umask(mask);
        mode = 0666 & ~mask;
    }
    ::fchmod(fd_, mode);
    return true;
}

bool AtomicFile::Flush() {
    size_t done = 0;
    while (done < buffer_.size()) {
        ssize_t wrote = ::write(fd_, buffer_.data() + done, buffer_.size() - done);
        if (wrote < 0 && errno == EINTR) continue;
        if (wrote <= 0) {
            Fail("cannot write " + path_);
            buffer_.clear();
            return false;
        }
        done += static_cast<size_t>(wrote);
    }
    buffer_.clear();
    return true;
}

void AtomicFile::Write(std::string_view text) {
    if (failed_ || fd_ < 0) return;
    buffer_.append(text);
    if (buffer_.size() >= (1 << 16)) Flush();
}

bool AtomicFile::Commit() {
    if (fd_ < 0 || failed_) return false;
    if (!Flush()) return false;
    if (::fsync(fd_) != 0) {
        Fail("cannot write " + path_);
        return false;
    }
    if (::close(fd_) != 0) {
        fd_ = -1;
        Fail("cannot write " + path_);
        return false;
    }
    fd_ = -1;
    if (::rename(temporary_.c_str(), path_.c_str()) != 0) {
        Fail("cannot replace " + path_);
        return false;
    }
    committed_ = true;
    if (host_) host_->FileWritten(path_);
    return true;
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

}  // namespace tallory
