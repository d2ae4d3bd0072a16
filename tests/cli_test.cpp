#include <filesystem>

#include "SupportForFiles.h"
#include "TestSupport.h"
// The console host is compiled into tallory-cli itself; its test compiles the same source.
#include "../src/cli/Cli.cpp"
#include "../src/cli/ConsoleHost.cpp"
#include "../src/cli/Preview.cpp"

namespace tallory {
namespace {

using nlohmann::json;
using test::RunCli;
using test::TempCourse;

const std::string kDemo = std::string(TALLORY_SOURCE_DIR) + "/examples/demo-course";

using ArgumentLists = std::vector<std::vector<std::string>>;

struct DemoCopy : TempCourse {
    DemoCopy() { CopyFrom(kDemo); }
};

// The demo course's grid as a script reads it and as a person reads it by name, byte for byte
// (tests/data/cli, written by these very commands once checked by hand); the course folder stays
// as it was: no image moved, no version stamped.
TEST(Cli, GridOfTheDemoCourse) {
    const test::Files before = test::FolderFiles(kDemo);
    for (const auto& [option, golden] :
         {std::pair{"--json", "cli/demo-grid.json"}, {"--by-name", "cli/demo-grid-by-name.txt"}}) {
        const test::CliResult result = RunCli({"--course", kDemo, "grid", option});
        ASSERT_EQ(result.status, 0) << result.err;
        EXPECT_EQ(result.out, test::ReadBytes(test::DataPath(golden))) << option;
    }
    EXPECT_EQ(test::FolderFiles(kDemo), before);
}

TEST(Cli, SessionMatchesTheLogReadAlone) {
    auto session = RunCli({"--course", kDemo, "session", "6", "--json"});
    ASSERT_EQ(session.status, 0) << session.err;
    json scored = json::parse(session.out);
    EXPECT_EQ(scored["file"], "L2609221000.csv");
    EXPECT_TRUE(scored["questions"][2]["anonymous"].get<bool>());
    auto log = RunCli({"--course", kDemo, "log", kDemo + "/SessionData/L2609221000.csv", "--json"});
    ASSERT_EQ(log.status, 0) << log.err;
    json alone = json::parse(log.out);
    EXPECT_EQ(alone["number"], 0);
    EXPECT_EQ(alone["voters"], scored["voters"]);
    EXPECT_EQ(alone["questions"], scored["questions"]);
}

TEST(Cli, UsageErrorsExitWithTwoAndWriteNothing) {
    DemoCopy course;
    auto before = test::FolderFiles(course.Path());
    const std::string dir = course.Path();
    const std::string set = "set-scores";
    // clang-format off
    for (auto arguments : ArgumentLists{
             {}, {"frobnicate"}, {"--course"}, {"--course", dir + "/no-such-folder", "grid"},
             {"--course", dir, "grid", "--sideways"}, {"--course", dir, "grid", "extra"},
             {"--course", dir, "session"}, {"--course", dir, "session", "0"},
             {"--course", dir, "session", "10"}, {"--course", dir, "rewrite", "x"},
             {"--course", dir, "rename", "1"}, {"--course", dir, "remove", "1", "--yes", "--no"},
             {"--course", dir, set, "7", "--question", "3", "--title", "x", "--bogus"},
             {"--course", dir, set, "7", "--question", "3", "--correct", "F"},
             {"--course", dir, set, "7", "--question", "9", "--title", "x"},
             {"--course", dir, set, "7", "--points", "1,2,3"}, {"--course", dir, set, "7", "--title"},
         }) {
        // clang-format on
        SCOPED_TRACE(testing::PrintToString(arguments));
        auto result = RunCli(arguments);
        EXPECT_EQ(std::tuple(result.status, result.out), std::tuple(2, ""));
        EXPECT_TRUE(test::Holds(result.err, "tallory-cli: "));
    }
    EXPECT_EQ(test::FolderFiles(course.Path()), before);
}

// Each command from outside, on a copy of a course: its exit status, parts of what it prints,
// and whether anything in the course folder changed. What each command does to the files is the
// business of its screen's tests; here, that the command line reaches the screen and refuses what
// the screen refuses.
TEST(Cli, CommandsEndAsTheirScreensDo) {
    const std::string demo = kDemo, sample = test::DataPath("housekeeping/course"),
                      reports = test::DataPath("reports/course"),
                      canvas = test::DataPath("export/canvas/course"),
                      web = test::DataPath("web/course");
    // The web registrations of tests/data/web, read from the course folder.
    const std::vector<std::pair<std::string, std::string>> local = {
        {"WebReg.dat", test::ReadBytes(test::DataPath("web/WebReg.csv"))},
        {"SessionData/Config.csv", "\"webcode\" ,\"local\" ,\"\"\r\n"}};
    const std::string notSaved = "nothing was saved";
    // A log whose total is no number ends every command that reads it.
    TempCourse badTotal;
    badTotal.WriteLog(
        "L2609081000.csv",
        {.voters = {{"#A1", "", {"A"}}, test::RawLine("#A2, ,abc,A , 1 , 5 , 1 ,A , 5 ,")}});
    const std::vector<std::string> mismatch = {"Run-time error '13': Type mismatch",
                                               "L2609081000.csv", "line 12"};
    // Neither a roster nor registrations: the IDs come from the log.
    TempCourse bare;
    bare.WriteLog("L2609081000.csv", {.voters = {{"#00A1", "", {"A"}}, {"B2", "S9", {"B"}}}});
    struct Case {
        std::string course;
        std::vector<std::string> arguments;
        int status;
        std::vector<std::string> out, err;  // parts of each
        bool writes;
        const char* folder = nullptr;  // made in the course beforehand
        std::vector<std::pair<std::string, std::string>> given = {};  // files written beforehand
        std::pair<const char*, const char*> made = {};  // a file made, and its bytes in tests/data
    } cases[] = {
        // clang-format off
        {demo, {"set-scores", "7", "--points", "1,x,0,0,0"}, 1, {},
         {"[Tallory] Must enter a numberic value for points \n", notSaved}, false},
        {demo, {"set-scores", "6", "--question", "3", "--points", "1,0,0,0,0"}, 1, {}, {"polled anonymously", notSaved}, false},
        {demo, {"set-scores", "7", "--question", "1", "--delete", "--title", "Gone"}, 1, {}, {"it is deleted", notSaved}, false},
        {demo, {"set-scores", "7", "--min-responses", "9"}, 1, {}, {"[Tallory] Minimum number of required responses", notSaved}, false},
        {demo, {"set-scores", "7", "--cap", "lots"}, 1, {}, {"[Max Points] Not a valid number", notSaved}, false},
        {demo, {"rename", "2", "Vectors, part 1"}, 1, {}, {"may not contain a comma"}, false},
        {demo, {"remove", "2"}, 1, {}, {"[Confirm Remove]"}, false},
        {demo, {"rename", "2", "Vectors", "--json"}, 0, {"\"title\": \"Vectors\"", "\"written\": true"}, {}, true},
        {demo, {"remove", "2", "--yes"}, 0, {}, {}, true},
        // A removal whose copy cannot be written claims no copy and leaves the log.
        {demo, {"remove", "2", "--yes", "--json"}, 3, {"\"unsaved\": [\n    \"SessionData/xL2609101000.csv\"",
         "\"copy\": null", "\"removed\": false", "Changes not saved!"}, {}, false, "SessionData/xL2609101000.csv"},
        {demo, {"overview", "--html", "--json"}, 0, {"\"files\": [\n    \"Reports/Overview.html\"", "\"unsaved\": []"}, {}, true, "Reports"},
        {demo, {"overview", "--html", "--json"}, 3, {"\"files\": []", "\"unsaved\": [\n    \"Reports/Overview.html\""},
         {"[Course Overview] The page Reports/Overview.html was not written"}, false, nullptr, {{"Reports", "in the way"}}},
        {demo, {"websync", "--json", "--answer", "maybe"}, 2, {}, {"--answer"}, false},
        {sample, {"clickers", "--json", "--total-from", "5"}, 0, {"\"remote\": \"00ABC123\",\n      \"selected\": true"}, {}, false},
        {sample, {"clickers", "--avg-equal", "1x"}, 1, {}, {"Run-time error '13': Type mismatch"}, false},
        {sample, {"purge", "77", "--yes"}, 2, {}, {"no unregistered clicker '77'"}, false},
        {sample, {"purge", "99"}, 0, {}, {"[Tallory] All voting data"}, false},
        {sample, {"purge", "--remote-containing", "ABC", "--yes", "--json"}, 0, {"\"purged\": [\n    \"00ABC123\"\n  ]"}, {}, true},
        {sample, {"purge", "--all", "--yes", "--json"}, 0, {"\"purged\": [\n    \"00000099\",\n    \"00ABC123\"\n  ]"}, {}, true},
        {sample, {"student", "S3", "--add", " #", "--json"}, 0, {"\"text\": \"New clicker id cannot be blank\""}, {}, false},
        {sample, {"student", "S2", "--remove-clicker", "888"}, 2, {}, {"no clicker '888'"}, false},
        {sample, {"student", "#99", "--delete-logs", "--json"}, 0, {"\"heading\": \"Unregistered Clicker\""},
         {"[Tallory] This will permanently delete 99 from the log files."}, false},
        {sample, {"student", "#99", "--delete-logs", "--yes"}, 0, {}, {"[Tallory] 99 records deleted from the log files."}, true},
        {sample, {"unregistered-students", "--clipboard"}, 0, {"Last Name,First Name,Student Id\r\n\r\nClark,Cy,S3\r\nDunn,Di,S4\r\n"},
         {"[Export] Un Registered Student(s) information copied to clipboard sucessfully"}, false},
        {reports, {"report", "--filter", "3", "--json"}, 0, {"\"mode\": 3"}, {}, true},
        {reports, {"report", "--cancel", "--json"}, 0, {"\"mode\": 2", "\"files\": []"}, {}, false},
        {reports, {"term-report", "--mode", "4", "--json"}, 0, {"\"mode\": 4"}, {}, true, "Reports"},
        {reports, {"term-report", "--json"}, 1, {}, {}, true},  // the pages before the failure stand
        {reports, {"term-report", "--mode", "5"}, 2, {}, {"tallory-cli: "}, false, "Reports"},
        // The Canvas layout from the options, its columns listed; no other format lists columns,
        // so the General export's output opens on its files.
        {canvas, {"export", "selected", "--sessions", "2,4", "--canvas-columns", "total", "--absent", "blank", "--json"}, 0,
         {"{\n  \"columns\": [\n    {\n      \"points\": 6.0,\n      \"title\": \"Clicker Total\"\n    }\n  ],\n  \"files\": [\n    \"CanvasUpload.csv\"\n  ],",
          "\"started\": []", "\"text\": \"Wrote the Canvas upload file /"}, {}, true, nullptr, {},
         {"CanvasUpload.csv", "export/canvas/selected.total.blank.expected"}},
        {canvas, {"export", "all"}, 0, {}, {}, true, nullptr, {}, {"CanvasUpload.csv", "export/canvas/all.sessions.blank.expected"}},
        {canvas, {"export", "all", "--absent", "none"}, 2, {}, {"tallory-cli: "}, false},
        // websync takes its answer from the command line; without one it cancels at the first
        // clicker to verify and writes nothing.
        {web, {"websync", "--json", "--answer", "accept"}, 0, {"\"cancelled\": false,", "\"records_updated\": 3,",
         "\"files\": [\n    \"SessionData/ClickerCheck.txt\",\n    \"SessionData/RemoteID.csv\"\n  ],", "\"remote\": \"BB0003\","},
         {}, true, nullptr, local, {"SessionData/RemoteID.csv", "web/remotes.accepted.expected"}},
        {web, {"websync", "--json"}, 0, {"\"cancelled\": true,\n  \"done_note\": null,\n  \"files\": [],", "\"records_updated\": 1,",
         "\"Bennett Oliver (1002)\"\n      ]\n    }\n  ]\n}"}, {}, false, nullptr, local},
        {demo, {"export", "all", "--canvas-columns", "total", "--json"}, 0, {"{\n  \"files\": [\n    \"UploadFile.csv\""}, {}, true},
        {badTotal.Path(), {"grid", "--json"}, 1, {}, mismatch, false},
        {badTotal.Path(), {"log", "{course}/SessionData/L2609081000.csv"}, 1, {}, mismatch, false},
        {bare.Path(), {"grid", "--json"}, 0, {"\"id\": \"S9\"", "\"id\": \"#A1\""}, {}, false},
        // clang-format on
    };
    TempCourse dataHome;  // removed sessions are kept there
    ::setenv("XDG_DATA_HOME", dataHome.Path().c_str(), 1);
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.arguments));
        TempCourse course;
        course.CopyFrom(c.course);
        if (c.folder) std::filesystem::create_directory(course.File(c.folder));
        for (const auto& [file, text] : c.given) course.Write(file, text);
        const test::Files before = test::FolderFiles(course.Path());
        // "{course}" in an argument stands for the course folder.
        std::vector<std::string> arguments = c.arguments;
        for (std::string& word : arguments)
            if (word.starts_with("{course}")) word.replace(0, 8, course.Path());
        const test::CliResult result = test::RunCliOn(course.Path(), arguments);
        EXPECT_EQ(result.status, c.status) << result.err;
        for (const std::string& part : c.out) EXPECT_TRUE(test::Holds(result.out, part));
        for (const std::string& part : c.err) EXPECT_TRUE(test::Holds(result.err, part));
        // A command refused or ended by an error prints nothing.
        EXPECT_TRUE(result.out.empty() || c.status == 0 || c.status == 3) << result.out;
        EXPECT_EQ(test::FolderFiles(course.Path()) != before, c.writes);
        if (c.made.first) {
            EXPECT_EQ(course.Read(c.made.first), test::ReadBytes(test::DataPath(c.made.second)));
        }
    }
}

