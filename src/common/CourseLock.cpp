#include "common/CourseLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <fstream>
#include <sstream>
#include <thread>

namespace tallory {

CourseLock::~CourseLock() {
    Release();
}

void CourseLock::Release() {
    if (fd_ < 0) return;
    ::close(fd_);  // closing the folder lets go of its lock
    fd_ = -1;
}

bool CourseLock::Take(const std::string& folder, double waitSeconds) {
    Release();
    int fd = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) return false;
    const auto deadline = std::chrono::steady_clock::now() +
                          std::chrono::milliseconds(static_cast<long>(waitSeconds * 1000));
    for (;;) {
        if (::flock(fd, LOCK_EX | LOCK_NB) == 0) {
            fd_ = fd;
            return true;
        }
        if (errno != EWOULDBLOCK && errno != EINTR) break;
        if (std::chrono::steady_clock::now() >= deadline) break;
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    ::close(fd);
    return false;
}

std::string CourseLockHolder(const std::string& folder) {
    struct stat info;
    if (::stat(folder.c_str(), &info) != 0) return "another process";
    // The device is left out: some file systems show another number there than stat gives.
    const std::string wanted = ":" + std::to_string(info.st_ino);
    // /proc/locks: "1: FLOCK  ADVISORY  WRITE 1234 08:01:5678 0 EOF"; waiters have "->".
    std::ifstream locks("/proc/locks");
    std::string line;
    while (std::getline(locks, line)) {
        std::istringstream words(line);
        std::string number, kind, mode, access, pid, file;
        words >> number >> kind;
        if (kind != "FLOCK") continue;
        words >> mode >> access >> pid >> file;
        if (!file.ends_with(wanted) || pid == "0") continue;
        std::ifstream comm("/proc/" + pid + "/comm");
        std::string name;
        std::getline(comm, name);
        if (name.empty()) name = "a program";
        return name + " (process " + pid + ")";
    }
    return "another process";
}

std::string CourseLockedMessage(const std::string& folder) {
    return "The course " + folder +
           " is being changed by another Tallory: " + CourseLockHolder(folder) +
           ". Nothing was changed.";
}

}  // namespace tallory
