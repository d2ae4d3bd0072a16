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
// line where it happened when they are known.
class RunTimeError : public std::runtime_error {
  public:
    RunTimeError(int number, std::string context = {});

    int Number() const { return number_; }
    const std::string& Description() const { return description_; }
    const std::string& Context() const { return context_; }

    // "Run-time error '13': Type mismatch" plus the context on a line of its own.
    std::string Message() const;

    static std::string DescriptionOf(int number);

  private:
    int number_;
    std::string description_;
    std::string context_;
};

// Throws error 9 unless low <= index <= high.
void CheckSubscript(long index, long low, long high, const char* table);

}  // namespace tallory
