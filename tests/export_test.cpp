#include <filesystem>
#include <set>
#include <sstream>

#include "SupportForFiles.h"
#include "TestSupport.h"
#include "export/Export.h"
#include "export/ExportFormat.h"
#include "registration/Roster.h"
#include "start/Settings.h"

namespace tallory {
namespace {

const std::string kStudents = test::DataPath("export/students.csv");
using Names = std::set<std::string>;

// A course opened with a CMS setting and, when given, its grade-book file. Its three sessions are
// an untitled one, "Quiz 1" and another untitled one; the students and their scores per session
// come from a students.csv ("id,s1,s2,s3").
struct OpenCourse : test::LoadedCourse {
    ExportFormat format;

    OpenCourse(const std::string& cms,
               const std::vector<std::pair<std::string, std::string>>& files = {},
               const std::string& studentsFile = kStudents) {
        course.AppPath = Path();
        for (const auto& [name, content] : files) Write(name, content);
        format = SetExportFormat(course, host, cms);
        for (const char* log : {"L2609081000.csv", "L2609101000.csv", "L2609151000.csv"})
            course.SessionFile[++course.NumSessions] = log;
        course.SessionTitle[2] = "Quiz 1";
        std::istringstream lines(test::ReadBytes(studentsFile));
        for (std::string line; std::getline(lines, line);) {
            StudentRec& student = course.Students[++course.NumStudents];
            std::istringstream cells(line);
            std::getline(cells, student.StudentId, ',');
            for (int k = 1; k <= 3; ++k) {
                std::string cell;
                std::getline(cells, cell, ',');
                student.Score[0] += student.Score[k] = std::stod(cell);
            }
        }
    }

