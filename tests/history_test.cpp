// The course's history and undo: every kind of change taken back byte for byte, undo of an undo,
// files changed since, the history's bounds, and an undo cut short by a kill.
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <random>

#include "TestSupport.h"
#include "common/ChangeJournal.h"
#include "common/History.h"
#include "common/Paths.h"
#include "gtest/gtest.h"

namespace tallory {
namespace {

using nlohmann::json;
using Snapshot = test::Files;

// A copy of the demo course, with its history in a data folder of its own, and a web
// registration of the stray clicker 007F00B2 to Lars Eriksen in the course folder for WebSync.
struct HistoryCourse : test::TempCourse {
    test::TempCourse dataHome;
    HistoryCourse() {
        ::setenv("XDG_DATA_HOME", dataHome.Path().c_str(), 1);
        CopyFrom(test::DemoCourse());
        Write("SessionData/Config.csv", test::ReadBytes(Path() + "/SessionData/Config.csv") +
                                            "\"webcode\" ,\"local\" ,\"\"\r\n");
        Write("WebReg.dat", "007F00B2,Eriksen,Lars,20260129\r\n");
    }
    test::CliResult Cli(const std::vector<std::string>& words) const {
        return test::RunCliOn(Path(), words);
    }
    json Entries() const {
        const test::CliResult result = Cli({"history", "--json"});
        EXPECT_EQ(result.status, 0) << result.err;
        return json::parse(result.out)["entries"];
    }
};

// Each kind of change is one entry named in the program's words, and its undo puts the course
// back byte for byte.
TEST(History, UndoAfterEachKindOfChangeRestoresTheCourse) {
    const std::tuple<std::vector<std::string>, std::string> kChanges[] = {
        {{"set-scores", "1", "--question", "1", "--correct", "C", "--participation", "2"},
         "Set Scores of 09/08/2026"},
        {{"set-scores", "3", "--question", "2", "--delete"}, "Set Scores of 09/15/2026"},
        {{"rename", "2", "Week two"}, "Rename of session 09/10/2026 to Week two"},
        {{"remove", "4", "--yes"}, "Removal of session 09/15/2026-2"},
        {{"purge", "007F00B2", "--yes"}, "Purge of clicker 007F00B2"},
        {{"purge", "--all", "--yes"}, "Purge of 3 clickers"},
        {{"student", "20260136", "--add", "5a5a5a", "--yes"},
         "Clicker 5a5a5a added to student 20260136"},
        {{"student", "20260136", "--remove-clicker", "3C4D5E", "--yes"},
         "Clicker 3C4D5E removed from student 20260136"},
        {{"student", "#7F00A1", "--delete-logs", "--yes"},
         "Deletion of the logs of clicker 7F00A1"},
        {{"websync", "--answer", "accept"}, "WebSync"},
    };
    for (const auto& [command, action] : kChanges) {
        SCOPED_TRACE(action);
        HistoryCourse course;
        const Snapshot before = test::FolderFiles(course.Path());
        const test::CliResult result = course.Cli(command);
        ASSERT_TRUE(result.status == 0 || result.status == 3) << result.err;
        const Snapshot after = test::FolderFiles(course.Path());
        ASSERT_FALSE(after == before);
        const json entries = course.Entries();
        ASSERT_EQ(entries.size(), 1u);
        EXPECT_EQ(entries[0]["action"], action);
        EXPECT_EQ(entries[0]["undone"], false);

        const test::CliResult undo = course.Cli({"undo", "--json"});
        ASSERT_EQ(undo.status, 0) << undo.err;
        EXPECT_EQ(json::parse(undo.out)["restored"], entries[0]["files"]);
        EXPECT_TRUE(test::FolderFiles(course.Path()) == before);
        const json now = course.Entries();
        ASSERT_EQ(now.size(), 2u);
        EXPECT_EQ(now[0]["action"], "Undo of " + action);
        EXPECT_EQ(now[1]["undone"], true);
    }
}

// An undo is a change: undone in turn it puts the change back, and the change counts as not
// undone again.
TEST(History, UndoOfAnUndoPutsTheChangeBack) {
    HistoryCourse course;
    ASSERT_EQ(course.Cli({"rename", "2", "Week two"}).status, 0);
    const Snapshot renamed = test::FolderFiles(course.Path());
    ASSERT_EQ(course.Cli({"undo"}).status, 0);
    ASSERT_EQ(course.Cli({"undo", "2", "--json"}).status, 0);
    EXPECT_TRUE(test::FolderFiles(course.Path()) == renamed);
    const json entries = course.Entries();
    ASSERT_EQ(entries.size(), 3u);
    EXPECT_EQ(entries[0]["action"], "Undo of Undo of Rename of session 09/10/2026 to Week two");
    EXPECT_EQ(entries[1]["undone"], true);
    EXPECT_EQ(entries[2]["undone"], false);
    // Undo with no ID takes the rename back again, not the undo of the undo.
    ASSERT_EQ(course.Cli({"undo"}).status, 0);
    EXPECT_EQ(course.Entries()[0]["action"], "Undo of Rename of session 09/10/2026 to Week two");
}

// The polling application appended a vote to a log after the change: the undo names the file and,
// without a Yes, changes nothing; with one it puts the log back as before the change.
TEST(History, AFileChangedSinceIsNamedAndLeftUnlessConfirmed) {
    HistoryCourse course;
    const std::string log = "SessionData/L2609081000.csv";
    const std::string original = course.Read(log);
    ASSERT_EQ(course.Cli({"set-scores", "1", "--participation", "2"}).status, 0);
    course.Write(log, course.Read(log) + "#ABCDEF, ,0,A,0,5,1,A\r\n");
    const Snapshot appended = test::FolderFiles(course.Path());

    for (const char* answer : {"", "--no"}) {
        std::vector<std::string> words = {"undo", "--json"};
        if (*answer) words.push_back(answer);
        const test::CliResult refused = course.Cli(words);
        EXPECT_EQ(refused.status, 0) << refused.err;
        const json document = json::parse(refused.out);
        EXPECT_EQ(document["restored"], json::array());
        ASSERT_EQ(document["messages"].size(), 1u);
        EXPECT_EQ(document["messages"][0]["title"], "Confirm Undo");
        EXPECT_TRUE(test::Holds(document["messages"][0]["text"].get<std::string>(), log));
        EXPECT_TRUE(test::FolderFiles(course.Path()) == appended);
        EXPECT_EQ(course.Entries().size(), 1u);
    }
    ASSERT_EQ(course.Cli({"undo", "--yes"}).status, 0);
    EXPECT_EQ(course.Read(log), original);
    // What the undo replaced is in the history too: undoing the undo brings the vote back.
    ASSERT_EQ(course.Cli({"undo", "2", "--yes"}).status, 0);
    EXPECT_TRUE(test::FolderFiles(course.Path()) == appended);
}

// Twenty changes of every kind in a random order, then twenty undos: the course as it started.
TEST(History, TwentyRandomChangesUndoneLeaveTheCourseAsItStarted) {
    const std::vector<std::string> students = {"20260101", "20260108", "20260115",
                                               "20260122", "20260129", "20260136"};
    for (unsigned seed : {1u, 2u, 3u}) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        HistoryCourse course;
        const Snapshot start = test::FolderFiles(course.Path());
        std::mt19937 random(seed);
        auto pick = [&random](int count) {
            return static_cast<int>(random() % static_cast<unsigned>(count));
        };
        int sessions = 9;
        for (int step = 0; step < 20; ++step) {
            const std::string session = std::to_string(1 + pick(sessions));
            const std::string& student = students[pick(static_cast<int>(students.size()))];
            const int kind = pick(9);
            const std::string letter = kind == 0 ? std::string("ABCDE").substr(pick(5), 1) : "";
            const char* deletion = kind == 1 && pick(2) ? "--delete" : "--restore";
            const std::vector<std::string> draws[] = {
                {"set-scores", session, "--question", "1", "--correct", letter, "--points",
                 "1,0,0,0,0"},
                {"set-scores", session, "--question", "1", deletion, "--participation", "3"},
                {"rename", session, "Title " + std::to_string(step)},
                {"remove", session, "--yes"},
                {"purge", "--all", "--yes"},
                {"student", student, "--add", "7E" + std::to_string(1000 + step), "--yes"},
                {"student", student, "--remove-clicker", "--yes"},
                {"websync", "--answer", "accept"},
                {"student", student, "--delete-logs", "--yes"},
            };
            if (kind == 3 && sessions <= 3) continue;  // the last sessions stay
            if (kind == 3) --sessions;
            const std::vector<std::string>& words = draws[kind];
            const test::CliResult result = course.Cli(words);
            // An edit the screen refuses (a question deleted in the demo course) saves nothing.
            const bool refused = result.err.find("nothing was saved") != std::string::npos;
            EXPECT_TRUE(result.status != 1 || refused) << words[0] << ": " << result.err;
        }
        const size_t changes = course.Entries().size();
        EXPECT_GE(changes, 10u);  // a few draws change nothing (no stray clicker left)
        for (size_t i = 0; i < changes; ++i) {
            const test::CliResult undo = course.Cli({"undo"});
            ASSERT_EQ(undo.status, 0) << undo.err;
            ASSERT_EQ(undo.err.find("Confirm Undo"), std::string::npos) << undo.err;
        }
        EXPECT_TRUE(test::FolderFiles(course.Path()) == start);
    }
}

// A host that kills its process once the writer has put `killAt` files in place.
class KillingHost : public RecordingHost {
  public:
    explicit KillingHost(int killAt) : killAt_(killAt) {}
    void FileWritten(const std::string& path) override {
        RecordingHost::FileWritten(path);
        if (++written_ == killAt_) ::kill(::getpid(), SIGKILL);
    }

