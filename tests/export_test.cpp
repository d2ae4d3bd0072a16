#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "SupportForFiles.h"
#include "TestSupport.h"
#include "common/RecordingHost.h"
#include "export/Export.h"
#include "export/ExportFormat.h"
#include "registration/Roster.h"

namespace tallory {
namespace {

using test::DataPath;
using test::ReadBytes;

// The students and their scores of most tests ("id,s1,s2,s3").
const std::string kStudents = DataPath("export/students.csv");

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
        course.NumSessions = 3;
        course.SessionFile[1] = "L2609081000.csv";
        course.SessionFile[2] = "L2609101000.csv";
        course.SessionTitle[2] = "Quiz 1";
        course.SessionFile[3] = "L2609151000.csv";
        std::istringstream lines(ReadBytes(studentsFile));
        for (std::string line; std::getline(lines, line);) {
            StudentRec& student = course.Students[++course.NumStudents];
            std::istringstream cells(line);
            std::getline(cells, student.StudentId, ',');
            for (int k = 1; k <= 3; ++k) {
                std::string cell;
                std::getline(cells, cell, ',');
                student.Score[k] = std::stod(cell);
                student.Score[0] += student.Score[k];
            }
        }
    }

    // Export all, or export selected, with the export key `tag`.
    void Export(bool all, const std::string& tag) {
        if (all) {
            ExportAll(course, host, tag);
        } else {
            ExportSelected(course, host, tag);
        }
    }
    void Select(std::initializer_list<int> sessions) {
        for (int k : sessions) course.ExportSel[k] = 1;
    }
    std::vector<std::string> Texts() const {
        std::vector<std::string> texts;
        for (const auto& shown : host.messages) texts.push_back(shown.text);
        return texts;
    }
    std::vector<std::string> Titles() const {
        std::vector<std::string> titles;
        for (const auto& shown : host.messages) titles.push_back(shown.title);
        return titles;
    }
    // The names in the course folder, apart from the grade book the course was given.
    std::vector<std::string> Written() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(Path()))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }
};

std::string ExportData(const std::string& relative) {
    return ReadBytes(DataPath("export/" + relative));
}

// A target's own students.csv when it has one.
std::string StudentsOf(const std::string& target) {
    const std::string own = DataPath("export/" + target + "/students.csv");
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
    // A student of the grade book as the grid asks for it ("ID|last|first"; none for Angel's,
    // whose rows the look-up does not count) and the IDs the course start counts.
    const char* student;
    int rosterIds;
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
            EXPECT_EQ(open.Texts(), std::vector<std::string>{}) << "at course start";
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
            const std::string upload = c.upload;
            const std::string path = open.File(upload);
            EXPECT_EQ(ReadBytes(path), ExportData(target + "/" + (all ? "all" : "selected") +
                                                  c.variant + ".expected"));
            const std::string done =
                c.done + (std::string_view(c.done).starts_with("Saved") ? path : upload);
            EXPECT_EQ(open.Texts(), std::vector<std::string>{done});
            EXPECT_EQ(open.host.written, std::vector<std::string>{path});
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
        EXPECT_EQ(open.Texts(), std::vector<std::string>{"Wrote upload file: " + upload});
    }
}

// ---- What the two commands do before any target runs

TEST(Export, ExportSelectedWithoutATickedSessionWritesNothing) {
    OpenCourse open("BB", {{"gb_export.csv", ExportData("blackboard/gb_export.crlf.csv")}});
    ExportSelected(open.course, open.host, open.format.tag);
    EXPECT_EQ(open.Texts(), std::vector<std::string>{
                                "Please first select a session to export using checkbox in top "
                                "row."});
    EXPECT_EQ(open.Written(), std::vector<std::string>{"gb_export.csv"});
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
    EXPECT_EQ(dialog.title, "Select export option");
    EXPECT_EQ(dialog.preselected, 2);
    EXPECT_EQ(dialog.choices[2], "Student ID only ");
    EXPECT_EQ(dialog.choices[4], "Remote ID Only");

    // Without a roster, names are empty cells; a row without ID is left out.
    open.host.option = OptionChoice{3, false};
    open.Select({2});
    open.course.Students[2].StudentId = "  ";
    ExportSelected(open.course, open.host, "GENERAL");
    EXPECT_EQ(open.Texts(),
              std::vector<std::string>{"Saved scores to file: " + open.File("UploadFile.csv")});
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
        EXPECT_EQ(open.Written(), std::vector<std::string>{});
    }
}

