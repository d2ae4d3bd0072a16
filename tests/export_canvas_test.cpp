#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include <filesystem>

#include "SupportForFiles.h"
#include "TestSupport.h"
#include "common/RecordingHost.h"
#include "export/Export.h"
#include "export/ExportFormat.h"
#include "registration/Roster.h"
#include "start/Settings.h"

namespace tallory {
namespace {

using test::DataPath;
using test::LogPlan;
using test::LogVoter;
using test::ReadBytes;

constexpr char kGradeBook[] = "2026-09-20T1030_Grades-BIO_110.csv";
constexpr char kUpload[] = "CanvasUpload.csv";

std::string CanvasData(const std::string& name) {
    return ReadBytes(DataPath("export/canvas/" + name));
}

// The lines of a text with CR LF line ends (the last one ended too).
std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    size_t start = 0;
    for (size_t end; (end = text.find("\r\n", start)) != std::string::npos; start = end + 2)
        lines.push_back(text.substr(start, end - start));
    EXPECT_EQ(start, text.size()) << "the last line has no CR LF";
    return lines;
}

LogPlan Session(std::string title, std::vector<LogVoter> voters) {
    LogPlan plan = test::QuestionsPlan(2);
    plan.title = std::move(title);
    plan.voters = std::move(voters);
    return plan;
}

// Biology 110 (tests/data/export/canvas/course) with five sessions: an untitled one whose column
// the grade book already has, "Final Grade review", two untitled ones of the same day and "Final
// grade review". Student 20260108 is in the grade book and never voted; wchen has no SIS User ID;
// 20269999 voted and is not in the grade book; #BEEF is nobody's clicker.
struct BiologyCourse : test::LoadedCourse {
    explicit BiologyCourse(bool gradeBook = true) {
        CopyFrom(DataPath("export/canvas/course"));
        if (!gradeBook) std::filesystem::remove(File(kGradeBook));
    }

