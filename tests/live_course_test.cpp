#include <fstream>

#include "TestSupport.h"
#include "grid/CourseWatch.h"

namespace tallory {
namespace {

using Step = CourseWatch::Step;

TEST(CourseWatch, ReloadsOnlyWhenQuietAndNothingIsOpen) {
    const std::tuple<const char*, std::vector<std::int64_t>, std::int64_t, bool, bool, Step>
        cases[] = {
            {"no event", {}, 1000, false, false, Step::Idle},
            {"quiet long enough", {0}, 500, false, false, Step::Reload},
            {"too soon", {0}, 499, false, false, Step::Wait},
            {"burst counts from the last event", {0, 300, 600}, 900, false, false, Step::Wait},
            {"burst then quiet", {0, 300, 600}, 1100, false, false, Step::Reload},
            {"screen open", {0}, 5000, true, false, Step::Wait},
            {"command running", {0}, 5000, false, true, Step::Wait},
        };
    for (const auto& [what, events, pollAt, screenOpen, commandRunning, expected] : cases) {
        CourseWatch watch;
        for (std::int64_t at : events) watch.FileEvent(at);
        EXPECT_EQ(watch.Poll(pollAt, screenOpen, commandRunning), expected) << what;
    }
}

TEST(CourseWatch, ReloadsOnceAfterTheScreenCloses) {
    CourseWatch watch;
    watch.FileEvent(0);
    EXPECT_EQ(watch.Poll(600, true, false), Step::Wait);
    EXPECT_EQ(watch.Poll(1200, false, false), Step::Reload);
    EXPECT_EQ(watch.Poll(1800, false, false), Step::Idle);
}

TEST(CourseWatch, DiffAndNotice) {
    const LogSnapshot before = {{"L1.csv", {10, 1}}, {"L2.csv", {20, 2}}};
    auto label = [](const std::string& file) {
        return file == "L1.csv" ? std::string("10/03/2026") : std::string();
    };
    using enum LogChangeKind;
    const std::tuple<const char*, LogSnapshot, std::vector<LogChange>, std::string> cases[] = {
        {"nothing", before, {}, ""},
        {"grew",
         {{"L1.csv", {30, 1}}, {"L2.csv", {20, 2}}},
         {{"L1.csv", Updated}},
         "Session 10/03/2026 updated"},
        {"rewritten at the same size",
         {{"L1.csv", {10, 5}}, {"L2.csv", {20, 2}}},
         {{"L1.csv", Updated}},
         "Session 10/03/2026 updated"},
        {"removed", {{"L2.csv", {20, 2}}}, {{"L1.csv", Removed}}, "Session 10/03/2026 removed"},
        {"new log the grid does not know",
         {{"L1.csv", {10, 1}}, {"L2.csv", {20, 2}}, {"L3.csv", {1, 1}}},
         {{"L3.csv", Updated}},
         "Session L3.csv updated"},
        {"renamed",
         {{"L1.csv", {10, 1}}, {"L9.csv", {20, 2}}},
         {{"L9.csv", Updated}, {"L2.csv", Removed}},
         "Sessions updated"},
    };
    for (const auto& [what, after, expected, notice] : cases) {
        const std::vector<LogChange> changes = DiffLogs(before, after);
        EXPECT_EQ(changes, expected) << what;
        EXPECT_EQ(ChangeNotice(changes, label), notice) << what;
    }
}

TEST(CourseWatch, SnapshotSeesOnlySessionLogs) {
    test::TempCourse course;
    course.Write("SessionData/L2603101000.csv", "a\n");
    course.Write("SessionData/RemoteID.csv", "x\n");
    course.Write("SessionData/xL2603101000.csv", "x\n");
    course.Write("SessionData/L2603101000.csv.tmp", "x\n");
    const LogSnapshot first = SnapshotLogs(course.File("SessionData"));
    ASSERT_EQ(first.size(), 1u);
    EXPECT_EQ(first.begin()->second.size, 2u);
    std::ofstream(course.File("SessionData/L2603101000.csv"), std::ios::app) << "b\n";
    EXPECT_EQ(DiffLogs(first, SnapshotLogs(course.File("SessionData"))),
              (std::vector<LogChange>{{"L2603101000.csv", LogChangeKind::Updated}}));
    EXPECT_TRUE(SnapshotLogs(course.File("no such folder")).empty());
}

// The program's own save of a log is no news; a vote the polling application appended after
// it is, and so is any log the program did not write.
TEST(CourseWatch, OwnWritesAreNotToldAsAnotherProgramsChange) {
    test::TempCourse course;
    const std::string data = course.File("SessionData");
    course.Write("SessionData/L2610061000.csv", "a\n");
    course.Write("SessionData/L2610081000.csv", "a\n");
    const LogSnapshot before = SnapshotLogs(data);
    course.Write("SessionData/L2610061000.csv", "saved\n");
    course.Write("SessionData/L2610081000.csv", "polled\n");
    course.Write("SessionData/RemoteID.csv", "x\n");

    LogSnapshot ours;
    for (const char* written :
         {"SessionData/L2610061000.csv", "SessionData/RemoteID.csv", "SessionData/no such log.csv"})
        if (auto own = OwnLogWrite(data, course.File(written))) ours.insert(*own);
    ASSERT_EQ(ours.size(), 1u);

    LogSnapshot now = SnapshotLogs(data);
    const std::vector<LogChange> others = OthersChanges(DiffLogs(before, now), now, ours);
    EXPECT_EQ(others, (std::vector<LogChange>{{"L2610081000.csv", LogChangeKind::Updated}}));

    std::ofstream(course.File("SessionData/L2610061000.csv"), std::ios::app) << "vote\n";
    now = SnapshotLogs(data);
    EXPECT_EQ(OthersChanges(DiffLogs(before, now), now, ours).size(), 2u);
}

}  // namespace
}  // namespace tallory
