#include "housekeeping/PurgeClickerLogs.h"

#include <string>

#include "logs/SessionLog.h"
#include "logs/SessionLogWriter.h"
#include "scoring/ScreenParts.h"

namespace tallory {

std::string ClickerLogsProgressText(const Course& course, int i, std::string_view remoteId,
                                    int16_t deleteRemote) {
    // The count runs to one past the last session: instructors know the pass by this figure.
    std::string text = "Updating Lectures - " + std::to_string(i) + " Of " +
                       std::to_string(course.NumSessions + 1);
    if (deleteRemote != 0)
        text.append("   Deleting clicker log(s) for '").append(remoteId).append("'");
    return text;
}

void UpdateClickerLogs(Course& course, Host& host, MainScreen& screen, std::string_view remoteId,
                       std::string_view studentId, int16_t deleteRemote, int16_t reload) {
    host.SetWaitCursor(true);
    host.ShowProgress();
    host.SetProgressText("Updating Lectures");
    const ClickerVotes clicker =
        deleteRemote != 0 ? DropClickerVotes(std::string(remoteId))
                          : ReturnVotesToOwner(std::string(remoteId), std::string(studentId));
    // One log at a time, each replaced whole: a pass cut short leaves every log either as it was
    // or as it should be, the earlier ones done and the later ones untouched. Each log is read and
    // written back and nothing else: no scoring between, so the writer sees the anonymous
    // questions as the session scored last left them, and nothing is posted to the grid, which
    // keeps its figures until the next load.
    for (int i = 1; i <= course.NumSessions; ++i) {
        host.SetProgressText(ClickerLogsProgressText(course, i, remoteId, deleteRemote));
        host.SetProgressValue(static_cast<double>(i) / course.NumSessions);
        const std::string path = SessionLogPath(course, course.SessionFile[i]);
        ReadSessionLog(course, path);
        WriteSessionLog(course, host, path, clicker);
    }
    host.SetProgressText("Lectures Updated Sucessfully");
    host.SetProgressText("Refreshing Data....!");
    host.HideProgress();
    host.SetWaitCursor(false);
    if (reload != 0) LoadSessions(course, host, screen);
}

}  // namespace tallory
