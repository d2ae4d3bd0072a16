#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tallory::test {

// A course folder under /tmp that disappears with the object.
class TempCourse {
public:
    TempCourse();
    ~TempCourse();
    TempCourse(const TempCourse&) = delete;
    TempCourse& operator=(const TempCourse&) = delete;

    const std::string& Path() const { return path_; }
    // Writes a file below the folder (relative path with "/"), creating folders as needed.
    void Write(std::string_view relative, std::string_view content) const;
    std::string Read(std::string_view relative) const;
    bool Exists(std::string_view relative) const;
    std::string File(std::string_view relative) const { return path_ + "/" + std::string(relative); }

private:
    std::string path_;
};

std::string ReadBytes(const std::string& path);

struct CliResult {
    int status = -1;
    std::string out;
    std::string err;
};

// Runs tallory-cli with the arguments; standard input is empty.
CliResult RunCli(const std::vector<std::string>& arguments);

// Folder of golden files and sample logs of the tests.
std::string DataPath(std::string_view relative);

}  // namespace tallory::test
