// A change of several files killed (SIGKILL) at each of its events in turn: before every file
// created, written, synced or renamed and every step of its journal. The next opening of the
// course must find each file either as it was or as the whole change leaves it, and the grid of
// one of the two. An undo is such a change too.
#include <gtest/gtest.h>
#include <signal.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "LogBuilder.h"
#include "TestSupport.h"
#include "common/AtomicFile.h"
#include "common/ChangeJournal.h"

namespace tallory {
namespace {

using nlohmann::json;

using SmallCourse = test::StrayClickersCourse;

using test::Files;

// Opens the course again as the next command does, and gives its grid without the course name.
json GridOf(const test::TempCourse& course) {
    test::CliResult result = test::RunCliOn(course.Path(), {"grid", "--json"});
    EXPECT_EQ(result.status, 0) << result.err;
    json grid = json::parse(result.out, nullptr, false);
    if (grid.is_discarded()) return grid;
    grid.erase("course");
    grid.erase("messages");
    return grid;
}

// Runs tallory-cli on the course with TALLORY_KILL_AT_EVENT=`event`; true when it was killed.
bool KilledAt(const test::TempCourse& course, const std::vector<std::string>& words, long event) {
    std::vector<std::string> arguments{"--course", course.Path()};
    arguments.insert(arguments.end(), words.begin(), words.end());
    const test::CliResult result =
        test::CliProcess(arguments, {{"TALLORY_KILL_AT_EVENT", std::to_string(event)}}).Wait();
    if (result.signal != 0) {
        EXPECT_EQ(result.signal, SIGKILL);
        return true;
    }
    EXPECT_EQ(result.status, 0) << "event " << event << ": " << result.err;
    return false;
}

TEST(KillEvents, EveryEventOfAMultiFileChangeLeavesTheOldOrTheWholeNewCourse) {
    struct Command {
        const char* name;
        std::vector<std::string> words;
        std::vector<std::string> first;  // run to the end before, when not empty
    } commands[] = {
        {"clicker removal", {"student", "S2", "--remove-clicker", "--yes"}, {}},
        {"purge", {"purge", "--all", "--yes"}, {}},
        {"undo of a purge", {"undo", "--yes"}, {"purge", "--all", "--yes"}},
    };
    // Each course its own history, in the test's data folder, so that an undo finds its purge.
    test::TempCourse dataHome;
    ::setenv("XDG_DATA_HOME", dataHome.Path().c_str(), 1);
    auto prepared = [](const Command& command, const SmallCourse& course) {
        if (command.first.empty()) return;
        EXPECT_EQ(test::RunCliOn(course.Path(), command.first).status, 0);
    };
    for (const Command& command : commands) {
        SmallCourse reference;
        prepared(command, reference);
        const Files before = test::FolderFiles(reference.Path(), false);
        const json gridBefore = GridOf(reference);
        ASSERT_EQ(test::RunCliOn(reference.Path(), command.words).status, 0);
        const Files after = test::FolderFiles(reference.Path(), false);
        const json gridAfter = GridOf(reference);
        ASSERT_NE(before, after) << command.name << " changed nothing";
        ASSERT_NE(gridBefore, gridAfter) << command.name;

        int old = 0, whole = 0;
        long event = 1;
        // A bound well above any count these changes reach, so a run that never ends stops.
        for (; event < 500; ++event) {
            SCOPED_TRACE(std::string(command.name) + " killed at event " + std::to_string(event));
            SmallCourse course;
            prepared(command, course);
            if (!KilledAt(course, command.words, event)) break;
            const json grid = GridOf(course);
            const Files files = test::FolderFiles(course.Path(), false);
            EXPECT_FALSE(std::filesystem::exists(JournalFolder(course.Path())));
            // File by file first, so that a torn log is named.
            for (const auto& [name, bytes] : files) {
                auto was = before.find(name), is = after.find(name);
                EXPECT_TRUE((was != before.end() && was->second == bytes) ||
                            (is != after.end() && is->second == bytes))
                    << name << " is neither as it was nor as the change leaves it";
            }
            if (files == before) {
                EXPECT_EQ(grid, gridBefore);
                ++old;
            } else {
                EXPECT_EQ(files, after) << "the change stands in part";
                EXPECT_EQ(grid, gridAfter);
                ++whole;
            }
        }
        EXPECT_GT(old, 0);
        EXPECT_LT(event, 500) << command.name << " never ran through";
        std::printf("%s: %ld events, killed before each: %d found as before, %d whole\n",
                    command.name, event - 1, old, whole);
    }
}

}  // namespace
}  // namespace tallory
