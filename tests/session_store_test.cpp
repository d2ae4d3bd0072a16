#include "TestSupport.h"
#include "grid/CourseLoad.h"
#include "scoring/SessionStore.h"

namespace tallory {
namespace {

// A course of three students on the roster (one never votes), registrations, and a stray clicker.
struct SmallCourse : test::LoadedCourse {
    SmallCourse() {
        WriteRoster("!Last,First,ID\r\nZeta, Ann, S3\r\nAlpha, Bob, S2\r\nMid, Cy, S1\r\n");
        WriteRemotes("#A1,\"S1\"\r\n#A2,\"S2\"\r\n#A22,\"S2\"\r\n");
        WriteLog("L2609081000.csv",
                 {.voters = {{"#A1", "", {"A"}}, {"A2", "", {"B"}}, {"#FF", "", {"A"}}}});
        // S2 votes with both clickers: the first line counts.
        WriteLog("L2609081400.csv",
                 {.voters = {{"#A22", "", {"A"}}, {"#A2", "", {"B"}}, {"#A1", "", {""}}}});
        WriteLog("L2609081600.csv", {.title = "Review", .voters = {{"#A1", "", {"A"}}}});
        Load();
    }
};

TEST(SessionStore, FoldsEveryLogIntoStudentsAndWarnsOfTwoClickersOfOne) {
    SmallCourse loaded;
    const Course& course = loaded.course;
    ASSERT_EQ(course.NumSessions, 3);
    ASSERT_EQ(course.NumStudents, 4);
    // ID, clicker, total, and the Present marks of the three sessions.
    const std::tuple<const char*, const char*, double, std::vector<int>> expected[] = {
        {"S1", "A1", 2 + 0 + 2, {-1, -1, -1}},  // no answer in session 2 earns nothing
        {"S2", "A2", 0 + 2, {-1, -1, 0}},       // session 2: the first of its two clickers
        {"S3", "Unregistered", 0, {0, 0, 0}},
        {"#FF", "FF", 2, {-1, 0, 0}},
    };
    for (int i = 0; i < 4; ++i) {
        const StudentRec& student = course.Students[i + 1];
        const auto& [id, remote, total, present] = expected[i];
        EXPECT_EQ(std::tie(student.StudentId, student.RemoteId), std::tuple(id, remote));
        EXPECT_DOUBLE_EQ(student.Score[0], total) << id;
        for (int s = 1; s <= 3; ++s) EXPECT_EQ(student.Present[s], present[s - 1]) << id;
    }
    EXPECT_EQ(std::tuple(SessionLabel(course, 1), SessionLabel(course, 2), SessionLabel(course, 3)),
              std::tuple("09/08/2026", "09/08/2026-2", "Review"));

    // The load warns of S2's two clickers in session 2.
    ASSERT_EQ(loaded.host.messages.size(), 1u);
    const auto& warning = loaded.host.messages[0];
    // Its columns line up only in a fixed-width font.
    EXPECT_EQ(std::tuple(warning.title, warning.icon, warning.style.table),
              std::tuple("Warning - Multiple clickers Registered with one Student",
                         Icon::Exclamation, true));
    std::string row = "1" + std::string(9, ' ') + "S2" + std::string(18, ' ') + "A2,A22" +
                      std::string(23, ' ') + "09/08/2026-2";
    EXPECT_TRUE(test::Holds(warning.text,
                            "SrNo   StudentID          Registered Clicker(s)             "
                            "Affected Session(s)\r\n" +
                                row));
}

TEST(SessionStore, MultiRemoteReportKeepsItsColumnWidths) {
    Course course;
    AddMultiRemote(course, "S1", "AAAAAA,BBBBBB,CCCCCC", "09/08/2026");
    AddMultiRemote(course, "S2", "AAAAAA,BBBBBB,CCCCCC", "09/09/2026");
    AddMultiRemote(course, "s1", "AAAAAA,DDDDDD", "09/10/2026");
    EXPECT_EQ(std::tie(course.MultiRemote[0].Clickers, course.MultiRemote[0].Sessions),
              std::tuple("AAAAAA,BBBBBB,CCCCCC,DDDDDD", "09/08/2026,09/10/2026"));
    // The first row shows 17 characters of the clickers, later rows 21.
    EXPECT_EQ(MultiRemoteReport(course),
              test::ReadBytes(test::DataPath("logs/multi-remote-report.txt")));
}

TEST(SessionStore, TakesOnlyFifteenCharacterLogNames) {
    test::LoadedCourse loaded;
    for (const char* name : {"L2609081000.csv", "L260908100.csv", "L2609081000a.csv",
                             "l2609091000.CSV", "xL2609101000.csv", "Other.csv"})
        loaded.WriteLog(name, {.voters = {{"#A1", "", {"A"}}}});
    loaded.Write("SessionData/L2609111000.csv", "");  // an emptied log holds no session
    loaded.Load();
    EXPECT_EQ(std::tie(loaded.course.NumSessions, loaded.course.SessionFile[1],
                       loaded.course.SessionFile[2]),
              std::tuple(2, "L2609081000.csv", "l2609091000.CSV"));
}

TEST(SessionStore, LoadsTheFirstNinetyNineOfMoreLogs) {
    test::LoadedCourse loaded;
    const std::string text = test::LogText({.voters = {{"#A1", "", {"A"}}}});
    for (int i = 0; i < 100; ++i) {
        char name[40];
        std::snprintf(name, sizeof name, "SessionData/L26%02d%02d1000.csv", 1 + i / 28, 1 + i % 28);
        loaded.Write(name, text);
    }
    loaded.Load();
    EXPECT_EQ(loaded.course.NumSessions, 99);
    ASSERT_FALSE(loaded.host.messages.empty());
    EXPECT_EQ(loaded.host.messages[0].text, "Too many log files, only able to load the first 99");
    EXPECT_EQ(loaded.grid.screen.pageNo, 95);
}

}  // namespace
}  // namespace tallory
