#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "TestSupport.h"
#include "common/RunTimeError.h"
#include "grid/CourseLoad.h"
#include "reports/Reports.h"
#include "reports/RunReports.h"
#include "scoring/Grading.h"

namespace tallory {
namespace {

namespace fs = std::filesystem;
using test::ReadBytes;

// The sample course of these tests lies in a folder of a fixed name, which the term pages link
// through.
constexpr const char* kCourseFolder = "OpticsLab";

struct LoadedSample {
    test::TempCourse temp;
    Course course;
    RecordingHost host;
    std::string path;

    explicit LoadedSample(const std::string& source = test::DataPath("reports/course"),
                          const std::string& folder = kCourseFolder) {
        path = temp.Path() + "/" + folder;
        fs::copy(source, path, fs::copy_options::recursive);
        course.AppPath = path;
        HeadlessScreen screen;
        LoadCourse(course, host, screen, ReadOnlyLoad());
        host = RecordingHost();
    }

    std::string Read(const std::string& relative) const { return ReadBytes(path + "/" + relative); }
    bool Exists(const std::string& relative) const { return fs::exists(path + "/" + relative); }
};

// --- the writing rules -------------------------------------------------------------------------
// (How numbers are written: the golden pages below, and the number texts of common_test.)

TEST(PageWriter, HeadsAndTailWriteNothingOnAPageThatDidNotOpenButItemsEndTheRun) {
    Course course;
    course.AppPath = "/nowhere/Optics";
    RecordingHost host;
    MemoryPageOutput output;
    output.refuse = true;
    PageWriter page(course, host, output);
    page.Open("/nowhere/Optics/x.html");
    ASSERT_EQ(host.messages.size(), 1u);
    EXPECT_EQ(std::tuple(host.messages[0].text, host.messages[0].buttons),
              std::tuple("Error opening html summary file", Buttons::Ok));
    page.SessionHead("Session");
    page.TermHead("Term");
    page.Tail();
    // A line on an unopened page ends the run.
    EXPECT_EQ(test::EndingOf([&] { page.Line("<table>"); }).number, kBadFileNameOrNumber);
    EXPECT_TRUE(output.pages.empty());
}

TEST(PageWriter, AnswerLettersFollowTheirPlaceInTheLetterRow) {
    const std::pair<long, const char*> cases[] = {{0, " "}, {1, "A"}, {5, "E"},
                                                  {6, " "}, {7, ""},  {30, ""}};
    for (auto [code, letter] : cases) EXPECT_EQ(AnswerLetter(code), letter) << code;
    EXPECT_THROW(AnswerLetter(-1), RunTimeError);
}

TEST(PageWriter, StudentDisplayNameInEveryMode) {
    Course course;
    course.Roster[0] = {" s01 ", "", " Ada ", " Adams ", 0, ""};
    course.Roster[1] = {"s02", "", "Ben", "Brown", 0, ""};
    course.Roster[2] = {"s03", "", "", "", 0, ""};          // no names at all
    course.Roster[4] = {"s05", "", "Eve", "Evans", 0, ""};  // behind the empty row 3
    course.NumRoster = 5;
    course.RemoteTable[1] = {"S01", " 1a0001 "};
    course.RemoteTable[2] = {"s01", "1A0002"};
    course.NumRemotes = 2;
    // clang-format off
    const std::tuple<int, const char*, const char*> cases[] = {
        {0, "s01", "Adams, Ada, s01"}, {1, "S01", "Adams, s01"}, {2, "s01", "s01"},
        {3, "s01", "Adams, Ada"},      {4, "s01", "1A0001"},     {4, "s02", "s02"},
        {0, "s03", ", , s03"},         {3, "s03", ","},          {1, " s09 ", "s09"},
        {0, "s05", "s05"},             {0, "   ", ""},           {7, "s02", "s02"},
    };
    // clang-format on
    RecordingHost host;
    MemoryPageOutput output;
    for (const auto& [mode, id, shown] : cases) {
        course.ReportDisplayMode = static_cast<int16_t>(mode);
        EXPECT_EQ(PageWriter(course, host, output).StudentDisplayName(id), shown) << mode << id;
    }
}

// --- the golden pages --------------------------------------------------------------------------

// Each run's pages, byte for byte: the folder under tests/data/reports/pages holds them by their
// paths in the course folder.
TEST(Reports, PagesAreByteForByteTheGolden) {
    // The demo course or the sample course of these tests, the display mode, the pages' folder.
    const std::tuple<bool, int, const char*> runs[] = {
        {false, 0, "names"}, {false, 2, "id-only"}, {false, 4, "remote"}, {true, 0, "demo"}};
    for (const auto& [demo, mode, folder] : runs) {
        LoadedSample sample =
            demo ? LoadedSample(test::DemoCourse(), "demo-course") : LoadedSample();
        sample.host.option = OptionChoice{mode, false};
        ASSERT_EQ(RunReports(sample.course, sample.host), ReportRunEnd::Written);
        const std::string golden = test::DataPath(std::string("reports/pages/") + folder);
        for (const auto& [page, bytes] : test::FolderFiles(golden)) {
            if (std::getenv("TALLORY_UPDATE_GOLDEN"))
                std::ofstream(golden + "/" + page, std::ios::binary) << sample.Read(page);
            else
                EXPECT_EQ(sample.Read(page), bytes) << folder << "/" << page;
        }
    }
}

// --- the commands ------------------------------------------------------------------------------

TEST(RunReports, WritesEveryPageInOrderAndTakesTheChosenMode) {
    LoadedSample sample;
    sample.host.option = OptionChoice{3, false};
    ASSERT_EQ(RunReports(sample.course, sample.host), ReportRunEnd::Written);
    EXPECT_EQ(sample.course.ReportDisplayMode, 3);
    ASSERT_EQ(sample.host.dialogs.size(), 1u);
    const OptionDialog& dialog = sample.host.dialogs[0];
    EXPECT_EQ(std::tuple(dialog.title, dialog.acceptCaption, dialog.preselected),
              std::tuple("HTML Report Display Preferences", "Submit", 2));
    std::vector<std::string> written;
    for (const std::string& file : sample.host.written)
        written.push_back(file.substr(sample.path.size() + 1));
    const std::vector<std::string> expected = {
        "Reports/SessionSummary_1.html",        "Reports/SessionDetail_1.html",
        "Reports/SessionSummary_2.html",        "Reports/SessionDetail_2.html",
        "Reports/SessionSummary_3.html",        "Reports/SessionDetail_3.html",
        "Term_Session Summary and Review.html", "Student Voting Data.html",
        "Reports/StudentTermReport.html"};
    EXPECT_EQ(written, expected);
    EXPECT_TRUE(sample.host.messages.empty());
    EXPECT_EQ(std::tuple(sample.host.progressShown, sample.host.progressHidden), std::tuple(1, 1));
    const std::vector<std::string> texts(sample.host.progressTexts.begin() + 2,
                                         sample.host.progressTexts.begin() + 4);
    EXPECT_EQ(texts, (test::Strings{"Checking Session Information - 3 Of 3",
                                    "Gathering Lecture Summary - 1 Of 3"}));

    // The summary dialog's links open the pages just written.
    ReportSummaryScreen summary(sample.course, sample.host);
    for (int link = 0; link < ReportSummaryScreen::kLinks; ++link) summary.LinkClick(link);
    ASSERT_EQ(sample.host.opened.size(), 3u);
    for (const std::string& page : sample.host.opened) EXPECT_TRUE(fs::exists(page)) << page;
    EXPECT_EQ(sample.host.opened[1], sample.path + "/Student Voting Data.html");
    EXPECT_TRUE(test::Holds(summary.controls().lblFolder.text, " '" + sample.path + "'  Folder"));
}

TEST(RunReports, StopsBeforeWritingAnything) {
    for (bool reportsIsAFile : {true, false}) {
        // A file named Reports, or a dialog cancelled, which still sets the mode.
        SCOPED_TRACE(reportsIsAFile ? "a file named Reports" : "a cancelled dialog");
        LoadedSample sample;
        if (reportsIsAFile) std::ofstream(sample.path + "/REPORTS") << "x";
        sample.course.ReportDisplayMode = 1;
        sample.host.option = OptionChoice{4, !reportsIsAFile};
        EXPECT_EQ(RunReports(sample.course, sample.host),
                  reportsIsAFile ? ReportRunEnd::NoReportsFolder : ReportRunEnd::Cancelled);
        EXPECT_EQ(sample.course.ReportDisplayMode, reportsIsAFile ? 1 : 4);
        EXPECT_TRUE(sample.host.written.empty());
        EXPECT_EQ(sample.host.progressShown, 0);
        EXPECT_EQ(sample.host.dialogs.empty(), reportsIsAFile);
        if (reportsIsAFile) {
            EXPECT_EQ(test::Messages(sample.host),
                      test::Strings{"[Folder Not Found] Unable to create 'Reports' Folder access "
                                    "denied"});
            EXPECT_EQ(sample.host.messages[0].icon, Icon::Information);
        }
    }
}

// A page that cannot be opened: two pages written, the message, the run-time error, nothing after.
TEST(RunReports, APageThatCannotBeOpenedEndsTheRunThere) {
    for (bool term : {true, false}) {
        SCOPED_TRACE(term ? "term reports without a Reports folder"
                          : "a folder where the second session's summary goes");
        LoadedSample sample;
        if (!term) fs::create_directories(sample.path + "/Reports/SessionSummary_2.html");
        const test::Ending ending = test::EndingOf([&] {
            if (term)
                RunTermReports(sample.course, sample.host);
            else
                RunReports(sample.course, sample.host);
        });
        EXPECT_EQ(ending.number, kBadFileNameOrNumber);
        ASSERT_EQ(sample.host.messages.size(), 1u);
        EXPECT_EQ(sample.host.messages[0].text, "Error opening html summary file");
        EXPECT_EQ(sample.host.written.size(), 2u);
        if (term) {
            EXPECT_TRUE(sample.host.dialogs.empty());
            EXPECT_FALSE(sample.Exists("Reports"));
            EXPECT_EQ(sample.host.progressTexts.back(), "Student Term Report Report 1 Of 3");
        } else {
            EXPECT_FALSE(sample.Exists("Reports/SessionDetail_2.html"));
            EXPECT_FALSE(sample.Exists("Term_Session Summary and Review.html"));
        }
    }
}

TEST(RunTermReports, TheLiveTestLooksAtTheSessionReadBefore) {
    // Session 2's title carries the deletion mark. Each session is tested on the tables as the
    // session read before left them, so once session 2 has been read no later session passes,
    // and the second pass starts on session 2's tables: the term page has no row at all. The
    // voting data has a row for every session, measured against nothing.
    test::TempCourse source;
    source.CopyFrom(test::DataPath("reports/course"));
    std::string text = source.Log("L2601051400.csv");
    text.replace(text.find(",\"\"\r\n"), 5, ",\"Dropped|Y\"\r\n");
    source.Write("SessionData/L2601051400.csv", text);
    LoadedSample sample(source.Path());

    // The session in the tables when the command starts, and whether the first pass read anything.
    for (auto [lastRead, termPointsCounted] : {std::pair{1, true}, {2, false}}) {
        SCOPED_TRACE(lastRead);
        OpenSession(sample.course, lastRead);
        MemoryPageOutput output;
        PageWriter page(sample.course, sample.host, output);
        WriteTermSummary(sample.course, page);
        const std::string& term = output.pages.at(TermSummaryPath(sample.course));
        const std::string& voting = output.pages.at(StudentVotingDataPath(sample.course));
        auto count = [](const std::string& html, const std::string& what) {
            int found = 0;
            for (size_t at = html.find(what); at != std::string::npos; at = html.find(what, at + 1))
                ++found;
            return found;
        };
        EXPECT_EQ(count(term, "SessionSummary_"), 0);
        EXPECT_EQ(count(voting, "SessionDetail_"), 3);
        EXPECT_EQ(term.find("for Term: <B>0.00</B>") == std::string::npos, termPointsCounted);
        if (!termPointsCounted) {
            EXPECT_EQ(count(voting, "\">0% </font></td>"), 3);
        }
    }
}

// --by-name loads the course in last-name order, as the grid shows it, and the pages list the
// students in that order.
TEST(ReportCommands, ListStudentsInTheGridsOrder) {
    const std::string demo = test::DemoCourse();
    for (const char* command : {"report", "term-report"}) {
        for (bool byName : {false, true}) {
            test::TempCourse course;
            course.CopyFrom(demo);
            fs::create_directory(course.File("Reports"));
            const test::Strings more = byName ? test::Strings{"--by-name"} : test::Strings{};
            const test::CliResult grid = test::RunCliOn(course.Path(), {"grid", "--json"}, more);
            const test::CliResult run = test::RunCliOn(course.Path(), {command}, more);
            ASSERT_EQ(run.status, 0) << command << run.err;
            std::vector<std::string> expected;
            const nlohmann::json shown = nlohmann::json::parse(grid.out);
            for (const auto& student : shown["students"])
                if (student["id"].get<std::string>()[0] != '#') expected.push_back(student["id"]);
            // Each roster student's ID, in the order of its first appearance on the page.
            const std::string page = ReadBytes(course.File("Reports/StudentTermReport.html"));
            const auto at = [&](const std::string& id) { return page.find(id); };
            std::vector<std::string> listed = expected;
            std::ranges::sort(listed, {}, at);
            std::erase_if(listed,
                          [&](const std::string& id) { return at(id) == std::string::npos; });
            EXPECT_EQ(listed, expected) << command << (byName ? " --by-name" : "");
        }
    }
}

}  // namespace
}  // namespace tallory
