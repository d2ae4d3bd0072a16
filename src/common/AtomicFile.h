#pragma once

#include <string>
#include <string_view>

#include "common/Host.h"

namespace tallory {

// Replaces a file as a whole: the text goes to a temporary file in the same folder, which is
// renamed over the target only when everything was written. A failure leaves the old file intact.
class AtomicFile {
  public:
    // A host, when given, hears of the file once it is in place.
    explicit AtomicFile(std::string path, Host* host = nullptr);
    ~AtomicFile();  // drops the temporary file unless committed
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;

    // Creates the temporary file; false (with Error()) when it cannot.
    bool Open();
    void Write(std::string_view text);
    // Flushes, syncs and renames over the target; false (with Error()) on any failure.
    bool Commit();

    bool Failed() const { return failed_; }
    const std::string& Error() const { return error_; }
    const std::string& Path() const { return path_; }

  private:
    bool Flush();
    void Fail(const std::string& what);

    std::string path_;
    Host* host_ = nullptr;
    std::string temporary_;
    std::string buffer_;
    int fd_ = -1;
    bool failed_ = false;
    bool committed_ = false;
    std::string error_;
};

// Writes a whole file at once through AtomicFile; false with a reason on failure.
bool ReplaceFile(const std::string& path, std::string_view content, std::string* error = nullptr,
                 Host* host = nullptr);

}  // namespace tallory
