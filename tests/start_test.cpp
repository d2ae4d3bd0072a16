#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>

#include "TestSupport.h"
#include "common/Paths.h"
#include "start/ProgramStart.h"

namespace tallory {
namespace {

using test::TempCourse;

TEST(ProgramStart, ProgramFolderIsWhereTheProgramWasInvoked) {
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"tallory", "/home/ann/Physics", "/home/ann/Physics"},  // found through PATH
        {"./tallory", "/home/ann/Physics", "/home/ann/Physics"},
        {"/courses/Optics/tallory", "/tmp", "/courses/Optics"},
        {"Optics//./tallory", "/courses", "/courses/Optics"},
        {"../Optics/tallory", "/courses/Physics", "/courses/Physics/../Optics"},
        {"/tallory", "/tmp", "/"},
    };
    for (const auto& [invokedAs, current, folder] : cases)
        EXPECT_EQ(ProgramFolderOf(invokedAs, current), folder) << invokedAs;
}

TEST(ProgramStart, DebugIsTheWholeCommandLine) {
    struct Case {
        std::vector<std::string> arguments;
        bool debug;
    } cases[] = {
        {{"DEBUG"}, true},         {{" debug "}, true},   {{"Debug"}, true}, {{}, false},
        {{"DEBUG", "now"}, false}, {{"DEBUGGER"}, false}, {{""}, false},
    };
    for (const Case& c : cases)
        EXPECT_EQ(IsDebugCommand(c.arguments), c.debug) << testing::PrintToString(c.arguments);
}

// An installed program in a folder of its own (usr/bin, data in usr/share/tallory, bin a link to
// usr/bin as on merged systems) and a course folder holding a link to the program.
struct FakeInstallation : TempCourse {
    FakeInstallation() {
        Write("usr/bin/tallory", "");
        Write("usr/share/tallory/demo-course/Roster.txt", "Doe,Jane,1\r\n");
        Write("usr/share/tallory/demo-course/SessionData/Config.csv", "");
        Write("Physics/Roster.txt", "");
        ::symlink("usr/bin", File("bin").c_str());
        ::symlink(File("usr/bin/tallory").c_str(), File("Physics/tallory").c_str());
    }
};

TEST(ProgramStart, FindInstallationNeedsTheDataBesideTheProgram) {
    FakeInstallation root;
    const Installation found = FindInstallation(root.File("Physics/tallory"));
    EXPECT_EQ(std::tie(found.programFolder, found.dataFolder),
              std::tuple(root.File("usr/bin"), root.File("usr/share/tallory")));
    EXPECT_EQ(FindInstallation(root.File("bin/tallory")).programFolder, root.File("usr/bin"));

    // A program where it was built has no demo course beside it.
    root.Write("build/tallory", "");
    EXPECT_TRUE(FindInstallation(root.File("build/tallory")).programFolder.empty());
    EXPECT_TRUE(FindInstallation(root.File("missing/tallory")).dataFolder.empty());
}

TEST(ProgramStart, StartPlaceOfEachWayToStart) {
    FakeInstallation root;
    const Installation installed = FindInstallation(root.File("usr/bin/tallory"));
    const Installation built;
    const std::string home = "/home/ann";
    const std::string physics = root.File("Physics");
    const std::string user = "/home/ann/Tallory";
    // What, invoked as, in the folder, with the arguments, from the installation, and the place
    // it starts from.
    using Case = std::tuple<const char*, std::string, std::string, std::vector<std::string>,
                            const Installation&, StartPlace>;
    const Case cases[] = {
        // clang-format off
        {"link in a course folder", "./tallory", physics, {}, installed, {physics, false, false}},
        {"link by full path", physics + "/tallory", "/tmp", {}, installed, {physics, false, false}},
        {"link with DEBUG", "./tallory", physics, {"debug"}, installed, {physics, true, false}},
        {"menu: by name through PATH", "tallory", home, {}, installed, {user, true, true}},
        {"by name in a course folder", "tallory", physics, {}, installed, {user, true, true}},
        {"by its own path", root.File("usr/bin/tallory"), home, {}, installed, {user, true, true}},
        {"through a linked folder", root.File("bin/tallory"), home, {}, installed, {user, true, true}},
        {"as itself with DEBUG", "tallory", home, {"DEBUG"}, installed, {user, true, true}},
        {"built, by path", "./tallory", physics, {}, built, {physics, false, false}},
        {"built, through PATH", "tallory", physics, {}, built, {physics, false, false}},
        {"built, DEBUG", "tallory", physics, {"DEBUG"}, built, {physics, true, false}},
        // clang-format on
    };
    for (const auto& [what, invokedAs, current, arguments, installation, place] : cases) {
        const StartPlace chosen =
            ChooseStartPlace(invokedAs, current, arguments, installation, home);
        EXPECT_EQ(std::tie(chosen.programFolder, chosen.chooseCourse, chosen.userFolder),
                  std::tie(place.programFolder, place.chooseCourse, place.userFolder))
            << what;
    }
}

