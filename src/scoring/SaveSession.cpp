#include "scoring/SaveSession.h"

#include "common/ChangeJournal.h"
#include "logs/SessionLog.h"
#include "logs/SessionLogWriter.h"
#include "scoring/Grading.h"
#include "scoring/ScreenParts.h"
#include "scoring/SessionStore.h"

namespace tallory {

bool SaveSession(Course& course, Host& host, int session) {
    ChangeScope change(course.AppPath, "Set Scores of " + SessionLabel(course, session));
    if (CountLiveQuestions(course) == 0) course.SessParticipation = 0;
    const std::string path = SessionLogPath(course, course.SessionFile[session]);
    const bool written = WriteSessionLog(course, host, path, "", "", kFalse);
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
