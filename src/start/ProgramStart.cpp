#include "start/ProgramStart.h"

#include <pwd.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "common/AtomicFile.h"
#include "common/Paths.h"
#include "common/RunTimeError.h"
#include "common/Text.h"
#include "start/Fields.h"
#include "start/Settings.h"

namespace tallory {

namespace {

// Drops "." components and doubled and trailing separators; ".." stays, since a link before it
// decides where it leads. The root keeps its separator.
std::string CleanPath(const std::string& path) {
    std::string clean;
    size_t at = 0;
    while (at <= path.size()) {
        size_t next = path.find('/', at);
        if (next == std::string::npos) next = path.size();
        std::string_view part(path.data() + at, next - at);
        if (!part.empty() && part != ".") {
            clean += '/';
            clean += part;
        }
        at = next + 1;
    }
    return clean.empty() ? "/" : clean;
}

// The installation's copy of the demo course, and the name of the user's copy in Classes.
const char* const kDemoCourse = "demo-course";
const char* const kUserDemoCourse = "Demo Course";

bool SameFolder(const std::string& a, const std::string& b) {
    struct stat first, second;
    return ::stat(a.c_str(), &first) == 0 && ::stat(b.c_str(), &second) == 0 &&
           first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

const char* const kRosterExistsText =
    "It seems you already have a roster file in your MyCourse folder. This may have happened "
    "because you have \r\n two roster files saved with different file extensions (e.g. "
    "\"roster.txt\" and \"roster.txt.txt\").\r\n Please review your two class roster files and "
    "remote one of them and then restart tallory.";

const char* const kRosterInUseText =
    "Your class roster appears to be incorrectly named (\xE2\x80\x9C"
    "class.txt.txt\xE2\x80\x9D or \xE2\x80\x9Croster.txt.txt\xE2\x80\x9D instead of "
    "\xE2\x80\x9C"
    "class.txt\xE2\x80\x9D \r\nor \xE2\x80\x9Croster.txt.\xE2\x80\x9D The software cannot rename "
    "the file properly because it is open and in use in another program. \r\n Please close the "
    "file so that we may fix the file extension and then restart tallory.";

// The error numbers a failed rename is reported under.
int RenameErrorNumber(int error) {
    switch (error) {
        case EEXIST:
        case ENOTEMPTY:
            return kFileAlreadyExists;
        case EACCES:
        case EPERM:
        case EBUSY:
        case ETXTBSY:
        case EROFS:
            return kPathFileAccessError;
        case ENOENT:
        case ENOTDIR:
            return kFileNotFound;
        case ENOSPC:
        case EDQUOT:
            return kDiskFull;
        case ENAMETOOLONG:
        case EINVAL:
            return kBadFileNameOrNumber;
        default:
            return 0;
    }
}

// Renames `from` to `to` under the course folder when `from` is there; false after a reported
// failure.
bool RepairRosterName(const Course& course, Host& host, std::string_view from,
                      std::string_view to) {
    const std::string source = CoursePath(course.AppPath, from);
    if (!FileExists(source)) return true;
    const std::string target = CoursePath(course.AppPath, to);
    int number = 0;
    std::string description;
    if (FileExists(target)) {
        number = kFileAlreadyExists;
    } else if (std::rename(source.c_str(), target.c_str()) != 0) {
        const int error = errno;
        number = RenameErrorNumber(error);
        description = number != 0 ? RunTimeError::DescriptionOf(number) : std::strerror(error);
        if (number == 0) number = error;
    } else {
        return true;
    }
    if (number == kFileAlreadyExists)
        host.Message(kRosterExistsText, "Warning!", Icon::Stop);
    else if (number == kPathFileAccessError)
        host.Message(kRosterInUseText, "Warning!", Icon::Stop);
    else
        host.Message(description, "Error while renaming file : " + std::to_string(number),
                     Icon::Stop);
    return false;
}

}  // namespace

std::string ProgramFolderOf(std::string_view invokedAs, const std::string& currentFolder) {
    const size_t slash = invokedAs.rfind('/');
    if (slash == std::string_view::npos) return currentFolder;
    std::string folder(invokedAs.substr(0, slash + 1));
    if (folder.front() != '/') folder = currentFolder + "/" + folder;
    return CleanPath(folder);
}

bool IsDebugCommand(const std::vector<std::string>& arguments) {
    std::string line;
    for (const std::string& argument : arguments) {
        if (!line.empty()) line += ' ';
        line += argument;
    }
    return NormalKey(line) == "DEBUG";
}

Installation FindInstallation(const std::string& programFile) {
    const std::string program = RealPath(programFile);
    const size_t slash = program.rfind('/');
    if (slash == std::string::npos) return {};
    const std::string folder = program.substr(0, slash == 0 ? 1 : slash);
    const std::string data = RealPath(JoinPath(folder, "../share/tallory"));
    if (data.empty() || !FolderExists(JoinPath(data, kDemoCourse))) return {};
    return {folder, data};
}

StartPlace ChooseStartPlace(std::string_view invokedAs, const std::string& currentFolder,
                            const std::vector<std::string>& arguments,
                            const Installation& installation, const std::string& home) {
    const std::string folder = ProgramFolderOf(invokedAs, currentFolder);
    // Found through PATH, the name is the installed program's; through a path, the folder tells
    // the installed program's own from a course folder holding a link to it.
    const bool asItself =
        !installation.programFolder.empty() && (invokedAs.find('/') == std::string_view::npos ||
                                                SameFolder(folder, installation.programFolder));
    if (asItself) return {JoinPath(home, "Tallory"), true, true};
    return {folder, IsDebugCommand(arguments), false};
}

std::string HomeFolder() {
    const char* home = std::getenv("HOME");
    if (home && home[0] == '/') return home;
    const passwd* entry = ::getpwuid(::getuid());
    return entry && entry->pw_dir ? entry->pw_dir : "/";
}

void MakeUserClasses(const std::string& userFolder, const Installation& installation) {
    const std::string classes = JoinPath(userFolder, "Classes");
    if (FolderExists(classes)) return;
    CreateFolderPath(classes);
    if (installation.dataFolder.empty()) return;
    std::error_code error;
    std::filesystem::copy(JoinPath(installation.dataFolder, kDemoCourse),
                          JoinPath(classes, kUserDemoCourse),
                          std::filesystem::copy_options::recursive, error);
}

void FixRosterFileNames(const Course& course, Host& host) {
    if (RepairRosterName(course, host, "\\Roster.txt.txt", "\\Roster.txt"))
        RepairRosterName(course, host, "\\class.txt.txt", "\\class.txt");
}

MainLayout ChooseLayout(int width, int height, double logicalDpi) {
    // Large fonts on any other screen size still get the ordinary layout.
    if (width == 1024 && height == 768 && logicalDpi > 96) return MainLayout::Large120Dpi;
    return MainLayout::Subject;
}

std::string CourseList::ClassesFolder() const {
    return CoursePath(programFolder_, "\\Classes");
}

void CourseList::Load() {
    rows_.clear();
    const std::string classes = ClassesFolder();
    for (const std::string& name : ListFolders(classes)) {
        std::string row = Trim(name);
        if (IsWebVotingEnabled(JoinPath(classes, name))) row += " (*)";
        rows_.push_back(row);
    }
    // The folder lister shows the courses by name, without regard to case.
    std::sort(rows_.begin(), rows_.end(), [](const std::string& a, const std::string& b) {
        const std::string upperA = ToUpper(a);
        const std::string upperB = ToUpper(b);
        return upperA != upperB ? upperA < upperB : a < b;
    });
}

void CourseList::Activate() {
    const std::string saved = Trim(ReadSelectedClass(programFolder_));
    if (saved.empty()) return;
    for (size_t row = 0; row < rows_.size(); ++row) {
        if (SameText(rows_[row], saved)) {
            selected_ = static_cast<int>(row);
            return;
        }
    }
}

std::string CourseList::SetAndStart(Host& host) {
    const std::string text =
        selected_ >= 0 && selected_ < static_cast<int>(rows_.size()) ? rows_[selected_] : "";
    SaveSelectedClass(programFolder_, text, host);
    // Nothing is checked: without a selection the course is the Classes folder itself.
    const std::string name = Trim(ReplaceAllNoCase(Trim(text), "(*)", ""));
    const std::string course = ClassesFolder() + "/" + name;
    for (const char* folder : {"\\SessionData", "\\Reports", "\\Images"})
        CreateFolderPath(CoursePath(course, folder));
    return course;
}

InstanceLock::~InstanceLock() {
    if (socket_ >= 0) ::close(socket_);
}

bool InstanceLock::Acquire(const std::string& courseFolder) {
    // One name per user and course folder, the folder taken with its links resolved so that two
    // links to one course find each other.
    std::string folder = RealPath(courseFolder);
    if (folder.empty()) folder = courseFolder;
    uint64_t hash = 14695981039346656037ull;  // FNV-1a
    for (unsigned char byte : folder) hash = (hash ^ byte) * 1099511628211ull;
    char name[64];
    const int length =
        std::snprintf(name, sizeof name, "tallory-%u-%016llx", static_cast<unsigned>(::getuid()),
                      static_cast<unsigned long long>(hash));

    const int fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    // Without sockets there is no way to tell; the program then runs as if alone.
    if (fd < 0) return true;
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path + 1, name, length);  // sun_path[0] = 0: the abstract namespace
    const socklen_t size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + length);
    if (::bind(fd, reinterpret_cast<sockaddr*>(&address), size) != 0) {
        const bool taken = errno == EADDRINUSE;
        ::close(fd);
        return !taken;
    }
    if (socket_ >= 0) ::close(socket_);
    socket_ = fd;
    return true;
}

}  // namespace tallory

namespace tallory {

std::string RemovedLogsFolder(const Course& course) {
    std::string base;
    const char* dataHome = std::getenv("XDG_DATA_HOME");
    const char* home = std::getenv("HOME");
    if (dataHome && dataHome[0] == '/')
        base = dataHome;
    else if (home && home[0] == '/')
        base = std::string(home) + "/.local/share";
    else
        return {};
    return base + "/tallory/removed/" + LastComponent(course.AppPath);
}

void RemoveLeftTemporaries(const Course& course) {
    for (const char* folder : {"", "\\SessionData", "\\Reports"})
        RemoveStaleTemporaries(CoursePath(course.AppPath, folder), ProcessStartTime());
    RemoveStaleTemporaries(RemovedLogsFolder(course), ProcessStartTime(), true);
}

}  // namespace tallory
