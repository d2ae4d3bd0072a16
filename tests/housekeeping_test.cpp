#include <array>
#include <set>

#include "TestSupport.h"
#include "common/RunTimeError.h"
#include "grid/CourseLoad.h"
#include "housekeeping/FilterGhostRemote.h"
#include "housekeeping/GhostRemote.h"
#include "housekeeping/PurgeClickerLogs.h"
#include "housekeeping/UnregisteredStudents.h"
#include "logs/SessionLog.h"

namespace tallory {
namespace {

// The sample course, or another course folder of tests/data: three sessions, S1 and S2 registered
// (S2 with two clickers), S3 and S4 on the roster without a clicker, and two stray clickers,
// ABC123 and 99.
struct SampleCourse : test::LoadedCourse {
    HeadlessScreen& screen = grid.screen;
    UnregisteredTable students;

    explicit SampleCourse(const std::string& folder = "housekeeping/course") {
        CopyFrom(test::DataPath(folder));
        Load();
        BuildUnregisteredList(course, students);
        host.progressTexts.clear();
    }
    // Whether every log holds the bytes of the sample's logs under tests/data/housekeeping/`set`.
    bool LogsAre(const std::string& set) const {
        bool same = true;
        for (const char* log : {"L2609071000.csv", "L2609091000.csv", "L2609111000.csv"})
            same &= Log(log) ==
                    test::ReadBytes(test::DataPath("housekeeping/" + set + "/SessionData/" + log));
        return same;
    }
};

// A course held in memory only: `ids` become rows of Students with the given totals.
struct StudentRows {
    Course course;
    RecordingHost host;
    HeadlessScreen screen;
    UnregisteredTable students;

