#include <algorithm>

#include "TestSupport.h"
#include "grid/CourseLoad.h"
#include "grid/EditStudent.h"
#include "logs/SessionLog.h"
#include "scoring/ScreenParts.h"

namespace tallory {
namespace {

constexpr const char* kFirstLog = "L2609071000.csv";
constexpr const char* kSecondLog = "L2609091000.csv";

// S1 has one clicker, S2 two (777 registered twice), S3 none; ABC123 belongs to nobody. In the
// first log S2's first clicker carries another student's ID, S9.
struct StudentCourse : test::LoadedCourse {
    HeadlessSessionGrid::CountingScreen& screen = grid.screen;

    StudentCourse() {
        WriteSettings({{"CourseName", "Optics"}});
        WriteRoster("Adams,Ann,S1\r\nBaker,Bob,S2\r\nClark,Cy,S3\r\n");
        WriteRemotes("#1A2B3C,\"S1\"\r\n#4D5E6F,\"S2\"\r\n#777,\"S2\"\r\n#777,\"S2\"\r\n");
        WriteLog(kFirstLog, {.voters = {{"#1A2B3C", "S1", {"A"}},
                                        {"#4D5E6F", "S9", {"A"}},
                                        {"#777", "", {"B"}},
                                        {"#ABC123", "", {"A"}}}});
        WriteLog(kSecondLog, {.voters = {{"#1A2B3C", "", {"A"}}, {"#ABC123", "", {"B"}}}});
        Load();
        host.progressTexts.clear();
        screen.redraws = 0;
    }

    EditStudentScreen Open(const std::string& id) {
        EditStudentScreen screen(course, host, this->screen, Row(id));
        screen.Activate();
        return screen;
    }
};

TEST(EditStudent, ActivationShowsTheStudentOrTheRemote) {
    // A stray clicker shows Remove (its logs) and no Add; a student Save (its clickers) and Add.
    struct {
        const char *id, *shown, *name, *heading;
        std::vector<std::string> clickers;
        const char *clicker, *saveCaption;
    } rows[] = {
        // clang-format off
        {"S1", "S1", "Adams , Ann", "Registered Clickers", {"1A2B3C"}, "1A2B3C", "Remove Clicker"},
        {"S2", "S2", "Baker , Bob", "Registered Clickers", {"4D5E6F", "777"}, "4D5E6F", "Remove Clicker"},
        {"S3", "S3", "Clark , Cy", "Registered Clickers", {}, "", "Add Clicker"},
        {"S9", "S9", "", "Registered Clickers", {}, "", "Add Clicker"},
        {"#ABC123", "Unregistered", "", "Unregistered Clicker", {}, "ABC123", "Remove Clicker"},
        // clang-format on
    };
    StudentCourse fixture;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.id);
        EditStudentScreen screen = fixture.Open(row.id);
        const bool stray = row.id[0] == '#';
        EXPECT_EQ(std::tie(screen.lblStudentID().text, screen.lblLastName().text,
                           screen.Label4().text, screen.lblClickerID().text, screen.cmdSave().text),
                  std::tuple(row.shown, row.name, row.heading, row.clicker, row.saveCaption));
        EXPECT_EQ(screen.ClickList(), row.clickers);
        EXPECT_EQ(std::tuple(screen.cmbClickList().index, screen.cmdSave().visible,
                             screen.cmdRemove().visible, screen.CmdAdd().enabled),
                  std::tuple(row.clickers.empty() ? -1 : 0, !row.clickers.empty(), stray, !stray));
    }
}

TEST(EditStudent, NameIsCutAtTwentyAndTheChoiceOnlyChangesTheCaption) {
    StudentCourse fixture;
    EditStudentScreen first = fixture.Open("S1");
    first.cmbClickListClick(-1);
    EXPECT_EQ(std::tuple(first.cmdSave().text, first.cmdSave().visible),
              std::tuple("Add Clicker", true));
    fixture.course.Roster[0].LastName = "Abercrombie-Fitzgerald";
    EXPECT_EQ(fixture.Open("S1").lblLastName().text, "Abercrombie-Fitzgera");

    EditStudentScreen screen = fixture.Open("S2");
    screen.cmbClickListClick(1);
    EXPECT_EQ(
        std::tie(screen.cmdSave().text, screen.cmbClickList().text, screen.lblClickerID().text),
        std::tuple("Remove Clicker", "777", "4D5E6F"));
}