  private:
    int killAt_;
    int written_ = 0;
};

// An undo killed after any of its files: the next opening finds the course before the undo,
// whole, and the undo can be run again.
TEST(History, AnUndoKilledMidwayIsFinishedAtTheNextOpening) {
    HistoryCourse course;
    const Snapshot start = test::FolderFiles(course.Path());
    // The demo's log with an anonymous question is refused and left (status 3); the others change.
    ASSERT_EQ(course.Cli({"purge", "--all", "--yes"}).status, 3);
    const Snapshot purged = test::FolderFiles(course.Path());
    const size_t files = course.Entries()[0]["files"].size();
    ASSERT_GT(files, 2u);
    for (int killAt = 1; killAt <= static_cast<int>(files); ++killAt) {
        SCOPED_TRACE("killed after file " + std::to_string(killAt));
        const pid_t child = ::fork();
        if (child == 0) {
            KillingHost host(killAt);
            UndoEntry(course.Path(), 1, host);
            ::_exit(0);
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        ASSERT_TRUE(WIFSIGNALED(status));
        EXPECT_TRUE(std::filesystem::exists(JournalFolder(course.Path())));
        EXPECT_NE(UndoInterruptedChange(course.Path()), "");
        EXPECT_TRUE(test::FolderFiles(course.Path()) == purged);
        EXPECT_EQ(course.Entries().size(), 1u);
    }
    ASSERT_EQ(course.Cli({"undo"}).status, 0);
    EXPECT_TRUE(test::FolderFiles(course.Path()) == start);
}

// Bounds: the newest entries always stay, older ones only within the days and the bytes; a content
// kept by several entries is one copy, and a copy no entry names goes.
TEST(History, BoundsKeepTheNewestAndTheRecentWithinTheBytes) {
    test::TempCourse dataHome, course;
    ::setenv("XDG_DATA_HOME", dataHome.Path().c_str(), 1);
    const std::string file = course.File("SessionData/L.csv");
    const std::time_t day = 24 * 60 * 60, now = 1'800'000'000;
    const HistoryBounds unbounded{1000, 3650, uint64_t{1} << 40};
    // Ten changes, one a day, each keeping 100 bytes of its own; entries 1 and 2 share a content.
    for (int i = 1; i <= 10; ++i) {
        dataHome.Write("before", std::string(100, static_cast<char>(i == 2 ? 'A' : '@' + i)));
        course.Write("SessionData/L.csv", "after " + std::to_string(i));
        ASSERT_TRUE(RecordChange(course.Path(), "Change " + std::to_string(i), 0, "",
                                 {{file, dataHome.File("before")}}, now - (10 - i) * day,
                                 unbounded));
    }
    const std::string copies = HistoryFolder(course.Path()) + "/copies";
    EXPECT_EQ(ListFiles(copies).size(), 9u);

    const std::tuple<HistoryBounds, int> kCases[] = {
        {{3, 30, 1 << 20}, 1},  // all within the days and the bytes
        {{3, 5, 1 << 20}, 5},   // older than five days: dropped
        {{3, 30, 450}, 7},      // four copies fit in 450 bytes
        {{3, 0, 0}, 8},         // the newest three stay whatever the bounds
    };
    for (const auto& [bounds, oldestKept] : kCases) {
        PruneHistory(HistoryFolder(course.Path()), bounds, now);
        const std::vector<HistoryEntry> entries = ReadHistory(course.Path());
        ASSERT_FALSE(entries.empty());
        EXPECT_EQ(entries.front().id, oldestKept);
        EXPECT_EQ(entries.back().id, 10);
        EXPECT_EQ(ListFiles(copies).size(), entries.size() - (oldestKept <= 1 ? 1 : 0));
    }
    // A change that left its file as it was makes no entry.
    ASSERT_TRUE(
        RecordChange(course.Path(), "Nothing", 0, "", {{file, course.Read("SessionData/L.csv")}}));
    EXPECT_EQ(ReadHistory(course.Path()).back().id, 10);
}

}  // namespace
}  // namespace tallory