    void Export(bool all, const std::string& tag) {
        (all ? ExportAll : ExportSelected)(course, host, tag, std::nullopt);
    }
    void Select(std::initializer_list<int> sessions) {
        for (int k : sessions) course.ExportSel[k] = 1;
    }
    std::vector<std::string> Texts() const {
        std::vector<std::string> texts;
        for (const auto& shown : host.messages) texts.push_back(shown.text);
        return texts;
    }
    // The names in the course folder.
    Names Written() const {
        Names names;
        for (const auto& entry : std::filesystem::directory_iterator(Path()))
            names.insert(entry.path().filename().string());
        return names;
    }
};

std::string ExportData(const std::string& relative) {
    return test::ReadBytes(test::DataPath("export/" + relative));
}

std::string StudentsOf(const std::string& target) {
    const std::string own = test::DataPath("export/" + target + "/students.csv");
    return std::filesystem::exists(own) ? own : kStudents;
}

// ---- Golden uploads: every target, each grade book in both line-end styles where the reader
// tells them apart, export all and export selected (sessions 1 and 3).

struct Golden {
    const char* target;      // tests/data/export/<target>
    const char* cms;         // the course's CMS setting
    const char* gradeBook;   // the file in the target's folder
    const char* courseFile;  // its name in the course folder
    const char* variant;     // expected uploads: all<variant>.expected, selected<variant>.expected
    const char* upload;      // the upload file
    const char* done;        // the message after writing, without the file name
    const char* student;     // "ID|last|first" the grid asks for; none: Angel's, not looked up
    int rosterIds;           // the IDs the course start counts
};

constexpr Golden kGolden[] = {
    // clang-format off
    {"general", "General", "Roster.txt", "Roster.txt", "", "UploadFile.csv", "Saved scores to file: ", "BSMITH|Smith|Bob", 2},
    {"general", "no such system", "Roster.txt", "roster.TXT", "", "UploadFile.csv", "Saved scores to file: ", "BSMITH|Smith|Bob", 2},
    {"webct", "WEB CT", "class.crlf.txt", "class.txt", "", "UploadFile.csv", "Wrote upload file: ", "bsmith|Smith|Bob", 4},
    {"webct", "web ct v", "class.lf.txt", "Class.TXT", "", "UploadFile.csv", "Wrote upload file: ", "adoe|Doe, Jr.|Ann", 4},
    {"campus", "WEB CT CE 4.1", "class.lf.txt", "class.txt", "", "UploadFile.csv", "Wrote upload file: ", "cnew|Nguyen|Cam", 4},
    {"campus", "Web CT CE 6.1", "class.crlf.txt", "class.txt", "", "UploadFile.csv", "Wrote upload file: ", "zlate|Late|Zoe", 4},
    {"blackboard", "BB", "gb_export.crlf.csv", "gb_export.csv", "", "UploadFile.csv", "Wrote upload file: ", "BSMITH|Smith|Bob", 5},
    {"blackboard", "bb73", "gb_export.lf.csv", "GB_Export.csv", "", "UploadFile.csv", "Wrote upload file: ", "adoe|Doe|Ann", 5},
    {"blackboard", "Blackboard", "gb_export.lf.csv", "gb_export.csv", "", "UploadFile.csv", "Wrote upload file: ", "adoe|Doe|Ann", 5},
    {"blackboard-columns", "BB", "gb_export.crlf.csv", "gb_export.csv", ".bb", "UploadFile.csv", "Wrote upload file: ", "cnew|Nguyen|Cam", 5},
    {"blackboard-columns", "BB80", "gb_export.crlf.csv", "gb_export.csv", ".bb80", "UploadFile.csv", "Wrote upload file: ", "cnew|Nguyen|Cam", 5},
    {"blackboard-columns", "BB80", "gb_export.lf.csv", "gb_export.csv", ".bb80", "UploadFile.csv", "Wrote upload file: ", "cnew|Nguyen|Cam", 5},
    {"angel", "Angel", "gradebook.crlf.csv", "gradebook.csv", ".crlf", "UploadFile.csv", "Wrote data to file ", nullptr, 0},
    {"angel", "ANGEL", "gradebook.lf.csv", "gradebook.csv", ".lf", "UploadFile.csv", "Wrote data to file ", nullptr, 0},
    {"d2l", "D2L", "gradesexport.crlf.csv", "gradesexport.csv", "", "UploadFile.csv", "Wrote upload file: ", "zlate|Late|Zoe", 5},
    {"d2l", "d2l", "gradesexport.lf.csv", "gradesexport.csv", "", "UploadFile.csv", "Wrote upload file: ", "zlate|Late|Zoe", 5},
    {"moodle", "Moodle", "MoodleRoster.crlf.txt", "moodleroster.txt", "", "MoodleUpload.xls", "Wrote upload file: ", "BOB@uni.example|Smith|Bob", 4},
    {"moodle", "MOODLE", "MoodleRoster.lf.txt", "MoodleRoster.txt", "", "MoodleUpload.xls", "Wrote upload file: ", "BOB@uni.example|Smith|Bob", 4},
    {"sakai", "Sakai", "sakaigradebook.crlf.csv", "sakaigradebook.csv", "", "UploadFile.csv", "Wrote upload file: ", "adoe|Doe|Ann", 5},
    {"sakai", "SAKAI", "sakaigradebook.lf.csv", "SakaiGradebook.csv", "", "UploadFile.csv", "Wrote upload file: ", "adoe|Doe|Ann", 5},
    // clang-format on
};

TEST(Export, EveryTargetWritesTheUploadItsSystemTakes) {
    for (const Golden& c : kGolden) {
        for (bool all : {true, false}) {
            SCOPED_TRACE(testing::Message() << c.target << " " << c.cms << " " << c.gradeBook
                                            << (all ? " all" : " selected"));
            const std::string target = c.target;
            OpenCourse open(c.cms, {{c.courseFile, ExportData(target + "/" + c.gradeBook)}},
                            StudentsOf(target));
            EXPECT_EQ(open.Texts(), test::Strings{}) << "at course start";
            if (c.student) {  // the grade book gives the grid its names
                const std::string id(c.student, std::string_view(c.student).find('|'));
                const RosterRec entry = GetRosterEntry(open.course, id);
                EXPECT_EQ(id + "|" + entry.LastName + "|" + entry.FirstName, c.student);
                EXPECT_EQ(open.course.NumRosterIDs, c.rosterIds);
            }
            open.host.messages.clear();
            open.Select({1, 3});
            // The General export's choices: all three identifying columns, or "Remote ID Only".
            open.host.option = OptionChoice{all ? 0 : 4, false};
            open.Export(all, open.format.tag);
            const std::string path = open.File(c.upload);
            EXPECT_EQ(test::ReadBytes(path), ExportData(target + "/" + (all ? "all" : "selected") +
                                                        c.variant + ".expected"));
            const std::string done =
                c.done + (std::string_view(c.done).starts_with("Saved") ? path : c.upload);
            EXPECT_EQ(open.Texts(), test::Strings{done});
            EXPECT_EQ(open.host.written, test::Strings{path});
            EXPECT_TRUE(open.host.started.empty());
        }
    }
}

TEST(Export, CampusEditionSixIsReachedOnlyByExportSelected) {
    for (bool all : {true, false}) {
        OpenCourse open("WEB CT CE 6.1", {{"class.txt", ExportData("campus/class.crlf.txt")}});
        open.Select({1, 3});
        open.Export(all, "WebCT CE 6.1");
        const std::string upload = all ? "UploadFile.csv" : "WebCT6Upload.csv";
        EXPECT_EQ(open.Read(upload),
                  ExportData(all ? "campus/all.expected" : "campus/selected.expected"));
        EXPECT_EQ(open.Texts(), test::Strings{"Wrote upload file: " + upload});
    }
}

// ---- What the two commands do before any target runs

TEST(Export, ExportSelectedWithoutATickedSessionWritesNothing) {
    OpenCourse open("BB", {{"gb_export.csv", ExportData("blackboard/gb_export.crlf.csv")}});
    ExportSelected(open.course, open.host, open.format.tag);
    EXPECT_EQ(open.Texts(),
              test::Strings{"Please first select a session to export using checkbox in top "
                            "row."});
    EXPECT_EQ(open.Written(), Names{"gb_export.csv"});
}

TEST(Export, AnUnknownKeyAsksBeforeTheGeneralExport) {
    for (bool all : {true, false}) {
        for (Answer answer : {Answer::No, Answer::Yes}) {
            SCOPED_TRACE(testing::Message() << all << (answer == Answer::Yes));
            OpenCourse open("General", {{"Roster.txt", ExportData("general/Roster.txt")}});
            open.Select({1, 3});
            open.host.answers.push_back(answer);
            open.host.option = OptionChoice{all ? 0 : 2, false};
            open.Export(all, all ? "Web CT CE 4.1" : "unknown");
            ASSERT_FALSE(open.host.messages.empty());
            const RecordingHost::Shown& asked = open.host.messages[0];
            EXPECT_EQ(asked.title, std::string("Confirm General Export : ") +
                                       (all ? "UploadFile.csv" : "Tallory"));
            EXPECT_EQ(asked.buttons, Buttons::YesNo);
            if (answer == Answer::Yes) {
                EXPECT_EQ(open.Read("UploadFile.csv"),
                          ExportData(all ? "general/all.expected" : "general/selected.expected"));
                continue;
            }
            EXPECT_EQ(asked.text,
                      std::string("No default or Invalid output Format selected for export, ") +
                          (all ? "Would you like to" : "Do you want to") +
                          " proceed with general export for the selected session(s)");
            EXPECT_EQ(open.host.messages.size(), 1u);
            EXPECT_FALSE(open.Exists("UploadFile.csv"));
        }
    }
}

TEST(Export, GeneralExportOffersItsOptionsAndCancelLeavesTheOldFile) {
    OpenCourse open("General");
    open.Write("UploadFile.csv", "old");
    open.host.option = OptionChoice{0, true};
    ExportAll(open.course, open.host, "GENERAL");
    EXPECT_EQ(open.Read("UploadFile.csv"), "old");
    EXPECT_TRUE(open.host.messages.empty());
    ASSERT_EQ(open.host.dialogs.size(), 1u);
    const OptionDialog& dialog = open.host.dialogs[0];
    EXPECT_EQ(std::tie(dialog.title, dialog.preselected, dialog.choices[2], dialog.choices[4]),
              std::tuple("Select export option", 2, "Student ID only ", "Remote ID Only"));

    // Without a roster, names are empty cells; a row without ID is left out.
    open.host.option = OptionChoice{3, false};
    open.Select({2});
    open.course.Students[2].StudentId = "  ";
    ExportSelected(open.course, open.host, "GENERAL");
    EXPECT_EQ(open.Texts(), test::Strings{"Saved scores to file: " + open.File("UploadFile.csv")});
    EXPECT_EQ(open.Read("UploadFile.csv"), ExportData("general/selected.names-blank.expected"));
}

// ---- Grade books that are missing or give no students: the reader's message, then the
// target's empty-list message, and no file.

TEST(Export, AMissingGradeBookIsReportedAndNothingIsWritten) {
    // The course's setting and the messages of the export, each as "[title] text".
    for (const auto& [cms, said] : test::Texts("a missing grade book, by CMS").items()) {
        SCOPED_TRACE(cms);
        OpenCourse open(cms);
        // The course start reported the same missing file in its own words.
        EXPECT_FALSE(open.host.messages.empty());
        open.host.messages.clear();
        ExportAll(open.course, open.host, open.format.tag);
        std::vector<std::string> messages = said.get<std::vector<std::string>>();
        for (std::string& text : messages)
            if (size_t at = text.find("{course}"); at != std::string::npos)
                text.replace(at, 8, open.course.AppPath);
        EXPECT_EQ(test::Messages(open.host), messages);
        EXPECT_EQ(open.Written(), Names{});
    }
}

TEST(Export, GradeBooksThatGiveNoStudents) {
    // Why, the CMS setting, the export key when it differs from the course's, the grade book and
    // its text, and the titles of the messages at export.
    using Case =
        std::tuple<const char*, const char*, const char*, const char*, const char*, test::Strings>;
    const Case cases[] = {
        // clang-format off
        {"an empty grade book", "BB", nullptr, "gb_export.csv", "",
         {"Blackboard Roster not found", "Tallory"}},
        {"joined names without the username in parentheses", "BB", nullptr, "gb_export.csv",
         "Name,Student\r\nDoe,Ann|1001\r\n", {"Blackboard Roster not found", "Tallory"}},
        {"an Angel row of two cells", "ANGEL", nullptr, "gradebook.csv",
         "L,F,ID\r\nDoe,Ann,adoe\r\nSmith,Bob\r\n", {"Angel Roster not found", "Tallory"}},
        {"a quoted Sakai header", "SAKAI", nullptr, "sakaigradebook.csv",
         "\"Student ID\",\"Student Name\"\r\nadoe,\"Doe, Ann\"\r\nbsmith,\"Smith, Bob\"\r\n",
         {"Sakai Roster not found", "Tallory"}},
        {"a Moodle grade book of one student", "MOODLE", nullptr, "MoodleRoster.txt",
         "First name\tSurname\tEmail address\r\nAnn\tDoe\tann@x\r\n", {"File Not Found", "Tallory"}},
        {"a bare-LF class.txt read line by line", "WEB CT CE 6.1", "WEBCT CE 6.1", "class.txt",
         "Last Name,First Name,User ID\nDoe,Ann,adoe\nSmith,Bob,bsmith\n",
         {"Unable to read class.txt", "Tallory"}},
        {"a class.txt of a header alone", "WEB CT", nullptr, "class.txt",
         "Last Name,First Name,User ID\r\n", {"Tallory"}},
        // clang-format on
    };
    for (const auto& [why, cms, tag, file, content, expected] : cases) {
        SCOPED_TRACE(why);
        OpenCourse open(cms, {{file, content}});
        open.host.messages.clear();
        open.Select({1});
        ExportSelected(open.course, open.host, tag ? tag : open.format.tag.c_str());
        std::vector<std::string> titles;
        for (const auto& shown : open.host.messages) titles.push_back(shown.title);
        EXPECT_EQ(titles, expected);
        EXPECT_TRUE(test::BeginsWith(open.Texts().back(), "No students found in "));
        EXPECT_EQ(open.Written(), Names{file});
    }
}

TEST(Export, TheUploadToolStartsAfterAnExportAndIsNamedInTheMessages) {
    OpenCourse open("SAKAI", {{"campus bridgeline.EXE", ""},
                              {"sakaigradebook.csv", ExportData("sakai/sakaigradebook.crlf.csv")}});
    ExportAll(open.course, open.host, open.format.tag);
    EXPECT_EQ(open.Read("UploadFile.csv"), ExportData("sakai/all.expected"));
    EXPECT_EQ(open.host.started,
              test::Strings{open.course.AppPath + "/Campus Bridgeline.exe upload"});

    // The General export never starts it; a missing grade book says to run it.
    OpenCourse general("General", {{"Campus Bridgeline.exe", ""}});
    ExportAll(general.course, general.host, "GENERAL");
    EXPECT_TRUE(general.host.started.empty());
    OpenCourse blackboard("BB", {{"Campus Bridgeline.exe", ""}});
    ASSERT_EQ(blackboard.host.messages.size(), 1u);
    EXPECT_EQ(blackboard.host.messages[0].text,
              test::Said("a missing Blackboard grade book beside the upload tool"));
}

// ---- An upload that cannot be written: the one message, and nothing half-written left behind.

TEST(Export, AnUploadThatCannotBeWrittenLeavesNoFile) {
    const std::tuple<const char*, const char*, const char*, const char*> cases[] = {
        {"General", "Roster.txt", "general/Roster.txt", "UploadFile.csv"},
        {"WEB CT", "class.txt", "webct/class.crlf.txt", "UploadFile.csv"},
        {"MOODLE", "MoodleRoster.txt", "moodle/MoodleRoster.lf.txt", "MoodleUpload.xls"},
        {"D2L", "gradesexport.csv", "d2l/gradesexport.lf.csv", "UploadFile.csv"},
    };
    for (const auto& [cms, file, gradeBook, upload] : cases) {
        SCOPED_TRACE(cms);
        OpenCourse open(cms, {{file, ExportData(gradeBook)}});
        if (std::string_view(cms) == "MOODLE")
            open.course.Students[1].StudentId = "ann@uni.example";
        // A folder of the upload's name cannot be replaced by a file.
        std::filesystem::create_directory(open.File(upload));
        open.host.messages.clear();
        ExportAll(open.course, open.host, open.format.tag);
        std::string text = test::Said("an upload held open by another program", {"{file}", upload});
        // The General export's own text has a single blank after "overwritten.".
        if (std::string_view(cms) == "General") text.erase(text.find(".  Please close") + 1, 1);
        EXPECT_EQ(test::Messages(open.host), test::Strings{"[Error] " + text});
        EXPECT_EQ(open.host.messages[0].icon, Icon::Information);
        EXPECT_EQ(open.Written(), (Names{file, upload}));
        EXPECT_TRUE(open.host.written.empty() && open.host.started.empty());
    }
}

// ---- The export works on the grade book as it is now, and leaves its marks on the course.

TEST(Export, TheGradeBookIsReadAgainAndTheTotalColumnKeepsItsTitle) {
    OpenCourse open("BB80",
                    {{"gb_export.csv", ExportData("blackboard-columns/gb_export.crlf.csv")}});
    open.Write("gb_export.csv",
               "Last Name,First Name,Username\r\nNguyen,Cam,cnew\r\nDoe,Ann,ADOE\r\n");
    open.Select({2});
    ExportSelected(open.course, open.host, open.format.tag);
    EXPECT_EQ(open.Read("UploadFile.csv"),
              ExportData("blackboard-columns/selected.read-again.expected"));
    EXPECT_EQ(open.course.SessionTitle[0], "Total");
    EXPECT_EQ(GetRosterEntry(open.course, "zlate").StudentId, "");
}

// ---- The CMS setting: the format it names, and its grade book read at the course start.

// The tag and the files each format names: the golden uploads.
TEST(ExportFormat, TheSettingIsTrimmedAndUpperCasedAndAnUnknownOneIsGeneral) {
    // "BLACKBOARD" is an alias of "BB" with its own caption.
    const std::pair<const char*, const char*> cases[] = {
        {" d2l ", "Desire2Learn"},
        {"blackboard", "Blackboard {Ver 6, 6.3, 7, 8}"},
        {"WEBCT CE 4.1", "General"},
        {"", "General"},
    };
    for (auto [cms, caption] : cases) EXPECT_EQ(FindExportFormat(cms).caption, caption) << cms;
}

TEST(ExportFormat, ExplanationPairsTheRosterFileWithTheUploadFile) {
    EXPECT_EQ(FindExportFormat("ANGEL").text, test::Said("the Angel export explained"));

    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"canvas", "(Grades > Export > Export Entire Gradebook)",
         "choose Import and upload that file."},
        {"elsewhere", "If you are using a course management system to report / record grades, ",
         "consistent with your course management system."},
    };
    for (const auto& [cms, contains, endsWith] : cases) {
        std::string text = FindExportFormat(cms).text;
        EXPECT_TRUE(test::Holds(text, contains)) << cms << "\n" << text;
        EXPECT_TRUE(text.ends_with(endsWith)) << cms << "\n" << text;
    }
    EXPECT_EQ(FindExportFormat("GENERAL").text, "");
}

