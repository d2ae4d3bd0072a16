// A preview runs a change on a copy: the course folder stays as it was, and what it lists is what
// the change, done for real afterwards, does to the grid.

#include <filesystem>
#include <random>
#include <set>
#include <tuple>

#include "TestSupport.h"
#include "grid/CourseLoad.h"
#include "preview/ChangePreview.h"
#include "scoring/SessionStore.h"

namespace tallory {
namespace {

using nlohmann::json;

// The files whose bytes differ, made or gone included, in name order.
std::vector<std::string> ChangedFiles(const test::Files& before, const test::Files& after) {
    std::vector<std::pair<std::string, std::string>> differing;
    std::ranges::set_symmetric_difference(before, after, std::back_inserter(differing));
    std::set<std::string> names;
    for (const auto& [name, bytes] : differing) names.insert(name);
    return {names.begin(), names.end()};
}

// A course of six roster students (S5 and S6 never vote), two clickers nobody registered (one of
// them registered on the web) and a handful of logs with answers drawn from `seed`.
void WriteCourse(const test::TempCourse& course, unsigned seed) {
    course.WriteRoster(
        "Adams,Ann,S1\r\nBaker,Bob,S2\r\nClark,Cy,S3\r\nDunn,Di,S4\r\nEvans,Eve,S5\r\nFox,,S6\r\n");
    course.WriteRemotes("#111,\"S1\"\r\n#222,\"S2\"\r\n#333,\"S3\"\r\n#444,\"S4\"\r\n");
    // WebSync reads its registrations from the course folder.
    course.WriteSettings({{"webcode", "local"}});
    course.Write("WebReg.dat", "99,Evans,Eve,S5\r\n");
    std::mt19937 random(seed);
    const char* const letters[] = {"A", "B", "C", "D", ""};
    const int logs = 3 + static_cast<int>(random() % 3);
    for (int day = 1; day <= logs; ++day) {
        test::LogPlan plan = test::QuestionsPlan(2);
        plan.minCorrect = 1;
        for (const char* remote : {"#111", "#222", "#333", "#444", "#99", "#ABC123"}) {
            if (random() % 4 == 0) continue;  // absent
            plan.voters.push_back({remote});
            for (int q = 0; q < 2; ++q) {
                test::LogAnswer& answer =
                    plan.voters.back().answers.emplace_back(letters[random() % 5]);
                answer.score = answer.letter == "A" ? 1 : 0;
            }
        }
        course.WriteLog(test::SeptemberLog(day), plan);
    }
}

json Json(const test::CliResult& result) {
    return json::parse(result.out.empty() ? "null" : result.out, nullptr, false);
}

using Cell = std::tuple<std::string, std::string, json, json>;  // id, session, before, after

// What the grid JSON of the course says changed, as (id, session label, before, after).
std::set<Cell> GridCells(const json& before, const json& after) {
    std::map<std::string, std::pair<json, json>> scores;  // by ID: before and after
    for (const json& student : before["students"]) scores[student["id"]].first = student["scores"];
    for (const json& student : after["students"]) scores[student["id"]].second = student["scores"];
    std::set<Cell> cells;
    for (auto& [id, both] : scores) {
        for (size_t s = 0; s < after["sessions"].size(); ++s) {
            const json from = both.first.is_null() ? json() : both.first[s];
            const json to = both.second.is_null() ? json() : both.second[s];
            if (from != to) cells.emplace(id, after["sessions"][s]["label"], from, to);
        }
    }
    return cells;
}

// For each command: --preview leaves every byte of the course as it was and lists exactly the
// cells and files that the same command, then run for real, changes.
TEST(PreviewCli, ListsWhatTheChangeThenDoes) {
    // What, the command, and whether it moves a figure of the grid (1), none (0) or either (-1).
    const std::tuple<const char*, std::vector<std::string>, int> cases[] = {
        {"purge one clicker", {"purge", "99", "--yes"}, 1},
        {"purge every clicker", {"purge", "--all", "--yes"}, 1},
        {"purge not confirmed", {"purge", "99"}, 0},
        {"purge by name", {"purge", "ABC123", "--yes", "--by-name"}, 1},
        {"student adds a stray clicker", {"student", "S5", "--add", "99"}, 1},
        {"student adds a clicker nobody used", {"student", "S6", "--add", "777"}, -1},
        {"student loses a clicker", {"student", "S2", "--remove-clicker", "222", "--yes"}, 1},
        {"stray clicker's logs deleted", {"student", "#ABC123", "--delete-logs", "--yes"}, 1},
        {"set-scores correct answer", {"set-scores", "2", "--question", "1", "--correct", "B"}, 1},
        {"set-scores participation", {"set-scores", "1", "--participation", "3"}, 1},
        {"websync registers a stray clicker", {"websync", "--answer", "accept"}, 1},
        {"set-scores refused edit", {"set-scores", "1", "--participation", "x"}, 0},
        {"set-scores question out of range", {"set-scores", "1", "--question", "9"}, 0},
    };
    for (unsigned seed : {1u, 2u, 3u}) {
        for (const auto& [what, command, changesScores] : cases) {
            SCOPED_TRACE(std::string(what) + ", seed " + std::to_string(seed));
            test::TempCourse course;
            WriteCourse(course, seed);
            const test::Files original = test::FolderFiles(course.Path());
            const json gridBefore = Json(test::RunCliOn(course.Path(), {"grid", "--json"}));

            const test::CliResult previewed =
                test::RunCliOn(course.Path(), command, {"--preview", "--json"});
            EXPECT_EQ(test::FolderFiles(course.Path()), original)
                << "the preview wrote in the course";

            const test::CliResult done = test::RunCliOn(course.Path(), command, {"--json"});
            EXPECT_EQ(previewed.status, done.status) << previewed.err;
            if (done.status == 2) continue;  // a usage error: neither ran
            const json document = Json(previewed), written = Json(done);
            ASSERT_TRUE(document.contains("preview")) << previewed.out << previewed.err;
            const json gridAfter = Json(test::RunCliOn(course.Path(), {"grid", "--json"}));

            // Each cell once, named from the roster (stray clickers have no name), in the grid's
            // order: rows, then sessions; a row the change makes stands where the grid puts it.
            std::map<json, size_t> row, column;
            for (const json& student : gridBefore["students"])
                row.emplace(student["id"], row.size());
            for (const json& session : gridBefore["sessions"])
                column.emplace(session["label"], column.size());
            std::set<Cell> listed;
            size_t last = 0;
            for (const json& change : document["preview"]["changes"]) {
                listed.emplace(change["id"], change["session"], change["before"], change["after"]);
                if (row.count(change["id"])) {
                    const size_t at = row[change["id"]] * 100 + column.at(change["session"]);
                    EXPECT_LE(last, at) << change["id"] << " out of the grid's order";
                    last = at;
                }
                EXPECT_EQ(change["name"] == "", change["id"].get<std::string>()[0] == '#');
            }
            EXPECT_EQ(listed.size(), document["preview"]["changes"].size()) << "a cell twice";
            EXPECT_EQ(listed, GridCells(gridBefore, gridAfter));
            if (changesScores >= 0) {
                EXPECT_EQ(!listed.empty(), changesScores == 1);
            }

            // The files that would change are those that did, named as "files" names them.
            const std::vector<std::string> changed =
                ChangedFiles(original, test::FolderFiles(course.Path()));
            std::vector<std::string> wouldChange = document["preview"]["files"];
            std::sort(wouldChange.begin(), wouldChange.end());
            EXPECT_EQ(wouldChange, changed);
            for (const std::string& file : changed)
                EXPECT_TRUE(std::count(written["files"].begin(), written["files"].end(), file))
                    << file;
            // Nothing was written, and the rest of the answer is the real run's.
            EXPECT_EQ(document.contains("files"), written.contains("files"));
            EXPECT_EQ(document.value("files", json::array()), json::array());
            EXPECT_EQ(document["messages"], written["messages"]);
        }
    }
}

// The text a person reads: the count sentence and one line per cell.
TEST(PreviewCli, TextSaysWhatChangesAndWritesNothing) {
    // Nothing goes to any course's history either: the data folder stays empty.
    test::TempCourse dataHome;
    ::setenv("XDG_DATA_HOME", dataHome.Path().c_str(), 1);
    test::TempCourse course;
    course.WriteRoster("Adams,Ann,S1\r\n");
    course.WriteRemotes("");
    test::LogAnswer answer("A");
    answer.score = 1;
    for (int day : {1, 2})
        course.WriteLog(test::SeptemberLog(day), {.voters = {{"#111", "", {answer}}}});
    // A course folder may hold a link to the program, which starts it on the course.
    std::filesystem::create_symlink(TALLORY_CLI, course.File("tallory"));
    const test::Files original = test::FolderFiles(course.Path());
    const test::CliResult result =
        test::RunCliOn(course.Path(), {"student", "S1", "--add", "111", "--preview"});
    EXPECT_EQ(result.status, 0) << result.err;
    for (const char* part : {"This changes 4 scores of 2 students in 2 sessions",
                             "  S1 Adams, Ann, 09/01/2026: Ab -> 2", "  #111, 09/02/2026: 2 -> Ab",
                             "  SessionData/RemoteID.csv"})
        EXPECT_TRUE(test::Holds(result.out, part));
    EXPECT_EQ(test::FolderFiles(course.Path()), original);
    EXPECT_EQ(test::FolderFiles(dataHome.Path()), test::Files{});
}

// The comparison of two grids, row by row, without a folder.
TEST(GridChanges, MatchesRowsByIdAndColumnsByLog) {
    using S = std::vector<std::optional<double>>;  // scores of the sessions; none: absent
    auto grid = [](std::vector<std::pair<std::string, S>> rows, std::vector<std::string> logs) {
        auto course = std::make_unique<Course>();
        for (const std::string& log : logs) course->SessionFile[++course->NumSessions] = log;
        for (const auto& [id, scores] : rows) {
            StudentRec& student = course->Students[++course->NumStudents];
            student.StudentId = id;
            for (size_t s = 0; s < scores.size(); ++s) {
                student.Present[s + 1] = scores[s] ? -1 : 0;
                student.Score[s + 1] = scores[s].value_or(0);
            }
        }
        return course;
    };
    const std::string a = "L2609011000.csv", b = "L2609021000.csv", c = "L2609031000.csv";
    struct {
        const char* what;
        std::unique_ptr<Course> before, after;
        test::Strings expected;  // "id file before->after"
    } cases[] = {
        {"nothing moves", grid({{"S1", S{1, {}}}}, {a, b}), grid({{"S1", S{1, {}}}}, {a, b}), {}},
        {"a score and an absence",
         grid({{"S1", S{1, 2}}, {"S2", S{{}, 1}}}, {a, b}),
         grid({{"S1", S{1, 0}}, {"S2", S{3, 1}}}, {a, b}),
         {"S1 b 2->0", "S2 a Ab->3"}},
        {"a row that went stands behind the one it followed",
         grid({{"#9", S{1}}, {"S1", S{1}}, {"#8", S{2}}, {"S2", S{1}}}, {a}),
         grid({{"S1", S{2}}, {"S2", S{1}}}, {a}),
         {"#9 a 1->Ab", "S1 a 1->2", "#8 a 2->Ab"}},
        {"a new row and a log that came and one that went",
         grid({{"S1", S{1, 1}}}, {a, b}),
         grid({{"S0", S{1, 1}}, {"S1", S{1, 1}}}, {a, c}),
         {"S0 a Ab->1", "S0 c Ab->1", "S1 c Ab->1", "S1 b 1->Ab"}},
    };
    for (const auto& test : cases) {
        std::map<std::string, std::string> letter = {{a, "a"}, {b, "b"}, {c, "c"}};
        std::vector<std::string> got;
        for (const ScoreChange& change : GridChanges(*test.before, *test.after))
            got.push_back(change.id + " " + letter[change.sessionFile] + " " + change.beforeText +
                          "->" + change.afterText);
        EXPECT_EQ(got, test.expected) << test.what;
    }
}

TEST(GridChanges, SummaryCountsScoresStudentsAndSessions) {
    ChangePreview preview;
    EXPECT_EQ(PreviewSummary(preview), "This changes no scores");
    preview.changes = {{"S1", "", "09/01", "L1", 1, 2, "1", "2"}};
    EXPECT_EQ(PreviewSummary(preview), "This changes 1 score of 1 student in 1 session");
    preview.changes.push_back({"S2", "", "09/01", "L1", 1, 2, "1", "2"});
    preview.changes.push_back({"S2", "", "09/02", "L2", 1, {}, "1", "Ab"});
    EXPECT_EQ(PreviewSummary(preview), "This changes 3 scores of 2 students in 2 sessions");
}

}  // namespace
}  // namespace tallory
