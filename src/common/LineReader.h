#pragma once

#include <string>

namespace tallory {

// Reads a text file line by line, as the course files are read: CR or CR LF ends a line, a lone
// LF stays in the text. Streams the file through a fixed buffer.
class LineReader {
  public:
    explicit LineReader(const std::string& path);
    ~LineReader();
    LineReader(const LineReader&) = delete;
    LineReader& operator=(const LineReader&) = delete;

    bool IsOpen() const { return fd_ >= 0; }
    // True when no byte is left to read.
    bool AtEnd();
    // The next line without its end; false at the end of the file.
    bool ReadLine(std::string& line);
    // Number of the line last read, from 1.
    long LineNumber() const { return lineNumber_; }
    const std::string& Path() const { return path_; }

  private:
    bool Fill();

    std::string path_;
    int fd_ = -1;
    char buffer_[1 << 16];
    size_t start_ = 0;
    size_t end_ = 0;
    long lineNumber_ = 0;
};

}  // namespace tallory
