// A course is shared: with the polling application appending votes to the newest log, with a
// second Tallory, with a disk that may be full, and with a machine that may stop at any moment.
// These tests run the real program beside real processes and check that no vote and no edit is
// lost, that a file not written is said, and that a change cut short is undone whole.
#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <thread>

#include "TestSupport.h"
#include "common/AtomicFile.h"
#include "common/ChangeJournal.h"
#include "common/CourseLock.h"

namespace tallory {
namespace {

using nlohmann::json;
using test::CliProcess;
using test::CliResult;
using SharedCourse = test::StrayClickersCourse;

// ---- Honest exit statuses ----------------------------------------------------------------------

TEST(SharedCourse, AFileNotWrittenEndsWithStatusThreeAndIsListed) {
    const std::string newest = "SessionData/" + test::SeptemberLog(3);
    const std::vector<std::string> every = {"SessionData/" + test::SeptemberLog(1),
                                            "SessionData/" + test::SeptemberLog(2), newest};
    struct Case {
        const char* name;
        std::vector<std::string> command;
        std::string fault;  // TALLORY_WRITE_FAULT
        int status;
        std::vector<std::string> unsaved;
        const char* cause;
    } cases[] = {
        // clang-format off
        {"rewrite, full disk", {"rewrite", "3"}, "write:ENOSPC:SessionData/L", 3, {newest}, "the disk is full"},
        {"rewrite, read-only disk", {"rewrite", "3"}, "open:EROFS:SessionData/L", 3, {newest}, "the disk is read-only"},
        {"rename, a folder in the way", {"rename", "3", "Optics"}, "rename:EISDIR:L", 3, {newest}, "a folder is in the way"},
        {"purge, full disk on every log", {"purge", "2B0001", "--yes"}, "sync:ENOSPC:SessionData/L", 3, every, "the disk is full"},
        {"delete logs, full disk", {"student", "#2B0001", "--delete-logs", "--yes"}, "write:ENOSPC:SessionData/L", 3, every, "the disk is full"},
        {"rewrite, nothing in the way", {"rewrite", "3"}, "", 0, {}, ""},
        // clang-format on
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        SharedCourse course;
        const test::Files before = test::FolderFiles(course.File("SessionData"));
        const std::vector<std::string> arguments = test::CliArguments(course.Path(), c.command);
        std::vector<std::pair<std::string, std::string>> environment;
        if (!c.fault.empty()) environment.push_back({"TALLORY_WRITE_FAULT", c.fault});
        CliResult result =
            CliProcess(test::CliArguments(course.Path(), {"--json"}, c.command), environment)
                .Wait();
        EXPECT_EQ(result.status, c.status) << result.err;
        json document = json::parse(result.out);
        EXPECT_EQ(document["unsaved"], json(c.unsaved)) << result.out;
        if (c.status == 0) continue;
        for (const std::string& file : c.unsaved) {
            EXPECT_TRUE(test::Holds(result.err, course.File(file)));
            EXPECT_EQ(std::count(document["files"].begin(), document["files"].end(), json(file)),
                      0);
        }
        EXPECT_TRUE(test::Holds(result.err, c.cause));
        // Nothing torn: every log as it was, no temporary file left.
        EXPECT_EQ(test::FolderFiles(course.File("SessionData")), before);

        // Text mode prints no sentence of success for it.
        CliResult text = CliProcess(arguments, environment).Wait();
        EXPECT_EQ(text.status, c.status);
        EXPECT_EQ(text.out, "");
    }
}

// ---- One editor per course ---------------------------------------------------------------------

TEST(SharedCourse, ASecondEditorIsToldWhoHoldsTheCourse) {
    SharedCourse course;
    const std::string before = course.Log(test::SeptemberLog(3));
    CourseLock held;
    ASSERT_TRUE(held.Take(course.Path()));

    CliResult locked = test::RunCliOn(course.Path(), {"rename", "3", "Optics", "--json"});
    EXPECT_EQ(locked.status, 4) << locked.err;
    EXPECT_TRUE(test::Holds(locked.err, "process " + std::to_string(::getpid())));
    EXPECT_EQ(json::parse(locked.out)["unsaved"], json::array());
    EXPECT_EQ(course.Log(test::SeptemberLog(3)), before);

    // Reading needs no lock.
    EXPECT_EQ(test::RunCliOn(course.Path(), {"grid", "--json"}).status, 0);

    // --wait waits for the holder to finish.
    std::thread release([&held] {
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        held.Release();
    });
    CliResult waited = test::RunCliOn(course.Path(), {"--wait", "10", "rename", "3", "Optics"});
    release.join();
    EXPECT_EQ(waited.status, 0) << waited.err;
    EXPECT_NE(course.Log(test::SeptemberLog(3)), before);
}

// Two set-scores of one log at once: each edit is kept, or the later one is refused with 4.
TEST(SharedCourse, ConcurrentSetScoresLoseNoEdit) {
    int kept = 0, refused = 0;
    for (int trial = 0; trial < 20; ++trial) {
        SCOPED_TRACE(trial);
        SharedCourse course;
        const bool wait = trial % 2 == 0;  // half the trials wait, half are refused
        std::vector<std::string> first = {"--course", course.Path()};
        if (wait) first.insert(first.end(), {"--wait", "30"});
        std::vector<std::string> second = first;
        first.insert(first.end(), {"set-scores", "3", "--question", "1", "--correct", "B"});
        second.insert(second.end(), {"set-scores", "3", "--question", "2", "--correct", "C"});
        CliProcess a(first), b(second);
        CliResult ra = a.Wait(), rb = b.Wait();
        json session = json::parse(test::RunCliOn(course.Path(), {"session", "3", "--json"}).out);
        for (auto [result, question, letter] : {std::tuple{&ra, 0, 2}, std::tuple{&rb, 1, 3}}) {
            if (result->status == 0) {
                EXPECT_EQ(session["questions"][question]["correct"], letter);
                ++kept;
            } else {
                EXPECT_EQ(result->status, 4) << result->err;
                EXPECT_FALSE(wait);
                ++refused;
            }
        }
    }
    std::printf("concurrent set-scores: %d edits kept, %d refused with status 4, 0 lost\n", kept,
                refused);
}

// ---- Changes cut short -------------------------------------------------------------------------

// The course's files, its folder's name in the pages' links made one for every course.
test::Files CourseFiles(const SharedCourse& course) {
    test::Files files = test::FolderFiles(course.Path(), false);
    const std::string name = std::filesystem::path(course.Path()).filename().string();
    for (auto& [path, bytes] : files)
        for (size_t at = 0; (at = bytes.find(name, at)) != std::string::npos;)
            bytes.replace(at, name.size(), "COURSE");
    return files;
}

// A command run to its end on a fresh course (after the commands `first`): the files and the
// grid before and after it.
struct Reference {
    std::vector<std::string> words;
    std::vector<std::vector<std::string>> first;
    test::Files before, after;
    json gridBefore, gridAfter;