TEST(EditStudent, ABlankNewClickerChangesNothing) {
    StudentCourse fixture;
    EditStudentScreen screen = fixture.Open("S3");
    screen.TxtNewClickerIdChange("   ");
    screen.CmdAddClick();
    EXPECT_EQ(test::Messages(fixture.host),
              test::Strings{"[New Clicker Id Required] New clicker id cannot be blank"});
    EXPECT_TRUE(screen.FocusNewClicker());
    EXPECT_FALSE(screen.Closed());
    EXPECT_TRUE(fixture.host.written.empty());
    EXPECT_EQ(fixture.course.NumRemotes, 4);
    EXPECT_TRUE(EditStudentScreen::TxtNewClickerIdKey('b'));
    EXPECT_FALSE(EditStudentScreen::TxtNewClickerIdKey('#'));
}

TEST(EditStudent, AddingAClickerRegistersItAndPassesOverTheLogs) {
    StudentCourse fixture;
    std::vector<double> totals;
    for (int s = 1; s <= fixture.course.NumStudents; ++s)
        totals.push_back(fixture.course.Students[s].Score[0]);
    EditStudentScreen screen = fixture.Open("S3");
    screen.TxtNewClickerIdChange(" abc123 ");
    screen.CmdAddClick();
    // The logs change, the grid's figures do not: nothing is posted before the next load.
    for (int s = 1; s <= fixture.course.NumStudents; ++s)
        EXPECT_EQ(fixture.course.Students[s].Score[0], totals[s - 1]) << s;
    EXPECT_TRUE(screen.Closed());
    EXPECT_EQ(
        fixture.Remotes(),
        "#1A2B3C,\"S1\"\r\n#4D5E6F,\"S2\"\r\n#777,\"S2\"\r\n#777,\"S2\"\r\n#abc123,\"S3\"\r\n");
    EXPECT_EQ(fixture.host.written.size(), 3u);  // RemoteID.csv and both logs
    const auto& texts = fixture.host.progressTexts;
    EXPECT_EQ(texts[0], "Saving Remote ID");
    EXPECT_NE(std::find(texts.begin(), texts.end(), "Updating Lectures..."), texts.end());
    // Nothing reloads and the grid is not redrawn.
    EXPECT_EQ(fixture.screen.redraws, 0);
    EXPECT_EQ(std::find(texts.begin(), texts.end(), "Loading Session Data"), texts.end());
    // The next load gives the stray clicker's votes to its new owner.
    fixture.Load();
    EXPECT_EQ(fixture.Row("#ABC123"), 0);
    EXPECT_EQ(fixture.course.Students[fixture.Row("S3")].Present[2], kTrue);
}

TEST(EditStudent, RemovingAClickerAsksFirstAndNamesTheFirstRemote) {
    StudentCourse fixture;
    const std::string log = fixture.Log(kFirstLog);
    {
        EditStudentScreen screen = fixture.Open("S2");
        screen.cmbClickListClick(1);
        fixture.host.answers = {Answer::No};
        screen.cmdSaveClick();
        EXPECT_FALSE(screen.Closed());
        EXPECT_TRUE(fixture.host.written.empty());
        EXPECT_EQ(test::Messages(fixture.host),
                  test::Strings{"[Confirm Delete] Are you sure you want to delete the selected "
                                "clicker. The complete process might take several minutes"});
        EXPECT_EQ(
            std::tuple(fixture.host.messages[0].buttons, fixture.host.messages[0].defaultButton),
            std::tuple(Buttons::YesNo, Answer::No));
    }
    // 777 stands twice for S2: the first removal leaves the second row.
    for (int removal = 1; removal <= 2; ++removal) {
        EditStudentScreen screen = fixture.Open("S2");
        ASSERT_EQ(screen.ClickList(), (std::vector<std::string>{"4D5E6F", "777"})) << removal;
        screen.cmbClickListClick(1);
        fixture.host.answers = {Answer::Yes};
        screen.cmdSaveClick();
        const auto& texts = fixture.host.progressTexts;
        EXPECT_NE(std::find(texts.begin(), texts.end(), "Deleting Remote Id :- '777'"),
                  texts.end());
    }
    EXPECT_EQ(fixture.Remotes(), "#1A2B3C,\"S1\"\r\n#4D5E6F,\"S2\"\r\n");
    EXPECT_EQ(fixture.Open("S2").ClickList(), (std::vector<std::string>{"4D5E6F"}));
    // The pass named S2's first clicker, not 777: its line lost the borrowed ID S9, and the
    // 777 line is still there.
    const std::string after = fixture.Log(kFirstLog);
    EXPECT_TRUE(test::Holds(log, "\"S9\""));
    EXPECT_FALSE(test::Holds(after, "\"S9\""));
    EXPECT_TRUE(test::Holds(after, "#777,"));
    EXPECT_EQ(fixture.screen.redraws, 0);
}

