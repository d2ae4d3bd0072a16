#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <thread>

#include "LocalHttpServer.h"
#include "SupportForFiles.h"
#include "TestSupport.h"
#include "grid/CourseLoad.h"
#include "registration/RemoteTable.h"
#include "start/Settings.h"
#include "web/CurlFetcher.h"
#include "web/WebRegistration.h"
#include "web/WebSyncScreen.h"
#include "web/WebUpdate.h"

namespace tallory {
namespace {

using test::LocalHttpServer;

std::string DataFile(std::string_view name) {
    return test::ReadBytes(test::DataPath("web/") + std::string(name));
}

// A host that counts the turns the fetch gives to the screen.
struct CountingHost : RecordingHost {
    void YieldEvents() override { ++turns; }
    int turns = 0;
};

TEST(OpenUrlText, ReturnsTheBodyByteForByteAndNothingOnFailure) {
    std::string exact(2048, '\0');
    for (size_t i = 0; i < exact.size(); ++i) exact[i] = static_cast<char>('a' + i % 26);
    const std::string zero("before\0after\xE9", 13);
    const std::string errorPage = "<html><h1>Object not found!</h1></html>";
    const std::string large(5000, 'z');
    LocalHttpServer server([&](const std::string& target) -> LocalHttpServer::Reply {
        if (target == "/exact") return {200, exact};
        if (target == "/zero") return {200, zero};
        if (target == "/large") return {200, large};
        return {404, errorPage};
    });
    const std::tuple<std::string, std::string, int> cases[] = {
        {server.Base() + "exact", exact, 2},  // a full read, then the read that finds the end
        {server.Base() + "zero", zero, 1},
        {server.Base() + "large", large, 4},
        {server.Base() + "missing", errorPage, 1},  // an error page is a body like any other
        {LocalHttpServer::UnusedBase() + "exact", "", 1},
        {"not a url at all", "", 1},
    };
    CurlFetcher fetcher;
    for (const auto& [url, expected, leastTurns] : cases) {
        SCOPED_TRACE(url);
        CountingHost host;
        EXPECT_EQ(fetcher.OpenUrlText(url, host), expected);
        EXPECT_GE(host.turns, leastTurns);
        EXPECT_TRUE(host.messages.empty());
    }
    // Every request asks caches on the way for a fresh copy.
    for (const std::string& head : server.Heads()) EXPECT_TRUE(test::Holds(head, "no-cache"));
}

// Without the network library every fetch fails as an unreachable server does, and the person is
// told once why.
TEST(OpenUrlText, WithoutTheLibraryFailsAndSaysSoOnce) {
    CurlFetcher fetcher("libtallory-no-such-library.so.0");
    CountingHost host;
    EXPECT_EQ(fetcher.OpenUrlText("http://127.0.0.1:1/a", host), "");
    EXPECT_EQ(fetcher.OpenUrlText("http://127.0.0.1:1/b", host), "");
    ASSERT_EQ(host.messages.size(), 1u);
    EXPECT_TRUE(
        test::Holds(host.messages[0].text, "libtallory-no-such-library.so.0 could not be loaded"));
    EXPECT_EQ(host.turns, 2);
}

// --- Fetches that are given up ------------------------------------------------------------------

using Clock = std::chrono::steady_clock;

// Limits small enough for a test to meet them in about a second.
constexpr FetchLimits kTestLimits{std::chrono::milliseconds(500), std::chrono::milliseconds(1000),
                                  64 * 1024};

// The misbehaving servers: after the request, silence (`Silence`); the start of a reply, then
// silence; a body without end.
LocalHttpServer::RawHandler SilenceAfter(const std::string& start) {
    return [start](int connection, const std::atomic<bool>& stopping) {
        test::SendAll(connection, start);
        test::Silence(connection, stopping);
    };
}

void SendForever(int connection, const std::atomic<bool>& stopping) {
    test::SendAll(connection,
                  "HTTP/1.1 200 OK\r\nContent-Type: text/plain\r\nConnection: close\r\n\r\n");
    const std::string line = std::string(1023, 'y') + "\n";
    while (!stopping && send(connection, line.data(), line.size(), MSG_NOSIGNAL) > 0) {
    }
}

// A port that takes no connection: its one place in the queue is taken and it never accepts, so
// a new connection waits for an answer that does not come.
class FullQueue {
  public:
    FullQueue() {
        listener_ = socket(AF_INET, SOCK_STREAM, 0);
        const sockaddr_in address = test::BindToFreePort(listener_);
        port_ = ntohs(address.sin_port);
        listen(listener_, 0);
        for (int& filler : fillers_) {
            filler = socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK, 0);
            connect(filler, reinterpret_cast<const sockaddr*>(&address), sizeof address);
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    ~FullQueue() {
        for (int filler : fillers_) close(filler);
        close(listener_);
    }
    FullQueue(const FullQueue&) = delete;
    FullQueue& operator=(const FullQueue&) = delete;
    std::string Url() const { return "http://127.0.0.1:" + std::to_string(port_) + "/WebReg.csv"; }

  private:
    int listener_ = -1;
    int port_ = 0;
    std::array<int, 3> fillers_{};
};

// Kilobytes of the process's memory: the peak since the last reset, or now.
long MemoryKb(const char* field) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.rfind(field, 0) == 0) return std::stol(line.substr(std::string(field).size()));
    return -1;
}

TEST(OpenUrlText, SlowOrEndlessRepliesAreGivenUpWithinTheLimitsWithAMessage) {
    // The server (none: the full queue), where the fetch stops, a part of its message, and the
    // turns the screen kept at least while the server was silent.
    std::tuple<const char*, LocalHttpServer::RawHandler, FetchStop, const char*, int> cases[] = {
        {"head stalls", test::Silence, FetchStop::TotalTime, "took longer than 1 second", 10},
        {"body stalls",
         SilenceAfter("HTTP/1.1 200 OK\r\nContent-Length: 10000\r\n\r\n" + std::string(3000, 'x')),
         FetchStop::TotalTime, "took longer than 1 second", 10},
        {"body without end", SendForever, FetchStop::TooLarge, "is larger than 64 KB", 32},
        {"announced too large",
         SilenceAfter("HTTP/1.1 200 OK\r\nContent-Length: 2000000000\r\n\r\nzzzz"),
         FetchStop::TooLarge, "is larger than 64 KB", 1},
        {"connection not taken", nullptr, FetchStop::ConnectTime,
         "did not take the connection within 0.5 seconds", 5},
    };
    CurlFetcher fetcher(kCurlLibrary, kTestLimits);
    for (const auto& [name, handler, stop, message, leastTurns] : cases) {
        SCOPED_TRACE(name);
        const auto server = handler ? std::make_unique<LocalHttpServer>(handler) : nullptr;
        const auto queue = handler ? nullptr : std::make_unique<FullQueue>();
        const std::string url = server ? server->Base() + "WebReg.csv" : queue->Url();
        CountingHost host;
        const Clock::time_point start = Clock::now();
        EXPECT_EQ(fetcher.OpenUrlText(url, host), "");
        EXPECT_LT(Clock::now() - start, kTestLimits.total + std::chrono::milliseconds(700));
        EXPECT_EQ(fetcher.Stopped(), stop);
        EXPECT_GE(host.turns, leastTurns);
        ASSERT_EQ(host.messages.size(), 1u);
        EXPECT_TRUE(test::Holds(host.messages[0].text, message));
        EXPECT_TRUE(test::Holds(host.messages[0].text, "127.0.0.1"));
        EXPECT_EQ(host.messages[0].icon, Icon::Exclamation);
    }
    // The next fetch starts afresh.
    LocalHttpServer good([](const std::string&) { return LocalHttpServer::Reply{200, "fine"}; });
    CountingHost host;
    EXPECT_EQ(fetcher.OpenUrlText(good.Base(), host), "fine");
    EXPECT_EQ(fetcher.Stopped(), FetchStop::None);
}

// At the program's own limits an endless reply stops at 16 MB, and the memory it took stays well
// under 100 MB.
TEST(OpenUrlText, AnEndlessReplyStopsAtTheSizeLimitInLittleMemory) {
    LocalHttpServer server(SendForever);
    CurlFetcher fetcher(kCurlLibrary, FetchLimits{.total = std::chrono::seconds(30)});
    CountingHost host;
    std::ofstream("/proc/self/clear_refs") << "5";  // resets the peak
    const long before = MemoryKb("VmRSS:");
    EXPECT_EQ(fetcher.OpenUrlText(server.Base(), host), "");
    const long peak = MemoryKb("VmHWM:");
    EXPECT_EQ(fetcher.Stopped(), FetchStop::TooLarge);
    ASSERT_EQ(host.messages.size(), 1u);
    EXPECT_TRUE(test::Holds(host.messages[0].text, "is larger than 16 MB"));
    ASSERT_GT(before, 0);
    EXPECT_LT(peak - before, 100 * 1024) << "peak " << peak << " kB, before " << before << " kB";
}

// Cancel from the progress window, heard while the server is silent: no message, nothing kept.
TEST(OpenUrlText, CancelStopsAFetchAtOnce) {
    LocalHttpServer server(test::Silence);
    CurlFetcher fetcher(kCurlLibrary, FetchLimits{});  // only the cancel can end it soon
    struct CancellingHost : CountingHost {
        UrlFetcher* fetcher = nullptr;
        void YieldEvents() override {
            if (++turns == 4) fetcher->Cancel();
        }
    } host;
    host.fetcher = &fetcher;
    const Clock::time_point start = Clock::now();
    EXPECT_EQ(fetcher.OpenUrlText(server.Base(), host), "");
    EXPECT_LT(Clock::now() - start, std::chrono::seconds(2));
    EXPECT_EQ(fetcher.Stopped(), FetchStop::Cancelled);
    EXPECT_TRUE(host.messages.empty());
}

TEST(ReadLocalText, EndsEveryLineInCrLf) {
    test::TempCourse folder;
    folder.Write("a.txt", "one\r\ntwo\rthree\nstill three");
    EXPECT_EQ(ReadLocalText(folder.File("a.txt")), "one\r\ntwo\r\nthree\nstill three\r\n");
    EXPECT_EQ(ReadLocalText(folder.File("missing.txt")), "");
}

TEST(WebRegistration, KeysCodesAndHosts) {
    EXPECT_EQ(RemoteLookupKey("AB12"), "0000AB12");
    EXPECT_EQ(RemoteLookupKey("12345678"), "12345678");
    EXPECT_EQ(RemoteLookupKey("123456789A"), "123456789A");  // longer keys go unchanged
    for (const char* code : {"SQL", "sql", "", "x", "SQLhttp://h/?c="})
        EXPECT_TRUE(IsSqlCode(code)) << code;
    for (const char* code : {"local", "demo", "http://h/f.csv"})
        EXPECT_FALSE(IsSqlCode(code)) << code;
    EXPECT_EQ(std::tuple(UrlHostName("http://reg.example.org:8080/svc/"),
                         UrlHostName("https://user@host.example/"), UrlHostName("")),
              std::tuple("reg.example.org", "host.example", ""));
}

// "remote|first|last|ID" per registration read.
test::Strings Rows(const WebRegistrations& regs) {
    test::Strings rows;
    for (int i = 0; i < regs.NumWebRegs; ++i) {
        const auto& r = regs.WebRegs[i];
        rows.push_back(r.RemoteId + "|" + r.FirstName + "|" + r.LastName + "|" + r.StudentId);
    }
    return rows;
}

TEST(WebRegistration, ParsesServiceLinesAndRegistrationFiles) {
    WebRegistrations regs;
    // Fields after the ignored first one: remote, first name, last name, student ID.
    ASSERT_TRUE(
        ReadStudentReply(regs, "  i\t0000AB12\tAnn\t\"Lee\"\tS1\r\n\r\n \r\nx\t0000AB12\tBo\n;\n"));
    // ";" is too short to count; a short line leaves the rest blank.
    EXPECT_EQ(Rows(regs), (test::Strings{"0000AB12|Ann|'Lee'|S1", "0000AB12|Bo||"}));
    EXPECT_FALSE(ReadStudentReply(regs, "   "));
    EXPECT_EQ(regs.NumWebRegs, 0);

    // The confirmation splits at CR LF only and keeps quotes.
    ASSERT_TRUE(ReadConfirmReply(regs, "i\tA\t\"Ann\"\tLee\tS1\r\ni\tB\tBo\tMo\tS2\nmore"));
    EXPECT_EQ(Rows(regs), (test::Strings{"A|\"Ann\"|Lee|S1", "B|Bo|Mo|S2\nmore"}));

    // A file record matches its remote in normal form; several matches give several lines.
    const std::string file = "#00ab12,Lee,Ann,S1\r\nAB12,Mo,Bo,S2\r\nAB123,No,One,S3\r\n\r\n";
    EXPECT_EQ(LookupInRegistrationFile(file, "0000AB12"),
              "i\t0000AB12\tAnn\tLee\tS1\r\ni\t0000AB12\tBo\tMo\tS2\r\n");
    EXPECT_EQ(LookupInRegistrationFile(file, "0000CD34"), "");
}

// A course whose roster holds the students given as {ID, first name, last name}.
struct Roster : test::LoadedCourse {
    explicit Roster(std::initializer_list<std::array<const char*, 3>> rows) {
        course.AppPath = Path();
        Write("SessionData/.keep", "");
        for (const auto& [id, first, last] : rows)
            course.Roster[course.NumRoster++] = {id, "", first, last, 0, ""};
    }
};

void AddWeb(WebRegistrations& regs, const std::string& remote, const std::string& first,
            const std::string& last, const std::string& id) {
    AddWebRegistration(regs, "i\t" + remote + "\t" + first + "\t" + last + "\t" + id);
}

TEST(WebRegistration, ScoresWebRowsAgainstTheRoster) {
    using Web = std::array<const char*, 3>;  // first name, last name, ID
    // The web rows, the MatchScore of the three roster rows, the matches, whether a note is made.
    const std::tuple<const char*, std::vector<Web>, std::vector<int>, int, bool> cases[] = {
        {"name and ID", {{"ann", " LEE ", "s1"}}, {3, 0, 0}, 1, false},
        {"last name only", {{"Xy", "Lee", ""}}, {1, 0, 0}, 1, false},
        {"blank last name and ID", {{"Ann", "", ""}}, {0, 0, 0}, 0, false},
        {"first name alone", {{"Bo", "Zed", ""}}, {0, 0, 0}, 0, false},
        {"higher score kept", {{"Ann", "Lee", "S1"}, {"", "Lee", ""}}, {3, 0, 0}, 2, false},
        {"ambiguous", {{"Bo", "Mo", "S1"}}, {1, 2, 0}, 1, true},
        {"nobody", {{"Nemo", "Nobody", "S9"}}, {0, 0, 0}, 0, false},
    };
    for (const auto& [name, web, scores, matchCount, noted] : cases) {
        SCOPED_TRACE(name);
        Roster roster{{"S1", "Ann", "Lee"}, {"S2", "Bo", "Mo"}, {"", "", ""}};
        WebRegistrations regs;
        for (const auto& [first, last, id] : web) AddWeb(regs, "0000AB12", first, last, id);
        const std::string note = ScoreWebRegistrations(roster.course, regs);
        for (int k = 0; k < 3; ++k) EXPECT_EQ(roster.course.Roster[k].MatchScore, scores[k]) << k;
        EXPECT_EQ(regs.WebMatchCount, matchCount);
        EXPECT_EQ(!note.empty(), noted);
    }
}

TEST(WebRegistration, AmbiguousRemotesLeaveNotesInClickerCheck) {
    Roster roster{{"S1", "Ann", "Lee"}, {"S2", "Bo", "Lee"}};
    roster.Write("SessionData/ClickerCheck.txt", "an earlier run\r\n");
    WebRegistrations regs;
    AddWeb(regs, "0000AB12", "Ann", "Lee", "");
    MatchWebRegistrations(roster.course, roster.host, regs);
    AddWeb(regs, "0000AB12", "Cy", "Lee", "S9");
    MatchWebRegistrations(roster.course, roster.host, regs);
    // A note per match: the roster rows, then the web rows, then a rule.
    const std::string rows = "\"Ann , Lee ,S1\r\nBo , Lee ,S2\r\nAnn , Lee ,  , 0000AB12\r\n";
    const std::string rule = "-----------------------\r\n\"\r\n";
    EXPECT_EQ(roster.Read("SessionData/ClickerCheck.txt"),
              rows + rule + rows + "Cy , Lee , S9 , 0000AB12\r\n" + rule);
    EXPECT_EQ(roster.host.written.size(), 2u);
}

TEST(WebRegistration, MatchingTakesNinetyNineRows) {
    Roster roster{{"S1", "Ann", "Lee"}};
    WebRegistrations regs;
    for (int r = 0; r < 120; ++r) AddWeb(regs, "0000AB12", "X", r == 99 ? "Lee" : "Zed", "");
    ScoreWebRegistrations(roster.course, regs);
    EXPECT_EQ(regs.NumWebRegs, 99);
    EXPECT_EQ(regs.WebMatchCount, 0);  // row 99 is past the rows that take part
}

TEST(WebRegistration, SavingARemoteOverwritesTheStudentsRow) {
    Roster roster{{"S1", "Ann", "Lee"}, {"S2", "Bo", "Mo"}};
    Course& course = roster.course;
    course.RemoteTable[1] = {"s1", "AA01"};
    course.NumRemotes = 1;
    WebRegistrations regs;
    AddWeb(regs, "0000BB02", "Bo", "Mo", "S2");
    AddWeb(regs, "0000CC03", "Bo", "Mo", "S2");
    course.Students[1].StudentId = "#BB02";
    course.NumStudents = 1;
    ApplyRegistration(course, regs, 1, 1);
    EXPECT_EQ(std::tie(course.Students[1].StudentId, course.Students[1].RemoteId),
              std::tuple("S2", "0000BB02"));
    SaveRemoteEntry(course, " S1 ", "DD04");
    const auto& table = course.RemoteTable;
    EXPECT_EQ(std::tuple(course.NumRemotes, table[1].RemoteId, table[2].StudentId,
                         table[2].RemoteId, regs.RecordsUpdated),
              std::tuple(2, "DD04", "S2", "0000BB02", 1));
    ApplyRegistration(course, regs, -1, 1);
    ApplyRegistration(course, regs, kMaxRoster, 1);
    EXPECT_EQ(regs.RecordsUpdated, 1);
}

// A course (tests/data/web/course) with five roster students, two registered clickers, and four
// clickers that nobody registered in the course, which the registration data (tests/data/web) knows
// as: BB0001 Alvarez (clear; she has no clicker yet), BB0002 Bennett (clear, but he has one),
// BB0003 Chen without an ID (two Chens in the roster), BB0009 nobody in the roster.
struct WebCourse : test::LoadedCourse {
    std::vector<std::string> verified;  // remote and "auto" or "asked", per verify state
    std::string doneNote;
    int recordsUpdated = -1;

