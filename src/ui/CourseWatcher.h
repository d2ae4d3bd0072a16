#pragma once

#include <QElapsedTimer>
#include <QFileSystemWatcher>
#include <QObject>
#include <QTimer>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "common/Host.h"
#include "grid/CourseWatch.h"

namespace tallory {

// Watches a course's SessionData folder and its session logs; once the files have been quiet,
// no screen is open and `busy` says no command runs, hands the logs that changed to `reload`.
class CourseWatcher : public QObject {
    Q_OBJECT
  public:
    CourseWatcher(const std::string& sessionDataFolder, std::function<bool()> busy,
                  std::function<void(const std::vector<LogChange>&)> reload,
                  QObject* parent = nullptr);

    // The program wrote `path`: when it is a log, its change is not told as another program's.
    void Wrote(const std::string& path);

  private:
    void OnFileEvent();
    void OnTimer();
    void WatchLogs();

    std::string folder_;
    std::function<bool()> busy_;
    std::function<void(const std::vector<LogChange>&)> reload_;
    QFileSystemWatcher watcher_;
    QTimer timer_;
    QElapsedTimer clock_;
    CourseWatch watch_;
    LogSnapshot known_;
    LogSnapshot ours_;  // the logs the program wrote since the last look, as it left them
};

// The host that the course's loads talk through. It remembers every message shown; a quiet one
// (the reload after another program wrote a log) shows no progress screen and does not show a
// message again that the person has seen since the course was opened, so that the start's
// warnings about clickers do not come back with every vote the polling application writes. A
// new warning, or a question, is still shown.
class RememberingHost : public Host {
  public:
    RememberingHost(Host& host, std::set<std::string>& shown, bool quiet)
        : host_(host), shown_(shown), quiet_(quiet) {}

    Answer Message(std::string_view text, std::string_view title, Icon icon, Buttons buttons,
                   MessageStyle style) override;
    void ShowProgress() override;
    void HideProgress() override;
    void SetProgressText(std::string_view text) override;
    void SetProgressValue(double fraction) override;
    void SetProgressCaption(std::string_view caption) override;
    void YieldEvents() override { host_.YieldEvents(); }
    void SetWaitCursor(bool on) override;
    void FileWritten(const std::string& path) override { host_.FileWritten(path); }
    void FileNotWritten(const std::string& path, const std::string& reason) override {
        host_.FileNotWritten(path, reason);
    }

  private:
    Host& host_;
    std::set<std::string>& shown_;
    bool quiet_;
};

}  // namespace tallory
