#pragma once

#include <array>
#include <string>
#include <string_view>

#include "common/Course.h"
#include "common/Host.h"
#include "common/Table.h"
#include "web/Internet.h"

namespace tallory {

// Web registrations of remotes: who registered a remote on the registration web site, asked of one
// of three sources (chosen by the "webcode" setting), and scored against the roster.

constexpr int kMaxWebRegs = 4000;
// The rows of a reply that take part in matching: 0..98.
constexpr int kMaxMatchedWebRegs = 99;

// The environment variable that names the registration server: a URL ending in "/". Its service is
// base + "GetRegistered.aspx?c=" + key; a school's registration file is base + "WebReg/" + code.
inline constexpr const char* kRegistrationBaseVariable = "TALLORY_REGISTRATION_BASE";

struct WebRegRec {
    std::string StudentId;
    std::string RemoteId;
    std::string FirstName;
    std::string LastName;
};

// The registrations of the remote asked about last, and what one WebSync run keeps between remotes.
struct WebRegistrations {
    Table<WebRegRec, kMaxWebRegs> WebRegs{"WebRegs"};  // rows 0..NumWebRegs-1
    int NumWebRegs = 0;
    std::array<bool, kMaxMatchedWebRegs + 1> WebRegMatched{};
    int WebMatchCount = 0;
    std::string WebCode = "SQL";
    // The whole text of a registration file, fetched once per run (WebRegLoaded).
    std::string WebRegReply;
    bool WebRegLoaded = false;
    // Students changed into roster students in this run.
    int RecordsUpdated = 0;
    // The registration server (TALLORY_REGISTRATION_BASE), ending in "/".
    std::string serviceBase;
};

// The value of TALLORY_REGISTRATION_BASE; empty when it is not set.
std::string RegistrationServiceBase();
// The host part of a URL ("http://a.b:8080/x/" gives "a.b").
std::string UrlHostName(std::string_view url);

// The "webcode" setting, "SQL" when missing or of at most one character.
std::string WebCodeSetting(const Course& course);
// True when the code asks the web service, directly or through a URL that follows "SQL".
bool IsSqlCode(std::string_view code);

// Why WebSync cannot reach the source that the web code names: the code needs the registration
// server (the service, or a school's file on it) and `serviceBase` names none. Empty when the
// source can be asked (a URL, WebReg.dat, a server named by the code or the base).
std::string UnreachableSourceMessage(std::string_view code, std::string_view serviceBase);

// A remote as the service wants it: at least 8 characters, "0" in front.
std::string RemoteLookupKey(std::string_view remote);

// What the source of the current "webcode" says about one remote, in the service's reply format.
std::string RegistrationReply(const Course& course, Host& host, WebRegistrations& regs,
                              UrlFetcher& fetcher, std::string_view key);
// The service's reply built from a registration file (a URL, WebReg.dat, or a school's file on
// the registration server), which is fetched at the first call of a run. Shows its three errors.
std::string WebRegLookup(const Course& course, Host& host, WebRegistrations& regs,
                         UrlFetcher& fetcher, std::string_view key);
// The lines of a registration file ("remote,last,first,id" records) that name `key`, as the
// service would have answered them.
std::string LookupInRegistrationFile(std::string_view text, std::string_view key);

// One reply line: ignored TAB remote TAB first name TAB last name TAB student ID.
void AddWebRegistration(WebRegistrations& regs, std::string_view line);
// Fills WebRegs from a reply as an unregistered student's fetch reads it (LF lines, quotes made
// apostrophes), or as the confirmation of a registered remote does (CR LF lines, as they stand).
// False for an empty reply, which has no match pass.
bool ReadStudentReply(WebRegistrations& regs, std::string_view reply);
bool ReadConfirmReply(WebRegistrations& regs, std::string_view reply);

// Scores every web row against the roster (MatchScore, WebRegMatched, WebMatchCount) and returns
// the conflict note when two or more roster students scored; empty otherwise.
std::string ScoreWebRegistrations(Course& course, WebRegistrations& regs);
// ScoreWebRegistrations, with its conflict note written to ClickerCheck.txt.
void MatchWebRegistrations(Course& course, Host& host, WebRegistrations& regs);

// The registrations of the unregistered entry Students(index), whose ID is "#" + remote, matched.
void FetchRegistrationsForStudent(Course& course, Host& host, WebRegistrations& regs,
                                  UrlFetcher& fetcher, int index);
// The same for a remote given directly.
void CheckRemoteWebRegistration(Course& course, Host& host, WebRegistrations& regs,
                                UrlFetcher& fetcher, std::string_view remote);

// Puts the pair in RemoteTable: over the student's row when there is one, else in a new row.
void SaveRemoteEntry(Course& course, std::string_view studentId, std::string_view remote);
// Students(studentIndex) becomes the roster student, registered with the first web row's remote.
void ApplyRegistration(Course& course, WebRegistrations& regs, int rosterIndex, int studentIndex);

// The remote of a student's first row in RemoteTable; empty when the student has none.
std::string RegisteredRemote(const Course& course, std::string_view studentId);

}  // namespace tallory
