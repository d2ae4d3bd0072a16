#include <sys/stat.h>
#include <unistd.h>

#include <QApplication>
#include <QScreen>
#include <cerrno>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "common/ChangeJournal.h"
#include "common/CourseLock.h"
#include "common/Paths.h"
#include "start/ProgramStart.h"
#include "ui/Accessibility.h"
#include "ui/CourseListDialog.h"
#include "ui/MainWindow.h"
#include "ui/QtHost.h"
#include "ui/ScreenFit.h"

namespace {

bool SameFolder(const char* a, const char* b) {
    struct stat first, second;
    return ::stat(a, &first) == 0 && ::stat(b, &second) == 0 && first.st_dev == second.st_dev &&
           first.st_ino == second.st_ino;
}

// The current folder as the user reached it: the shell's PWD keeps the links on the way, which
// name the course; the system's own answer has them resolved.
std::string CurrentFolder() {
    const char* shell = std::getenv("PWD");
    if (shell && shell[0] == '/' && SameFolder(shell, ".")) return shell;
    std::vector<char> buffer(4096);
    while (!::getcwd(buffer.data(), buffer.size())) {
        if (errno != ERANGE) return ".";
        buffer.resize(buffer.size() * 2);
    }
    return buffer.data();
}

tallory::MainLayout ScreenLayout() {
    const QScreen* screen = QGuiApplication::primaryScreen();
    if (!screen) return tallory::MainLayout::Subject;
    // Qt counts in device-independent pixels; the test is on the screen's own pixels, and on the
    // pixels per inch that the user's font size asks for.
    const double ratio = screen->devicePixelRatio();
    const QSize pixels = screen->size() * ratio;
    return tallory::ChooseLayout(pixels.width(), pixels.height(),
                                 screen->logicalDotsPerInch() * ratio);
}

}  // namespace

int main(int argc, char** argv) {
    using namespace tallory;
    // The program's folder is taken as invoked, before anything can change the current folder.
    const std::string invokedAs = argc > 0 ? argv[0] : "";
    const std::string currentFolder = CurrentFolder();
    QApplication app(argc, argv);
    QApplication::setApplicationName("Tallory");
    std::vector<std::string> arguments;
    for (const QString& argument : QCoreApplication::arguments().mid(1))
        arguments.push_back(argument.toStdString());
    const Installation installation = FindInstallation("/proc/self/exe");
    const StartPlace place =
        ChooseStartPlace(invokedAs, currentFolder, arguments, installation, HomeFolder());
    const std::string& programFolder = place.programFolder;
    InstallScreenFit();
    InstallAccessibility();

    auto course = std::make_unique<Course>();
    course->ProgramFolder = programFolder;
    course->AppPath = programFolder;
    QtHost host;
    std::unique_ptr<InstanceLock> lock;
    CourseLock editLock;  // one editor per course, for as long as the window is open
    std::unique_ptr<MainWindow> window;
    bool opened = false;

    RunGuarded(host, [&] {
        if (place.userFolder) MakeUserClasses(programFolder, installation);
        if (place.chooseCourse) {
            CreateFolderPath(CoursePath(programFolder, "\\Classes"));
            CourseListDialog courses(programFolder, host);
            if (courses.exec() != QDialog::Accepted) return;
            course->AppPath = courses.CourseFolder();
        }
        // The two places that name a file without the course folder find it in the current one.
        if (::chdir(course->AppPath.c_str()) != 0) {
            // A course folder that cannot be entered shows up as an empty course.
        }
        FixRosterFileNames(*course, host);

        const bool largeFonts = ScreenLayout() == MainLayout::Large120Dpi;
        // Only the ordinary layout keeps a second start off the course.
        if (!largeFonts) {
            lock = std::make_unique<InstanceLock>();
            if (!lock->Acquire(course->AppPath)) {
                host.Message("Tallory already running", kProgramTitle, Icon::Information);
                return;
            }
        }
        // A tallory-cli command is over in moments: it is waited for a little.
        if (!editLock.Take(course->AppPath, 5)) {
            host.Message(CourseLockedMessage(course->AppPath) +
                             " Open the course again when it has finished.",
                         kProgramTitle, Icon::Exclamation);
            return;
        }
        const std::string undone = UndoInterruptedChange(course->AppPath);
        if (!undone.empty()) host.Message(undone, kProgramTitle, Icon::Exclamation);
        window = std::make_unique<MainWindow>(*course, host, largeFonts);
        window->ShowOnScreen();
        window->Load();
        opened = true;
    });
    return opened ? app.exec() : 0;
}