    std::vector<UploadColumn> Export(bool all, const std::optional<CanvasChoice>& choice) {
        host.messages.clear();
        if (all) return ExportAll(course, host, "CANVAS", choice);
        return ExportSelected(course, host, "CANVAS", choice);
    }
    std::vector<std::string> Upload() const { return Lines(Read(kUpload)); }
};

// ---- Golden uploads: each layout from export all and from export selected (sessions 2 and 4).

TEST(ExportCanvas, TheUploadCanvasImports) {
    const std::tuple<bool, CanvasChoice, const char*, std::vector<std::pair<std::string, double>>>
        cases[] = {
            // clang-format off
            {true, {false, false}, "all.sessions.blank.expected",
             {{"Clicker 09/08/2026 (4107)", 3}, {"Clicker Final-Grade review", 3},
              {"Clicker 09/15/2026", 3}, {"Clicker 09/15/2026-2", 3}, {"Clicker Final-grade review-2", 3}}},
            {true, {true, true}, "all.total.zero.expected", {{"Clicker Total", 15}}},
            {false, {false, true}, "selected.sessions.zero.expected",
             {{"Clicker Final-Grade review", 3}, {"Clicker 09/15/2026-2", 3}}},
            {false, {true, false}, "selected.total.blank.expected", {{"Clicker Total", 6}}},
            // clang-format on
        };
    for (const auto& [all, choice, expected, headings] : cases) {
        SCOPED_TRACE(expected);
        BiologyCourse biology;
        biology.Load();
        EXPECT_EQ(test::Messages(biology.host), test::Strings{}) << "at course start";
        biology.course.ExportSel[2] = biology.course.ExportSel[4] = 1;
        const std::vector<UploadColumn> columns = biology.Export(all, choice);
        EXPECT_EQ(biology.Read(kUpload), CanvasData(expected));
        std::vector<std::pair<std::string, double>> seen;
        for (const UploadColumn& column : columns) seen.emplace_back(column.title, column.points);
        EXPECT_EQ(seen, headings);
        EXPECT_EQ(biology.host.written, std::vector<std::string>{biology.File(kUpload)});
        ASSERT_EQ(biology.host.messages.size(), 1u);
        EXPECT_TRUE(biology.host.messages[0].text.starts_with("Wrote the Canvas upload file " +
                                                              biology.File(kUpload) + "\r\n"));
        EXPECT_TRUE(test::Holds(biology.host.messages[0].text, "open Grades, choose Import"));
        EXPECT_TRUE(biology.host.dialogs.empty());
        EXPECT_TRUE(biology.host.started.empty());
    }
}

// The grade book is the roster when the course opens: its names in the grid, SIS User ID or else
// SIS Login ID as the student ID, rows without either (the test student) left out.
TEST(ExportCanvas, TheGradeBookIsTheRoster) {
    BiologyCourse biology;
    biology.Load(DisplayOrder::LastName);
    EXPECT_EQ(FindExportFormat("canvas").caption, "Canvas");
    EXPECT_EQ(biology.course.NumRosterIDs, 5);
    const RosterRec chen = GetRosterEntry(biology.course, "WCHEN");
    EXPECT_EQ(chen.LastName + "|" + chen.FirstName, "Chen|Wei");
    // The course start takes quotes out of every roster name.
    const RosterRec okafor = GetRosterEntry(biology.course, "20260122");
    EXPECT_EQ(okafor.LastName + "|" + okafor.FirstName, "Okafor|Chidi CJ");
    EXPECT_EQ(GetRosterEntry(biology.course, "").StudentId, "");
    // By name: the unknown student (no name) first, the clicker of nobody last.
    EXPECT_EQ(biology.StudentIds(), (test::Strings{"20269999", "20260101", "20260108", "wchen",
                                                   "20260129", "20260122", "#BEEF"}));
    biology.Export(true, CanvasChoice{});
    const std::vector<std::string> lines = biology.Upload();
    ASSERT_EQ(lines.size(), 8u);
    EXPECT_TRUE(lines[2].starts_with(",,20269999,,,")) << lines[2];
    EXPECT_TRUE(lines[7].starts_with("\"Okafor, Chidi \"\"CJ\"\"\",5104,20260122,cokafor,"))
        << lines[7];
}

// ---- Headings: what Canvas would ignore or misread never reaches it, no two are alike, and a
// column the grade book has is named as there.

TEST(ExportCanvas, SessionTitlesBecomeHeadingsCanvasTakes) {
    struct Case {
        std::vector<std::string> titles;  // of sessions 1, 2, ... ("" untitled: the date)
        const char* gradeBookColumns;     // after the identifying columns
        const char* headings;             // after them in the upload
    } cases[] = {
        // clang-format off
        {{"Final Grade review", "current score check", "OVERRIDE STATUS", "Final Scores"}, "",
         ",Clicker Final-Grade review,Clicker current-score check,Clicker OVERRIDE-STATUS,Clicker Final-Scores"},
        {{"Override points", "Finalgrade", "Final  Grade"}, "",
         ",Clicker Override-points,Clicker Finalgrade,Clicker Final  Grade"},
        {{"Review", "review", "Review-2", "REVIEW"}, "",
         ",Clicker Review,Clicker review-2,Clicker Review-2-2,Clicker REVIEW-3"},
        {{"", "", "Quiz (3)", "Quiz (x)"}, "",
         ",Clicker 09/01/2026,Clicker 09/01/2026-2,Clicker Quiz-(3),Clicker Quiz (x)"},
        {{"Ch. 3, forces", "Quiz 1", "", "Final Grade review"},
         ",Clicker quiz 1 (12),Clicker 09/01/2026-3 (13),Clicker Final-Grade review (14)",
         ",\"Clicker Ch. 3, forces\",Clicker quiz 1 (12),Clicker 09/01/2026-3 (13),Clicker Final-Grade review (14)"},
        // clang-format on
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.headings);
        test::LoadedCourse open;
        open.WriteSettings({{"CMS", "Canvas"}});
        open.WriteRemotes("#A1,\"S1\"\r\n");
        open.Write("grades.csv", std::string("Student,ID,SIS User ID,SIS Login ID,Section") +
                                     c.gradeBookColumns + "\r\n\"One, Sam\",1,S1,sone,A\r\n");
        // Sessions of one day, one an hour: the untitled ones are told apart by the date's count.
        for (size_t i = 0; i < c.titles.size(); ++i)
            open.WriteLog("L26090" + std::to_string(110 + i) + "00.csv",
                          Session(c.titles[i], {{"#A1", "S1", {"A", "A"}}}));
        open.Load();
        ExportAll(open.course, open.host, "CANVAS", CanvasChoice{});
        const std::vector<std::string> lines = Lines(open.Read(kUpload));
        ASSERT_FALSE(lines.empty());
        EXPECT_EQ(lines[0],
                  std::string("Student,ID,SIS User ID,SIS Login ID,Section") + c.headings);
    }
}

// ---- Cells: numbers Canvas reads in any locale (the golden uploads hold absences blank and 0).

