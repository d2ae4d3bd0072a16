#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>

#include "LogText.h"
#include "TestSupport.h"

namespace tallory {
namespace {

using nlohmann::json;
using test::RunCli;
using test::TempCourse;

std::string DemoCourse() {
    return std::string(TALLORY_SOURCE_DIR) + "/examples/demo-course";
}

// Every file below a folder with its bytes, to show that a command wrote nothing.
std::map<std::string, std::string> Snapshot(const std::string& folder) {
    std::map<std::string, std::string> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
        if (entry.is_regular_file()) files[entry.path().string()] = test::ReadBytes(entry.path());
    return files;
}

TEST(Cli, GridOfTheDemoCourse) {
    auto before = Snapshot(DemoCourse());
    auto result = RunCli({"--course", DemoCourse(), "grid", "--json"});
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(Snapshot(DemoCourse()), before);  // read-only: no image moved, no version stamped
    json grid = json::parse(result.out);
    EXPECT_EQ(grid["course"], "Physics 101 - Mechanics");
    EXPECT_EQ(grid["cms"], "General");
    ASSERT_EQ(grid["sessions"].size(), 9u);
    EXPECT_EQ(grid["sessions"][2]["label"], "09/15/2026");
    EXPECT_EQ(grid["sessions"][3]["label"], "09/15/2026-2");
    EXPECT_EQ(grid["sessions"][4]["label"], "Midterm review");

    const json& students = grid["students"];
    bool seenStray = false;
    for (const json& student : students) {
        std::string id = student["id"];
        bool stray = id[0] == '#';
        EXPECT_TRUE(stray || !seenStray) << "registered student " << id << " after a stray clicker";
        seenStray = seenStray || stray;
        double sum = 0;
        for (const json& score : student["scores"])
            if (!score.is_null()) sum += score.get<double>();
        EXPECT_NEAR(student["total"].get<double>(), sum, 1e-9) << id;
    }
    EXPECT_TRUE(seenStray);
    auto neverVoted = std::find_if(students.begin(), students.end(),
                                   [](const json& s) { return s["id"] == "20260220"; });
    ASSERT_NE(neverVoted, students.end());
    EXPECT_EQ((*neverVoted)["remote"], "Unregistered");
    EXPECT_EQ((*neverVoted)["last"], "Rossi");
    for (const json& score : (*neverVoted)["scores"]) EXPECT_TRUE(score.is_null());

    ASSERT_FALSE(grid["messages"].empty());
    EXPECT_EQ(grid["messages"][0]["title"],
              "Warning - Multiple clickers Registered with one Student");
    EXPECT_EQ(grid["messages"][0]["icon"], "exclamation");

    auto byName = RunCli({"--course", DemoCourse(), "grid", "--by-name", "--json"});
    ASSERT_EQ(byName.status, 0);
    // The bare-ID roster line has its ID for a last name, so it sorts before the letters.
    EXPECT_EQ(json::parse(byName.out)["students"][0]["last"], "20269930");
    EXPECT_EQ(json::parse(byName.out)["students"][1]["last"], "Alvarez");
}

TEST(Cli, SessionMatchesTheLogReadAlone) {
    auto session = RunCli({"--course", DemoCourse(), "session", "6", "--json"});
    ASSERT_EQ(session.status, 0) << session.err;
    json scored = json::parse(session.out);
    EXPECT_EQ(scored["file"], "L2609221000.csv");
    EXPECT_TRUE(scored["questions"][2]["anonymous"].get<bool>());
    auto log = RunCli(
        {"--course", DemoCourse(), "log", DemoCourse() + "/SessionData/L2609221000.csv", "--json"});
    ASSERT_EQ(log.status, 0) << log.err;
    json alone = json::parse(log.out);
    EXPECT_EQ(alone["number"], 0);
    EXPECT_EQ(alone["voters"], scored["voters"]);
    EXPECT_EQ(alone["questions"], scored["questions"]);
}

TEST(Cli, RewriteTwiceGivesTheSameBytes) {
    TempCourse course;
    std::filesystem::copy(DemoCourse(), course.Path(), std::filesystem::copy_options::recursive);
    std::string log = "SessionData/L2609241000.csv";
    ASSERT_EQ(RunCli({"--course", course.Path(), "rewrite", "7"}).status, 0);
    std::string once = course.Read(log);
    EXPECT_NE(once, test::ReadBytes(DemoCourse() + "/" + log));
    ASSERT_EQ(RunCli({"--course", course.Path(), "rewrite", "7"}).status, 0);
    EXPECT_EQ(course.Read(log), once);
    EXPECT_NE(once.find("Min Correct =  0 ,"), std::string::npos);
    EXPECT_NE(once.find("\"BANKED CURVE\""), std::string::npos);
    EXPECT_NE(once.find("\"CENTRIPETAL FORCE|Y\""), std::string::npos);
    EXPECT_NE(once.back(), '\n');  // the last line stays open

    // The answers survive the rewrite; the requirement of a correct answer for participation
    // points does not, since the writer stores Min Correct 0.
    json original = json::parse(RunCli({"--course", DemoCourse(), "session", "7", "--json"}).out);
    json rewritten = json::parse(RunCli({"--course", course.Path(), "session", "7", "--json"}).out);
    EXPECT_EQ(original["min_correct"], 1);
    EXPECT_EQ(rewritten["min_correct"], 0);
    ASSERT_EQ(original["voters"].size(), rewritten["voters"].size());
    for (size_t v = 0; v < original["voters"].size(); ++v)
        EXPECT_EQ(original["voters"][v]["answers"], rewritten["voters"][v]["answers"]);
}

TEST(Cli, BadTotalEndsWithTypeMismatchAndWritesNothing) {
    TempCourse course;
    test::LogPlan plan;
    plan.voters = {{"#A1", "", {"A"}}};
    std::string text = test::LogText(plan) + "#A2, ,abc,A , 1 , 5 , 1 ,A , 5 ,\r\n";
    course.Write("SessionData/L2609081000.csv", text);
    auto before = Snapshot(course.Path());
    for (auto arguments : std::vector<std::vector<std::string>>{
             {"--course", course.Path(), "grid", "--json"},
             {"--course", course.Path(), "log", course.File("SessionData/L2609081000.csv")}}) {
        auto result = RunCli(arguments);
        EXPECT_EQ(result.status, 1);
        EXPECT_NE(result.err.find("Run-time error '13': Type mismatch"), std::string::npos)
            << result.err;
        EXPECT_NE(result.err.find("L2609081000.csv"), std::string::npos) << result.err;
        EXPECT_NE(result.err.find("line 12"), std::string::npos) << result.err;
    }
    EXPECT_EQ(Snapshot(course.Path()), before);
}

TEST(Cli, UsageErrorsExitWithTwo) {
    TempCourse course;
    for (auto arguments :
         std::vector<std::vector<std::string>>{{},
                                               {"frobnicate"},
                                               {"--course", course.Path(), "session", "1"},
                                               {"--course", course.Path(), "grid", "--sideways"}}) {
        auto result = RunCli(arguments);
        EXPECT_EQ(result.status, 2) << (arguments.empty() ? "" : arguments.back());
        EXPECT_FALSE(result.err.empty());
    }
}

TEST(Cli, CourseWithoutRosterOrRegistrationsStillOpens) {
    TempCourse course;
    test::LogPlan plan;
    plan.voters = {{"#00A1", "", {"A"}}, {"B2", "S9", {"B"}}};
    course.Write("SessionData/L2609081000.csv", test::LogText(plan));
    auto result = RunCli({"--course", course.Path(), "grid", "--json"});
    ASSERT_EQ(result.status, 0) << result.err;
    json grid = json::parse(result.out);
    ASSERT_EQ(grid["students"].size(), 2u);
    EXPECT_EQ(grid["students"][0]["id"], "S9");
    EXPECT_EQ(grid["students"][1]["id"], "#A1");
    EXPECT_EQ(grid["course"], std::filesystem::path(course.Path()).filename().string());
}

}  // namespace
}  // namespace tallory
