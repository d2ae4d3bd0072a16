#include "TestSupport.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <vector>

#include "common/AtomicFile.h"
#include "common/RunTimeError.h"
#include "grid/CourseLoad.h"

namespace tallory::test {

Strings Messages(const RecordingHost& host) {
    Strings shown;
    for (const auto& message : host.messages)
        shown.push_back("[" + message.title + "] " + message.text);
    return shown;
}

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

void TempCourse::CopyFrom(const std::string& folder) const {
    std::filesystem::copy(folder, path_,
                          std::filesystem::copy_options::recursive |
                              std::filesystem::copy_options::overwrite_existing);
}

void TempCourse::WriteSettings(
    const std::vector<std::pair<std::string, std::string>>& settings) const {
    std::string text;
    for (const auto& [key, value] : settings)
        text += "\"" + key + "\" ,\"" + value + "\" ,\"\"\r\n";
    Write("SessionData/Config.csv", text);
}

LoadedCourse& LoadedCourse::Load(DisplayOrder order) {
    course.AppPath = Path();
    grid.screen.order = order;
    LoadCourse(course, host, grid.screen, ReadOnlyLoad());
    return *this;
}

int LoadedCourse::Row(std::string_view id) const {
    for (int s = 1; s <= course.NumStudents; ++s)
        if (course.Students[s].StudentId == id) return s;
    return 0;
}

std::vector<std::string> LoadedCourse::StudentIds() const {
    std::vector<std::string> ids;
    for (int s = 1; s <= course.NumStudents; ++s) ids.push_back(course.Students[s].StudentId);
    return ids;
}

std::string SeptemberLog(int day) {
    char name[24];
    std::snprintf(name, sizeof name, "L2609%02d1000.csv", day);
    return name;
}

std::string ReadBytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

Files FolderFiles(const std::string& folder, bool temporaries) {
    Files files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
        if (entry.is_regular_file() &&
            (temporaries || !IsTemporaryName(entry.path().filename().string())))
            files[std::filesystem::relative(entry.path(), folder).generic_string()] =
                ReadBytes(entry.path().string());
    return files;
}

CliProcess::CliProcess(const std::vector<std::string>& arguments,
                       const std::vector<std::pair<std::string, std::string>>& environment) {
    char outName[] = "/tmp/tallory-cli-out-XXXXXX";
    char errName[] = "/tmp/tallory-cli-err-XXXXXX";
    const int outFd = ::mkstemp(outName);
    const int errFd = ::mkstemp(errName);
    outName_ = outName;
    errName_ = errName;
    child_ = ::fork();
    if (child_ == 0) {
        ::dup2(outFd, 1);
        ::dup2(errFd, 2);
        for (const auto& [name, value] : environment) ::setenv(name.c_str(), value.c_str(), 1);
        std::string program = TALLORY_CLI;
        std::vector<std::string> copies(arguments);
        std::vector<char*> argv{program.data()};
        for (auto& argument : copies) argv.push_back(argument.data());
        argv.push_back(nullptr);
        ::execv(program.c_str(), argv.data());
        ::_exit(127);
    }
    ::close(outFd);
    ::close(errFd);
}

void CliProcess::Kill() const {
    ::kill(child_, SIGKILL);
}

CliResult CliProcess::Wait() {
    int status = 0;
    ::waitpid(child_, &status, 0);
    CliResult result;
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    result.signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    result.out = ReadBytes(outName_);
    result.err = ReadBytes(errName_);
    ::unlink(outName_.c_str());
    ::unlink(errName_.c_str());
    return result;
}

CliResult RunCli(const std::vector<std::string>& arguments) {
    return CliProcess(arguments).Wait();
}

StrayClickersCourse::StrayClickersCourse() {
    WriteRoster("Ada,Lovelace,S1\r\nAlan,Turing,S2\r\nGrace,Hopper,S3\r\n");
    WriteRemotes("#1A0001,\"S1\"\r\n#1A0002,\"S2\"\r\n#1A0003,\"S3\"\r\n");
    for (int day = 1; day <= 3; ++day) {
        LogPlan plan = QuestionsPlan(2);
        plan.voters = {{"#1A0001", "", {"A", "B"}},
                       {"#1A0002", "", {"B", "A"}},
                       {"#1A0003", "", {"A", "A"}},
                       {"#2B0001", "", {"C", "C"}},
                       {"#2B0002", "", {"D", "D"}}};
        WriteLog(SeptemberLog(day), plan);
    }
}

std::string DataPath(std::string_view relative) {
    return std::string(TALLORY_TEST_DATA) + "/" + std::string(relative);
}

std::string DemoCourse() {
    return std::string(TALLORY_SOURCE_DIR) + "/examples/demo-course";
}

testing::AssertionResult BeginsWith(const std::string& text, std::string_view start) {
    auto result =
        text.rfind(start, 0) == 0 ? testing::AssertionSuccess() : testing::AssertionFailure();
    return result << "'" << start << "' at the start of:\n" << text;
}

nlohmann::json GridOf(const TempCourse& course) {
    const CliResult result = RunCliOn(course.Path(), {"grid", "--json"});
    EXPECT_EQ(result.status, 0) << result.err;
    nlohmann::json grid = nlohmann::json::parse(result.out, nullptr, false);
    if (grid.is_discarded()) return grid;
    grid.erase("course");
    grid.erase("messages");
    return grid;
}

std::vector<std::string> CliArguments(const std::string& course, std::vector<std::string> command,
                                      const std::vector<std::string>& more) {
    command.insert(command.begin(), {"--course", course});
    command.insert(command.end(), more.begin(), more.end());
    return command;
}

CliResult RunCliOn(const std::string& course, std::vector<std::string> command,
                   const std::vector<std::string>& more) {
    return RunCli(CliArguments(course, std::move(command), more));
}

Ending EndingOf(const std::function<void()>& work) {
    try {
        work();
    } catch (const RunTimeError& error) {
        return {error.Number(), error.Message()};
    }
    return {};
}

}  // namespace tallory::test