TEST(ExportCanvas, NumbersHaveAPointAndAtMostFourDecimals) {
    const std::tuple<double, const char*> cases[] = {{12, "12"},
                                                     {7.5, "7.5"},
                                                     {1.0 / 3, "0.3333"},
                                                     {2.0 / 3, "0.6667"},
                                                     {1234567.5, "1234567.5"},
                                                     {1e21, "1000000000000000000000"},
                                                     {0.00004, "0"},
                                                     {-0.00004, "0"},
                                                     {-1.25, "-1.25"}};
    BiologyCourse biology;
    biology.Load();
    const int row = biology.Row("20260101");
    for (const auto& [score, cell] : cases) {
        SCOPED_TRACE(cell);
        biology.course.Students[row].Score[1] = score;
        biology.Export(true, CanvasChoice{});
        const std::vector<std::string> lines = biology.Upload();
        ASSERT_GE(lines.size(), 3u);
        EXPECT_TRUE(lines[2].starts_with(
            std::string("\"Alvarez, Maria\",5101,20260101,malvarez,BIO 110 - 001,") + cell + ","))
            << lines[2];
    }
}

// ---- Which grade book counts

TEST(ExportCanvas, TheNewestGradeBookCountsWhateverItsNameOrSeparator) {
    using std::filesystem::last_write_time;
    // Why, the file written last and its text, and S1's identifying cells in the upload.
    const std::tuple<const char*, const char*, const char*, const char*> cases[] = {
        {"a byte-order mark and \";\" separators, decimal commas and a quoted \";\"", "export.CSV",
         "\xEF\xBB\xBFStudent;ID;SIS User ID;SIS Login ID;Section;Quiz (12)\r\n"
         "Points Possible;;;;;12,5\r\n"
         "\"One; Sam\";101;S1;sone;\"Sec 1, 2\";10,5\r\n",
         "One; Sam,101,S1,sone,\"Sec 1, 2\""},
        {"commas in cells outnumber the semicolons", "commas.csv",
         "Student,ID,SIS Login ID,Section\n\"One, Sam\",102,S1,Sec;3\n",
         "\"One, Sam\",102,S1,S1,Sec;3"},
        {"a newer file that is no grade book is passed over", "UploadFile.csv",
         "Student ID, Total \r\n\"S1\", 3 \r\n", "\"Old, Sam\",100,S1,sold,Old"},
        {"an upload left in the folder is never the grade book", "CanvasUpload.csv",
         "Student,ID,SIS User ID,SIS Login ID,Section\r\n\"Up, Sam\",999,S1,,X\r\n",
         "\"Old, Sam\",100,S1,sold,Old"},
    };
    for (const auto& [why, newest, text, row] : cases) {
        SCOPED_TRACE(why);
        test::LoadedCourse open;
        open.WriteSettings({{"CMS", "canvas"}});
        open.WriteRemotes("#A1,\"S1\"\r\n");
        open.WriteLog("L2609011000.csv", Session("", {{"#A1", "S1", {"A", "A"}}}));
        open.Write(
            "old.csv",
            "Student,ID,SIS User ID,SIS Login ID,Section\r\n\"Old, Sam\",100,S1,sold,Old\r\n");
        open.Write(newest, text);
        last_write_time(open.File("old.csv"),
                        last_write_time(open.File(newest)) - std::chrono::hours(1));
        open.Load();
        ExportAll(open.course, open.host, "CANVAS", CanvasChoice{});
        const std::vector<std::string> lines = Lines(open.Read(kUpload));
        ASSERT_EQ(lines.size(), 3u);
        EXPECT_TRUE(lines[2].starts_with(std::string(row) + ",")) << lines[2];
    }
}

// Without a grade book Roster.txt is the roster: the upload names the students from it and Canvas
// matches them by SIS User ID, which the done message explains. Without any student there is no
// upload.
TEST(ExportCanvas, WithoutAGradeBookRosterTxtIsTheRoster) {
    BiologyCourse biology(false);
    // A roster of the polling application's 8-bit text: the upload is UTF-8.
    biology.WriteRoster(
        "Alvarez,Maria,20260101\r\nChen,Wei,wchen\r\nO'Brien,Pat,20260140\r\n"
        "M\xFCller,J\xFCrgen,20260150\r\n");
    biology.Load();
    EXPECT_EQ(GetRosterEntry(biology.course, "wchen").LastName, "Chen");
    biology.Export(true, CanvasChoice{true, false});
    // Students who voted without a roster entry have no name; roster students who never voted
    // have no score.
    EXPECT_EQ(biology.Read(kUpload), CanvasData("roster-txt.total.blank.expected"));
    ASSERT_EQ(biology.host.messages.size(), 1u);
    EXPECT_TRUE(test::Holds(biology.host.messages[0].text, "No Canvas grade book was found"));

    test::LoadedCourse empty;
    empty.WriteSettings({{"CMS", "Canvas"}});
    empty.WriteLog("L2609011000.csv", Session("", {{"#A1", "", {"A", "A"}}}));
    empty.Load();
    ExportAll(empty.course, empty.host, "CANVAS", CanvasChoice{});
    EXPECT_EQ(test::Messages(empty.host),
              test::Strings{"[Tallory] No students found in the Canvas grade book or Roster.txt. "
                            "Grades not exported"});
    EXPECT_FALSE(empty.Exists(kUpload));
}