    StudentRows(std::initializer_list<std::pair<std::string, double>> rows, int sessions = 3) {
        course.NumSessions = sessions;
        for (const auto& [id, total] : rows) Add(id, total);
    }
    void Add(const std::string& id, double total = 0) {
        StudentRec& student = course.Students[++course.NumStudents];
        student.StudentId = id;
        student.RemoteId = id[0] == '#' ? id.substr(1) : "Unregistered";
        student.Score[0] = total;
    }
    GhostRemoteScreen Ghosts() {
        GhostRemoteScreen screen(course, host, this->screen, students);
        screen.Load();
        return screen;
    }
};

TEST(PadRemote, FillsToEightAndRefusesLonger) {
    const std::pair<const char*, const char*> rows[] = {
        {"ABC123", "00ABC123"}, {"#12AB34", "0012AB34"},  {"#1#2", "00000012"},
        {"", "00000000"},       {"12345678", "12345678"}, {"#12345678", "12345678"},
        {"123456789", nullptr}, {"ABCDEF0123", nullptr},  // nullptr: the run-time error
    };
    for (const auto& [remote, shown] : rows) {
        std::string padded;
        const int error =
            test::EndingOf([&, remote = remote] { padded = PadRemote(remote); }).number;
        EXPECT_EQ(error, shown ? 0 : kInvalidProcedureCall) << remote;
        EXPECT_EQ(padded, shown ? shown : "") << remote;
    }
}

TEST(GhostList, HoldsTheUnregisteredRemotesWithTotalsAndAverages) {
    StudentRows rows(
        {{"S1", 9}, {"#ABC123", 7}, {"#5", 0}, {"#77", -4}, {"#0C0FFEE", 2.345 * 3}, {"S2", 1}});
    GhostRemoteScreen screen = rows.Ghosts();
    // The remote shown, its total, its average and the average shown.
    const std::tuple<const char*, double, double, const char*> expected[] = {
        {"00ABC123", 7, 2.33, "2.33"},
        {"00000005", 0, 0, "0"},
        {"00000077", -4, 0, "0"},           // a negative total shows an average of 0 beside it
        {"00C0FFEE", 7.035, 2.34, "2.34"},  // 2.345: the half goes to the even neighbour
    };
    ASSERT_EQ(screen.GhostCount(), 4);
    for (int i = 0; i < 4; ++i) {
        const GhostRec& row = screen.GhostList()[i];
        const auto& [remote, total, average, averageText] = expected[i];
        EXPECT_DOUBLE_EQ(row.Total, total);
        EXPECT_EQ(std::tuple(row.RemoteId, row.Average, screen.Row(i).TxtSerial.text,
                             screen.Row(i).TxtAverage.text),
                  std::tuple(remote, average, std::to_string(i + 1), averageText));
    }
    EXPECT_EQ(screen.Row(2).TxtTotal.text, "-4");
    EXPECT_EQ(screen.Row(4).TxtRemoteID.text, "");
    // No roster student without a clicker: the students' tab is closed. An empty list leaves
    // nothing but that tab.
    EXPECT_FALSE(screen.CmdUnRegisteredStudents().enabled);
    EXPECT_TRUE(screen.CmdDelete().enabled);
    StudentRows registered({{"S1", 3}});
    registered.students[0] = {"Clark", "Cy", "S3", 0};
    GhostRemoteScreen empty = registered.Ghosts();
    EXPECT_TRUE(empty.CmdUnRegisteredStudents().enabled);
    EXPECT_FALSE(empty.CmdSelectAll().enabled || empty.CmdDelete().enabled ||
                 empty.CmdUnRegisteredClickers().enabled || empty.Headings()[0].button.enabled);

    StudentRows noSessions({{"#A1", 5}}, 0);
    EXPECT_EQ(noSessions.Ghosts().Row(0).TxtAverage.text, "0");
    StudentRows tooLong({{"#ABC123", 1}, {"#123456789", 2}});
    const test::Ending ending = test::EndingOf([&] { tooLong.Ghosts(); });
    EXPECT_EQ(ending.number, kInvalidProcedureCall);
    EXPECT_TRUE(test::Holds(ending.message, "Invalid procedure call or argument"));
}

TEST(GhostList, ScrollsOnlyWhenTheRowsDoNotFit) {
    // Rows, whether the bar is on, its maximum, and the first row after Page Down.
    const std::tuple<int, bool, int, int> cases[] = {
        {3, false, -6, 0}, {9, false, 0, 0}, {10, true, 1, 1}, {30, true, 21, 9}};
    for (const auto& [count, enabled, maximum, afterPageDown] : cases) {
        SCOPED_TRACE(count);
        StudentRows rows({});
        for (int i = 0; i < count; ++i) rows.Add("#" + std::to_string(100 + i));
        GhostRemoteScreen screen = rows.Ghosts();
        EXPECT_EQ(std::tuple(screen.VsScr().enabled, screen.VsScr().maximum),
                  std::tuple(enabled, maximum));
        screen.RowKeyDown(kKeyPageDown);
        EXPECT_EQ(screen.VsScr().value, afterPageDown);
        EXPECT_EQ(screen.Row(0).TxtSerial.text, std::to_string(afterPageDown + 1));
        screen.RowKeyDown('A');  // other keys do nothing
        EXPECT_EQ(screen.VsScr().value, afterPageDown);
        screen.RowKeyDown(kKeyPageUp);
        EXPECT_EQ(screen.VsScr().value, 0);
    }
}

TEST(GhostList, TicksFollowTheBoxesAndTheButtons) {
    StudentRows rows({{"#A1", 1}, {"#A2", 2}, {"#A3", 3}});
    GhostRemoteScreen screen = rows.Ghosts();
    screen.ChkSelectClick(1, true);
    EXPECT_EQ(screen.GhostList()[1].Selected, kTrue);
    EXPECT_TRUE(screen.Row(1).ChkSelect.checked);
    screen.ChkSelectClick(5, true);  // a box on a row without a remote is simply cleared again
    EXPECT_FALSE(screen.Row(5).ChkSelect.checked);
    screen.CmdSelectAllClick();
    for (int i = 0; i < 3; ++i) EXPECT_TRUE(screen.Row(i).ChkSelect.checked);
    EXPECT_EQ(screen.GhostList()[3].Selected, kFalse);  // rows that do not count stay out
    screen.ChkSelectClick(0, false);
    EXPECT_EQ(screen.GhostList()[0].Selected, kFalse);
    screen.CmdUnSelectAllClick();
    for (int i = 0; i < 3; ++i) EXPECT_EQ(screen.GhostList()[i].Selected, kFalse);
}

// The list the search works on (remote, total, average), with a tick by hand on row 1.
GhostTable SearchList() {
    GhostTable list;
    const std::tuple<const char*, double, double> rows[] = {
        {"00ABC123", 7, 2.33}, {"00000099", 4, 1.33}, {"0012AB34", 10, 3.33},
        {"00FACE01", 0, 0},    {"0000BEEF", 3, 1},
    };
    for (int16_t serial = 0; serial < 5; ++serial) {
        const auto& [remote, total, average] = rows[serial];
        list[serial] = {remote, total, average, serial == 1 ? kTrue : kFalse, serial};
    }
    return list;
}

TEST(FilterGhostRemote, CriteriaAddUpOnTopOfEachOther) {
    using B = SearchBox;
    struct {
        std::vector<std::pair<SearchBox, const char*>> boxes;
        std::set<int> ticked;
    } cases[] = {
        {{}, {}},  // the tick by hand is lost by any search
        {{{B::TxtAvgEqual, "1"}}, {4}},
        {{{B::TxtAvgEqual, " 2.33 "}}, {0}},                       // pasted, trimmed
        {{{B::txtAvgGrater, "1"}, {B::TxtAvgLess, "2"}}, {1, 4}},  // both ends inclusive
        {{{B::txtAvgGrater, "2"}}, {0, 2}},
        {{{B::TxtAvgLess, "1"}}, {3, 4}},
        {{{B::TxtAvgEqual, "0"}, {B::txtAvgGrater, "3"}}, {2, 3}},  // the union of both
        {{{B::txtTotal, "4"}}, {1}},
        {{{B::txtTotalGrater, "4"}, {B::txtTotalLess, "7"}}, {0, 1}},
        {{{B::txtTotalGrater, "8"}}, {2}},
        {{{B::txtTotalLess, "3"}}, {3, 4}},
        {{{B::TxtRemoteId, "00abc123"}}, {0}},
        {{{B::TxtRemoteId, "ABC123"}}, {}},  // the shown, padded form only
        {{{B::TxtRemoteIdContaining, "ab"}}, {0, 2}},
        {{{B::TxtRemoteIdContaining, "BEEF, 99"}}, {1, 4}},
        {{{B::TxtRemoteIdContaining, "   "}}, {}},
        {{{B::txtTotal, "0"}, {B::TxtRemoteId, "00000099"}, {B::TxtRemoteIdContaining, "34"}},
         {1, 2, 3}},
    };
    for (size_t c = 0; c < std::size(cases); ++c) {
        GhostTable list = SearchList();
        FilterGhostRemoteScreen search(list);
        for (const auto& [box, text] : cases[c].boxes) search.BoxChange(box, text);
        search.CmdSelectClick();
        std::set<int> ticked;
        for (int i = 0; i < 5; ++i)
            if (list[i].Selected == kTrue) ticked.insert(i);
        EXPECT_EQ(ticked, cases[c].ticked) << "case " << c;
        EXPECT_TRUE(search.Hidden());
    }
}

TEST(FilterGhostRemote, PastedTextEndsTheRunAndChangesNothing) {
    for (SearchBox box : {SearchBox::TxtAvgEqual, SearchBox::txtTotalLess}) {
        GhostTable list = SearchList();
        FilterGhostRemoteScreen search(list);
        search.BoxChange(SearchBox::TxtRemoteIdContaining, "AB");
        search.BoxChange(box, "12abc");
        EXPECT_EQ(test::EndingOf([&] { search.CmdSelectClick(); }).number, kTypeMismatch);
        EXPECT_EQ(std::tuple(list[0].Selected, list[1].Selected, search.Hidden()),
                  std::tuple(kFalse, kTrue, false));
    }
}

TEST(FilterGhostRemote, KeysAndClearing) {
    using B = SearchBox;
    // clang-format off
    const std::tuple<SearchBox, int, bool> keys[] = {
        {B::txtTotal, '7', true}, {B::txtTotal, '.', false}, {B::TxtAvgLess, 'A', false},
        {B::TxtAvgLess, 8, true}, {B::TxtRemoteId, 'f', true}, {B::TxtRemoteId, 'G', false},
        {B::TxtRemoteIdContaining, ',', false},
    };
    // clang-format on
    for (const auto& [box, key, taken] : keys) EXPECT_EQ(IsSearchKey(box, key), taken) << key;

    GhostTable list = SearchList();
    FilterGhostRemoteScreen search(list);
    search.BoxChange(SearchBox::txtTotal, "4");
    search.BoxChange(SearchBox::TxtRemoteId, "99");
    search.lvButtons_H1Click();
    for (int b = 0; b < kSearchBoxes; ++b)
        EXPECT_EQ(search.Box(static_cast<SearchBox>(b)).text, "");
    EXPECT_FALSE(search.Hidden());
}

TEST(UnregisteredStudents, TextHasAHeaderABlankLineAndNoQuoting) {
    UnregisteredTable list;
    EXPECT_EQ(UnregisteredText(list, ','), "Last Name,First Name,Student Id\r\n\r\n");
    list[0] = {"Clark", "Cy", "S3", 0};
    list[1] = {"Dunn", "Di, Jr", "S4", 1};
    list[2] = {"Gone", "", "  ", 2};  // no ID: does not count
    EXPECT_EQ(UnregisteredText(list, ','),
              "Last Name,First Name,Student Id\r\n\r\nClark,Cy,S3\r\nDunn,Di, Jr,S4\r\n");
}

TEST(UnregisteredStudents, ListsTheRosterStudentsWithoutAClicker) {
    SampleCourse sample;
    UnregisteredStudentsScreen screen(sample.course, sample.host, sample.students);
    screen.LoadData();
    // The rows as shown: the dialogs' test.
    EXPECT_EQ(screen.RowCount(), 2);

    const std::string csv = "Last Name,First Name,Student Id\r\n\r\nClark,Cy,S3\r\nDunn,Di,S4\r\n";
    const std::string tabs =
        "Last Name\tFirst Name\tStudent Id\r\n\r\nClark\tCy\tS3\r\nDunn\tDi\tS4\r\n";
    const std::tuple<void (UnregisteredStudentsScreen::*)(), const char*, std::string> exports[] = {
        {&UnregisteredStudentsScreen::CmdCSVClick, "Unregistered Student List.CSV", csv},
        {&UnregisteredStudentsScreen::CmdTxtClick, "Unregistered Student List.txt", csv},
        {&UnregisteredStudentsScreen::CmdExcelClick, "Unregistered Student List.xls", tabs},
    };
    for (const auto& [command, file, text] : exports) {
        sample.host.messages.clear();
        (screen.*command)();
        EXPECT_EQ(sample.Read(file), text);
        EXPECT_EQ(test::Messages(sample.host),
                  test::Strings{"[Export] Un Registered Student Data sucessfully Exported to '" +
                                sample.File(file) + "'"});
        EXPECT_EQ(sample.host.messages[0].icon, Icon::Information);
        EXPECT_EQ(sample.host.written.back(), sample.File(file));
    }
    screen.CmdClipboardTabClick();
    EXPECT_EQ(sample.host.clipboard, tabs);
    screen.CmdClipboardClick();
    EXPECT_EQ(sample.host.clipboard, csv);
    EXPECT_EQ(test::Messages(sample.host).back(),
              "[Export] Un Registered Student(s) information copied to clipboard sucessfully");
}

TEST(PurgeClickerLogs, DeletingTwoStrayClickersRewritesEveryLogAsExpected) {
    SampleCourse sample;
    const std::string registrations = sample.Remotes();
    GhostRemoteScreen screen(sample.course, sample.host, sample.screen, sample.students);
    screen.Load();
    ASSERT_EQ(screen.GhostCount(), 2);
    EXPECT_TRUE(screen.CmdUnRegisteredStudents().enabled);
    screen.ChkSelectClick(0, true);
    screen.ChkSelectClick(1, true);
    sample.host.answers = {Answer::Ok};
    screen.CmdDeleteClick();

    EXPECT_EQ(std::tuple(screen.Closed(), screen.Form().visible), std::tuple(true, false));
    EXPECT_EQ(screen.Purged(), (std::vector<std::string>{"00000099", "00ABC123"}));
    EXPECT_TRUE(sample.LogsAre("purged"));
    EXPECT_EQ(sample.Remotes(), registrations);
    for (int s = 1; s <= sample.course.NumStudents; ++s)
        EXPECT_NE(sample.course.Students[s].StudentId[0], '#');

    const auto& texts = sample.host.progressTexts;
    for (const char* text : {"Updating Lectures - 1 Of 4   Deleting clicker log(s) for '00000099'",
                             "Updating Lectures - 3 Of 4   Deleting clicker log(s) for '00ABC123'"})
        EXPECT_NE(std::find(texts.begin(), texts.end(), text), texts.end()) << text;
    EXPECT_EQ(sample.host.progressCaptions.size(), 2u);
    ASSERT_EQ(sample.host.messages.size(), 1u);
    const auto& asked = sample.host.messages[0];
    EXPECT_EQ(std::tuple(asked.icon, asked.buttons, asked.defaultButton),
              std::tuple(Icon::Stop, Buttons::OkCancel, Answer::Cancel));
}

TEST(PurgeClickerLogs, CancelOrNoTickChangesNoLog) {
    for (bool confirm : {false, true}) {
        SampleCourse sample;
        GhostRemoteScreen screen(sample.course, sample.host, sample.screen, sample.students);
        screen.Load();
        int changes = 0;
        screen.onChanged = [&] { ++changes; };
        sample.host.answers = {confirm ? Answer::Ok : Answer::Cancel};
        screen.CmdDeleteClick();
        // Cancel: the screen comes back with nothing changed. OK without a tick: only the reload.
        EXPECT_EQ(std::tuple(screen.Closed(), screen.Form().visible, changes),
                  std::tuple(confirm, !confirm, confirm ? 1 : 2));
        EXPECT_TRUE(sample.host.written.empty());
        EXPECT_EQ(std::count(sample.host.progressTexts.begin(), sample.host.progressTexts.end(),
                             "Loading Session Data"),
                  confirm ? 1 : 0);
    }
}

TEST(PurgeClickerLogs, ProgressOfAPassWithAndWithoutSessions) {
    SampleCourse sample;
    UpdateClickerLogs(sample.course, sample.host, sample.screen, "777", "S2", kFalse, kFalse);
    EXPECT_EQ(sample.host.progressTexts,
              (std::vector<std::string>{"Updating Lectures", "Updating Lectures - 1 Of 4",
                                        "Updating Lectures - 2 Of 4", "Updating Lectures - 3 Of 4",
                                        "Lectures Updated Sucessfully", "Refreshing Data....!"}));
    EXPECT_EQ(sample.host.written.size(), 3u);

    StudentRows empty({}, 0);
    UpdateClickerLogs(empty.course, empty.host, empty.screen, "99", "", kTrue, kTrue);
    const std::vector<std::string> start(empty.host.progressTexts.begin(),
                                         empty.host.progressTexts.begin() + 4);
    EXPECT_EQ(start, (std::vector<std::string>{"Updating Lectures", "Lectures Updated Sucessfully",
                                               "Refreshing Data....!", "Loading Session Data"}));
    EXPECT_FALSE(empty.host.waitCursor);
}

// Two stray clickers (tests/data/housekeeping/two-strays), AAA in the first two logs, BBB in the
// last two; S1 answers A, S2 B, AAA C and BBB D. A rewrite counts the choices over every voter
// before it drops the clicker's lines, so a log keeps counting the votes of the clicker dropped
// last until it is rewritten again.
TEST(PurgeClickerLogs, CountsStillHoldTheVotesOfTheClickerDroppedLast) {
    using Counts = std::array<int, 4>;  // choices A to D of the one question, per log
    // The rows ticked (0 AAA, 1 BBB) and the counts of each log afterwards.
    const std::tuple<std::vector<int>, std::array<Counts, 3>> cases[] = {
        {{0}, {Counts{1, 1, 1, 0}, Counts{1, 1, 1, 1}, Counts{1, 1, 0, 1}}},
        {{1}, {Counts{1, 1, 1, 0}, Counts{1, 1, 1, 1}, Counts{1, 1, 0, 1}}},
        {{0, 1}, {Counts{1, 1, 0, 0}, Counts{1, 1, 0, 1}, Counts{1, 1, 0, 1}}},
    };
    const char* const logs[] = {"L2609071000.csv", "L2609091000.csv", "L2609111000.csv"};
    for (const auto& [ticked, expected] : cases) {
        SampleCourse fixture("housekeeping/two-strays");
        GhostRemoteScreen screen(fixture.course, fixture.host, fixture.screen, fixture.students);
        screen.Load();
        ASSERT_EQ(screen.GhostCount(), 2);
        ASSERT_EQ(screen.GhostList()[0].RemoteId, "00000AAA");
        for (int row : ticked) screen.ChkSelectClick(row, true);
        fixture.host.answers = {Answer::Ok};
        screen.CmdDeleteClick();
        for (int i = 0; i < 3; ++i) {
            Course read;
            ReadSessionLog(read, fixture.File(std::string("SessionData/") + logs[i]));
            const auto& count = read.Questions[1].ResponseCount;
            EXPECT_EQ((Counts{count[1], count[2], count[3], count[4]}), expected[i])
                << logs[i] << " ticked " << ticked.size();
            for (int row : ticked)
                EXPECT_EQ(fixture.Log(logs[i]).find(row == 0 ? "#AAA" : "#BBB"), std::string::npos);
        }
    }
}
}  // namespace
}  // namespace tallory
