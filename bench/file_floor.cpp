// The file work of a long pass with nothing parsed, scored or formatted: the least the pass can
// cost on this machine, to set beside what it does cost. The work is done on the files given, so
// give it a copy.
//
//   file_floor purge COURSE CLICKERS
//     per clicker, every log read once (the reload after the clicker's pass), then each log read
//     and replaced whole (temporary file, write, sync, rename) with its own bytes; at the end
//     every log read once more (the reload after the last clicker).
//   file_floor pages FROM TO
//     each file of FROM read and written whole into TO (temporary file, write, sync, rename):
//     the pages of a report, written again.
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "SessionLogs.h"
#include "common/Paths.h"

namespace {

[[noreturn]] void Fail(const std::string& what) {
    std::perror(what.c_str());
    std::exit(1);
}

// Reads the whole file into `bytes`, in the pieces the program's own readers use.
void ReadWhole(const std::string& path, std::string& bytes) {
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) Fail(path);
    bytes.clear();
    char piece[1 << 16];
    for (;;) {
        const ssize_t got = ::read(fd, piece, sizeof piece);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) Fail(path);
        if (got == 0) break;
        bytes.append(piece, static_cast<size_t>(got));
    }
    ::close(fd);
}

// Replaces `path` whole with `bytes`, as every file the program writes is replaced.
void ReplaceWhole(const std::string& path, std::string_view bytes) {
    const std::string temporary = path + ".floor-tmp";
    const int fd = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (fd < 0) Fail(temporary);
    for (size_t done = 0; done < bytes.size();) {
        const size_t piece = std::min<size_t>(bytes.size() - done, size_t{1} << 16);
        const ssize_t wrote = ::write(fd, bytes.data() + done, piece);
        if (wrote < 0 && errno == EINTR) continue;
        if (wrote <= 0) Fail(temporary);
        done += static_cast<size_t>(wrote);
    }
    if (::fsync(fd) != 0 || ::close(fd) != 0) Fail(temporary);
    if (::rename(temporary.c_str(), path.c_str()) != 0) Fail(path);
}

void Purge(const std::string& course, int clickers) {
    const std::vector<std::string> logs = bench::SessionLogPaths(course);
    std::string bytes;
    for (int clicker = 0; clicker <= clickers; ++clicker) {
        for (const std::string& log : logs) ReadWhole(log, bytes);
        if (clicker == clickers) break;
        for (const std::string& log : logs) {
            ReadWhole(log, bytes);
            ReplaceWhole(log, bytes);
        }
    }
}

void Pages(const std::string& from, const std::string& to) {
    std::string bytes;
    for (const std::string& name : tallory::ListFiles(from)) {
        ReadWhole(tallory::JoinPath(from, name), bytes);
        ReplaceWhole(tallory::JoinPath(to, name), bytes);
    }
}

}  // namespace

int main(int argc, char** argv) {
    const std::string mode = argc > 1 ? argv[1] : "";
    if (argc == 4 && mode == "purge") {
        Purge(argv[2], std::atoi(argv[3]));
    } else if (argc == 4 && mode == "pages") {
        Pages(argv[2], argv[3]);
    } else {
        std::fprintf(stderr,
                     "usage: file_floor purge COURSE CLICKERS | file_floor pages FROM TO\n");
        return 2;
    }
    return 0;
}
