#pragma once

#include <ctime>
#include <string>
#include <string_view>

#include "common/Host.h"

namespace tallory {

// Replaces a file as a whole: the text goes to a temporary file in the same folder, which is
// renamed over the target only when everything was written. A failure leaves the old file intact.
// What the user set up on the file stands: a read-only file is not replaced (Open fails), a
// symbolic link is followed and its target replaced, owner, group and mode are kept where the
// process may keep them.
class AtomicFile {
  public:
    // A host, when given, hears of the file once it is in place.
    explicit AtomicFile(std::string path, Host* host = nullptr);
    ~AtomicFile();  // drops the temporary file unless committed
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;

    // Creates the temporary file; false (with Error()) when it cannot, or when the file in place
    // is read-only.
    bool Open();
    void Write(std::string_view text);
    // Flushes, syncs, renames over the target and syncs its folder; false (with Error()) on any
    // failure.
    bool Commit();

    bool Failed() const { return failed_; }
    const std::string& Error() const { return error_; }
    const std::string& Path() const { return path_; }

  private:
    bool Flush();
    void Fail(const std::string& what);

    std::string path_;
    Host* host_ = nullptr;
    // The file actually replaced: path_ with its symbolic links followed.
    std::string target_;
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

// True for a name AtomicFile gives its temporary files: the target's name, ".tmp-" and six
// letters or digits.
bool IsTemporaryName(std::string_view name);

// Removes the temporary files a killed write left in `folder`: plain files of that naming last
// changed before `before`. Returns how many were removed.
int RemoveStaleTemporaries(const std::string& folder, std::time_t before);

// When this process started: a temporary file older than that belongs to no write of this run.
std::time_t ProcessStartTime();

}  // namespace tallory