    explicit Reference(std::vector<std::string> command,
                       std::vector<std::vector<std::string>> firstRuns = {})
        : words(std::move(command)), first(std::move(firstRuns)) {
        SharedCourse course;
        Prepare(course);
        before = CourseFiles(course);
        gridBefore = test::GridOf(course);
        EXPECT_EQ(test::RunCliOn(course.Path(), words).status, 0);
        after = CourseFiles(course);
        gridAfter = test::GridOf(course);
        EXPECT_NE(before, after) << words[0] << " changed nothing";
        // Pages show the grid; they do not change it.
        EXPECT_EQ(gridBefore == gridAfter, words[0] == "report") << words[0];
    }
    void Prepare(const SharedCourse& course) const {
        for (const std::vector<std::string>& run : first)
            EXPECT_EQ(test::RunCliOn(course.Path(), run).status, 0);
    }
    // Opens a course whose run of the command was cut short, as the next command does: true when
    // every file is as before, false when every file is as the whole change left it (and the grid
    // that of the same); anything else fails.
    bool FoundAsBefore(const SharedCourse& course) const {
        const json grid = test::GridOf(course);
        const test::Files files = CourseFiles(course);
        // File by file first, so that a torn log is named.
        for (const auto& [name, bytes] : files) {
            auto was = before.find(name), is = after.find(name);
            EXPECT_TRUE((was != before.end() && was->second == bytes) ||
                        (is != after.end() && is->second == bytes))
                << name << " is neither as it was nor as the change leaves it";
        }
        if (files == before) {
            EXPECT_EQ(grid, gridBefore);
            return true;
        }
        EXPECT_EQ(files, after) << "the change stands in part";
        EXPECT_EQ(grid, gridAfter);
        return false;
    }
};

// Runs tallory-cli on the course with TALLORY_KILL_AT_EVENT=`event`; true when it was killed.
bool KilledAt(const test::TempCourse& course, const std::vector<std::string>& words, long event) {
    const CliResult result = CliProcess(test::CliArguments(course.Path(), words),
                                        {{"TALLORY_KILL_AT_EVENT", std::to_string(event)}})
                                 .Wait();
    if (result.signal != 0) {
        EXPECT_EQ(result.signal, SIGKILL);
        return true;
    }
    EXPECT_EQ(result.status, 0) << "event " << event << ": " << result.err;
    return false;
}

// Killed (SIGKILL) before each event of the change in turn: before every file created, written,
// synced or renamed and every step of its journal. An undo is such a change too.
TEST(SharedCourse, AChangeKilledAtEachOfItsEventsLeavesTheOldOrTheWholeNewCourse) {
    struct Command {
        const char* name;
        std::vector<std::string> words;
        std::vector<std::vector<std::string>> first;  // run to the end before
    } commands[] = {
        {"clicker removal", {"student", "S2", "--remove-clicker", "--yes"}, {}},
        {"purge", {"purge", "--all", "--yes"}, {}},
        {"undo of a purge", {"undo", "--yes"}, {{"purge", "--all", "--yes"}}},
        // Pages of the course before its purge, replaced by those after it: the journal keeps
        // the old pages under second names rather than copies.
        {"report over its pages",
         {"report", "--filter", "0"},
         {{"report", "--filter", "0"}, {"purge", "--all", "--yes"}}},
    };
    // Each course its own history, in the test's data folder, so that an undo finds its purge.
    test::TempCourse dataHome;
    ::setenv("XDG_DATA_HOME", dataHome.Path().c_str(), 1);
    for (const Command& command : commands) {
        const Reference reference(command.words, command.first);
        int old = 0, whole = 0;
        long event = 1;
        // A bound well above any count these changes reach, so a run that never ends stops.
        for (; event < 500; ++event) {
            SCOPED_TRACE(std::string(command.name) + " killed at event " + std::to_string(event));
            SharedCourse course;
            reference.Prepare(course);
            if (!KilledAt(course, command.words, event)) break;
            ++(reference.FoundAsBefore(course) ? old : whole);
            EXPECT_FALSE(std::filesystem::exists(JournalFolder(course.Path())));
        }
        EXPECT_GT(old, 0);
        EXPECT_LT(event, 500) << command.name << " never ran through";
        std::printf("%s: %ld events, killed before each: %d found as before, %d whole\n",
                    command.name, event - 1, old, whole);
    }
}

// ---- The polling application beside us ---------------------------------------------------------

// Appends a voter line per `period` to the log, under remotes #9C00000, #9C00001, ... either
// opening the file for each line or holding it open, until stopped; returns how many it wrote.
class Appender {
  public:
    Appender(const std::string& log, bool holdOpen) {
        int pipeFds[2];
        EXPECT_EQ(::pipe(pipeFds), 0);
        child_ = ::fork();
        if (child_ == 0) {
            ::close(pipeFds[0]);
            ::signal(SIGTERM, [](int) { stop = 1; });
            int fd = holdOpen ? ::open(log.c_str(), O_WRONLY | O_APPEND) : -1;
            int count = 0;
            while (!stop) {
                char line[64];
                const int length = std::snprintf(
                    line, sizeof line, "#9C%05d, ,1,A ,1,5,1,A ,5,A ,1,5,1,A ,5,\r\n", count);
                if (!holdOpen) fd = ::open(log.c_str(), O_WRONLY | O_APPEND);
                if (fd >= 0 && ::write(fd, line, static_cast<size_t>(length)) == length) ++count;
                if (!holdOpen && fd >= 0) ::close(fd);
                ::usleep(2000);
            }
            if (fd >= 0) ::close(fd);
            (void)!::write(pipeFds[1], &count, sizeof count);
            ::_exit(0);
        }
        ::close(pipeFds[1]);
        result_ = pipeFds[0];
    }
    int Stop() {
        ::kill(child_, SIGTERM);
        int count = 0;
        if (::read(result_, &count, sizeof count) != sizeof count) count = -1;
        ::close(result_);
        ::waitpid(child_, nullptr, 0);
        return count;
    }

