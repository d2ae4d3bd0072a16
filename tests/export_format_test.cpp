#include <gtest/gtest.h>

#include "SupportForFiles.h"
#include "TestSupport.h"
#include "common/RecordingHost.h"
#include "export/ExportFormat.h"
#include "registration/Roster.h"

namespace tallory {
namespace {

// A course folder holding one grade book, opened with the CMS setting as the course start opens it.
struct GradeBook : test::LoadedCourse {
    GradeBook(const char* cms, const std::string& file, const std::string& text) {
        course.AppPath = Path();
        Write(file, text);
        SetExportFormat(course, host, cms);
    }
};

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

// Each format's grade book, as the course start reads it: the roster gives the grid its names.
TEST(ExportFormat, OpeningACourseReadsTheGradeBookOfItsFormat) {
    struct Case {
        // The grade book in the course folder and its source under tests/data/export; a student
        // of it as the grid would ask for it, its names, and NumRosterIDs afterwards.
        const char *cms, *file, *source, *id, *last, *first;
        int rosterIds;
    } cases[] = {
        {"General", "Roster.txt", "general/Roster.txt", "BSMITH", "Smith", "Bob", 2},
        {"WEB CT", "class.txt", "webct/class.crlf.txt", "bsmith", "Smith", "Bob", 4},
        {"web ct v", "class.txt", "webct/class.lf.txt", "adoe", "Doe, Jr.", "Ann", 4},
        {"WEB CT CE 4.1", "class.txt", "campus/class.lf.txt", "cnew", "Nguyen", "Cam", 4},
        {"WEB CT CE 6.1", "class.txt", "campus/class.crlf.txt", "zlate", "Late", "Zoe", 4},
        {"BB", "gb_export.csv", "blackboard/gb_export.crlf.csv", "BSMITH", "Smith", "Bob", 5},
        {"blackboard", "gb_export.csv", "blackboard/gb_export.lf.csv", "adoe", "Doe", "Ann", 5},
        {"BB80", "gb_export.csv", "blackboard-columns/gb_export.lf.csv", "cnew", "Nguyen", "Cam",
         5},
        {"D2L", "gradesexport.csv", "d2l/gradesexport.crlf.csv", "zlate", "Late", "Zoe", 5},
        {"Moodle", "MoodleRoster.txt", "moodle/MoodleRoster.lf.txt", "BOB@uni.example", "Smith",
         "Bob", 4},
        {"SAKAI", "sakaigradebook.csv", "sakai/sakaigradebook.lf.csv", "adoe", "Doe", "Ann", 5},
        // Canvas: whatever the grade book is called.
        {"Canvas", "2026-09-20T1030_Grades-BIO_110.csv",
         "canvas/2026-09-20T1030_Grades-BIO_110.csv", "wchen", "Chen", "Wei", 5},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.cms);
        GradeBook book(c.cms, c.file,
                       test::ReadBytes(test::DataPath(std::string("export/") + c.source)));
        EXPECT_TRUE(book.host.messages.empty());
        RosterRec entry = GetRosterEntry(book.course, c.id);
        EXPECT_EQ(entry.LastName, c.last);
        EXPECT_EQ(entry.FirstName, c.first);
        EXPECT_EQ(book.course.NumRosterIDs, c.rosterIds);
    }
}

TEST(ExportFormat, AnAngelGradeBookFillsRosterRowsThatTheLookUpDoesNotCount) {
    GradeBook book("ANGEL", "gradebook.csv",
                   test::ReadBytes(test::DataPath("export/angel/gradebook.lf.csv")));
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
