#include "SupportForFiles.h"
#include "TestSupport.h"
#include "common/Paths.h"
#include "registration/RemoteTable.h"
#include "registration/Roster.h"

namespace tallory {
namespace {

struct Folder : test::LoadedCourse {
    Folder() { course.AppPath = Path(); }

    void ReadRosterText(std::string_view text) {
        WriteRoster(text);
        ReadRoster(course, File("Roster.txt"));
    }
    void ReadClassText(std::string_view text) {
        Write("class.txt", text);
        ReadWebCTRoster(course, host);
    }
    void ReadRemotesText(std::string_view text) {
        WriteRemotes(text);
        ReadRemoteIds(course, host, File("SessionData/RemoteID.csv"));
    }
    std::vector<std::string> RosterIds() const {
        std::vector<std::string> ids;
        for (int i = 1; i <= course.NumRosterIDs; ++i) ids.push_back(course.RosterIDs[i]);
        return ids;
    }
    // "student=remote" per row of the remote table.
    std::vector<std::string> Remotes() const {
        std::vector<std::string> rows;
        for (int i = 1; i <= course.NumRemotes; ++i)
            rows.push_back(course.RemoteTable[i].StudentId + "=" + course.RemoteTable[i].RemoteId);
        return rows;
    }
};

using Ids = std::vector<std::string>;

// ---- Roster.txt

TEST(Roster, ReadsLastFirstAndIdFromEachLine) {
    const std::tuple<const char*, const char*, const char*, const char*> cases[] = {
        {"Doe, Jane, 12345", "12345", "Jane", "Doe"},
        {"12345", "12345", "", "12345"},
        {"\"Doe, Jr.\",Jane,22222", "22222", "Jane", "Doe, Jr."},
        {"Roe,John,X", "Roe", "John", "Roe"},  // a one-character third field is no ID
        {"Poe,Edgar,\"33333\",extra,fields,here,and,more", "33333", "Edgar", "Poe"},
    };
    for (const auto& [line, id, first, last] : cases) {
        Folder f;
        f.ReadRosterText(std::string(line) + "\r\n");
        ASSERT_EQ(f.course.NumRoster, 1) << line;
        const RosterRec& entry = f.course.Roster[0];
        EXPECT_EQ(std::tie(entry.StudentId, entry.FirstName, entry.LastName),
                  std::tuple(id, first, last))
            << line;
        EXPECT_EQ(f.RosterIds(), Ids{id}) << line;
    }
}

TEST(Roster, SortsIdsBinaryAndLeavesOutOneCharacterIdsAndComments) {
    Folder f;
    f.ReadRosterText(
        "!Last,First,ID\r\n"
        "b,Bea,b22\r\n"
        "\r\n"
        "A,Al,A11\r\n"
        "X\r\n"  // a one-character ID: a roster student, but not one of the IDs
        "a,Ann,a10\r\n"
        "B,Ben,B20\r\n"
        "Twice,First,A11\r\n");  // a repeated ID overwrites the name and is listed again
    EXPECT_EQ(f.RosterIds(), (Ids{"A11", "A11", "B20", "a10", "b22"}));
    EXPECT_EQ(f.course.NumRoster, 5);
    EXPECT_EQ(FindRosterRow(f.course, "!Last"), -1);
    EXPECT_EQ(GetRosterEntry(f.course, "x").LastName, "X");
    EXPECT_EQ(GetRosterEntry(f.course, "a11").LastName, "Twice");
}

TEST(Roster, ASecondReadKeepsTheRowsAndStartsTheIdsOver) {
    Folder f;
    f.ReadRosterText("Doe,Jane,S1\r\nRoe,Rick,S2\r\n");
    UpdateRosterRemote(f.course, "S1", "AB12", false);
    f.ReadRosterText("Doe,Janet,S1\r\nNew,Nina,S3\r\n");
    EXPECT_EQ(f.course.NumRoster, 3);
    EXPECT_EQ(f.RosterIds(), (Ids{"S1", "S3"}));
    // The registration survives the new names.
    const RosterRec jane = GetRosterEntry(f.course, "s1");
    EXPECT_EQ(std::tie(jane.FirstName, jane.RemoteId), std::tuple("Janet", "AB12"));
    EXPECT_EQ(GetRosterEntry(f.course, "S2").LastName, "Roe");

    ReadRoster(f.course, f.File("Missing.txt"));
    EXPECT_EQ(std::tuple(f.course.NumRosterIDs, f.course.NumRoster), std::tuple(0, 3));
    ReadRoster(f.course, "");
    EXPECT_EQ(f.course.NumRoster, 3);
}

TEST(Roster, MoreThanFourThousandStudentsEndTheReadQuietly) {
    Folder f;
    std::string text;
    for (int i = 4100; i > 0; --i) text += "Last,First,S" + std::to_string(10000 + i) + "\r\n";
    f.ReadRosterText(text);
    EXPECT_EQ(f.course.NumRoster, kMaxRoster);
    ASSERT_EQ(f.course.NumRosterIDs, kMaxRoster);
    EXPECT_EQ(std::tie(f.course.RosterIDs[1], f.course.RosterIDs[kMaxRoster]),
              std::tuple("S10101", "S14100"));
    EXPECT_EQ(FindRosterRow(f.course, "S10101"), kMaxRoster - 1);
    EXPECT_EQ(FindRosterRow(f.course, "S10100"), -1);
}

TEST(Roster, LookUpIgnoresCaseAndBlanksAndAddsOnlyWhenAsked) {
    Folder f;
    f.ReadRosterText("Doe,Jane,S1\r\n");
    EXPECT_EQ(FindRosterRow(f.course, " s1 ", false), 0);
    EXPECT_EQ(FindRosterRow(f.course, "S2", false), -1);
    EXPECT_EQ(GetRosterEntry(f.course, "S2").StudentId, "");
    EXPECT_EQ(f.course.NumRoster, 1);
    EXPECT_EQ(FindRosterRow(f.course, "S2", true), 1);
    EXPECT_EQ(std::tie(f.course.NumRoster, f.course.Roster[1].StudentId), std::tuple(2, "S2"));
    EXPECT_EQ(FindRosterRow(f.course, "s2"), 1);

    ClearRoster(f.course);
    EXPECT_EQ(
        std::tuple(f.course.NumRoster, FindRosterRow(f.course, "S1"), f.course.Roster[0].LastName),
        std::tuple(0, -1, ""));
}

TEST(Roster, UpdateRosterRemoteKeepsTheLargerRemoteWhenAsked) {
    const std::tuple<const char*, const char*, bool, const char*> cases[] = {
        {"", "A1", true, "A1"},    {"B2", "A1", true, "B2"}, {"A1", "B2", true, "B2"},
        {"B2", "A1", false, "A1"}, {"b2", "B2", true, "b2"},
    };
    for (const auto& [held, offered, keepLarger, result] : cases) {
        Folder f;
        f.ReadRosterText("Doe,Jane,S1\r\n");
        f.course.Roster[0].RemoteId = held;
        EXPECT_EQ(UpdateRosterRemote(f.course, "S1", offered, keepLarger), 0);
        EXPECT_EQ(f.course.Roster[0].RemoteId, result) << held << " " << offered;
    }
    // A student found only in the logs enters the roster with empty names.
    Folder f;
    EXPECT_EQ(UpdateRosterRemote(f.course, "S9", "C3", true), 0);
    const RosterRec s9 = GetRosterEntry(f.course, "S9");
    EXPECT_EQ(std::tie(s9.RemoteId, s9.LastName), std::tuple("C3", ""));
}

// ---- class.txt

TEST(WebCTRoster, TakesColumnsFromTheHeaderAndOrdersByLastName) {
    Folder f;
    f.ReadClassText(
        " user id ,\"First Name\",Last Name,Grade\r\n"
        "u300,Cy,Zeta,10\r\n"
        "u100,\"Ann, Marie\",Alpha,9\r\n"
        "x,One,Letter,1\r\n"  // a user ID of one character is no student
        "u200,Bob,Alpha,8\r\n");
    EXPECT_TRUE(f.host.messages.empty());
    // Equal last names: the later row of the file goes first.
    EXPECT_EQ(f.RosterIds(), (Ids{"u200", "u100", "u300"}));
    ASSERT_EQ(f.course.NumRoster, 3);
    const RosterRec ann = GetRosterEntry(f.course, "U100");
    EXPECT_EQ(std::tie(ann.FirstName, ann.LastName), std::tuple("Ann, Marie", "Alpha"));
    EXPECT_EQ(FindRosterRow(f.course, "x"), -1);
}

TEST(WebCTRoster, MissingColumnsAreReportedAndTakeFixedOnes) {
    Folder f;
    f.ReadClassText("Name,Given,Login\r\nDoe,Jane,jd1\r\n");
    EXPECT_EQ(test::Messages(f.host),
              (Ids{"[Tallory] Unable to find UserID field using LastName",
                   "[Tallory] Unable to find Last Name field in class.txt using LastName",
                   "[Tallory] Unable to find First Name field in class.txt using LastName"}));
    EXPECT_EQ(f.host.messages[2].icon, Icon::None);
    // Last name and user ID share column 2; the first name is column 0.
    const RosterRec entry = GetRosterEntry(f.course, "jd1");
    EXPECT_EQ(std::tie(entry.LastName, entry.FirstName), std::tuple("jd1", "Doe"));
}

// No class.txt at all, or an empty one beside the upload tool.
TEST(WebCTRoster, NoStudentsAtAllIsReported) {
    for (bool tool : {false, true}) {
        Folder f;
        if (tool) f.Write("campus bridgeline.EXE", "");
        if (tool) f.Write("class.txt", "");
        ReadWebCTRoster(f.course, f.host);
        EXPECT_EQ(test::Messages(f.host),
                  Ids{test::Said(tool ? "a missing WebCT grade book beside the upload tool"
                                      : "a missing WebCT grade book")});
        EXPECT_EQ(f.host.messages[0].icon, Icon::Information);
    }
}

// ---- RemoteID.csv

TEST(RemoteIds, ReadsRegistrationsAndDropsConflictingLines) {
    const std::tuple<const char*, Ids, int> cases[] = {
        {"#00123ABC,\"S1\"\r\n123abc,S1\r\n", {"S1=123ABC", "S1=123ABC"}, 0},
        {"123ABC,\"S1\"\r\n123ABC,\"s1\"\r\n", {"S1=123ABC"}, 1},  // the test has case
        {"123ABC,\"S1\"\r\n#0123abc,\"S2\"\r\n77,S3\r\n", {"S1=123ABC", "S3=77"}, 1},
        {"A,S1\r\n", {"S1="}, 0},  // one character does not survive the left trim
        {"  B,S2\r\n  CD ,S3\r\n", {"S2=", "S3=CD"}, 0},  // nor one after blanks
        {"123ABC\r\n,\r\nAB12,S1,extra\r\n", {"S1=AB12"}, 0},
        {"#000, S1 \r\n 0x1,S2\r\n", {"S1=0", "S2=X1"}, 0},
        {"\"AB\"\"12\",\"S\"\"1\"\r\n", {"S1=AB12"}, 0},
    };
    for (const auto& [file, rows, conflicts] : cases) {
        Folder f;
        f.ReadRemotesText(file);
        EXPECT_EQ(f.Remotes(), rows) << file;
        EXPECT_EQ(static_cast<int>(f.host.messages.size()), conflicts) << file;
    }
}

TEST(RemoteIds, ConflictNamesBothStudentsAndTheFirstOneKeepsTheRemote) {
    Folder f;
    f.ReadRemotesText("#123ABC,\"S1\"\r\n00123abc,\"S2\"\r\n#55,\"S2\"\r\n");
    EXPECT_EQ(f.Remotes(), (Ids{"S1=123ABC", "S2=55"}));
    EXPECT_EQ(StudentOfRemote(f.course, "123abc"), "S1");
    // The raw table keeps the remote upper-cased but otherwise as the file had it.
    EXPECT_EQ(std::tie(f.course.RemoteRaw[1].RemoteId, f.course.RemoteRaw[2].RemoteId),
              std::tuple("#123ABC", "#55"));
    EXPECT_EQ(test::Messages(f.host), Ids{"[Remote Assigned to more than one Student] " +
                                          test::Said("a remote registered to two students")});
    EXPECT_EQ(f.host.messages[0].icon, Icon::Exclamation);
    EXPECT_EQ(f.host.progressTexts, (Ids{"Reading Remote Id(s) .... Patience requested",
                                         "Remote Id(s) file read sucessfully"}));
}

TEST(RemoteIds, SameRemoteComparesNormalForms) {
    // Two remotes, whether they are the same, and the normal form of the first.
    const std::tuple<const char*, const char*, bool, const char*> cases[] = {
        {"#00ABCD12", "abcd12", true, "ABCD12"},
        {" 000 ", "0", true, "0"},
        {"##", "#", true, "#"},
        {"#0", "0", true, "0"},
        {"A0", "A", false, "A0"},
        {"10", "1", false, "10"},
        {"#0 ab ", "AB", true, "AB"},
        {"Delete", "DELETE", true, "DELETE"},
        {"\xc3\xa9\x31", "\xc3\x89\x31", false, "\xc3\xa9\x31"},  // \x31: "1"
        {"AB12", "AB123", false, "AB12"},
    };
    for (const auto& [a, b, same, normal] : cases) {
        EXPECT_EQ(SameRemote(a, b), same) << a << " " << b;
        EXPECT_EQ(NormalRemote(a), normal) << a;
    }
}

TEST(RemoteIds, RemotesOfStudentListsEachRemoteOnce) {
    Folder f;
    f.ReadRemotesText("AB12,S1\r\nCD34,S2\r\nCD34,S2\r\nAB12,S1\r\nB12,S1\r\nEF56, S1\r\n");
    EXPECT_EQ(RemotesOfStudent(f.course, "s1"), "AB12,EF56,");  // B12 is part of the list already
    EXPECT_EQ(RemotesOfStudent(f.course, "S9"), "");
}

TEST(RemoteIds, LookUpFollowsAddedAndRemovedRows) {
    Folder f;
    f.ReadRemotesText("#AB12,\"S1\"\r\n#CD34,\"S2\"\r\n#AB12,\"S1\"\r\n#EF56,\"S3\"\r\n");
    EXPECT_EQ(FindRemoteRow(f.course, "ef56"), 4);

    RemoveRemote(f.course, f.host, "AB12");  // the first of its two rows only
    EXPECT_EQ(f.Remotes(), (Ids{"S2=CD34", "S1=AB12", "S3=EF56"}));
    EXPECT_EQ(std::tie(f.course.RemoteTable[4].RemoteId, f.course.RemoteTable[4].StudentId),
              std::tuple("??", "??"));
    EXPECT_EQ(std::tuple(FindRemoteRow(f.course, "AB12"), FindRemoteRow(f.course, "EF56")),
              std::tuple(2, 3));
    EXPECT_EQ(f.Read("SessionData/RemoteID.csv"),
              "#CD34,\"S2\"\r\n#AB12,\"S1\"\r\n#EF56,\"S3\"\r\n");

    AddRemote(f.course, "##0a9", " S4 ");
    EXPECT_EQ(std::tie(f.course.NumNewRemotes, f.course.RemoteTable[4].RemoteId),
              std::tuple(1, "0a9"));
    EXPECT_EQ(StudentOfRemote(f.course, "A9"), "S4");
    AddRemote(f.course, "CD34", "S5");  // the first registration still answers
    EXPECT_EQ(StudentOfRemote(f.course, "cd34"), "S2");

    RemoveRemote(f.course, f.host, "cd34");  // exact text only: nothing removed, file written
    EXPECT_EQ(f.course.NumRemotes, 5);
    EXPECT_EQ(f.Read("SessionData/RemoteID.csv"),
              "#CD34,\"S2\"\r\n#AB12,\"S1\"\r\n#EF56,\"S3\"\r\n#0a9,\"S4\"\r\n#CD34,\"S5\"\r\n");
    RemoveRemote(f.course, f.host, "CD34");
    EXPECT_EQ(StudentOfRemote(f.course, "CD34"), "S5");
    EXPECT_TRUE(f.host.messages.empty());

    ReadRemoteIds(f.course, f.host, f.File("SessionData/None.csv"));  // a missing file
    EXPECT_EQ(f.course.NumRemotes, 0);
    EXPECT_EQ(StudentOfRemote(f.course, "AB12"), "");
}

TEST(RemoteIds, ClickerCheckStartsAfreshOncePerRun) {
    Folder f;
    f.Write("SessionData/clickercheck.TXT", "from an earlier run\r\n");
    LogClickerCheck(f.course, f.host, "first");
    LogClickerCheck(f.course, f.host, "second");
    EXPECT_EQ(f.Read("SessionData/clickercheck.TXT"), "first\r\nsecond\r\n");
    f.course.ClickerCheckStarted = false;
    LogClickerCheck(f.course, f.host, "third");
    EXPECT_EQ(f.Read("SessionData/clickercheck.TXT"), "third\r\n");
}

TEST(RemoteIds, TypedRemoteKeysAreHexDigitsBackspaceAndEnter) {
    for (int key : std::initializer_list<int>{'0', '9', 'A', 'F', 'a', 'f', 8, 13})
        EXPECT_TRUE(IsRemoteIdKey(key)) << key;
    for (int key : std::initializer_list<int>{'/', ':', '@', 'G', '`', 'g', ' ', '#', 0, 127, 200})
        EXPECT_FALSE(IsRemoteIdKey(key)) << key;
}

}  // namespace
}  // namespace tallory
