// Measures LoadSessions on a course folder against `cat` over the same logs, side by side in one
// run: CPU time (user + system) of each, best of the repeats, their ratio, and peak memory. Given
// a tallory-cli, also `tallory-cli --course FOLDER grid --json` end to end, each of its runs next
// to a run of cat, CPU time to the microsecond (the children's own accounting).
//
//   load_benchmark FOLDER [REPEATS [TALLORY_CLI]]
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "SessionLogs.h"
#include "common/Course.h"
#include "common/Paths.h"
#include "common/RecordingHost.h"
#include "grid/CourseLoad.h"
#include "grid/HeadlessGrid.h"

extern char** environ;

namespace {

double Seconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
}

double CpuSeconds(const rusage& usage) {
    return Seconds(usage.ru_utime) + Seconds(usage.ru_stime);
}

double OwnCpuSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return CpuSeconds(usage);
}

struct ChildRun {
    double cpu;      // user + system seconds
    double peakRss;  // megabytes
};

// CPU time and peak memory of a program run with its output thrown away, to the microsecond.
ChildRun RunChild(const std::vector<std::string>& command) {
    std::vector<char*> argv;
    for (const std::string& word : command) argv.push_back(const_cast<char*>(word.c_str()));
    argv.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    pid_t child;
    if (posix_spawnp(&child, argv[0], &actions, nullptr, argv.data(), environ) != 0) {
        std::perror(argv[0]);
        std::exit(1);
    }
    posix_spawn_file_actions_destroy(&actions);
    int status = 0;
    rusage usage{};
    wait4(child, &status, 0, &usage);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        std::fprintf(stderr, "%s failed\n", argv[0]);
        std::exit(1);
    }
    return {CpuSeconds(usage), static_cast<double>(usage.ru_maxrss) / 1024.0};
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: load_benchmark FOLDER [REPEATS [TALLORY_CLI]]\n");
        return 2;
    }
    std::string folder = argv[1];
    int repeats = argc > 2 ? std::atoi(argv[2]) : 5;
    const std::string cli = argc > 3 ? argv[3] : "";

    double bytes = 0;
    const std::vector<std::string> logs = bench::SessionLogPaths(folder);
    for (const std::string& log : logs) {
        FILE* file = std::fopen(log.c_str(), "rb");
        if (!file) continue;
        std::fseek(file, 0, SEEK_END);
        bytes += static_cast<double>(std::ftell(file));
        std::fclose(file);
    }

    tallory::Course course;
    course.AppPath = folder;
    tallory::RecordingHost host;
    tallory::HeadlessScreen screen;
    tallory::LoadCourse(course, host, screen,
                        tallory::ReadOnlyLoad());  // registrations and roster, warm cache

    std::vector<std::string> catCommand{"cat"};
    catCommand.insert(catCommand.end(), logs.begin(), logs.end());
    double bestLoad = 1e300, bestCat = 1e300;
    for (int run = 0; run < repeats; ++run) {
        double start = OwnCpuSeconds();
        tallory::LoadSessions(course, host, screen);
        double load = OwnCpuSeconds() - start;
        double cat = RunChild(catCommand).cpu;
        if (load < bestLoad) bestLoad = load;
        if (cat < bestCat) bestCat = cat;
    }
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    double megabytes = bytes / (1024.0 * 1024.0);
    std::printf(
        "sessions %d  students %d  logs %.1f MB  LoadSessions %.3f s CPU (%.0f MB/s)  "
        "cat %.3f s CPU  ratio %.1f  peak RSS %.1f MB\n",
        course.NumSessions, course.NumStudents, megabytes, bestLoad, megabytes / bestLoad, bestCat,
        bestLoad / bestCat, static_cast<double>(usage.ru_maxrss) / 1024.0);
    if (cli.empty()) return 0;

    ChildRun bestGrid{1e300, 0};
    bestCat = 1e300;
    for (int run = 0; run < repeats; ++run) {
        const ChildRun grid = RunChild({cli, "--course", folder, "grid", "--json"});
        if (grid.cpu < bestGrid.cpu) bestGrid = grid;
        bestCat = std::min(bestCat, RunChild(catCommand).cpu);
    }
    std::printf(
        "tallory-cli grid --json: %.3f s CPU  cat: %.3f s CPU  ratio %.1f  peak RSS %.1f MB\n",
        bestGrid.cpu, bestCat, bestGrid.cpu / bestCat, bestGrid.peakRss);
    return 0;
}
