#include <gtest/gtest.h>

#include "TestSupport.h"
#include "common/RecordingHost.h"
#include "start/Settings.h"

namespace tallory {
namespace {

using test::TempCourse;

struct Settings : test::LoadedCourse {
    explicit Settings(const char* config) {
        Write("SessionData/Config.csv", config);
        course.AppPath = Path();
        ReadConfig(course, host);
    }
};

TEST(Settings, ReadsEachLineAsKeyValueAndTheFieldsAfterTheNote) {
    struct Case {
        const char* line;
        const char* key;
        const char* value;
        const char* note;
    } cases[] = {
        // As the program writes it: the blank before each comma stays in the field.
        {"\"CourseName\" ,\"Physics\" ,\"first note\"", "COURSENAME ", "Physics ", ""},
        {"CMS,General", "CMS", "General", ""},
        // Outside quotes a comma starts the next field, which is where a note would be.
        {"Title,Intro, to physics", "TITLE", "Intro", ""},
        {"k,\"a, b\",note,x,y", "K", "a, b", ",x,y"},
        {"  Spaced  ,v", "  SPACED  ", "v", ""},
    };
    std::string config;
    for (const Case& c : cases) config += std::string(c.line) + "\r\n";
    config += "lonely\r\n\r\n";  // fewer than two fields: not a setting
    Settings settings(config.c_str());
    ASSERT_EQ(settings.course.NumParams, 5);
    for (int i = 0; i < 5; ++i) {
        const ParamRec& param = settings.course.Params[i + 1];
        EXPECT_EQ(param.Key, cases[i].key) << cases[i].line;
        EXPECT_EQ(param.Value, cases[i].value) << cases[i].line;
        EXPECT_EQ(param.Note, cases[i].note) << cases[i].line;
    }
    EXPECT_EQ(settings.host.progressTexts,
              (std::vector<std::string>{"Reading Configuration File ....",
                                        "File read sucessfully ...."}));
}

TEST(Settings, RewriteUpperCasesKeysAndDropsNotes) {
    Settings settings(
        "\"CourseName\" ,\"Physics\" ,\"shown in the title\"\r\nCMS,BB,,old,notes\r\n");
    WriteConfig(settings.course, settings.host);
    EXPECT_EQ(settings.Read("SessionData/Config.csv"),
              "\"COURSENAME\" ,\"Physics \" ,\"\"\r\n\"CMS\" ,\"BB\" ,\",old,notes\"\r\n");

    ReadConfig(settings.course, settings.host);
    ASSERT_EQ(settings.course.NumParams, 2);
    EXPECT_EQ(settings.course.Params[1].Key, "COURSENAME ");
    EXPECT_EQ(settings.course.Params[1].Note, "");
    EXPECT_EQ(settings.course.Params[2].Note, "");
    EXPECT_EQ(GetParam(settings.course, "coursename", "x"), "Physics");
    EXPECT_EQ(GetParam(settings.course, "cms", "General"), "BB");
}

TEST(Settings, TheHundredthKeyEndsTheRead) {
    std::string config;
    for (int i = 1; i <= 101; ++i)
        config += "Key" + std::to_string(i) + ",v" + std::to_string(i) + "\r\n";
    Settings settings(config.c_str());
    EXPECT_EQ(settings.course.NumParams, 99);
    EXPECT_EQ(GetParam(settings.course, "key99", ""), "v99");
    EXPECT_EQ(GetParam(settings.course, "key100", "none"), "none");
    EXPECT_EQ(GetParam(settings.course, "key101", "none"), "none");
    // A full table takes no new setting, but an existing one still changes.
    SetParam(settings.course, "CMS", "BB");
    SetParam(settings.course, "KEY7", "changed");
    EXPECT_EQ(settings.course.NumParams, 99);
    EXPECT_EQ(GetParam(settings.course, "CMS", "General"), "General");
    EXPECT_EQ(GetParam(settings.course, "key7", ""), "changed");
}

TEST(Settings, SetParamChangesTheFirstRowOrAddsATrimmedOne) {
    Settings settings("\" CMS \",General\r\ncms,Second\r\n");
    EXPECT_EQ(GetParam(settings.course, "Cms", "x"), "General");
    SetParam(settings.course, "cms", " BB ");
    EXPECT_EQ(settings.course.Params[1].Value, " BB ");  // an existing row takes the value as given
    EXPECT_EQ(settings.course.Params[2].Value, "Second");
    SetParam(settings.course, " tallory.exe.major ", " 2 ");
    ASSERT_EQ(settings.course.NumParams, 3);
    EXPECT_EQ(settings.course.Params[3].Key, "tallory.exe.major");
    EXPECT_EQ(settings.course.Params[3].Value, "2");
    // Memory only, until the settings are written.
    EXPECT_EQ(settings.Read("SessionData/Config.csv"), "\" CMS \",General\r\ncms,Second\r\n");
}

TEST(Settings, WebVotingIsReadStraightFromTheFile) {
    const std::tuple<const char*, const char*, bool> cases[] = {
        {"SessionData/Config.csv", "\"EnableWebVoting\" ,\"True\" ,\"\"\r\n", true},
        {"sessiondata/CONFIG.CSV", " enablewebvoting , true \r\n", true},
        {"SessionData/Config.csv", "ENABLEWEBVOTING,yes\r\n", false},
        {"SessionData/Config.csv", "ENABLEWEBVOTING\r\nENABLEWEBVOTING,TRUE\r\n", true},
        {"SessionData/Config.csv", "ENABLEWEBVOTING,no\r\nENABLEWEBVOTING,TRUE\r\n", false},
        {"SessionData/Config.csv", "CMS,General\r\n", false},
        {"SessionData/Other.csv", "ENABLEWEBVOTING,TRUE\r\n", false},
    };
    for (const auto& [file, content, enabled] : cases) {
        TempCourse folder;
        folder.Write(file, content);
        EXPECT_EQ(IsWebVotingEnabled(folder.Path()), enabled) << content;
    }
}

TEST(Settings, SelectedClassIsRememberedUnderClasses) {
    TempCourse program;
    EXPECT_EQ(ReadSelectedClass(program.Path()), "");
    program.Write("Classes/Options.csv", "old\r\n");
    RecordingHost host;
    SaveSelectedClass(program.Path(), "Physics 101", host);
    EXPECT_EQ(program.Read("Classes/Options.csv"), "\"SelectedClass\",\"Physics 101\"\r\n");
    EXPECT_EQ(ReadSelectedClass(program.Path()), "Physics 101");

    program.Write("Classes/Options.csv", "junk\r\n selectedclass , Chemistry ,x\r\n");
    EXPECT_EQ(ReadSelectedClass(program.Path()), "Chemistry");
}

}  // namespace
}  // namespace tallory
