#include "scoring/SaveSession.h"

#include <utility>

#include "logs/SessionLog.h"
#include "logs/SessionLogWriter.h"
#include "logs/SessionStore.h"
#include "scoring/Grading.h"
#include "scoring/ScreenParts.h"

namespace tallory {

ClickerVotes DropClickerVotes(std::string remoteId) {
    return ClickerVotes{std::move(remoteId), "", kTrue};
}

ClickerVotes ReturnVotesToOwner(std::string remoteId, std::string studentId) {
    return ClickerVotes{std::move(remoteId), std::move(studentId), kFalse};
}

bool SaveSession(Course& course, Host& host, int session, const ClickerVotes& clicker) {
    if (CountLiveQuestions(course) == 0) course.SessParticipation = 0;
    const std::string path = SessionLogPath(course, course.SessionFile[session]);
    const bool written = WriteSessionLog(course, host, path, clicker.remoteId, clicker.studentId,
                                         clicker.deleteRemote);
    // Whatever the file now holds is what the grid shows.
    for (int s = 1; s <= course.NumStudents; ++s) {
        StudentRec& student = course.Students[s];
        student.Score[0] -= student.Score[session];
        student.Present[session] = kFalse;
    }
    ReadSessionLog(course, path);
    AddSessionToStudents(course, session);
    return written;
}

}  // namespace tallory