TEST(Cli, HelpAndVersion) {
    for (auto arguments : ArgumentLists{{"--help"},
                                        {"set-scores", "--help"},
                                        {"remove", "-h"},
                                        {"--course", "/no-such-folder", "grid", "--help"}}) {
        SCOPED_TRACE(testing::PrintToString(arguments));
        auto result = RunCli(arguments);
        EXPECT_EQ(result.status, 0) << result.err;
        std::string usage = "Usage: tallory-cli";
        if (arguments.size() > 1) usage += " " + arguments[arguments.size() - 2];
        EXPECT_TRUE(test::Holds(result.out, usage));
    }
    auto help = RunCli({"--help"});
    for (const char* command :
         {"grid", "session", "log", "rewrite", "set-scores", "rename", "remove"})
        EXPECT_TRUE(test::Holds(help.out, std::string("\n  ") + command + " ")) << command;

    EXPECT_EQ(RunCli({"--version"}).out, "tallory-cli " + std::to_string(TALLORY_VERSION_MAJOR) +
                                             "." + std::to_string(TALLORY_VERSION_MINOR) + "." +
                                             std::to_string(TALLORY_VERSION_REV) + "\n");
}

TEST(Cli, GlobalOptionsStandAnywhere) {
    auto reference = RunCli({"--course", kDemo, "--json", "grid", "--by-name"});
    ASSERT_EQ(reference.status, 0) << reference.err;
    for (auto arguments : ArgumentLists{
             {"--course=" + kDemo, "grid", "--by-name", "--json"},
             {"grid", "--course=" + kDemo, "--json", "--by-name"},
             {"grid", "--by-name", "--json", "--course", kDemo + "/"},
             {"--json", "grid", "--course", kDemo + "/./", "--by-name"},
         }) {
        SCOPED_TRACE(testing::PrintToString(arguments));
        auto result = RunCli(arguments);
        EXPECT_EQ(result.status, 0) << result.err;
        EXPECT_EQ(result.out, reference.out);
    }
}