TEST(ExportFormat, AnAngelGradeBookFillsRosterRowsThatTheLookUpDoesNotCount) {
    OpenCourse book("ANGEL", {{"gradebook.csv", ExportData("angel/gradebook.lf.csv")}});
    const Course& course = book.course;
    EXPECT_TRUE(book.host.messages.empty());
    // The students stand in rows 1..3, their quotes taken away by the course start, behind a
    // roster count of one empty row.
    EXPECT_EQ(std::tie(course.NumRoster, course.Roster[0].StudentId, course.Roster[2].StudentId,
                       course.Roster[2].LastName, course.RosterIDs[1]),
              std::tuple(1, "", "BSmith", "Smith", ""));
    EXPECT_EQ(GetRosterEntry(course, "BSmith").LastName, "");
}

TEST(ExportFormat, QuotesAreStrippedFromEveryRosterRowAndTheIdsStillFound) {
    Course course;
    AddRosterEntry(course, "\"S1\"", "\"Jane\"", "O\"Neil");
    AddRosterEntry(course, "S2", "Rick", "Roe");
    StripRosterQuotes(course);
    ASSERT_EQ(FindRosterRow(course, "S1"), 0);
    EXPECT_EQ(
        std::tie(course.Roster[0].StudentId, course.Roster[0].FirstName, course.Roster[0].LastName),
        std::tuple("S1", "Jane", "ONeil"));
    EXPECT_EQ(FindRosterRow(course, "\"S1\""), -1);
    EXPECT_EQ(FindRosterRow(course, "s2"), 1);
}

