#include "common/LineReader.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstring>

namespace tallory {

LineReader::LineReader(const std::string& path) : path_(path) {
    fd_ = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
}

LineReader::~LineReader() {
    if (fd_ >= 0) ::close(fd_);
}

bool LineReader::Fill() {
    if (fd_ < 0) return false;
    if (start_ > 0) {
        std::memmove(buffer_, buffer_ + start_, end_ - start_);
        end_ -= start_;
        start_ = 0;
    }
    while (end_ < sizeof buffer_) {
        ssize_t got = ::read(fd_, buffer_ + end_, sizeof buffer_ - end_);
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) return false;
        end_ += static_cast<size_t>(got);
        return true;
    }
    return true;
}

bool LineReader::AtEnd() {
    if (start_ < end_) return false;
    return !Fill() && start_ >= end_;
}

bool LineReader::ReadLine(std::string& line) {
    line.clear();
    if (AtEnd()) return false;
    for (;;) {
        const char* begin = buffer_ + start_;
        const void* cr = std::memchr(begin, '\r', end_ - start_);
        if (cr) {
            size_t length = static_cast<const char*>(cr) - begin;
            line.append(begin, length);
            start_ += length + 1;
            if (start_ >= end_) Fill();
            if (start_ < end_ && buffer_[start_] == '\n') ++start_;
            ++lineNumber_;
            return true;
        }
        line.append(begin, end_ - start_);
        start_ = end_;
        if (!Fill()) {
            ++lineNumber_;
            return true;
        }
    }
}

}  // namespace tallory
