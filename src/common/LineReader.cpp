#include "common/LineReader.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace tallory {

LineReader::LineReader(const std::string& path) : path_(path) {
    // Opening a pipe without O_NONBLOCK waits for a writer; the type is known only once open.
    fd_ = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    struct stat info {};
    if (fd_ >= 0 && (::fstat(fd_, &info) != 0 || !S_ISREG(info.st_mode))) {
        ::close(fd_);
        fd_ = -1;
    }
    open_ = fd_ >= 0;
}

LineReader::LineReader(const std::string& path, std::string_view text)
    : path_(path),
      open_(true),
      loaded_(true),
      text_(new char[text.size() + 1]),
      size_(text.size()) {
    std::memcpy(text_.get(), text.data(), text.size());
}

LineReader::~LineReader() {
    if (fd_ >= 0) ::close(fd_);
}

// Reads the file to its end into one block sized by the file's length, growing it only for a
// file that grew meanwhile or reports no length. A read error ends the text where it stands, as
// the end of the file would.
void LineReader::Load() {
    loaded_ = true;
    if (fd_ < 0) return;
    struct stat info {};
    size_t capacity = ::fstat(fd_, &info) == 0 && info.st_size > 0
                          ? static_cast<size_t>(info.st_size) + 1
                          : size_t{1} << 16;
    text_.reset(new char[capacity]);
    for (;;) {
        if (size_ == capacity) {
            std::unique_ptr<char[]> larger(new char[capacity * 2]);
            std::memcpy(larger.get(), text_.get(), size_);
            text_ = std::move(larger);
            capacity *= 2;
        }
        ssize_t got = ::read(fd_, text_.get() + size_, capacity - size_);
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) break;
        size_ += static_cast<size_t>(got);
    }
    ::close(fd_);
    fd_ = -1;
}

bool LineReader::AtEnd() {
    if (!loaded_) Load();
    return start_ >= size_;
}

std::string_view LineReader::Text() {
    if (!loaded_) Load();
    return std::string_view(text_.get(), size_);
}

bool LineReader::ReadLine(std::string_view& line) {
    if (AtEnd()) {
        line = {};
        return false;
    }
    const char* begin = text_.get() + start_;
    const size_t left = size_ - start_;
    const void* cr = std::memchr(begin, '\r', left);
    if (cr) {
        size_t length = static_cast<const char*>(cr) - begin;
        line = std::string_view(begin, length);
        start_ += length + 1;
        if (start_ < size_ && text_[start_] == '\n') ++start_;
    } else {
        line = std::string_view(begin, left);
        start_ = size_;
    }
    ++lineNumber_;
    return true;
}

bool LineReader::ReadLine(std::string& line) {
    std::string_view view;
    bool read = ReadLine(view);
    line.assign(view);
    return read;
}

}  // namespace tallory
