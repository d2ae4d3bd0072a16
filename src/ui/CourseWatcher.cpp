#include "ui/CourseWatcher.h"

#include <QApplication>
#include <QDir>

namespace tallory {

CourseWatcher::CourseWatcher(const std::string& sessionDataFolder, std::function<bool()> busy,
                             std::function<void(const std::vector<LogChange>&)> reload,
                             QObject* parent)
    : QObject(parent),
      folder_(sessionDataFolder),
      busy_(std::move(busy)),
      reload_(std::move(reload)) {
    clock_.start();
    known_ = SnapshotLogs(folder_);
    watcher_.addPath(QString::fromStdString(folder_));
    WatchLogs();
    timer_.setSingleShot(true);
    timer_.setInterval(CourseWatch::kQuietMs);
    connect(&timer_, &QTimer::timeout, this, &CourseWatcher::OnTimer);
    connect(&watcher_, &QFileSystemWatcher::directoryChanged, this, &CourseWatcher::OnFileEvent);
    connect(&watcher_, &QFileSystemWatcher::fileChanged, this, &CourseWatcher::OnFileEvent);
}

// A log written whole (temporary file, then rename) is a new file to the watcher: the paths are
// watched again after every change.
void CourseWatcher::WatchLogs() {
    const QStringList files = watcher_.files();
    if (!files.isEmpty()) watcher_.removePaths(files);
    QStringList logs;
    for (const auto& [name, stamp] : SnapshotLogs(folder_))
        logs << QDir(QString::fromStdString(folder_)).filePath(QString::fromStdString(name));
    if (!logs.isEmpty()) watcher_.addPaths(logs);
}

void CourseWatcher::Wrote(const std::string& path) {
    if (auto log = OwnLogWrite(folder_, path)) ours_[log->first] = log->second;
}

void CourseWatcher::OnFileEvent() {
    watch_.FileEvent(clock_.elapsed());
    timer_.start();
}

void CourseWatcher::OnTimer() {
    const bool screenOpen = QApplication::activeModalWidget() != nullptr;
    switch (watch_.Poll(clock_.elapsed(), screenOpen, busy_())) {
        case CourseWatch::Step::Idle:
            return;
        case CourseWatch::Step::Wait:
            timer_.start();
            return;
        case CourseWatch::Step::Reload:
            break;
    }
    WatchLogs();
    LogSnapshot now = SnapshotLogs(folder_);
    std::vector<LogChange> changes = OthersChanges(DiffLogs(known_, now), now, ours_);
    ours_.clear();
    known_ = std::move(now);
    if (!changes.empty()) reload_(changes);
}

Answer RememberingHost::Message(std::string_view text, std::string_view title, Icon icon,
                                Buttons buttons, MessageStyle style) {
    const bool seen = !shown_.insert(std::string(text)).second;
    if (quiet_ && seen && buttons == Buttons::Ok) return Answer::Ok;
    return host_.Message(text, title, icon, buttons, style);
}

void RememberingHost::ShowProgress() {
    if (!quiet_) host_.ShowProgress();
}

void RememberingHost::HideProgress() {
    if (!quiet_) host_.HideProgress();
}

void RememberingHost::SetProgressText(std::string_view text) {
    if (!quiet_) host_.SetProgressText(text);
}

void RememberingHost::SetProgressValue(double fraction) {
    if (!quiet_) host_.SetProgressValue(fraction);
}

void RememberingHost::SetProgressCaption(std::string_view caption) {
    if (!quiet_) host_.SetProgressCaption(caption);
}

void RememberingHost::SetWaitCursor(bool on) {
    if (!quiet_) host_.SetWaitCursor(on);
}

}  // namespace tallory
