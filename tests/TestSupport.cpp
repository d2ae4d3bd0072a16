#include "TestSupport.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <vector>

namespace tallory::test {

TempCourse::TempCourse() {
    std::string pattern = (std::filesystem::temp_directory_path() / "tallory-test-XXXXXX").string();
    std::vector<char> name(pattern.begin(), pattern.end());
    name.push_back('\0');
    path_ = ::mkdtemp(name.data());
}

TempCourse::~TempCourse() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

void TempCourse::Write(std::string_view relative, std::string_view content) const {
    std::filesystem::path file = std::filesystem::path(path_) / std::string(relative);
    std::filesystem::create_directories(file.parent_path());
    std::ofstream out(file, std::ios::binary);
    out.write(content.data(), static_cast<std::streamsize>(content.size()));
}

std::string TempCourse::Read(std::string_view relative) const {
    return ReadBytes(File(relative));
}

bool TempCourse::Exists(std::string_view relative) const {
    return std::filesystem::exists(File(relative));
}

std::string ReadBytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

CliResult RunCli(const std::vector<std::string>& arguments) {
    char outName[] = "/tmp/tallory-cli-out-XXXXXX";
    char errName[] = "/tmp/tallory-cli-err-XXXXXX";
    int outFd = ::mkstemp(outName);
    int errFd = ::mkstemp(errName);
    CliResult result;
    pid_t child = ::fork();
    if (child == 0) {
        ::dup2(outFd, 1);
        ::dup2(errFd, 2);
        std::vector<char*> argv;
        std::string program = TALLORY_CLI;
        argv.push_back(program.data());
        std::vector<std::string> copies(arguments);
        for (auto& argument : copies) argv.push_back(argument.data());
        argv.push_back(nullptr);
        ::execv(program.c_str(), argv.data());
        ::_exit(127);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    ::close(outFd);
    ::close(errFd);
    result.out = ReadBytes(outName);
    result.err = ReadBytes(errName);
    ::unlink(outName);
    ::unlink(errName);
    return result;
}

std::string DataPath(std::string_view relative) {
    return std::string(TALLORY_TEST_DATA) + "/" + std::string(relative);
}

}  // namespace tallory::test
