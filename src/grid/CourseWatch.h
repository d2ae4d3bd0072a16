#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace tallory {

// What a session log looked like when the grid last read it.
struct LogStamp {
    std::uintmax_t size = 0;
    std::int64_t modified = 0;
    bool operator==(const LogStamp&) const = default;
};

// The session logs (L*.csv) of a SessionData folder, by file name.
using LogSnapshot = std::map<std::string, LogStamp>;

LogSnapshot SnapshotLogs(const std::string& sessionDataFolder);

// A session log the program itself has just written, by file name with its stamp; nothing when
// the path is not a log of `sessionDataFolder` or does not stand.
std::optional<std::pair<std::string, LogStamp>> OwnLogWrite(const std::string& sessionDataFolder,
                                                            const std::string& path);

enum class LogChangeKind { Updated, Removed };

struct LogChange {
    std::string file;
    LogChangeKind kind;
    bool operator==(const LogChange&) const = default;
};

// The logs that appeared, changed or went away between two snapshots; a renamed log is the old
// name removed and the new one updated.
std::vector<LogChange> DiffLogs(const LogSnapshot& before, const LogSnapshot& after);

// The changes another program made: a log that stands as the program's own last write of it left
// it (`ours`) is no news, the grid having been reloaded by the screen that wrote it.
std::vector<LogChange> OthersChanges(const std::vector<LogChange>& changes, const LogSnapshot& now,
                                     const LogSnapshot& ours);

// The quiet line the main window shows after a reload: "Session <label> updated" or "removed"
// for one log, "Sessions updated" for several. `label` gives a log's session label (its title),
// or an empty string when the grid does not know the log.
std::string ChangeNotice(const std::vector<LogChange>& changes,
                         const std::function<std::string(const std::string&)>& label);

// Decides when file events turn into a reload of the grid: once the folder has been quiet for
// kQuietMs, and only when no screen is open and no command runs; otherwise it waits and asks
// again. A burst of events gives one reload.
class CourseWatch {
  public:
    static constexpr int kQuietMs = 500;

    enum class Step { Idle, Wait, Reload };

    void FileEvent(std::int64_t nowMs);
    // Asked when the timer fires. Reload clears the pending event.
    Step Poll(std::int64_t nowMs, bool screenOpen, bool commandRunning);
    bool Pending() const { return pending_; }

  private:
    bool pending_ = false;
    std::int64_t lastEventMs_ = 0;
};

}  // namespace tallory
