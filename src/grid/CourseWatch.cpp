#include "grid/CourseWatch.h"

#include <filesystem>
#include <system_error>

namespace tallory {

namespace fs = std::filesystem;

namespace {

// Session logs are named L<stamp>.csv; the purge's x-copies and temporary files are not logs.
bool IsSessionLog(const std::string& name) {
    if (name.size() < 5 || (name[0] != 'L' && name[0] != 'l')) return false;
    std::string ext = name.substr(name.size() - 4);
    for (char& c : ext) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return ext == ".csv";
}

}  // namespace

LogSnapshot SnapshotLogs(const std::string& sessionDataFolder) {
    LogSnapshot snapshot;
    std::error_code error;
    for (fs::directory_iterator it(sessionDataFolder, error), end; !error && it != end;
         it.increment(error)) {
        const std::string name = it->path().filename().string();
        if (!IsSessionLog(name)) continue;
        std::error_code statError;
        LogStamp stamp;
        stamp.size = it->file_size(statError);
        if (statError) continue;  // gone between the listing and the look
        stamp.modified = it->last_write_time(statError).time_since_epoch().count();
        snapshot[name] = stamp;
    }
    return snapshot;
}

std::optional<std::pair<std::string, LogStamp>> OwnLogWrite(const std::string& sessionDataFolder,
                                                            const std::string& path) {
    const fs::path written(path);
    std::error_code error;
    if (!fs::equivalent(written.parent_path(), sessionDataFolder, error) || error) return {};
    const std::string name = written.filename().string();
    if (!IsSessionLog(name)) return {};
    LogStamp stamp;
    stamp.size = fs::file_size(written, error);
    if (error) return {};
    stamp.modified = fs::last_write_time(written, error).time_since_epoch().count();
    if (error) return {};
    return std::make_pair(name, stamp);
}

std::vector<LogChange> OthersChanges(const std::vector<LogChange>& changes, const LogSnapshot& now,
                                     const LogSnapshot& ours) {
    std::vector<LogChange> others;
    for (const LogChange& change : changes) {
        auto own = ours.find(change.file);
        auto stands = now.find(change.file);
        const bool asWeLeftIt = change.kind == LogChangeKind::Updated && own != ours.end() &&
                                stands != now.end() && own->second == stands->second;
        if (!asWeLeftIt) others.push_back(change);
    }
    return others;
}

std::vector<LogChange> DiffLogs(const LogSnapshot& before, const LogSnapshot& after) {
    std::vector<LogChange> changes;
    for (const auto& [name, stamp] : after) {
        auto old = before.find(name);
        if (old == before.end() || !(old->second == stamp))
            changes.push_back({name, LogChangeKind::Updated});
    }
    for (const auto& [name, stamp] : before)
        if (!after.contains(name)) changes.push_back({name, LogChangeKind::Removed});
    return changes;
}

std::string ChangeNotice(const std::vector<LogChange>& changes,
                         const std::function<std::string(const std::string&)>& label) {
    if (changes.empty()) return "";
    if (changes.size() > 1) return "Sessions updated";
    const LogChange& change = changes.front();
    std::string name = label(change.file);
    if (name.empty()) name = change.file;
    return "Session " + name + (change.kind == LogChangeKind::Removed ? " removed" : " updated");
}

void CourseWatch::FileEvent(std::int64_t nowMs) {
    pending_ = true;
    lastEventMs_ = nowMs;
}

CourseWatch::Step CourseWatch::Poll(std::int64_t nowMs, bool screenOpen, bool commandRunning) {
    if (!pending_) return Step::Idle;
    if (nowMs - lastEventMs_ < kQuietMs || screenOpen || commandRunning) return Step::Wait;
    pending_ = false;
    return Step::Reload;
}

}  // namespace tallory
