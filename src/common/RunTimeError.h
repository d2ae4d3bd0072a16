#pragma once

#include <stdexcept>
#include <string>

namespace tallory {

// The errors that end a run. The numbers and descriptions are those an instructor would look up.
enum ErrorNumber : int {
    kInvalidProcedureCall = 5,
    kOverflow = 6,
    kSubscriptOutOfRange = 9,
    kTypeMismatch = 13,
    kFileAlreadyExists = 58,
    kPathFileAccessError = 75,
    kFileNotFound = 53,
    kBadFileNameOrNumber = 52,
    kDiskFull = 61,
    kPermissionDenied = 70,
};

// A failure that ends the current command: "Run-time error '13': Type mismatch", with the file and
// line where it happened when a file is being read (see FileBeingRead).
class RunTimeError : public std::runtime_error {
  public:
    // The context gets the place of the file being read, when there is one, on a line of its own.
    RunTimeError(int number, std::string context = {});

    int Number() const { return number_; }
    const std::string& Description() const { return description_; }
    const std::string& Context() const { return context_; }

    // "Run-time error '13': Type mismatch" plus the context on a line of its own.
    std::string Message() const;

    static std::string DescriptionOf(int number);

  private:
    RunTimeError(int number, std::string context, int);  // the context as it stands

    int number_;
    std::string description_;
    std::string context_;
};

// Throws error 9 unless low <= index <= high; the message names the table.
void CheckSubscript(long index, long low, long high, const char* table);

// Marks a file as being read while the object lives: a run-time error raised meanwhile names the
// file and the line last read ("File ..., line 12"). The innermost of nested readers counts. The
// path and line number are the reader's own and must outlive this object.
class FileBeingRead {
  public:
    FileBeingRead(const std::string& path, const long& lineNumber);
    ~FileBeingRead();
    FileBeingRead(const FileBeingRead&) = delete;
    FileBeingRead& operator=(const FileBeingRead&) = delete;

    // "File <path>, line <n>"; empty before the first line was read.
    static std::string CurrentPlace();

  private:
    const std::string& path_;
    const long& lineNumber_;
    FileBeingRead* outer_;
};

}  // namespace tallory