// ==== Canvas: its own upload layouts, and its grade book as the course's roster.

constexpr char kGradeBook[] = "2026-09-20T1030_Grades-BIO_110.csv";
constexpr char kUpload[] = "CanvasUpload.csv";

test::LogPlan Session(std::string title, std::vector<test::LogVoter> voters) {
    test::LogPlan plan = test::QuestionsPlan(2);
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
        CopyFrom(test::DataPath("export/canvas/course"));
        if (!gradeBook) std::filesystem::remove(File(kGradeBook));
    }

    std::vector<UploadColumn> Export(bool all, const std::optional<CanvasChoice>& choice) {
        host.messages.clear();
        return (all ? ExportAll : ExportSelected)(course, host, "CANVAS", choice);
    }
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
        EXPECT_EQ(biology.Read(kUpload), ExportData(std::string("canvas/") + expected));
        std::vector<std::pair<std::string, double>> seen;
        for (const UploadColumn& column : columns) seen.emplace_back(column.title, column.points);
        EXPECT_EQ(seen, headings);
        EXPECT_EQ(biology.host.written, test::Strings{biology.File(kUpload)});
        ASSERT_EQ(biology.host.messages.size(), 1u);
        EXPECT_TRUE(biology.host.messages[0].text.starts_with("Wrote the Canvas upload file " +
                                                              biology.File(kUpload) + "\r\n"));
        EXPECT_TRUE(test::Holds(biology.host.messages[0].text, "open Grades, choose Import"));
        EXPECT_TRUE(biology.host.dialogs.empty() && biology.host.started.empty());
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
    // The upload lists them in that order, each named as the grade book names them.
    biology.Export(true, CanvasChoice{});
    EXPECT_EQ(biology.Read(kUpload), ExportData("canvas/all.sessions.blank.by-name.expected"));
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
        EXPECT_TRUE(test::BeginsWith(
            open.Read(kUpload),
            std::string("Student,ID,SIS User ID,SIS Login ID,Section") + c.headings + "\r\n"));
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
    for (const auto& [score, cell] : cases) {
        SCOPED_TRACE(cell);
        biology.course.Students[biology.Row("20260101")].Score[1] = score;
        biology.Export(true, CanvasChoice{});
        EXPECT_TRUE(test::Holds(biology.Read(kUpload),
                                "\r\n\"Alvarez, Maria\",5101,20260101,malvarez,BIO 110 - 001," +
                                    std::string(cell) + ","));
    }
}

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
        // The heading, the points, and S1 alone.
        const std::string upload = open.Read(kUpload);
        EXPECT_EQ(std::ranges::count(upload, '\n'), 3) << upload;
        EXPECT_TRUE(test::Holds(upload, "\r\n" + std::string(row) + ","));
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
    EXPECT_EQ(biology.Read(kUpload), ExportData("canvas/roster-txt.total.blank.expected"));
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

TEST(ExportCanvas, TheExportDialogOffersTheLayoutsAndTheCourseRemembersTheChoice) {
    BiologyCourse biology;
    biology.Load();
    biology.host.option = OptionChoice{3, false};
    biology.Export(true, std::nullopt);
    ASSERT_EQ(biology.host.dialogs.size(), 1u);
    const OptionDialog& dialog = biology.host.dialogs[0];
    EXPECT_EQ(dialog.preselected, 0);
    EXPECT_EQ(dialog.choices[4], "") << "four layouts: the fifth button stays hidden";
    EXPECT_EQ(biology.Read(kUpload), ExportData("canvas/all.total.zero.expected"));
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
    EXPECT_TRUE(columns.empty() && biology.host.written.empty());
    ASSERT_EQ(biology.host.messages.size(), 1u);
    EXPECT_EQ(
        test::Messages(biology.host)[0],
        "[Error] " + test::Said("an upload held open by another program", {"{file}", kUpload}));
}

}  // namespace
}  // namespace tallory
