#include <gtest/gtest.h>

#include "LogText.h"
#include "TestSupport.h"
#include "common/RecordingHost.h"
#include "grid/CourseLoad.h"
#include "logs/SessionStore.h"

namespace tallory {
namespace {

using test::LogPlan;
using test::LogText;
using test::LogVoter;
using test::TempCourse;

// A course of three students on the roster (one never votes), registrations, and a stray clicker.
void WriteSmallCourse(const TempCourse& course) {
    course.Write("Roster.txt",
                 "!Last,First,ID\r\nZeta, Ann, S3\r\nAlpha, Bob, S2\r\nMid, Cy, S1\r\n");
    course.Write("SessionData/RemoteID.csv", "#A1,\"S1\"\r\n#A2,\"S2\"\r\n#A22,\"S2\"\r\n");
    LogPlan first;
    first.voters = {{"#A1", "", {"A"}}, {"A2", "", {"B"}}, {"#FF", "", {"A"}}};
    course.Write("SessionData/L2609081000.csv", LogText(first));
    LogPlan second;  // S2 votes with both clickers: the first line counts
    second.voters = {{"#A22", "", {"A"}}, {"#A2", "", {"B"}}, {"#A1", "", {""}}};
    course.Write("SessionData/L2609081400.csv", LogText(second));
    LogPlan third;
    third.title = "Review";
    third.voters = {{"#A1", "", {"A"}}};
    course.Write("SessionData/L2609081600.csv", LogText(third));
}

struct Loaded {
    Course course;
    RecordingHost host;
    HeadlessScreen screen;
};

void Load(Loaded& loaded, const TempCourse& folder, DisplayOrder order = DisplayOrder::StudentId) {
    loaded.course.AppPath = folder.Path();
    loaded.screen.order = order;
    LoadCourse(loaded.course, loaded.host, loaded.screen, ReadOnlyLoad());
}

TEST(SessionStore, FoldsEveryLogIntoStudents) {
    TempCourse folder;
    WriteSmallCourse(folder);
    Loaded loaded;
    Load(loaded, folder);
    const Course& course = loaded.course;
    ASSERT_EQ(course.NumSessions, 3);
    ASSERT_EQ(course.NumStudents, 4);
    struct Row {
        const char* id;
        const char* remote;
        double total;
        std::vector<int> present;
    } expected[] = {
        {"S1", "A1", 2 + 0 + 2, {-1, -1, -1}},  // no answer in session 2 earns nothing
        {"S2", "A2", 0 + 2, {-1, -1, 0}},       // session 2: the first of its two clickers
        {"S3", "Unregistered", 0, {0, 0, 0}},
        {"#FF", "FF", 2, {-1, 0, 0}},
    };
    for (int i = 0; i < 4; ++i) {
        const StudentRec& student = course.Students[i + 1];
        EXPECT_EQ(student.StudentId, expected[i].id);
        EXPECT_EQ(student.RemoteId, expected[i].remote) << expected[i].id;
        EXPECT_DOUBLE_EQ(student.Score[0], expected[i].total) << expected[i].id;
        for (int s = 1; s <= 3; ++s) EXPECT_EQ(student.Present[s], expected[i].present[s - 1]);
    }
    EXPECT_EQ(SessionLabel(course, 1), "09/08/2026");
    EXPECT_EQ(SessionLabel(course, 2), "09/08/2026-2");
    EXPECT_EQ(SessionLabel(course, 3), "Review");
}

TEST(SessionStore, WarnsOfTwoClickersOfOneStudentInOneSession) {
    TempCourse folder;
    WriteSmallCourse(folder);
    Loaded loaded;
    Load(loaded, folder);
    ASSERT_EQ(loaded.host.messages.size(), 1u);
    const auto& warning = loaded.host.messages[0];
    EXPECT_EQ(warning.title, "Warning - Multiple clickers Registered with one Student");
    EXPECT_EQ(warning.icon, Icon::Exclamation);
    std::string row = "1" + std::string(9, ' ') + "S2" + std::string(18, ' ') + "A2,A22" +
                      std::string(23, ' ') + "09/08/2026-2";
    EXPECT_NE(warning.text.find("SrNo   StudentID          Registered Clicker(s)             "
                                "Affected Session(s)\r\n" +
                                row),
              std::string::npos)
        << warning.text;
}

TEST(SessionStore, MultiRemoteReportKeepsItsColumnWidths) {
    Course course;
    AddMultiRemote(course, "S1", "AAAAAA,BBBBBB,CCCCCC", "09/08/2026");
    AddMultiRemote(course, "S2", "AAAAAA,BBBBBB,CCCCCC", "09/09/2026");
    AddMultiRemote(course, "s1", "AAAAAA,DDDDDD", "09/10/2026");
    EXPECT_EQ(course.MultiRemote[0].Clickers, "AAAAAA,BBBBBB,CCCCCC,DDDDDD");
    EXPECT_EQ(course.MultiRemote[0].Sessions, "09/08/2026,09/10/2026");
    // The first row shows 17 characters of the clickers, later rows 21.
    EXPECT_EQ(MultiRemoteReport(course), "1" + std::string(9, ' ') + "S1" + std::string(18, ' ') +
                                             "AAAAAA,BBBBBB,CCC" + std::string(12, ' ') +
                                             "09/08/2026,09/10/2026\r\n2" + std::string(9, ' ') +
                                             "S2" + std::string(18, ' ') + "AAAAAA,BBBBBB,CCCCCC" +
                                             std::string(9, ' ') + "09/09/2026");
}

TEST(SessionStore, SortsByLastNameWithUnregisteredRemotesLast) {
    TempCourse folder;
    WriteSmallCourse(folder);
    Loaded loaded;
    Load(loaded, folder, DisplayOrder::LastName);
    std::vector<std::string> order;
    for (int i = 1; i <= loaded.course.NumStudents; ++i)
        order.push_back(loaded.course.Students[i].StudentId);
    EXPECT_EQ(order, (std::vector<std::string>{"S2", "S1", "S3", "#FF"}));
    SortStudents(loaded.course, DisplayOrder::StudentId);
    EXPECT_EQ(loaded.course.Students[1].StudentId, "S1");
}

TEST(SessionStore, TakesOnlyFifteenCharacterLogNames) {
    TempCourse folder;
    LogPlan plan;
    plan.voters = {{"#A1", "", {"A"}}};
    for (const char* name : {"L2609081000.csv", "L260908100.csv", "L2609081000a.csv",
                             "l2609091000.CSV", "xL2609101000.csv", "Other.csv"})
        folder.Write(std::string("SessionData/") + name, LogText(plan));
    folder.Write("SessionData/L2609111000.csv", "");  // an emptied log holds no session
    Loaded loaded;
    Load(loaded, folder);
    ASSERT_EQ(loaded.course.NumSessions, 2);
    EXPECT_EQ(loaded.course.SessionFile[1], "L2609081000.csv");
    EXPECT_EQ(loaded.course.SessionFile[2], "l2609091000.CSV");
}

TEST(SessionStore, LoadsTheFirstNinetyNineOfMoreLogs) {
    TempCourse folder;
    LogPlan plan;
    plan.voters = {{"#A1", "", {"A"}}};
    std::string text = LogText(plan);
    for (int i = 0; i < 100; ++i) {
        char name[40];
        std::snprintf(name, sizeof name, "SessionData/L26%02d%02d1000.csv", 1 + i / 28, 1 + i % 28);
        folder.Write(name, text);
    }
    Loaded loaded;
    Load(loaded, folder);
    EXPECT_EQ(loaded.course.NumSessions, 99);
    ASSERT_FALSE(loaded.host.messages.empty());
    EXPECT_EQ(loaded.host.messages[0].text, "Too many log files, only able to load the first 99");
    EXPECT_EQ(loaded.screen.pageNo, 95);
}

TEST(SessionStore, MoreThanFourThousandStudentsEndsTheLoad) {
    TempCourse folder;
    LogPlan plan;
    for (int i = 0; i < 4001; ++i)
        plan.voters.push_back({"#" + std::to_string(100000 + i), "", {"A"}});
    folder.Write("SessionData/L2609081000.csv", LogText(plan));
    Loaded loaded;
    try {
        Load(loaded, folder);
        FAIL() << "the load went through";
    } catch (const RunTimeError& error) {
        EXPECT_EQ(error.Number(), 9);
    }
}

TEST(SessionStore, WithoutLogsOnlyTheRosterRemains) {
    TempCourse folder;
    folder.Write("Roster.txt", "Doe, Jane, 12345\r\n");
    Loaded loaded;
    Load(loaded, folder);
    EXPECT_EQ(loaded.course.NumSessions, 0);
    ASSERT_EQ(loaded.course.NumStudents, 1);
    EXPECT_EQ(loaded.course.Students[1].RemoteId, "Unregistered");
    EXPECT_FALSE(loaded.screen.studentScrollVisible);
}

}  // namespace
}  // namespace tallory
