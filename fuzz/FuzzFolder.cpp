#include "FuzzFolder.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <vector>

namespace tallory::fuzz {

namespace {

struct Folder {
    std::string path;
    Folder() {
        // A memory-backed folder where there is one: every log rewrite syncs its file.
        std::error_code error;
        std::filesystem::path base = std::filesystem::is_directory("/dev/shm", error)
                                         ? std::filesystem::path("/dev/shm")
                                         : std::filesystem::temp_directory_path();
        std::string pattern = (base / "tallory-fuzz-XXXXXX").string();
        std::vector<char> name(pattern.begin(), pattern.end());
        name.push_back('\0');
        if (!::mkdtemp(name.data())) std::abort();
        path = name.data();
        std::filesystem::create_directories(path + "/SessionData");
    }
    ~Folder() {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
};

}  // namespace

const std::string& FuzzFolder() {
    static Folder folder;
    return folder.path;
}

void WriteInput(const std::string& path, const uint8_t* data, size_t size) {
    FILE* file = std::fopen(path.c_str(), "wb");
    if (!file) std::abort();
    if (size > 0 && std::fwrite(data, 1, size, file) != size) std::abort();
    std::fclose(file);
}

}  // namespace tallory::fuzz
