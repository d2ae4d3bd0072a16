// Times the desktop program on a course the way a person meets it: from the process's start to the
// moment the main window has painted its grid with the first page of students filled in. It builds
// the main window as the program does (course folder as the current folder, roster file names
// fixed, the window shown, then its load handler) and stops after that paint. Prints, in seconds
// of wall time, the start of main, the end of the load handler and the first filled paint, each
// counted from the process's start.
//
//   QT_QPA_PLATFORM=offscreen tallory_first_paint FOLDER
#include <time.h>
#include <unistd.h>

#include <QApplication>
#include <QLabel>
#include <QTimer>
#include <cstdio>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>

#include "common/Course.h"
#include "start/ProgramStart.h"
#include "ui/MainWindow.h"
#include "ui/QtHost.h"

namespace {

double Now(clockid_t clock) {
    timespec now{};
    clock_gettime(clock, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

// Seconds since the process started: its start time in clock ticks after boot, against the clock
// that counts from boot. Good to a clock tick (10 ms).
double SinceProcessStart() {
    std::ifstream file("/proc/self/stat");
    std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    // The fields after the command name, which is in parentheses and may hold blanks.
    std::istringstream fields(text.substr(text.rfind(')') + 2));
    std::string field;
    for (int i = 3; i <= 22; ++i) fields >> field;  // field 22: starttime
    const double started = std::stod(field) / static_cast<double>(sysconf(_SC_CLK_TCK));
    return Now(CLOCK_BOOTTIME) - started;
}

// Watches every paint in the program; the first of a student name label that shows a name is the
// grid's first filled page. The time is taken once that paint pass has ended.
class FirstFilledPaint : public QObject {
  public:
    double seconds = -1;

  protected:
    bool eventFilter(QObject* object, QEvent* event) override {
        if (seconds < 0 && !armed_ && event->type() == QEvent::Paint &&
            object->objectName().startsWith("lblStudentName")) {
            auto* label = qobject_cast<QLabel*>(object);
            if (label && !label->text().trimmed().isEmpty()) {
                armed_ = true;
                QTimer::singleShot(0, this, [this] {
                    seconds = SinceProcessStart();
                    QCoreApplication::quit();
                });
            }
        }
        return false;
    }

  private:
    bool armed_ = false;
};

}  // namespace

int main(int argc, char** argv) {
    using namespace tallory;
    const double atMain = SinceProcessStart();
    if (argc != 2) {
        std::fprintf(stderr, "usage: QT_QPA_PLATFORM=offscreen %s FOLDER\n", argv[0]);
        return 2;
    }
    const std::string folder = argv[1];
    QApplication app(argc, argv);
    FirstFilledPaint watch;
    app.installEventFilter(&watch);

    Course course;
    course.ProgramFolder = folder;
    course.AppPath = folder;
    QtHost host;
    if (::chdir(folder.c_str()) != 0) {
        std::perror(folder.c_str());
        return 1;
    }
    FixRosterFileNames(course, host);
    MainWindow window(course, host, false);
    window.ShowOnScreen();
    window.Load();
    const double loaded = SinceProcessStart();
    // No paint within a minute is a failure of its own.
    QTimer::singleShot(60000, &app, &QCoreApplication::quit);
    app.exec();
    std::printf(
        "main %.3f s  loaded %.3f s  first filled paint %.3f s  (%d students, %d sessions)\n",
        atMain, loaded, watch.seconds, course.NumStudents, course.NumSessions);
    return watch.seconds < 0 ? 1 : 0;
}
