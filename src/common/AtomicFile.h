#pragma once

#include <cstdint>
#include <ctime>
#include <optional>
#include <string>
#include <string_view>

#include "common/Host.h"
#include "common/ReadGuard.h"

namespace tallory {

// Replaces a file as a whole: the text goes to a temporary file in the same folder, which is
// renamed over the target only when everything was written. A failure leaves the old file intact.
// What the user set up on the file stands: a read-only file is not replaced (Open fails), a
// symbolic link is followed and its target replaced, owner, group, mode, ACL and extended
// attributes are kept where the process may keep them. A session log this process read is only
// replaced while it is still what was read and nobody else has it open for writing (ReadGuard).
// A file that could not be written is reported to the host with the reason.
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
    // Gives the file up with a sentence of its own (no system error appended): nothing is
    // renamed, the file in place stands, and the host hears why.
    void Refuse(const std::string& sentence);

    // Pieces of this size and more go to the file as they are handed over, without a copy.
    static constexpr size_t kBufferSize = size_t{1} << 16;

  private:

    bool WriteOut(std::string_view bytes);
    bool Flush();
    void Fail(const std::string& what);

    std::string path_;
    Host* host_ = nullptr;
    // The file actually replaced: path_ with its symbolic links followed.
    std::string target_;
    std::string temporary_;
    std::string buffer_;
    ContentHasher hash_;  // of everything written
    int64_t size_ = 0;
    int fd_ = -1;
    bool failed_ = false;
    bool committed_ = false;
    std::string error_;
};

// Writes a whole file at once through AtomicFile; false with a reason on failure.
bool ReplaceFile(const std::string& path, std::string_view content, std::string* error = nullptr,
                 Host* host = nullptr);

// Makes the renames in a folder durable; a file system that cannot sync folders is left be.
void SyncFolder(const std::string& folder);

// The steps of a write where a test may make it fail.
enum class WriteStep { Open, Write, Sync, Rename };

// A failure as a full or read-only disk gives it: every write of a file whose path contains
// `pathPart` fails at `step` with the system error `error`.
struct WriteFault {
    WriteStep step = WriteStep::Write;
    int error = 0;
    std::string pathPart;
};

// Tests set (or clear, with nullopt) the failure of this process. A program run gets one from
// the environment variable TALLORY_WRITE_FAULT, "STEP:ERROR:PATH PART" (STEP one of open,
// write, sync, rename; ERROR one of ENOSPC, EROFS, EACCES, EISDIR, EIO, EDQUOT).
void SetWriteFault(std::optional<WriteFault> fault);
// Reads a fault in the form of TALLORY_WRITE_FAULT; nullopt when the text is not one.
std::optional<WriteFault> ParseWriteFault(std::string_view text);

// Marks one event of changing the course's files: a file created, written, synced or renamed, a
// step of the change journal. A run given TALLORY_KILL_AT_EVENT=N kills itself (SIGKILL, as
// kill -9 does) at its Nth event, before the event happens, so that a test can cut a change short
// between any two of its events.
void WriteEvent();

// Why a write failed, in words: "the disk is full", "a folder is in the way", ...
std::string CauseText(int error);

// True for a name AtomicFile gives its temporary files: the target's name, ".tmp-" and six
// letters or digits.
bool IsTemporaryName(std::string_view name);

// Removes the temporary files a killed write left in `folder`: plain files of that naming, named
// after a file that stands beside them (anything else is not ours), last changed before `before`.
// In a folder only the program writes into, `onlyOurs`, the file beside them need not stand.
// Returns how many were removed.
int RemoveStaleTemporaries(const std::string& folder, std::time_t before, bool onlyOurs = false);

// When this process started: a temporary file older than that belongs to no write of this run.
std::time_t ProcessStartTime();

}  // namespace tallory
