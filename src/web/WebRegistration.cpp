#include "web/WebRegistration.h"

#include <algorithm>
#include <cstdlib>
#include <utility>
#include <vector>

#include "common/Paths.h"
#include "common/Text.h"
#include "registration/RemoteTable.h"
#include "start/Fields.h"
#include "start/Settings.h"

namespace tallory {

namespace {

// A registration file record: remote, last name, first name, student ID (further fields ignored).
constexpr int kRegistrationTopField = 25;
// The length of a remote as the registration service knows it.
constexpr size_t kServiceRemoteLength = 8;
// A registration file shorter than this is taken for a failed download.
constexpr size_t kShortestRegistrationFile = 10;

std::vector<std::string_view> Split(std::string_view text, std::string_view separator) {
    std::vector<std::string_view> parts;
    for (size_t start = 0;;) {
        const size_t end = text.find(separator, start);
        if (end == std::string_view::npos) {
            parts.push_back(text.substr(start));
            return parts;
        }
        parts.push_back(text.substr(start, end - start));
        start = end + separator.size();
    }
}

bool StartsWithNoCase(std::string_view text, std::string_view prefix) {
    return text.size() >= prefix.size() &&
           ToUpper(text.substr(0, prefix.size())) == ToUpper(prefix);
}

bool SameNonBlank(std::string_view a, std::string_view b) {
    const std::string key = NormalKey(a);
    return !key.empty() && key == NormalKey(b);
}

std::string FetchRegistrationFile(const Course& course, Host& host, const std::string& code,
                                  const std::string& serviceBase, UrlFetcher& fetcher) {
    if (StartsWithNoCase(code, "http://") || StartsWithNoCase(code, "https://"))
        return fetcher.OpenUrlText(code, host);
    // The course folder is the program's current folder, where the file is looked for.
    if (StartsWithNoCase(code, "local"))
        return ReadLocalText(CoursePath(course.AppPath, "\\WebReg.dat"));
    return fetcher.OpenUrlText(serviceBase + "WebReg/" + code, host);
}

}  // namespace

std::string RegistrationServiceBase() {
    const char* base = std::getenv(kRegistrationBaseVariable);
    return base ? std::string(base) : std::string();
}

std::string UrlHostName(std::string_view url) {
    const size_t scheme = url.find("://");
    if (scheme != std::string_view::npos) url.remove_prefix(scheme + 3);
    url = url.substr(0, url.find_first_of("/?#"));
    const size_t user = url.rfind('@');
    if (user != std::string_view::npos) url.remove_prefix(user + 1);
    if (!url.empty() && url.front() == '[') return std::string(url.substr(0, url.find(']') + 1));
    return std::string(url.substr(0, url.find(':')));
}

std::string WebCodeSetting(const Course& course) {
    std::string code = GetParam(course, kWebCodeSetting);
    if (Trim(code).size() <= 1) code = kWebCodeSetting.defaultValue;
    return code;
}

bool IsSqlCode(std::string_view code) {
    return Trim(code).size() <= 1 || StartsWithNoCase(code, "SQL");
}

std::string UnreachableSourceMessage(std::string_view code, std::string_view serviceBase) {
    if (!TrimView(serviceBase).empty()) return {};
    const std::string shown = Trim(code);
    std::string what;
    if (IsSqlCode(code) && shown.size() <= 5)
        what = "asks the registration service";
    else if (!IsSqlCode(code) && !StartsWithNoCase(code, "http://") &&
             !StartsWithNoCase(code, "https://") && !StartsWithNoCase(code, "local"))
        what = "names a school's file on the registration server";
    else
        return {};
    return "WebSync cannot reach a registration source: the course's web code \"" + shown + "\" " +
           what + ", and no registration server is set up on this computer (" +
           kRegistrationBaseVariable +
           "). Nothing was asked of the network and nothing was changed.\r\n\r\nTo register "
           "clickers from the web, set the webcode setting of the course to the address of a "
           "registration file (http://...), or to \"local\" for the file WebReg.dat in the "
           "course folder, or set " +
           kRegistrationBaseVariable + " to the registration server's address.";
}

std::string RemoteLookupKey(std::string_view remote) {
    std::string key(remote);
    if (key.size() < kServiceRemoteLength) key.insert(0, kServiceRemoteLength - key.size(), '0');
    return key;
}

std::string RegistrationReply(const Course& course, Host& host, WebRegistrations& regs,
                              UrlFetcher& fetcher, std::string_view key) {
    regs.WebCode = WebCodeSetting(course);
    if (!IsSqlCode(regs.WebCode)) return WebRegLookup(course, host, regs, fetcher, key);
    // "SQL" alone asks the registration service; "SQL" and a URL prefix asks another server.
    const std::string code = Trim(regs.WebCode);
    const std::string url = code.size() <= 5
                                ? regs.serviceBase + "GetRegistered.aspx?c=" + std::string(key)
                                : Trim(std::string_view(regs.WebCode).substr(3)) + std::string(key);
    return fetcher.OpenUrlText(url, host);
}

std::string WebRegLookup(const Course& course, Host& host, WebRegistrations& regs,
                         UrlFetcher& fetcher, std::string_view key) {
    if (!regs.WebRegLoaded) {
        regs.WebRegLoaded = true;
        regs.WebRegReply =
            FetchRegistrationFile(course, host, regs.WebCode, regs.serviceBase, fetcher);
        // A fetch given up (too slow, too large, cancelled) has said why already.
        if (fetcher.Stopped() != FetchStop::None) return {};
        // A server's error page, or next to nothing: the file could not be had. The copy stays,
        // so the rest of the run looks in it without asking again.
        if (regs.WebRegReply.find("Object not found") != std::string::npos) {
            host.Message("Error: unable to download registrations. Check school code.");
            return {};
        }
        if (regs.WebRegReply.size() < kShortestRegistrationFile) {
            host.Message(StartsWithNoCase(regs.WebCode, "local")
                             ? "Error unable to open local data file WebReg.dat."
                             : "Error: unable to download registrations. Check internet "
                               "connection.");
            return {};
        }
    }
    if (regs.WebRegReply.empty()) return {};
    return LookupInRegistrationFile(regs.WebRegReply, key);
}

std::string LookupInRegistrationFile(std::string_view text, std::string_view key) {
    std::string reply;
    Fields fields(kRegistrationTopField);
    for (std::string_view line : Split(text, "\r\n")) {
        SplitFields(line, fields);
        if (!SameRemote(fields[0], key)) continue;
        reply += "i\t" + std::string(key) + "\t" + fields.Text(2) + "\t" + fields.Text(1) + "\t" +
                 fields.Text(3) + "\r\n";
    }
    return reply;
}

void AddWebRegistration(WebRegistrations& regs, std::string_view line) {
    const std::string text = Trim(line);
    if (text.size() <= 1) return;
    const std::vector<std::string_view> parts = Split(text, "\t");
    WebRegRec& row = regs.WebRegs[regs.NumWebRegs];
    row = WebRegRec{};
    auto part = [&](size_t index) {
        return index < parts.size() ? std::string(parts[index]) : std::string();
    };
    row.RemoteId = part(1);
    row.FirstName = part(2);
    row.LastName = part(3);
    row.StudentId = part(4);
    ++regs.NumWebRegs;
}

bool ReadStudentReply(WebRegistrations& regs, std::string_view reply) {
    regs.NumWebRegs = 0;
    regs.WebMatchCount = 0;
    const std::string text = ReplaceAll(Trim(reply), "\r", "");
    if (text.empty()) return false;
    for (std::string_view line : Split(text, "\n")) {
        if (TrimView(line).empty()) continue;
        AddWebRegistration(regs, Trim(ReplaceAll(line, "\"", "'")));
    }
    return true;
}

bool ReadConfirmReply(WebRegistrations& regs, std::string_view reply) {
    regs.NumWebRegs = 0;
    regs.WebMatchCount = 0;
    const std::string text = Trim(reply);
    if (text.empty()) return false;
    for (std::string_view line : Split(text, "\r\n")) AddWebRegistration(regs, line);
    return true;
}

std::string ScoreWebRegistrations(Course& course, WebRegistrations& regs) {
    for (long k = 0; k < course.Roster.Allocated(); ++k) course.Roster[k].MatchScore = 0;
    regs.NumWebRegs = std::min(regs.NumWebRegs, kMaxMatchedWebRegs);
    regs.WebMatchCount = 0;
    for (int r = 0; r < regs.NumWebRegs; ++r) {
        const WebRegRec& web = regs.WebRegs[r];
        bool matched = false;
        for (int k = 0; k < course.NumRoster; ++k) {
            RosterRec& student = course.Roster[k];
            int16_t score = 0;
            if (SameNonBlank(student.LastName, web.LastName)) {
                ++score;
                if (NormalKey(student.FirstName) == NormalKey(web.FirstName)) ++score;
            }
            if (SameNonBlank(student.StudentId, web.StudentId)) ++score;
            if (score > 0) matched = true;
            student.MatchScore = std::max(student.MatchScore, score);
        }
        regs.WebRegMatched[r] = matched;
        if (matched) ++regs.WebMatchCount;
    }
    if (regs.WebMatchCount == 0) return {};

    int scored = 0;
    for (int k = 0; k < course.NumRoster; ++k)
        if (course.Roster[k].MatchScore > 0) ++scored;
    if (scored < 2) return {};

    // The remote could belong to more than one student: the instructor sorts it out from the note.
    std::string note;
    for (int k = 0; k < course.NumRoster; ++k) {
        const RosterRec& student = course.Roster[k];
        if (student.MatchScore > 0)
            note +=
                student.FirstName + " , " + student.LastName + " ," + student.StudentId + "\r\n";
    }
    for (int r = 0; r < regs.NumWebRegs; ++r) {
        const WebRegRec& web = regs.WebRegs[r];
        note += web.FirstName + " , " + web.LastName + " , " + web.StudentId + " , " +
                web.RemoteId + "\r\n";
    }
    note += "-----------------------\r\n";
    return note;
}

void MatchWebRegistrations(Course& course, Host& host, WebRegistrations& regs) {
    const std::string note = ScoreWebRegistrations(course, regs);
    if (!note.empty()) LogClickerCheck(course, host, "\"" + note + "\"");
}

void FetchRegistrationsForStudent(Course& course, Host& host, WebRegistrations& regs,
                                  UrlFetcher& fetcher, int index) {
    const std::string& id = std::as_const(course).Students[index].StudentId;
    const std::string key = RemoteLookupKey(id.size() > 1 ? id.substr(1) : std::string());
    const std::string reply = RegistrationReply(course, host, regs, fetcher, key);
    if (ReadStudentReply(regs, reply)) MatchWebRegistrations(course, host, regs);
}

void CheckRemoteWebRegistration(Course& course, Host& host, WebRegistrations& regs,
                                UrlFetcher& fetcher, std::string_view remote) {
    const std::string key = RemoteLookupKey(NormalKey(remote));
    const std::string reply = RegistrationReply(course, host, regs, fetcher, key);
    if (ReadConfirmReply(regs, reply)) MatchWebRegistrations(course, host, regs);
}

void SaveRemoteEntry(Course& course, std::string_view studentId, std::string_view remote) {
    const std::string wanted = NormalKey(studentId);
    int row = 1;
    while (row <= course.NumRemotes && NormalKey(course.RemoteTable[row].StudentId) != wanted)
        ++row;
    RemoteRec& entry = course.RemoteTable[row];
    if (row > course.NumRemotes) course.NumRemotes = row;
    entry.StudentId = std::string(studentId);
    entry.RemoteId = std::string(remote);
    course.RemoteIndexValid = false;
}

void ApplyRegistration(Course& course, WebRegistrations& regs, int rosterIndex, int studentIndex) {
    if (rosterIndex < 0 || rosterIndex >= kMaxRoster) return;
    StudentRec& student = course.Students[studentIndex];
    student.StudentId = std::as_const(course).Roster[rosterIndex].StudentId;
    // Whichever web row the instructor chose, the remote is the first row's.
    student.RemoteId = std::as_const(regs).WebRegs[0].RemoteId;
    SaveRemoteEntry(course, student.StudentId, student.RemoteId);
    ++regs.RecordsUpdated;
}

std::string RegisteredRemote(const Course& course, std::string_view studentId) {
    const std::string wanted = NormalKey(studentId);
    for (int row = 1; row <= course.NumRemotes; ++row)
        if (NormalKey(course.RemoteTable[row].StudentId) == wanted)
            return course.RemoteTable[row].RemoteId;
    return {};
}

}  // namespace tallory
