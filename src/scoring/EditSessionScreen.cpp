#include "scoring/EditSessionScreen.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include "common/AtomicFile.h"
#include "common/ChangeJournal.h"
#include "common/Paths.h"
#include "common/Text.h"
#include "logs/SessionLog.h"
#include "logs/SessionLogWriter.h"
#include "scoring/Grading.h"
#include "scoring/SessionStore.h"
#include "start/Settings.h"

namespace tallory {

namespace {

// The whole of a regular file, byte for byte; false with a reason otherwise.
bool ReadFileBytes(const std::string& path, std::string& text, std::string& error) {
    int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    struct stat info {};
    if (fd < 0 || ::fstat(fd, &info) != 0 || !S_ISREG(info.st_mode)) {
        error = fd < 0 ? std::strerror(errno) : "not a plain file";
        if (fd >= 0) ::close(fd);
        return false;
    }
    text.clear();
    char buffer[1 << 16];
    for (;;) {
        ssize_t got = ::read(fd, buffer, sizeof buffer);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) error = std::strerror(errno);
        if (got <= 0) break;
        text.append(buffer, static_cast<size_t>(got));
    }
    ::close(fd);
    return error.empty();
}

// "20250314-093005": the local date and time, to tell the removals of one log apart.
std::string DateTimeStamp() {
    std::time_t now = std::time(nullptr);
    std::tm local{};
    ::localtime_r(&now, &local);
    char text[32];
    std::strftime(text, sizeof text, "%Y%m%d-%H%M%S", &local);
    return text;
}

}  // namespace

bool KeepRemovedLog(const Course& course, const std::string& file, std::string& kept,
                    std::string& error) {
    const std::string folder = RemovedLogsFolder(course);
    if (folder.empty()) {
        error = "neither XDG_DATA_HOME nor HOME names a folder";
        return false;
    }
    std::string text;
    if (!ReadFileBytes(SessionLogPath(course, file), text, error)) return false;
    CreateFolderPath(folder);
    // A log removed twice within a second gets a numbered name; no earlier copy is replaced.
    const std::string stamped = JoinPath(folder, file + "." + DateTimeStamp());
    kept = stamped;
    for (int n = 2; FileExists(kept) || FolderExists(kept); ++n)
        kept = stamped + "-" + std::to_string(n);
    return ReplaceFile(kept, text, &error);
}

EditSessionScreen::EditSessionScreen(Course& course, Host& host, SessionGrid& grid, int session)
    : course_(course), host_(host), grid_(grid), session_(session) {
    course_.CurrentSession = session;
    course_.CurrentLogFile = course_.SessionFile[session];
    lblFileName_.text = course_.CurrentLogFile;
    txtSessionName_.text = course_.SessionTitle[session];
    shownTitle_ = txtSessionName_.text;
}

void EditSessionScreen::txtSessionNameChange(std::string_view text) {
    txtSessionName_.text = std::string(text);
}

bool EditSessionScreen::Refuse(std::string_view message, size_t start, size_t length) {
    host_.Message(message);
    txtSessionName_.selectionStart = start;
    txtSessionName_.selectionLength = length;
    return false;
}

bool EditSessionScreen::ValidSessionName() {
    // The title is a quoted field of the log's first line, so these characters cannot stand in it.
    static constexpr struct {
        char character;
        std::string_view message;
    } kForbidden[] = {
        {',', "Session name may not contain a comma"},
        {'"', "Session name may not contain a double quote"},
        {'\'', "Session name may not contain a single quote"},
    };
    const std::string& text = txtSessionName_.text;
    for (const auto& forbidden : kForbidden) {
        size_t at = text.find(forbidden.character);
        if (at != std::string::npos) return Refuse(forbidden.message, at, 1);
    }
    // Desire2Learn takes a grade item per session by its name, so names must differ; the
    // session's own present title counts too.
    if (NormalKey(GetParam(course_, kCmsSetting)) == "D2L") {
        const std::string wanted = NormalKey(text);
        for (int s = 0; s <= kSessionTableUpper; ++s) {
            if (TrimView(course_.SessionTitle[s]).empty()) continue;
            if (NormalKey(SessionLabel(course_, s)) == wanted)
                return Refuse(
                    "Session name already exists, D2L does not allow duplicate session "
                    "name(s). Please specify a unique session name",
                    0, text.size());
        }
    }
    return true;
}

void EditSessionScreen::cmdSaveClick() {
    if (!ValidSessionName()) {
        saved_ = false;
        return;
    }
    saved_ = true;
    ChangeScope change(course_.AppPath, "Rename of session " + SessionLabel(course_, session_) +
                                            " to " + txtSessionName_.text);
    const int kept = grid_.SessionScrollValue();
    const std::string path = SessionLogPath(course_, course_.CurrentLogFile);
    // Read, retitle, write: nothing is scored or posted, the grid's figures stand.
    OpenSessionLog(course_, path, Scoring::Unscored);
    course_.Questions[0].Name = txtSessionName_.text;
    written_ = WriteSessionLog(course_, host_, path, "", "", kFalse);
    SweepSessionScroll(grid_);
    grid_.SetSessionScrollValue(kept);
    closed_ = true;
}

void EditSessionScreen::cmdRemoveClick() {
    const std::string& file = lblFileName_.text;
    Answer answer = host_.Message("Are you sure you want to remove lecture " + file,
                                  "Confirm Remove", Icon::Question, Buttons::YesNo, kDestructive);
    closed_ = true;
    if (answer != Answer::Yes) return;
    confirmed_ = true;
    ChangeScope change(course_.AppPath, "Removal of session " + SessionLabel(course_, session_));
    const int kept = grid_.SessionScrollValue();
    saved_ = false;
    // The "x" copy holds the tables as they stand: the session read last, not necessarily this
    // one. So the log's own text goes first to the user's archive of removed logs, and nothing
    // is emptied unless both copies stand.
    std::string error;
    if (!KeepRemovedLog(course_, file, keptLog_, error)) {
        host_.Message("Unable to keep a copy of the log file " + file + " (" + error +
                          "). The session was not removed.",
                      kProgramTitle, Icon::Exclamation);
        return;
    }
    copyWritten_ = WriteSessionLog(course_, host_, SessionLogPath(course_, "x" + file), "", "", 0);
    if (!copyWritten_) return;  // the writer has said why
    if (!ReplaceFile(SessionLogPath(course_, file), "", &error, &host_)) {
        host_.Message("Unable to empty the log file " + file + " (" + error +
                          "). The session was not removed.",
                      kProgramTitle, Icon::Exclamation);
        return;
    }
    removed_ = true;
    LoadSessions(course_, host_, grid_.Screen());
    SweepSessionScroll(grid_);
    if (kept >= grid_.SessionScrollMinimum() && kept <= grid_.SessionScrollMaximum())
        grid_.SetSessionScrollValue(kept);
}

void EditSessionScreen::cmdCancelClick() {
    saved_ = false;
    closed_ = true;
}

void EditSessionScreen::AfterClose() {
    // A cleared title reaches the log but not the heading: the column keeps its old title until
    // the next load, which falls back to the session's date.
    if (!saved_ || TrimView(txtSessionName_.text).empty()) return;
    course_.SessionTitle[session_] = txtSessionName_.text;
    grid_.Screen().UpdateTable();
}

}  // namespace tallory
