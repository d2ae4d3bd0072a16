// Measures LoadSessions on a course folder: wall time, log bytes per second, peak memory.
//
//   load_benchmark FOLDER [REPEATS]
#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "common/Course.h"
#include "common/Paths.h"
#include "common/RecordingHost.h"
#include "grid/CourseLoad.h"
#include "logs/SessionStore.h"

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: load_benchmark FOLDER [REPEATS]\n");
        return 2;
    }
    std::string folder = argv[1];
    int repeats = argc > 2 ? std::atoi(argv[2]) : 3;

    double bytes = 0;
    std::string sessionData = tallory::CoursePath(folder, "\\SessionData");
    for (const std::string& name : tallory::ListFiles(sessionData)) {
        if (name.size() == 15 && name[0] == 'L') {
            FILE* file = std::fopen(tallory::JoinPath(sessionData, name).c_str(), "rb");
            if (!file) continue;
            std::fseek(file, 0, SEEK_END);
            bytes += static_cast<double>(std::ftell(file));
            std::fclose(file);
        }
    }

    tallory::Course course;
    course.AppPath = folder;
    tallory::RecordingHost host;
    tallory::HeadlessScreen screen;
    tallory::LoadCourse(course, host, screen,
                        tallory::ReadOnlyLoad());  // registrations and roster, warm cache

    double best = 1e300;
    for (int run = 0; run < repeats; ++run) {
        auto start = std::chrono::steady_clock::now();
        tallory::LoadSessions(course, host, screen);
        std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
        if (elapsed.count() < best) best = elapsed.count();
    }
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    double megabytes = bytes / (1024.0 * 1024.0);
    std::printf(
        "sessions %d  students %d  log %.1f MB  LoadSessions %.3f s  %.1f MB/s  "
        "%.1f ms/MB  peak RSS %.1f MB\n",
        course.NumSessions, course.NumStudents, megabytes, best, megabytes / best,
        best * 1000 / megabytes, usage.ru_maxrss / 1024.0);
    return 0;
}