TEST(EditStudent, DeletingAStrayClickersLogs) {
    for (Answer answer : {Answer::Cancel, Answer::Ok}) {
        StudentCourse fixture;
        const std::string second = fixture.Log(kSecondLog);
        EditStudentScreen screen = fixture.Open("#ABC123");
        fixture.host.answers = {answer};
        screen.cmdRemoveClick();
        EXPECT_TRUE(screen.Closed());
        const auto& asked = fixture.host.messages[0];
        EXPECT_EQ(std::tuple(asked.text, asked.buttons, asked.defaultButton),
                  std::tuple("This will permanently delete ABC123 from the log files.",
                             Buttons::OkCancel, Answer::Cancel));
        const bool ok = answer == Answer::Ok;
        EXPECT_EQ(std::tuple(fixture.host.written.empty(), fixture.Log(kSecondLog) == second),
                  std::tuple(!ok, !ok));
        ASSERT_EQ(fixture.host.messages.size(), ok ? 2u : 1u);
        if (!ok) continue;
        EXPECT_EQ(test::Messages(fixture.host)[1],
                  "[Tallory] ABC123 records deleted from the log files.");
        EXPECT_FALSE(test::Holds(fixture.Log(kFirstLog) + fixture.Log(kSecondLog), "#ABC123"));
        EXPECT_FALSE(test::Holds(fixture.Remotes(), "ABC123"));
        EXPECT_EQ(fixture.screen.redraws, 0);
    }
}

// The demo course's 09/22 log has an anonymous question. The pass over the logs scores nothing, so
// the writer knows the anonymous questions only as the load's last session left them: 09/22 is
// refused and stays as it was, and every other log keeps its answers and its participation points.
TEST(EditStudent, AddingAClickerOnTheDemoCourseKeepsEveryAnswer) {
    test::TempCourse course;
    course.CopyFrom(test::DemoCourse());
    const std::string folder = course.Path() + "/SessionData/";
    std::map<std::string, std::string> before;  // the logs by name
    for (const auto& [name, bytes] : test::FolderFiles(folder))
        if (name[0] == 'L' && name.ends_with(".csv")) before[name] = bytes;
    ASSERT_EQ(before.size(), 9u);

    const test::CliResult result =
        test::RunCliOn(course.Path(), {"student", "20260157", "--add", "1a9999", "--yes"});
    // Every log but the refused one was written: the command says so by its status.
    EXPECT_EQ(result.status, 3) << result.err;
    EXPECT_TRUE(test::Holds(result.err, "[Tallory] Unable to store changes to file " + folder +
                                            "L2609221000.csv Changes not saved!"));

    for (const auto& [log, old] : before) {
        if (log == "L2609221000.csv") {
            EXPECT_EQ(course.Log(log), old);
            continue;
        }
        if (log == "L2609241000.csv" || log == "L2610011000.csv") {
            EXPECT_EQ(course.Log(log),
                      test::ReadBytes(test::DataPath("logs/demo-add-1a9999/" + log)));
        }
        Course was, now;
        ReadSessionLog(was, test::DemoCourse() + "/SessionData/" + log);
        ReadSessionLog(now, folder + log);
        EXPECT_EQ(now.SessParticipation, was.SessParticipation) << log;
        ASSERT_EQ(now.NumVoters, was.NumVoters) << log;
        ASSERT_EQ(now.NumQuestions, was.NumQuestions) << log;
        for (int r = 1; r <= now.NumVoters; ++r)
            for (int q = 1; q <= now.NumQuestions; ++q)
                EXPECT_EQ(now.Votes[r].Answer[q], was.Votes[r].Answer[q])
                    << log << " voter " << r << " question " << q;
    }
}

}  // namespace
}  // namespace tallory