// ---- The desktop program asks for the layout, and the course remembers the answer.

TEST(ExportCanvas, TheExportDialogOffersTheLayoutsAndTheCourseRemembersTheChoice) {
    BiologyCourse biology;
    biology.Load();
    biology.host.option = OptionChoice{3, false};
    biology.Export(true, std::nullopt);
    ASSERT_EQ(biology.host.dialogs.size(), 1u);
    const OptionDialog& dialog = biology.host.dialogs[0];
    EXPECT_EQ(dialog.preselected, 0);
    EXPECT_EQ(dialog.choices[4], "") << "four layouts: the fifth button stays hidden";
    EXPECT_EQ(biology.Read(kUpload), CanvasData("all.total.zero.expected"));
    EXPECT_TRUE(
        test::Holds(biology.Read("SessionData/Config.csv"), "\"CanvasColumns\" ,\"Total\""));

    // The next course start preselects it; Cancel leaves upload and settings as they are.
    BiologyCourse again;
    again.Write("SessionData/Config.csv", biology.Read("SessionData/Config.csv"));
    again.Write(kUpload, "old");
    again.Load();
    again.host.option = OptionChoice{0, true};
    again.Export(false, std::nullopt);
    EXPECT_EQ(again.host.dialogs.size(), 0u) << "no session ticked";
    again.course.ExportSel[2] = 1;
    again.Export(false, std::nullopt);
    ASSERT_EQ(again.host.dialogs.size(), 1u);
    EXPECT_EQ(again.host.dialogs[0].preselected, 3);
    EXPECT_EQ(again.Read(kUpload), "old");
    EXPECT_EQ(again.Read("SessionData/Config.csv"), biology.Read("SessionData/Config.csv"));
    EXPECT_TRUE(again.host.messages.empty());
}

// An upload that cannot be written leaves nothing behind and says so in the exports' words.
TEST(ExportCanvas, AnUploadThatCannotBeWrittenIsReported) {
    BiologyCourse biology;
    biology.Load();
    std::filesystem::create_directory(biology.File(kUpload));
    const std::vector<UploadColumn> columns = biology.Export(true, CanvasChoice{});
    EXPECT_TRUE(columns.empty());
    ASSERT_EQ(biology.host.messages.size(), 1u);
    EXPECT_EQ(biology.host.messages[0].title, "Error");
    EXPECT_TRUE(biology.host.messages[0].text.starts_with(
        "The CanvasUpload.csv is already open (with write access by another program)."));
    EXPECT_TRUE(biology.host.written.empty());
}

// ---- tallory-cli: the layout from its options, the columns in its JSON; other formats' output
// keeps no "columns".

TEST(ExportCanvas, TheCommandLineGivesTheLayoutAndListsTheColumns) {
    BiologyCourse biology;
    const test::CliResult result = test::RunCliOn(
        biology.Path(), {"export", "selected", "--sessions", "2,4", "--canvas-columns", "total",
                         "--absent", "blank", "--json"});
    ASSERT_EQ(result.status, 0) << result.err;
    const nlohmann::json out = nlohmann::json::parse(result.out);
    EXPECT_EQ(out["files"], nlohmann::json::array({kUpload}));
    EXPECT_EQ(out["columns"],
              nlohmann::json::parse(R"([{"title": "Clicker Total", "points": 6}])"));
    EXPECT_EQ(out["started"], nlohmann::json::array());
    EXPECT_EQ(biology.Read(kUpload), CanvasData("selected.total.blank.expected"));
    ASSERT_EQ(out["messages"].size(), 1u);
    EXPECT_TRUE(out["messages"][0]["text"].get<std::string>().starts_with(
        "Wrote the Canvas upload file " + biology.Path() + "/CanvasUpload.csv"));

    // Defaults: a column per session, absences blank.
    const test::CliResult defaults = test::RunCliOn(biology.Path(), {"export", "all"});
    ASSERT_EQ(defaults.status, 0) << defaults.err;
    EXPECT_EQ(biology.Read(kUpload), CanvasData("all.sessions.blank.expected"));
    EXPECT_EQ(test::RunCliOn(biology.Path(), {"export", "all", "--absent", "none"}).status, 2);

    biology.WriteSettings({{"CMS", "General"}});
    biology.WriteRoster("Alvarez,Maria,20260101\r\n");
    const test::CliResult general =
        test::RunCliOn(biology.Path(), {"export", "all", "--canvas-columns", "total", "--json"});
    ASSERT_EQ(general.status, 0) << general.err;
    EXPECT_FALSE(nlohmann::json::parse(general.out).contains("columns"));
}

}  // namespace
}  // namespace tallory