// The edits of set-scores act in the order given, across options: each --question moves the
// screen, and the --title/--correct/--points after it act on that question. The log saved reads
// back as the command showed it.
TEST(Cli, SetScoresEditsKeepTheirOrder) {
    struct Case {
        std::vector<std::string> edits;
        std::vector<std::pair<std::string, int>> questions;  // name and correct answer, 1..4
        std::vector<std::string> shown = {};                 // parts of the JSON printed
    };
    const std::vector<Case> cases = {
        {{"--question", "3", "--title=-x", "--question", "1", "--correct", "B"},
         {{"CIRCULAR MOTION", 2}, {"CENTRIPETAL FORCE", 4}, {"-X", 1}, {"ORBITS", 5}}},
        {{"--question", "4", "--title", "first", "--question", "3", "--title", "second"},
         {{"CIRCULAR MOTION", 4}, {"CENTRIPETAL FORCE", 4}, {"SECOND", 1}, {"FIRST", 5}}},
        {{"--title", "one", "--question=4", "--correct", "--", "--question", "1", "--correct", "C"},
         {{"ONE", 3}, {"CENTRIPETAL FORCE", 4}, {"BANKED CURVE", 1}, {"ORBITS", 0}}},
        {{"--participation", "0.5", "--question", "1", "--correct", "b", "--points", "0,2,1,0,0",
          "--title", "Inertia"},
         {{"INERTIA", 2}, {"CENTRIPETAL FORCE", 4}, {"BANKED CURVE", 1}, {"ORBITS", 5}},
         {"\"participation\": 0.5,", "\"written\": true",
          "\"points\": [\n        0.0,\n        2.0,\n        1.0,\n        0.0,\n        0.0\n"}},
    };
    for (const Case& test : cases) {
        DemoCopy course;
        auto result = test::RunCliOn(course.Path(), {"set-scores", "7", "--json"}, test.edits);
        SCOPED_TRACE(testing::PrintToString(test.edits));
        ASSERT_EQ(result.status, 0) << result.err;
        for (const std::string& part : test.shown) EXPECT_TRUE(test::Holds(result.out, part));
        json printed = json::parse(result.out);
        std::vector<std::pair<std::string, int>> questions;
        for (const json& q : printed["questions"]) questions.push_back({q["name"], q["correct"]});
        EXPECT_EQ(questions, test.questions);
        for (const char* written : {"written", "files", "unsaved"}) printed.erase(written);
        EXPECT_EQ(json::parse(RunCli({"--course", course.Path(), "session", "7", "--json"}).out),
                  printed);
    }
}

