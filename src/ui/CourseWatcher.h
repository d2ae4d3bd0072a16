#pragma once

#include <QElapsedTimer>
#include <QFileSystemWatcher>
#include <QObject>
#include <QTimer>
#include <functional>
#include <string>
#include <vector>

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
};

}  // namespace tallory
