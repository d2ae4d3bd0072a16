#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "common/RunTimeError.h"

namespace tallory {

// Reads a text file line by line, as the course files are read: CR or CR LF ends a line, a lone
// LF stays in the text. The file is read whole at the first use, in one read where the system
// allows, and lines are handed out as views of that copy. Only a regular file is read: a pipe,
// device or folder in its place counts as a file that cannot be opened, and never blocks.
// While the reader lives, a run-time error names its file and line.
class LineReader {
  public:
    explicit LineReader(const std::string& path);
    // Reads `text` as the content of a file named `path`, which is not opened.
    LineReader(const std::string& path, std::string_view text);
    ~LineReader();
    LineReader(const LineReader&) = delete;
    LineReader& operator=(const LineReader&) = delete;

    bool IsOpen() const { return open_; }
    // True when no byte is left to read.
    bool AtEnd();
    // The next line without its end; false at the end of the file.
    bool ReadLine(std::string& line);
    // The same as a view of the reader's copy of the file, valid while the reader lives.
    bool ReadLine(std::string_view& line);
    // The whole text of the file, whatever has been read of it; valid while the reader lives.
    std::string_view Text();
    // Number of the line last read, from 1.
    long LineNumber() const { return lineNumber_; }
    const std::string& Path() const { return path_; }

  private:
    void Load();

    std::string path_;
    int fd_ = -1;
    bool open_ = false;
    bool loaded_ = false;
    std::unique_ptr<char[]> text_;
    size_t size_ = 0;
    size_t start_ = 0;
    long lineNumber_ = 0;
    FileBeingRead place_{path_, lineNumber_};
};

}  // namespace tallory