TEST(Export, GradeBooksThatGiveNoStudents) {
    struct Case {
        const char* why;
        const char* cms;
        const char* tag;  // when the export key differs from the course's
        const char* file;
        const char* content;
        std::vector<std::string> titles;  // at export
    } cases[] = {
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
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        OpenCourse open(c.cms, {{c.file, c.content}});
        open.host.messages.clear();
        open.Select({1});
        ExportSelected(open.course, open.host, c.tag ? c.tag : open.format.tag.c_str());
        EXPECT_EQ(open.Titles(), c.titles);
        EXPECT_TRUE(open.Texts().back().starts_with("No students found in "))
            << open.Texts().back();
        EXPECT_EQ(open.Written(), std::vector<std::string>{c.file});
    }
}

// ---- The sibling upload tool

TEST(Export, TheUploadToolStartsAfterAnExportAndIsNamedInTheMessages) {
    OpenCourse open("SAKAI", {{"campus bridgeline.EXE", ""},
                              {"sakaigradebook.csv", ExportData("sakai/sakaigradebook.crlf.csv")}});
    ExportAll(open.course, open.host, open.format.tag);
    EXPECT_EQ(open.Read("UploadFile.csv"), ExportData("sakai/all.expected"));
    EXPECT_EQ(open.host.started,
              std::vector<std::string>{open.course.AppPath + "/Campus Bridgeline.exe upload"});

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
        std::vector<std::string> expected{file, upload};
        std::sort(expected.begin(), expected.end());
        EXPECT_EQ(open.Written(), expected);
        EXPECT_TRUE(open.host.written.empty());
        EXPECT_TRUE(open.host.started.empty());
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

TEST(ExportFormat, TheSettingChoosesCaptionTagAndFiles) {
    const std::tuple<const char*, const char*, const char*, const char*, const char*> cases[] = {
        // The key is trimmed and upper-cased; "BLACKBOARD" is an alias of "BB" with its own
        // caption; an unknown or empty key is General.
        {" d2l ", "Desire2Learn", "D2L", "gradesexport.csv", "UploadFile.csv"},
        {"blackboard", "Blackboard {Ver 6, 6.3, 7, 8}", "BB", "gb_export.csv", "UploadFile.csv"},
        {"WEBCT CE 4.1", "General", "GENERAL", "Roster.Txt", "UploadFile.csv"},
        {"", "General", "GENERAL", "Roster.Txt", "UploadFile.csv"},
    };
    for (const auto& [cms, caption, tag, roster, upload] : cases) {
        ExportFormat format = FindExportFormat(cms);
        EXPECT_EQ(format.caption, caption) << cms;
        EXPECT_EQ(format.tag, tag) << cms;
        EXPECT_EQ(format.rosterFile, roster) << cms;
        EXPECT_EQ(format.uploadFile, upload) << cms;
    }
}

TEST(ExportFormat, ExplanationPairsTheRosterFileWithTheUploadFile) {
    EXPECT_EQ(FindExportFormat("ANGEL").text, test::Said("the Angel export explained"));

    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"WEB CT", "as \"UpLoadFile.csv\"", "uploaded into  Web Ct Campus Edition"},
        {"BB80", "into  Blackboard {Ver 8}\r\n\r\nImportant: Please make sure",
         "export data, or HTML reports. "},
        {"MOODLE",
         "folder.  You have three download options when you export your student roster "
         "fromMoodle {Ver 1.6, 1.8, 1.9}:\"Download in ODS format\"",
         "saved in the Polvane application folder as \"MoodleUpload.xls\" and can then be easily "
         "uploaded into  Moodle {Ver 1.6, 1.8, 1.9}"},
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
    EXPECT_EQ(course.NumRoster, 1);
    EXPECT_EQ(course.Roster[0].StudentId, "");
    EXPECT_EQ(course.Roster[2].StudentId, "BSmith");
    EXPECT_EQ(course.Roster[2].LastName, "Smith");
    EXPECT_EQ(course.RosterIDs[1], "");
    EXPECT_EQ(GetRosterEntry(course, "BSmith").LastName, "");
}

TEST(ExportFormat, QuotesAreStrippedFromEveryRosterRowAndTheIdsStillFound) {
    Course course;
    AddRosterEntry(course, "\"S1\"", "\"Jane\"", "O\"Neil");
    AddRosterEntry(course, "S2", "Rick", "Roe");
    StripRosterQuotes(course);
    ASSERT_EQ(FindRosterRow(course, "S1"), 0);
    EXPECT_EQ(course.Roster[0].StudentId, "S1");
    EXPECT_EQ(course.Roster[0].FirstName, "Jane");
    EXPECT_EQ(course.Roster[0].LastName, "ONeil");
    EXPECT_EQ(FindRosterRow(course, "\"S1\""), -1);
    EXPECT_EQ(FindRosterRow(course, "s2"), 1);
}

}  // namespace
}  // namespace tallory