    explicit WebCourse(const std::string& webcode, const std::string& base) {
        setenv(kRegistrationBaseVariable, base.c_str(), 1);
        CopyFrom(test::DataPath("web/course"));
        WriteSettings({{"webcode", webcode}});
        Load();
    }

    void Sync(VerifyAnswer answer, FetchLimits limits = {}) {
        CurlFetcher fetcher(kCurlLibrary, limits);
        Sync(answer, fetcher);
    }

    void Sync(VerifyAnswer answer, UrlFetcher& fetcher) {
        SyncWebRegistrations(course, host, grid.screen, fetcher, [&](WebSyncScreen& web) {
            web.onVerify = [&](bool automatic) {
                verified.push_back(web.wWebList().rows.at(0) + (automatic ? " auto" : " asked"));
            };
            doneNote = AnswerWebSync(web, answer).value_or("(cancelled)");
            recordsUpdated = web.Registrations().RecordsUpdated;
        });
    }

    static constexpr const char* kRemoteIds = "#AA0002,\"1002\"\r\n#AA0005,\"1005\"\r\n";
};

std::string DoneNote(int records, const char* outcome = "No conflicts identified.") {
    return "The WebSync process has completed.  " + std::to_string(records) +
           " records have been updated.\r\n" + outcome;
}

const std::string kChenNote =
    "\"Wei , Chen ,1003\r\nLin , Chen ,1004\r\nWei , Chen ,  , 00BB0003\r\n"
    "-----------------------\r\n\"\r\n";

TEST(WebSync, EverySourceRegistersTheSameRemotes) {
    const std::string file = DataFile("WebReg.csv");
    LocalHttpServer server([&](const std::string& target) -> LocalHttpServer::Reply {
        if (target == "/files/WebReg.csv" || target == "/WebReg/demo") return {200, file};
        for (const char* prefix : {"/GetRegistered.aspx?c=", "/other?key="})
            if (target.starts_with(prefix))
                return {200, DataFile("service-" + target.substr(std::string_view(prefix).size()))};
        return {404, "<h1>Object not found!</h1>"};
    });
    const std::tuple<std::string, size_t> cases[] = {
        {server.Base() + "files/WebReg.csv", 1},
        {"demo", 1},     // a school's file on the registration server
        {"local", 0},    // WebReg.dat in the course folder
        {"SQL", 4 + 4},  // the service, per unregistered clicker and per registered one
        {"SQL " + server.Base() + "other?key=", 8},
    };
    size_t before = 0;
    for (const auto& [webcode, asked] : cases) {
        SCOPED_TRACE(webcode);
        WebCourse web(webcode, server.Base());
        web.Write("WebReg.dat", file);
        web.Sync(VerifyAnswer::Accept);
        EXPECT_TRUE(web.host.messages.empty());
        EXPECT_EQ(web.verified,
                  (test::Strings{"Alvarez Maria (1001) auto", "Bennett Oliver (1002) asked",
                                 "Chen Wei () asked"}));
        EXPECT_EQ(web.doneNote, DoneNote(3, "ClickerCheck.txt updated."));
        // Bennett's old clicker gives way; the remotes stand as the source gave them.
        EXPECT_EQ(web.Remotes(), DataFile("remotes.accepted.expected"));
        // Chen's clicker is noted in the walk and again when the registrations are confirmed.
        EXPECT_EQ(web.Read("SessionData/ClickerCheck.txt"), kChenNote + kChenNote);
        // The reload: only the clicker nobody registered is left unregistered.
        EXPECT_EQ(web.StudentIds(),
                  (test::Strings{"1001", "1002", "1003", "1004", "1005", "#AA0002", "#BB0009"}));
        EXPECT_EQ(server.Targets().size() - before, asked);
        before = server.Targets().size();
    }
    const std::vector<std::string> targets = server.Targets();
    for (const char* asked : {"/GetRegistered.aspx?c=00BB0001", "/other?key=00AA0005"})
        EXPECT_NE(std::ranges::find(targets, asked), targets.end()) << asked;
}

TEST(WebSync, IgnoreAndCancel) {
    const std::string file = DataFile("WebReg.csv");
    LocalHttpServer server([&](const std::string&) { return LocalHttpServer::Reply{200, file}; });
    // Ignore: only the automatic accept stands.
    WebCourse ignored("demo", server.Base());
    ignored.Sync(VerifyAnswer::Ignore);
    EXPECT_EQ(ignored.recordsUpdated, 1);
    EXPECT_EQ(ignored.Remotes(), std::string(WebCourse::kRemoteIds) + "#00BB0001,\"1001\"\r\n");
    EXPECT_EQ(ignored.Read("SessionData/ClickerCheck.txt"), kChenNote);

    // Cancel: nothing is written (the command line's cancelled sync shows it); the entry accepted
    // by itself stays in memory.
    WebCourse cancelled("demo", server.Base());
    cancelled.Sync(VerifyAnswer::Cancel);
    EXPECT_EQ(StudentOfRemote(cancelled.course, "BB0001"), "1001");
    EXPECT_EQ(cancelled.StudentIds(),
              (test::Strings{"1001", "1002", "1003", "1004", "1005", "1001", "#BB0002", "#BB0003",
                             "#BB0009"}));  // changed in place
}

// A source that fails, or a server that stops answering, ends the run at the first fetch: the
// message says why, once, and the course is left as it was.
TEST(WebSync, FailedSourcesAreReportedOnceAndChangeNothing) {
    LocalHttpServer server([&](const std::string& target) -> LocalHttpServer::Reply {
        if (target == "/WebReg/short") return {200, "a,b"};
        return {404, "<html><body>Object not found!</body></html>"};
    });
    LocalHttpServer silent(test::Silence);
    const std::string unused = LocalHttpServer::UnusedBase();
    const std::string unable = "Error: unable to download registrations. Check ";
    const std::string slow =
        "The reply from 127.0.0.1 took longer than 1 second and was given up; nothing was "
        "changed. Try again later.";
    // The source, the server, the message and its icon, the note the run ends with, and the
    // requests the servers saw.
    const std::tuple<std::string, std::string, std::string, Icon, std::string, size_t> cases[] = {
        {"demo", unused, unable + "internet connection.", Icon::None, DoneNote(0), 0},
        {"short", server.Base(), unable + "internet connection.", Icon::None, DoneNote(0), 1},
        {"nosuchschool", server.Base(), unable + "school code.", Icon::None, DoneNote(0), 1},
        {"local", server.Base(), "Error unable to open local data file WebReg.dat.", Icon::None,
         DoneNote(0), 0},
        // The registration file, then the service, asked per clicker.
        {silent.Base() + "WebReg.csv", silent.Base(), slow, Icon::Exclamation, "(cancelled)", 1},
        {"SQL", silent.Base(), slow, Icon::Exclamation, "(cancelled)", 1},
    };
    for (const auto& [webcode, base, message, icon, note, asked] : cases) {
        SCOPED_TRACE(webcode);
        WebCourse web(webcode, base);
        const size_t before = server.Targets().size() + silent.Targets().size();
        const Clock::time_point start = Clock::now();
        web.Sync(VerifyAnswer::Accept, kTestLimits);
        EXPECT_LT(Clock::now() - start, std::chrono::seconds(3));
        ASSERT_EQ(web.host.messages.size(), 1u);
        EXPECT_EQ(std::tuple(web.host.messages[0].text, web.host.messages[0].icon, web.doneNote),
                  std::tuple(message, icon, note));
        // A run given up writes nothing at all.
        EXPECT_TRUE(web.host.written.empty() || note != "(cancelled)");
        EXPECT_EQ(web.Remotes(), WebCourse::kRemoteIds);
        EXPECT_FALSE(web.Exists("SessionData/ClickerCheck.txt"));
        EXPECT_EQ(server.Targets().size() + silent.Targets().size() - before, asked);
    }
}

TEST(WebSync, ScreenStates) {
    WebCourse web("local", "http://registration.example.net/svc/");
    web.Write("WebReg.dat", DataFile("WebReg.csv"));
    CurlFetcher fetcher;
    WebSyncScreen screen(web.course, web.host, fetcher, "http://registration.example.net/svc/");
    EXPECT_EQ(screen.SchoolName(), "local");
    EXPECT_EQ(screen.wNote().text,
              "To update student web registrations through local, press Continue.");
    EXPECT_TRUE(screen.wSync().visible && screen.wSync().enabled);
    EXPECT_FALSE(screen.wAccept().visible || screen.wIgnore().visible ||
                 screen.wWebList().state.visible);
    screen.wAcceptClick();  // hidden: does nothing
    EXPECT_EQ(screen.CurrentState(), WebSyncScreen::State::Welcome);

    screen.wSyncClick();  // Alvarez is accepted by itself; Bennett waits
    ASSERT_EQ(screen.CurrentState(), WebSyncScreen::State::Verify);
    EXPECT_EQ(screen.wNote().text, test::Said("a clicker registered on the web, to verify"));
    EXPECT_EQ(screen.wWhich().text, "(Processing registration 2 of 9)");
    EXPECT_EQ(screen.wList().rows, (test::Strings{"Bennett Oliver (1002) #AA0002"}));
    EXPECT_TRUE(!screen.wSync().visible && screen.wAccept().visible &&
                screen.wWebList().state.visible);
    screen.wAcceptClick();  // no selection: nothing happens
    EXPECT_EQ(screen.CurrentState(), WebSyncScreen::State::Verify);
    screen.wIgnoreClick();
    ASSERT_EQ(screen.CurrentState(), WebSyncScreen::State::Verify);
    EXPECT_EQ(screen.BestScore(), 2);  // the rows listed best first
    EXPECT_EQ(screen.wList().rows, (test::Strings{"Chen Wei (1003)", "Chen Lin (1004)"}));
    screen.wIgnoreClick();
    EXPECT_EQ(std::tie(screen.wCancel().text, screen.wWhich().text),
              std::tuple("Done", "Checking 00BB0001 : 3 / 3"));
    EXPECT_EQ(screen.CurrentState(), WebSyncScreen::State::Done);
    screen.wCancelClick();
    EXPECT_EQ(std::tuple(screen.Cancelled(), screen.Hidden(), screen.CurrentState()),
              std::tuple(false, true, WebSyncScreen::State::Welcome));

    // The maker's service is named by its host; Cancel in the welcome state cancels.
    WebCourse sql("SQL", "");
    WebSyncScreen service(sql.course, sql.host, fetcher, "https://registration.example.net/svc/");
    EXPECT_EQ(service.wNote().text,
              "To update student web registrations through registration.example.net, press "
              "Continue.");
    service.wCancelClick();
    EXPECT_TRUE(service.Cancelled());
}

TEST(WebSync, NoUnregisteredClickersGoesStraightToDone) {
    WebCourse web("local", "");
    web.Write("WebReg.dat", DataFile("WebReg.csv"));
    web.WriteLog("L2609081000.csv", {});
    web.WriteRemotes("");
    web.Load();
    web.Sync(VerifyAnswer::Accept);
    EXPECT_EQ(std::tuple(web.verified, web.doneNote), std::tuple(test::Strings{}, DoneNote(0)));
}

TEST(WebSync, TheSiblingToolIsOfferedFirst) {
    for (bool yes : {true, false}) {
        WebCourse web("local", "");
        web.Write("Campus Bridgeline.exe", "");
        web.Write("campus_bridgeline.XML", "");
        web.host.answers.push_back(yes ? Answer::Yes : Answer::No);
        web.Sync(VerifyAnswer::Accept);
        ASSERT_EQ(web.host.messages.size(), yes ? 1u : 2u);  // then WebReg.dat is missing
        EXPECT_EQ(test::Messages(web.host)[0], "[Confirm Sync] " + ConfirmSyncText());
        EXPECT_EQ(std::tuple(web.host.messages[0].icon, web.host.messages[0].buttons),
                  std::tuple(Icon::Question, Buttons::YesNo));
        // Yes starts the tool and the screen never opens; No goes on without it.
        EXPECT_EQ(
            web.host.started,
            yes ? test::Strings{web.File("Campus Bridgeline.exe") + " download"} : test::Strings{});
        EXPECT_EQ(web.recordsUpdated, yes ? -1 : 0);
    }
}

struct CountingFetcher : UrlFetcher {
    std::string OpenUrlText(const std::string&, Host&) override {
        ++fetches;
        return {};
    }
    int fetches = 0;
};

// With no registration server set up, a code that needs one is said to be out of reach before
// anything is asked; codes that name their own source go on.
TEST(WebSync, ASourceOutOfReachIsSaidFirstAndNothingIsAsked) {
    const std::tuple<std::string, bool> cases[] = {
        {"SQL", false},
        {"", false},  // the default
        {"demo", false},
        {"SQL http://127.0.0.1:1/svc?c=", true},
        {"http://127.0.0.1:1/WebReg.csv", true},
        {"local", true},
    };
    for (const auto& [webcode, reachable] : cases) {
        SCOPED_TRACE(webcode);
        WebCourse web(webcode, "");
        CountingFetcher fetcher;
        web.Sync(VerifyAnswer::Accept, fetcher);
        EXPECT_EQ(web.recordsUpdated != -1, reachable);  // whether the screen ran
        if (reachable) continue;
        EXPECT_EQ(fetcher.fetches, 0);
        ASSERT_EQ(web.host.messages.size(), 1u);
        EXPECT_TRUE(test::BeginsWith(web.host.messages[0].text,
                                     "WebSync cannot reach a registration source"));
        EXPECT_TRUE(test::Holds(web.host.messages[0].text, kRegistrationBaseVariable));
        EXPECT_TRUE(web.host.written.empty());
    }
}

TEST(WebUpdate, TheVersionStampFollowsTheProgramEitherWay) {
    const std::string version[] = {std::to_string(TALLORY_VERSION_MAJOR),
                                   std::to_string(TALLORY_VERSION_MINOR),
                                   std::to_string(TALLORY_VERSION_REV)};
    const char* keys[] = {"tallory.exe.major", "tallory.exe.minor", "tallory.exe.rev"};
    // An empty Config.csv: none before, and none afterwards.
    const std::tuple<const char*, std::string> cases[] = {
        {"first start", "\"CMS\" ,\"General\" ,\"\"\r\n"},
        {"downgrade", "\"tallory.exe.major\" ,\"99\" ,\"\"\r\n"},
        {"same version", "\"tallory.exe.major\" ,\"" + version[0] +
                             "\" ,\"\"\r\n\"tallory.exe.minor\" ,\"" + version[1] +
                             "\" ,\"\"\r\n\"tallory.exe.rev\" ,\"" + version[2] + "\" ,\"\"\r\n"},
        {"no settings file", ""},
    };
    for (const auto& [name, config] : cases) {
        SCOPED_TRACE(name);
        test::TempCourse folder;
        folder.Write("SessionData/.keep", "");
        if (!config.empty()) folder.Write("SessionData/Config.csv", config);
        Course course, reread;
        RecordingHost host;
        course.AppPath = reread.AppPath = folder.Path();
        ReadConfig(course, host);
        StampVersion(course, host);
        ReadConfig(reread, host);
        for (int k = 0; k < 3; ++k) {
            EXPECT_EQ(GetParam(course, keys[k], ""), version[k]);
            EXPECT_EQ(GetParam(reread, keys[k], ""), config.empty() ? "" : version[k]);
        }
        EXPECT_EQ(folder.Exists("SessionData/Config.csv"), !config.empty());
    }
}

// The default of both boxes is painted in WebUpdateDialog.SaysThereAreNoUpgrades.
TEST(WebUpdate, ABlankTextKeepsTheDefault) {
    const WebUpdateSummary summary(WebUpdateTexts{"  ", "Version 2"});
    EXPECT_EQ(summary.txtClicker().text, "No upgrades available");
    EXPECT_EQ(summary.txtGrader().text, "Version 2");
}

}  // namespace
}  // namespace tallory
