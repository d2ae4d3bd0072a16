#include <sys/stat.h>

#include <cstdlib>

#include "TestSupport.h"
#include "common/Paths.h"
#include "grid/CourseLoad.h"
#include "scoring/EditSessionScreen.h"
#include "scoring/SessionStore.h"

namespace tallory {
namespace {

// Six sessions on six days; the first is "Intro", the last "Forces", the others untitled.
struct SessionsCourse : test::LoadedCourse {
    // Removed logs are kept under the user's data folder: here one of the test's own.
    test::TempCourse dataHome;

    explicit SessionsCourse(const std::string& cms = "General") {
        ::setenv("XDG_DATA_HOME", dataHome.Path().c_str(), 1);
        WriteSettings({{"CMS", cms}});
        const char* const titles[] = {"Intro", "", "", "", "", "Forces"};
        for (int day = 1; day <= 6; ++day)
            WriteLog(LogName(day), {.title = titles[day - 1],
                                    .voters = {{"#A" + std::to_string(day), "", {"A"}}}});
        Load();
    }

    static std::string LogName(int day) { return "L09091" + std::to_string(day) + "1030.csv"; }
    std::string Log(int day) const { return TempCourse::Log(LogName(day)); }
    // The screen of session `session`, its removal answered with `answer`.
    EditSessionScreen Remove(int session, Answer answer) {
        EditSessionScreen screen(course, host, grid, session);
        host.answers = {answer};
        screen.cmdRemoveClick();
        return screen;
    }
};

// Characters the log cannot hold, and under D2L a title of another session or the own one; the
// refused character or the whole title is selected for the next try.
TEST(EditSession, RefusedTitlesLeaveTheLog) {
    const char* const duplicate =
        "Session name already exists, D2L does not allow duplicate session name(s). Please "
        "specify a unique session name";
    // The message is nullptr where the title is taken.
    const std::tuple<const char*, int, const char*, const char*, size_t, size_t> rows[] = {
        {"General", 2, "Week 3, part 2", "Session name may not contain a comma", 6, 1},
        {"General", 2, "The \"hard\" one, really", "Session name may not contain a comma", 14, 1},
        {"General", 2, "The \"hard\" one", "Session name may not contain a double quote", 4, 1},
        {"General", 2, "Newton's laws", "Session name may not contain a single quote", 6, 1},
        {"D2L", 2, " forces ", duplicate, 0, 8},  // session 6's title
        {"d2l ", 1, "Intro", duplicate, 0, 5},    // unchanged: refused too
        {"D2L", 2, "09/13/2009", nullptr, 0, 0},  // untitled session 3's date is no title
        {"General", 2, "Forces", nullptr, 0, 0},
    };
    for (const auto& [cms, session, title, message, selectionStart, selectionLength] : rows) {
        SCOPED_TRACE(std::string(cms) + " " + title);
        SessionsCourse fixture(cms);
        fixture.host.messages.clear();  // a course without its grade book says so at start
        const std::string before = fixture.Log(session);
        EditSessionScreen screen(fixture.course, fixture.host, fixture.grid, session);
        screen.txtSessionNameChange(title);
        screen.txtSessionNameEnter();
        EXPECT_EQ(screen.Saved(), message == nullptr);
        EXPECT_EQ(fixture.Log(session) == before, message != nullptr);
        if (message == nullptr) continue;
        EXPECT_EQ(test::Messages(fixture.host), test::Strings{"[Tallory] " + std::string(message)});
        EXPECT_EQ(screen.txtSessionName().selectionStart, selectionStart);
        EXPECT_EQ(screen.txtSessionName().selectionLength, selectionLength);
        EXPECT_FALSE(screen.Closed());
    }
}

TEST(EditSession, SaveWritesTheTitleAndRedrawsTheGrid) {
    SessionsCourse fixture;
    ASSERT_EQ(fixture.grid.SessionScrollValue(), 2);  // the grid opens on the last four
    EditSessionScreen screen(fixture.course, fixture.host, fixture.grid, 2);
    screen.txtSessionNameChange("Momentum");
    screen.cmdSaveClick();
    EXPECT_TRUE(screen.Saved());
    EXPECT_TRUE(test::BeginsWith(fixture.Log(2), "Scoring,"));
    EXPECT_TRUE(test::Holds(fixture.Log(2), ",\"Momentum\"\r\n"));
    EXPECT_EQ(fixture.grid.scrollValues, (std::vector<int>{0, 2, 2}));
    screen.AfterClose();
    EXPECT_EQ(SessionLabel(fixture.course, 2), "Momentum");
}

TEST(EditSession, OpensWithoutReadingAndAClearedTitleReachesTheHeadingAtTheNextLoad) {
    SessionsCourse fixture;
    const std::string before = SessionLabel(fixture.course, 1);
    ASSERT_NE(before, "09/11/2009");
    EditSessionScreen screen(fixture.course, fixture.host, fixture.grid, 1);
    EXPECT_EQ(std::tie(screen.lblFileName().text, screen.txtSessionName().text,
                       fixture.course.CurrentLogFile),
              std::tuple("L0909111030.csv", "Intro", "L0909111030.csv"));
    // The tables still hold the session the load read last.
    EXPECT_EQ(fixture.course.Questions[0].Name, "Forces");
    screen.txtSessionNameChange("");
    screen.cmdSaveClick();
    const int redraws = fixture.grid.screen.redraws;
    screen.AfterClose();
    EXPECT_TRUE(test::Holds(fixture.Log(1), ", Min Correct =  0 ,\"\"\r\n"));
    // A blank title is not posted: the heading keeps its title until the next load.
    EXPECT_EQ(fixture.grid.screen.redraws, redraws);
    EXPECT_EQ(SessionLabel(fixture.course, 1), before);
    fixture.Load();
    EXPECT_EQ(SessionLabel(fixture.course, 1), "09/11/2009");
}

// A new title is read, set and written, nothing more: the log is not scored, so the writer knows
// the anonymous questions only as the last session scored left them, no participation rule is
// applied, and the grid's figures stand.
TEST(EditSession, SaveWritesTheTitleWithoutScoring) {
    const std::string refused = "Unable to store changes to file {log} Changes not saved!";
    // The session renamed is the first; a plain session is loaded after it.
    const std::tuple<const char*, test::LogPlan, bool> cases[] = {
        {"anonymous question", {.voters = {{"#A1", "", {"X"}}, {"#A2", "", {"X"}}}}, false},
        {"every question deleted",
         {.questions = {{.name = "Q1|Y"}}, .voters = {{"#A1", "", {"A"}}}},
         true},
    };
    for (const auto& [name, first, written] : cases) {
        test::LoadedCourse fixture;
        fixture.WriteLog("L0909111030.csv", first);
        fixture.WriteLog("L0909121030.csv", {.voters = {{"#A1", "", {"A"}}, {"#A2", "", {"B"}}}});
        fixture.Load();
        const std::string before = fixture.Log("L0909111030.csv");
        std::vector<double> totals;
        for (int s = 1; s <= fixture.course.NumStudents; ++s)
            totals.push_back(fixture.course.Students[s].Score[0]);
        EditSessionScreen screen(fixture.course, fixture.host, fixture.grid, 1);
        screen.txtSessionNameChange("Optics");
        screen.cmdSaveClick();
        EXPECT_EQ(screen.WriteSucceeded(), written) << name;
        const std::string after = fixture.Log("L0909111030.csv");
        if (written) {
            EXPECT_TRUE(fixture.host.messages.empty()) << name;
            EXPECT_TRUE(
                test::BeginsWith(after, "Scoring,  Performance =  10 , Participation =  1 ,"));
            EXPECT_TRUE(test::Holds(after, "\"Optics\""));
        } else {
            std::string message = refused;
            message.replace(message.find("{log}"), 5, fixture.File("SessionData/L0909111030.csv"));
            EXPECT_EQ(test::Messages(fixture.host), test::Strings{"[Tallory] " + message}) << name;
            EXPECT_EQ(after, before) << name;
        }
        for (int s = 1; s <= fixture.course.NumStudents; ++s)
            EXPECT_EQ(fixture.course.Students[s].Score[0], totals[s - 1]) << name;
    }
}

// The log's own text is kept outside the course; the course folder ends as it always did: an
// empty log and the "x" copy of the tables as the load left them (the last session's).
TEST(EditSession, RemoveEmptiesTheLogKeepsCopiesAndReloads) {
    SessionsCourse fixture;
    const std::string original = fixture.Log(2);
    EditSessionScreen screen = fixture.Remove(2, Answer::Yes);
    ASSERT_TRUE(screen.Removed());
    const std::string folder =
        fixture.dataHome.Path() + "/tallory/removed/" + LastComponent(fixture.Path());
    EXPECT_EQ(RemovedLogsFolder(fixture.course), folder);
    const std::string& kept = screen.KeptLog();
    ASSERT_EQ(kept.rfind(folder + "/L0909121030.csv.", 0), 0u) << kept;
    EXPECT_EQ(kept.size(), folder.size() + 1 + 15 + 1 + 15);  // ".20250314-093005"
    EXPECT_EQ(test::ReadBytes(kept), original);
    EXPECT_EQ(fixture.Log(2), "");
    EXPECT_TRUE(test::Holds(fixture.Read("SessionData/xL0909121030.csv"), "\"Forces\""));
    EXPECT_EQ(fixture.course.NumSessions, 5);
    EXPECT_EQ(fixture.course.SessionFile[2], "L0909131030.csv");
    // The kept position 2 is past the new end (1): the grid stays on the last sessions.
    EXPECT_EQ(fixture.grid.scrollValues, (std::vector<int>{0, 1}));
}

// A removal asks first; answered No, or unable to keep its copies, it leaves the log.
TEST(EditSession, ARemovalAnsweredNoOrThatCannotKeepItsCopiesLeavesTheLog) {
    struct Case {
        const char* name;
        std::function<void(SessionsCourse&)> spoil;
        const char* message;  // the start of the one message after the question; none for No
        bool copy;
    } cases[] = {
        {"answered No", [](SessionsCourse&) {}, nullptr, false},
        {"x name taken by a folder",
         [](SessionsCourse& f) { f.Write("SessionData/xL0909121030.csv/inside", "x"); },
         "Unable to store changes to file ", false},
        {"no archive",
         [](SessionsCourse& f) { f.dataHome.Write("tallory", "a file, not a folder"); },
         "Unable to keep a copy of the log file L0909121030.csv (", false},
        {"read-only log",
         [](SessionsCourse& f) {
             ::chmod(f.File("SessionData/" + SessionsCourse::LogName(2)).c_str(), 0444);
         },
         "Unable to empty the log file L0909121030.csv (", true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        SessionsCourse fixture;
        const std::string original = fixture.Log(2);
        c.spoil(fixture);
        EditSessionScreen screen = fixture.Remove(2, c.message ? Answer::Yes : Answer::No);
        EXPECT_EQ(std::tuple(screen.Closed(), screen.Removed(), screen.CopyWritten(),
                             fixture.course.NumSessions),
                  std::tuple(true, false, c.copy, 6));
        EXPECT_EQ(fixture.Log(2), original);
        EXPECT_FALSE(!c.message && fixture.Exists("SessionData/xL0909121030.csv"));
        const auto& asked = fixture.host.messages.at(0);
        EXPECT_EQ(std::tuple(asked.text, asked.buttons, asked.defaultButton),
                  std::tuple("Are you sure you want to remove lecture L0909121030.csv",
                             Buttons::YesNo, Answer::No));
        ASSERT_EQ(fixture.host.messages.size(), c.message ? 2u : 1u);
        if (!c.message) continue;
        EXPECT_TRUE(test::BeginsWith(fixture.host.messages[1].text, c.message));
    }
}

}  // namespace
}  // namespace tallory
