#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tallory {

// A session log is shared with the polling application, which appends votes to it while a class
// runs. What this process last read of such a file is kept here, so that replacing it can make
// sure nobody changed it since, and that nobody holds it open for writing.
struct ReadSnapshot {
    uint64_t device = 0;
    uint64_t inode = 0;
    int64_t size = 0;
    int64_t modifiedNs = 0;
    uint64_t hash = 0;  // of the bytes read
};

// A hash of file contents, the same for the bytes read and the bytes written, however they are
// cut into pieces on the way. It takes eight bytes per step, so that checking a file costs little
// beside reading it.
class ContentHasher {
  public:
    void Add(std::string_view bytes);
    uint64_t Value() const;

  private:
    uint64_t state_ = 0xcbf29ce484222325ull;
    uint64_t pending_ = 0;  // bytes not yet taken, the first in the lowest byte
    unsigned pendingCount_ = 0;
    uint64_t length_ = 0;
};

// The hash of bytes at hand in one piece.
uint64_t ContentHash(std::string_view bytes);

// Keeps what was read of `path` (the bytes just read); a later replacement is guarded.
void RememberRead(const std::string& path, std::string_view bytes);
// What was kept of `path` (symbolic links followed), if anything.
std::optional<ReadSnapshot> RememberedRead(const std::string& path);
// After this process replaced the file: the new file is what it knows of it now.
void RememberWritten(const std::string& path, int64_t size, uint64_t hash);

enum class GuardOutcome { Replaced, Changed, BeingWritten, Failed };

// Renames `temporary` over `target` unless the target is no longer what `read` says or another
// process has it open for writing. While the check and the rename run, a read lease makes any
// opener for writing wait; one that came during the rename gets the old file back in place, so
// what it writes is never lost. Failed leaves errno set.
GuardOutcome ReplaceGuarded(const std::string& temporary, const std::string& target,
                            const ReadSnapshot& read);

// True when another process holds `path` open for writing (as far as /proc shows this process).
bool OpenForWritingElsewhere(const std::string& path);

}  // namespace tallory