// rewrite N is Set Scores opened and saved with no edit: the very bytes of set-scores N.
TEST(Cli, RewriteWritesWhatSetScoresWithoutEditsWrites) {
    DemoCopy demo;
    TempCourse deleted;
    deleted.WriteLog("L2609081000.csv",
                     {.questions = {{"Q1|Y"}, {"Q2|Y", {0, 1, 0, 0, 0}}},
                      .voters = {{"#A1", "", {"A", "B"}}, {"#B2", "", {"C", ""}}}});
    for (const auto& [folder, sessions] :
         {std::pair<const TempCourse&, int>{demo, 9}, {deleted, 1}}) {
        TempCourse bySetScores;
        bySetScores.CopyFrom(folder.Path());
        for (int s = 1; s <= sessions; ++s) {
            auto rewrite = RunCli({"--course", folder.Path(), "rewrite", std::to_string(s)});
            ASSERT_EQ(rewrite.status, 0) << s << rewrite.err;
            EXPECT_TRUE(rewrite.out.empty());
            auto set = RunCli({"--course", bySetScores.Path(), "set-scores", std::to_string(s)});
            ASSERT_EQ(set.status, 0) << s << set.err;
        }
        EXPECT_EQ(test::FolderFiles(folder.Path()), test::FolderFiles(bySetScores.Path()));
    }
    EXPECT_TRUE(test::BeginsWith(deleted.Read("SessionData/L2609081000.csv"),
                                 "Scoring,  Performance =  10 , Participation =  0 ,"));

    // With --json, only the messages are printed, and the files not saved: none.
    json printed = json::parse(RunCli({"--course", demo.Path(), "rewrite", "1", "--json"}).out);
    EXPECT_EQ(printed.size(), 2u);
    EXPECT_EQ(printed["unsaved"], json::array());
}