TEST(ProgramStart, UserClassesGetTheDemoCourseOnlyWhenNew) {
    FakeInstallation root;
    const Installation installed = FindInstallation(root.File("usr/bin/tallory"));

    TempCourse home;
    MakeUserClasses(home.File("Tallory"), installed);
    EXPECT_EQ(home.Read("Tallory/Classes/Demo Course/Roster.txt"), "Doe,Jane,1\r\n");
    EXPECT_TRUE(home.Exists("Tallory/Classes/Demo Course/SessionData/Config.csv"));
    EXPECT_EQ(ListFolders(home.File("Tallory/Classes")), test::Strings{"Demo Course"});

    // Once made, the folder is the user's: a removed demo course does not come back.
    std::filesystem::remove_all(home.File("Tallory/Classes/Demo Course"));
    MakeUserClasses(home.File("Tallory"), installed);
    EXPECT_TRUE(ListFolders(home.File("Tallory/Classes")).empty());

    // A program where it was built has no demo course to give.
    TempCourse other;
    MakeUserClasses(other.File("Tallory"), Installation{});
    EXPECT_TRUE(FolderExists(other.File("Tallory/Classes")));
    EXPECT_TRUE(ListFolders(other.File("Tallory/Classes")).empty());
}

TEST(ProgramStart, OnlyAnExact1024By768LargeFontScreenGetsTheLargeLayout) {
    EXPECT_EQ(std::tuple(ChooseLayout(1024, 768, 120), ChooseLayout(1024, 768, 96),
                         ChooseLayout(1280, 1024, 120), ChooseLayout(1024, 767, 144)),
              std::tuple(MainLayout::Large120Dpi, MainLayout::Subject, MainLayout::Subject,
                         MainLayout::Subject));
}

TEST(ProgramStart, FixRosterFileNames) {
    // The files before and after, and the start of the title and a part of the text of the one
    // message (no title: none). A read-only folder is reported as a roster in use, any other
    // failed rename by its error; either stops the repair.
    const char* const exists = "(e.g. \"roster.txt\" and \"roster.txt.txt\").\r\n";
    const char* const inUse = "Your class roster appears to be incorrectly named";
    struct Case {
        std::vector<const char*> before, left;
        const char *title = nullptr, *text = nullptr;
        bool readOnly = false;
    } cases[] = {
        {{"Roster.txt.txt"}, {"Roster.txt"}},
        {{"class.txt.txt"}, {"class.txt"}},
        {{"ROSTER.TXT.TXT", "class.txt.txt"}, {"Roster.txt", "class.txt"}},
        // Both roster files stay; class.txt.txt is not looked at in that run.
        {{"Roster.txt", "Roster.txt.txt", "class.txt.txt"},
         {"Roster.txt", "Roster.txt.txt", "class.txt.txt"},
         "Warning!",
         exists},
        {{"class.txt", "class.txt.txt"}, {"class.txt", "class.txt.txt"}, "Warning!", exists},
        {{"Roster.txt.txt", "class.txt.txt"},
         {"Roster.txt.txt", "class.txt.txt"},
         "Warning!",
         inUse,
         true},
        // A folder where the roster should go.
        {{"Roster.txt.txt", "class.txt.txt", "Roster.txt/keep"},
         {"Roster.txt.txt", "class.txt.txt"},
         "Error while renaming file : ",
         ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.before));
        if (c.readOnly && ::geteuid() == 0) continue;  // permissions do not hold for root
        TempCourse folder;
        for (const char* name : c.before) folder.Write(name, name);
        if (c.readOnly) ::chmod(folder.Path().c_str(), 0555);
        Course course;
        course.AppPath = folder.Path();
        RecordingHost host;
        FixRosterFileNames(course, host);
        ::chmod(folder.Path().c_str(), 0755);
        std::vector<std::string> after = ListFiles(folder.Path());
        std::sort(after.begin(), after.end());
        EXPECT_EQ(after, test::Strings(c.left.begin(), c.left.end()));  // each list in name order
        ASSERT_EQ(host.messages.size(), c.title ? 1u : 0u);
        if (!c.title) continue;
        EXPECT_TRUE(test::BeginsWith(host.messages[0].title, c.title));
        EXPECT_EQ(host.messages[0].icon, Icon::Stop);
        EXPECT_TRUE(test::Holds(host.messages[0].text, c.text));
        EXPECT_FALSE(host.messages[0].text.empty());
    }
}

