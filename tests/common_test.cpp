#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "TestSupport.h"
#include "common/AtomicFile.h"
#include "common/LinePrinter.h"
#include "common/LineReader.h"
#include "common/Numbers.h"
#include "common/Paths.h"
#include "common/Table.h"
#include "common/Text.h"
#include "start/Fields.h"
#include "start/Settings.h"

namespace tallory {
namespace {

TEST(Numbers, TextsOfTheLinePrinterAndPlainConversion) {
    // NumberText's general form is checked against the printer by fuzz_numbers; here the item's
    // sign place, the dropped zero before the point and the trailing blank.
    // clang-format off
    const std::tuple<double, const char*, const char*> cases[] = {
        {12, " 12 ", "12"}, {-0.5, "-.5 ", "-0.5"}, {0, " 0 ", "0"}, {0.1 + 0.2, " .3 ", "0.3"},
        {1e15, " 1E+15 ", "1E+15"}, {-1e-10, "-1E-10 ", "-1E-10"},
        {1.0 / 3, " .333333333333333 ", "0.333333333333333"},
    };
    // clang-format on
    for (const auto& [value, item, text] : cases) {
        EXPECT_EQ(NumberItem(value), item) << value;
        EXPECT_EQ(NumberText(value), text) << value;
    }
}

TEST(Numbers, RoundingHalvesToEvenAndFormatsAwayFromZero) {
    // The value, the places, Round's result, and FormatFixed's to two places.
    const std::tuple<double, int, double, const char*> cases[] = {
        {47.5, 0, 48, "47.50"},        {52.5, 0, 52, "52.50"},   {7.0 / 3, 2, 2.33, "2.33"},
        {2.675, 2, 2.68, "2.68"},      {2.665, 2, 2.66, "2.67"}, {-2.5, 0, -2, "-2.50"},
        {0.125, 2, 0.12, "0.13"},      {0, 2, 0, "0.00"},        {1e-10, 2, 0, "0.00"},
        {123.456, 1, 123.5, "123.46"}, {0.5, 0, 0, "0.50"},      {1.5, 0, 2, "1.50"},
    };
    for (const auto& [value, places, even, fixed] : cases) {
        EXPECT_DOUBLE_EQ(Round(value, places), even) << value;
        EXPECT_EQ(FormatFixed(value, 2), fixed) << value;
    }
    EXPECT_EQ(Int(2.9), 2);
    EXPECT_EQ(Int(-2.1), -3);
}

TEST(Numbers, FixedFormOfDecimalsRoundsTheirDigitsHalfAwayFromZero) {
    // Thousandths across the range the reports print, and far larger ones, each to 0 to 4 places,
    // against whole-number arithmetic on the thousandths themselves.
    const long long power[] = {1, 10, 100, 1000, 10000};
    for (long long k = -3000000; k <= 3000000; k += 997) {
        for (long long thousandths : {k, k * 12345679}) {
            const long long magnitude = thousandths < 0 ? -thousandths : thousandths;
            for (int places = 0; places <= 4; ++places) {
                const long long down = power[3 - std::min(places, 3)];
                const long long kept = places > 3 ? magnitude * 10 : (magnitude + down / 2) / down;
                std::string expected = std::to_string(kept / power[places]);
                if (places > 0) {
                    const std::string fraction = std::to_string(kept % power[places]);
                    expected += "." + std::string(places - fraction.size(), '0') + fraction;
                }
                if (thousandths < 0 && kept != 0) expected.insert(0, "-");
                ASSERT_EQ(FormatFixed(thousandths / 1000.0, places), expected)
                    << thousandths << " to " << places;
            }
        }
    }
}

TEST(Numbers, ConversionsAcceptWhatThePollingApplicationWrites) {
    // nullopt: not a number. numbers_test holds the fast conversions to the reference ones.
    const std::pair<const char*, std::optional<double>> cases[] = {
        {" 12 ", 12}, {" .5", 0.5}, {"+3", 3},     {"1E-10", 1e-10}, {"2.", 2}, {"", {}},
        {" ", {}},    {"1,5", {}},  {"12abc", {}}, {".", {}},        {"-", {}}, {"1e", {}},
    };
    for (const auto& [text, number] : cases) {
        double value = -99;
        EXPECT_EQ(IsNumeric(text), number.has_value()) << text;
        EXPECT_EQ(ToDouble(text, value), number.has_value()) << text;
        EXPECT_DOUBLE_EQ(number ? value : 0, number.value_or(0)) << text;
    }
    int16_t small = 0;
    EXPECT_TRUE(ToInt16(" 2.5 ", small));
    EXPECT_EQ(small, 2);
    EXPECT_FALSE(ToInt16("40000", small));
    EXPECT_EQ(LeadingNumber(" 3.5 points"), 3.5);
    EXPECT_EQ(LeadingNumber("abc"), 0);
}

TEST(Fields, SplitsAsTheCourseFilesNeed) {
    const std::tuple<const char*, int, int, std::vector<std::string>> cases[] = {
        {"a,b,c,d,e,f,g,h", 5, 5, {"a", "b", "c", "d", "e", "f:g:h"}},
        {"", 9, -1, {}},
        {"a,b,", 9, 1, {"a", "b"}},
        {"a,,", 9, 1, {"a", ""}},
        {"\"x,y\" ,\"z\"", 9, 1, {"x,y ", "z"}},
        {"a\nb", 9, 1, {"a", "b"}},
        {"\"a\nb\",c", 9, 1, {"a\nb", "c"}},
        {"\"He said \"\"hi\"\"\",2", 9, 1, {"He said hi", "2"}},
        {"\"open, to the end", 9, 0, {"open, to the end"}},
        {" a , b ", 9, 1, {" a ", " b "}},
    };
    for (const auto& [line, top, count, expected] : cases) {
        Fields fields(top);
        SplitFields(line, fields);
        EXPECT_EQ(fields.Count(), count) << line;
        for (size_t i = 0; i < expected.size(); ++i)
            EXPECT_EQ(fields[static_cast<int>(i)], expected[i]) << line << " field " << i;
    }
    EXPECT_TRUE(SameText(" abc ", "ABC"));
    EXPECT_FALSE(SameText("abc", "abd"));
}

// A file and the same text given whole read alike, which lets every reader of a course file work
// on a text instead.
TEST(LineReader, EndsLinesAtCrOrCrLfKeepsLoneLfAndReadsATextAsItsFile) {
    const std::string longLine(200000, 'x');  // longer than any read buffer
    const std::tuple<std::string, std::vector<std::string>> cases[] = {
        {"one\r\ntwo\rthree\nstill three\r\n\r\nlast",
         {"one", "two", "three\nstill three", "", "last"}},
        {"", {}},
        {"\r\n", {""}},
        {"\xFF\xFE\x61,b\r\nc\r", {"\xFF\xFE\x61,b", "c"}},  // \x61: "a"
        {longLine + "\r\n" + longLine + "\r", {longLine, longLine}},
    };
    test::TempCourse course;
    for (const auto& [content, lines] : cases) {
        SCOPED_TRACE(content.substr(0, 20));
        course.Write("a.txt", content);
        LineReader file(course.File("a.txt"));
        LineReader text("a.txt", content);
        EXPECT_EQ(file.Text(), content);
        std::vector<std::string> fromFile, fromText;
        for (std::string line; file.ReadLine(line);) fromFile.push_back(line);
        for (std::string line; text.ReadLine(line);) fromText.push_back(line);
        EXPECT_EQ(fromFile, lines);
        EXPECT_EQ(fromText, lines);
        EXPECT_EQ(file.LineNumber(), text.LineNumber());
    }
    std::string line;
    LineReader missing(course.File("missing.txt"));
    EXPECT_FALSE(missing.IsOpen());
    EXPECT_FALSE(missing.ReadLine(line));
}

TEST(LinePrinter, LeavesTheLastLineOpen) {
    test::TempCourse course;
    AtomicFile file(course.File("out.csv"));
    ASSERT_TRUE(file.Open());
    LinePrinter printer(file);
    printer.NewLine().Text("a,").Number(0.5).Text(",");
    printer.NewLine().Number(-1);
    printer.Flush();
    ASSERT_TRUE(file.Commit());
    EXPECT_EQ(course.Read("out.csv"), "a, .5 ,\r\n-1 ");
}

TEST(LinePrinter, NumbersPrintedAgainAreTheSameItems) {
    // Far more values than the printer keeps, each printed several times in an order that makes
    // them meet in its slots; zero and minus zero, and items too long to keep, among them.
    std::vector<double> pool = {0.0, -0.0, 1e300 / 7, -2.0 / 3 * 1e-200};
    for (int i = 0; i < 3000; ++i)
        pool.push_back(i % 3 == 0 ? i / 10.0 : i % 3 == 1 ? -i : i / 7.0);
    test::TempCourse course;
    AtomicFile file(course.File("out.csv"));
    ASSERT_TRUE(file.Open());
    LinePrinter printer(file);
    std::string expected;
    uint32_t state = 1;
    for (int n = 0; n < 20000; ++n) {
        state = state * 1664525u + 1013904223u;
        const double value = pool[(state >> 8) % pool.size()];
        printer.Number(value);
        expected += NumberItem(value);
    }
    printer.Flush();
    ASSERT_TRUE(file.Commit());
    EXPECT_EQ(course.Read("out.csv"), expected);
}

TEST(AtomicFile, FailureLeavesTheOldFileWhole) {
    test::TempCourse course;
    course.Write("keep.csv", "old");
    {
        AtomicFile file(course.File("keep.csv"));
        ASSERT_TRUE(file.Open());
        file.Write("half of the new");
        // dropped without Commit
    }
    EXPECT_EQ(course.Read("keep.csv"), "old");
    EXPECT_TRUE(ReplaceFile(course.File("keep.csv"), "new"));
    EXPECT_EQ(course.Read("keep.csv"), "new");
    EXPECT_FALSE(ReplaceFile(course.File("no-such-folder/x.csv"), "x"));
    EXPECT_EQ(ListFiles(course.Path()).size(), 1u);  // no temporary file left behind
}

TEST(Paths, ResolveWithoutRegardToCase) {
    test::TempCourse course;
    course.Write("sessiondata/CONFIG.csv", "x");
    EXPECT_EQ(CoursePath(course.Path(), "\\SessionData\\Config.csv"),
              course.Path() + "/sessiondata/CONFIG.csv");
    EXPECT_EQ(CoursePath(course.Path(), "\\SessionData\\RemoteID.csv"),
              course.Path() + "/sessiondata/RemoteID.csv");
    EXPECT_EQ(CoursePath(course.Path(), "\\Images\\"), course.Path() + "/Images/");
    EXPECT_TRUE(FileExists(CoursePath(course.Path(), "\\SESSIONDATA\\config.CSV")));
    CreateFolderPath(course.Path() + "/a/b/c");
    EXPECT_TRUE(FolderExists(course.Path() + "/a/b/c"));
    EXPECT_EQ(LastComponent("/x/Physics 101/"), "Physics 101");
}

// Error 9 names the table, and the file and line when a file is being read at the time.
TEST(Table, SubscriptErrorNamesTheTableAndTheFileBeingRead) {
    Table<int, 10> table("Ten");
    table[10] = 5;
    EXPECT_EQ(table[10], 5);
    EXPECT_THROW(table[-1], RunTimeError);
    auto message = [&table] {
        try {
            table[11];
        } catch (const RunTimeError& error) {
            return error.Message();
        }
        return std::string("no error");
    };
    const std::string bound =
        "Run-time error '9': Subscript out of range\nTable Ten, row 11 "
        "(rows 0 to 10)";
    EXPECT_EQ(message(), bound);
    {
        LineReader outer("/course/Roster.txt", "a\rb\rc");
        std::string line;
        EXPECT_EQ(message(), bound);  // nothing read yet: the error is not the file's
        outer.ReadLine(line);
        outer.ReadLine(line);
        EXPECT_EQ(message(), bound + "\nFile /course/Roster.txt, line 2");
        {
            LineReader inner("/course/gradebook.csv", "x");
            inner.ReadLine(line);
            EXPECT_EQ(message(), bound + "\nFile /course/gradebook.csv, line 1");
        }
        EXPECT_EQ(message(), bound + "\nFile /course/Roster.txt, line 2");
    }
    EXPECT_EQ(message(), bound);
}

TEST(Text, DisplayDecodesWindows1252WhenNotUtf8) {
    EXPECT_EQ(DisplayText("Caf\xc3\xa9"), "Caf\xc3\xa9");
    EXPECT_EQ(DisplayText("Caf\xe9"), "Caf\xc3\xa9");
    EXPECT_EQ(DisplayText("\x93q\x94"), "\xe2\x80\x9cq\xe2\x80\x9d");
    EXPECT_EQ(ReplaceAllNoCase("Deleted :- 'q'|y", "|Y", ""), "Deleted :- 'q'");
}

// ---- The fast conversions against the standard library's: the same answer and the same double,
// bit for bit, for every short text (fuzz_numbers takes them further, and holds NumberText to the
// printer's general form).

uint64_t Bits(double value) {
    uint64_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

// What the conversions make of a text, as one line: the fast ones, or the references each must
// equal bit for bit. The look-up for texts inside a line reads 8 bytes whatever the text's length:
// the bytes past the text must not matter.
std::string Conversions(const std::string& text, bool fast) {
    const std::string padded = text + "9,9\"9e9x9";
    const std::string_view inLine = std::string_view(padded).substr(0, text.size());
    double number = -7, readable = -7, leading;
    int16_t count = -7, countInLine = -7;
    std::string answers;  // numeric, as a count, in a line, a count in a line, IsNumeric
    if (fast) {
        for (bool answer :
             {ToDouble(text, number), ToInt16(text, count), ToDoubleReadable(inLine, readable),
              ToInt16Readable(inLine, countInLine), IsNumeric(text)})
            answers += answer ? '1' : '0';
        leading = LeadingNumber(text);
    } else {
        const bool numeric = ToDoubleReference(text, number);
        const bool fits = numeric && RoundToInt16(number, count);
        readable = number;
        countInLine = count;
        for (bool answer : {numeric, fits, numeric, fits, numeric}) answers += answer ? '1' : '0';
        leading = LeadingNumberReference(text);
    }
    return answers + " " + std::to_string(Bits(number)) + " " + std::to_string(Bits(readable)) +
           " " + std::to_string(count) + " " + std::to_string(countInLine) + " " +
           std::to_string(Bits(leading));
}

// Returns the number of texts that disagree, and reports the first few.
int CountDisagreements(const std::vector<std::string>& texts) {
    int wrong = 0;
    for (const std::string& text : texts) {
        const std::string fast = Conversions(text, true), reference = Conversions(text, false);
        if (fast != reference && ++wrong <= 10)
            ADD_FAILURE() << "\"" << text << "\": " << fast << ", reference " << reference;
    }
    return wrong;
}

TEST(NumberConversion, EveryShortTextOfNumberCharactersGivesTheReferenceDouble) {
    // Every text of up to five characters over the characters that make or break a number.
    const std::string alphabet = " \t+-.019eEdDx,";
    std::vector<std::string> texts = {""};
    for (size_t from = 0, length = 1; length <= 5; ++length) {
        size_t to = texts.size();
        for (size_t i = from; i < to; ++i)
            for (char c : alphabet) texts.push_back(texts[i] + c);
        from = to;
    }
    EXPECT_EQ(CountDisagreements(texts), 0);
    // Again, now that short texts have answers remembered, in another order.
    std::reverse(texts.begin(), texts.end());
    EXPECT_EQ(CountDisagreements(texts), 0);
}

// ---- Config.csv

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
        test::TempCourse folder;
        folder.Write(file, content);
        EXPECT_EQ(IsWebVotingEnabled(folder.Path()), enabled) << content;
    }
}

TEST(Settings, SelectedClassIsRememberedUnderClasses) {
    test::TempCourse program;
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