// The conventions every later command relies on: files and programs named relative to the course
// folder, once each, in first-write order; questions answered from the command line; the extra
// JSON keys only when asked for. (Option dialogs: the report commands' --filter and --cancel.)
TEST(ConsoleHost, AnswersAndListsAsTheCommandLineSays) {
    cli::Context context;
    context.json = true;
    cli::ConsoleHost& host = context.host;
    host.appPath = "/courses/Physics 101";
    host.printClipboard = false;

    for (const char* path :
         {"/courses/Physics 101/SessionData/L2609081000.csv", "Export.csv",
          "/courses/Physics 101/SessionData/L2609081000.csv",
          "/courses/Physics 101/Reports/../Reports/Index.htm", "./Export.csv", "/elsewhere/x.txt"})
        host.FileWritten(path);
    EXPECT_EQ(host.FilesJson(), json({"SessionData/L2609081000.csv", "Export.csv",
                                      "Reports/Index.htm", "/elsewhere/x.txt"}));

    host.StartProgram("/courses/Physics 101/Campus Bridgeline.exe", "upload");
    EXPECT_EQ(host.StartedJson(), json({"Campus Bridgeline.exe upload"}));

    // --yes, --no or neither: the answer to each kind of question.
    using Yes = std::optional<bool>;
    for (auto [yes, buttons, answer] : {std::tuple{Yes{}, Buttons::OkCancel, Answer::Cancel},
                                        {true, Buttons::OkCancel, Answer::Ok},
                                        {false, Buttons::YesNo, Answer::No},
                                        {true, Buttons::YesNo, Answer::Yes}}) {
        host.answerYes = yes;
        EXPECT_EQ(host.Message("Sure?", "Question", Icon::Question, buttons), answer);
    }

    EXPECT_TRUE(host.ClipboardJson().is_null());
    host.SetClipboardText("Ames\tAnn\r\n");

    testing::internal::CaptureStdout();
    cli::Print(context, {{"purged", json::array()}}, "", {.files = true, .clipboard = true});
    json printed = json::parse(testing::internal::GetCapturedStdout());
    EXPECT_EQ(printed.size(), 5u);  // purged, files, clipboard, messages, unsaved; no "started"
    EXPECT_EQ(printed["unsaved"], json::array());
    EXPECT_EQ(printed["files"], host.FilesJson());
    EXPECT_EQ(printed["clipboard"], "Ames\tAnn\r\n");
    EXPECT_EQ(printed["messages"].size(), 4u);  // the questions above
}

}  // namespace
}  // namespace tallory