TEST(CourseList, ListsCoursesAndMarksWebVoting) {
    TempCourse program;
    program.Write("Classes/Physics/Roster.txt", "");
    program.Write("Classes/Chemistry/SessionData/Config.csv",
                  "\"ENABLEWEBVOTING\" ,\"true\" ,\"\"\r\n");
    program.Write("Classes/Options.csv", "\"SelectedClass\",\"chemistry (*)\"\r\n");
    CourseList list(program.Path());
    list.Load();
    EXPECT_EQ(list.Rows(), (std::vector<std::string>{"Chemistry (*)", "Physics"}));
    EXPECT_TRUE(list.StartEnabled());

    list.Activate();
    EXPECT_EQ(list.Selected(), 0);  // Chemistry (*)

    RecordingHost host;
    std::string course = list.SetAndStart(host);
    EXPECT_EQ(course, program.Path() + "/Classes/Chemistry");
    EXPECT_EQ(program.Read("Classes/Options.csv"), "\"SelectedClass\",\"Chemistry (*)\"\r\n");
    for (const char* made : {"SessionData", "Reports", "Images"})
        EXPECT_TRUE(program.Exists(std::string("Classes/Chemistry/") + made)) << made;

    // The course saved without the mark it has now (web voting, here in a bare settings line) is
    // no choice: the course is then the Classes folder itself.
    program.Write("Classes/Chemistry/SessionData/Config.csv", "ENABLEWEBVOTING,TRUE\r\n");
    program.Write("Classes/Options.csv", "\"SelectedClass\",\"Chemistry\"\r\n");
    CourseList unmarked(program.Path());
    unmarked.Load();
    unmarked.Activate();
    EXPECT_EQ(unmarked.Selected(), -1);
    EXPECT_EQ(unmarked.SetAndStart(host), program.Path() + "/Classes/");
}

// Rows in name order without regard to case; no course at all cannot start.
TEST(CourseList, RowsStandInNameOrderAndNoneCannotStart) {
    TempCourse program;
    program.Write("Classes/Options.csv", "");
    CourseList empty(program.Path());
    empty.Load();
    EXPECT_TRUE(empty.Rows().empty());
    EXPECT_FALSE(empty.StartEnabled());
    for (const char* course : {"physics", "Algebra", "biology", "Zoology", "BIOLOGY"})
        program.Write(std::string("Classes/") + course + "/Roster.txt", "");
    CourseList list(program.Path());
    list.Load();
    EXPECT_EQ(list.Rows(),
              (std::vector<std::string>{"Algebra", "BIOLOGY", "biology", "physics", "Zoology"}));
}

TEST(InstanceLock, OneHolderPerCourseUntilItsProcessEnds) {
    TempCourse physics;
    TempCourse optics;
    {
        InstanceLock first;
        ASSERT_TRUE(first.Acquire(physics.Path()));
        InstanceLock second;
        EXPECT_FALSE(second.Acquire(physics.Path()));
        EXPECT_FALSE(second.Acquire(physics.Path() + "/."));
        EXPECT_TRUE(second.Acquire(optics.Path()));
    }

    // A process that dies holding the lock leaves nothing behind that blocks the next start.
    int ready[2];
    ASSERT_EQ(::pipe(ready), 0);
    pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        InstanceLock held;
        const char answer = held.Acquire(physics.Path()) ? 'y' : 'n';
        (void)!::write(ready[1], &answer, 1);
        ::pause();
        ::_exit(0);
    }
    char answer = 0;
    ASSERT_EQ(::read(ready[0], &answer, 1), 1);
    EXPECT_EQ(answer, 'y');
    InstanceLock waiting;
    EXPECT_FALSE(waiting.Acquire(physics.Path()));
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    EXPECT_TRUE(waiting.Acquire(physics.Path()));
    ::close(ready[0]);
    ::close(ready[1]);
    EXPECT_EQ(ListFiles(physics.Path()).size(), 0u);
}

}  // namespace
}  // namespace tallory