  private:
    static inline volatile sig_atomic_t stop = 0;
    pid_t child_ = -1;
    int result_ = -1;
};

TEST(SharedCourse, NoVoteOfThePollingApplicationIsLost) {
    struct Command {
        const char* name;
        std::vector<std::string> words;
    } commands[] = {
        {"Set Scores", {"set-scores", "3", "--question", "1", "--correct", "B"}},
        {"rewrite", {"rewrite", "3"}},
        {"purge", {"purge", "2B0001", "--yes"}},
    };
    for (const Command& command : commands) {
        for (bool holdOpen : {false, true}) {
            int lost = 0, saved = 0, refused = 0;
            for (int trial = 0; trial < 20; ++trial) {
                SCOPED_TRACE(std::string(command.name) + (holdOpen ? ", held open" : ", reopened") +
                             ", trial " + std::to_string(trial));
                SharedCourse course;
                Appender appender(course.NewestLog(), holdOpen);
                std::this_thread::sleep_for(std::chrono::milliseconds(5 + trial));
                CliResult result = test::RunCliOn(course.Path(), command.words);
                std::this_thread::sleep_for(std::chrono::milliseconds(10));
                const int appended = appender.Stop();
                ASSERT_GT(appended, 0);
                const std::string log = course.Log(test::SeptemberLog(3));
                for (int n = 0; n < appended; ++n) {
                    char remote[16];
                    std::snprintf(remote, sizeof remote, "#9C%05d", n);
                    if (log.find(remote) == std::string::npos) ++lost;
                }
                if (result.status == 0) {
                    ++saved;
                } else {
                    EXPECT_EQ(result.status, 3) << result.err;
                    EXPECT_TRUE(test::Holds(
                        result.err, "nothing was changed. Try again when polling has ended."));
                    ++refused;
                }
            }
            EXPECT_EQ(lost, 0);
            std::printf("%s, appender %s: 20 trials, %d saved, %d refused, %d lines lost\n",
                        command.name, holdOpen ? "holding the log open" : "reopening per line",
                        saved, refused, lost);
        }
    }
}

}  // namespace
}  // namespace tallory
