#include "scoring/SessionStore.h"

#include <algorithm>
#include <numeric>

#include "common/Paths.h"
#include "common/Support.h"
#include "common/Text.h"
#include "logs/SessionLog.h"
#include "registration/RemoteTable.h"
#include "registration/Roster.h"
#include "scoring/Grading.h"
#include "start/Fields.h"

namespace tallory {

namespace {

constexpr std::string_view kProgressFixedText =
    "This might take several minutes, depending on the size of your session data folder.... "
    "Please Stand By.....";

// A log is "L" + YYMMDDHHMM + ".csv"; the folder lister matches L*.csv without regard to case.
bool IsLogName(const std::string& name) {
    return name.size() >= 5 && (name[0] == 'L' || name[0] == 'l') &&
           ToUpper(name.substr(name.size() - 4)) == ".CSV";
}

// Up to 99 log names of exactly 15 characters, in ascending byte order. Reports whether a further
// name was still at hand when the list was full.
std::vector<std::string> SortedLogNames(const std::string& folder, bool& tooMany) {
    std::vector<std::string> names;
    tooMany = false;
    for (const std::string& name : ListFiles(folder)) {
        if (!IsLogName(name)) continue;
        if (static_cast<int>(names.size()) >= kMaxSessions) {
            tooMany = true;
            break;
        }
        if (name.size() != 15) continue;
        names.insert(std::lower_bound(names.begin(), names.end(), name), name);
    }
    return names;
}

void IndexStudent(Course& course, int row) {
    course.StudentIndex.emplace(NormalKey(course.Students[row].StudentId), row);
}

void RebuildStudentIndex(Course& course) {
    course.StudentIndex.clear();
    for (int row = 1; row <= course.NumStudents; ++row) IndexStudent(course, row);
}

int FindStudentRow(const Course& course, const std::string& studentId) {
    auto found = course.StudentIndex.find(NormalKey(studentId));
    return found == course.StudentIndex.end() ? 0 : found->second;
}

// A new row behind the last student, with zero scores up to `session`.
int AddStudentRow(Course& course, const std::string& studentId, const std::string& remoteId,
                  int session) {
    int row = course.NumStudents + 1;
    StudentRec& student = course.Students[row];  // past 4000 this is run-time error 9
    course.NumStudents = row;
    student.StudentId = studentId;
    student.RemoteId = remoteId;
    for (int s = 0; s <= session; ++s) {
        student.Score[s] = 0;
        student.Present[s] = kFalse;
    }
    IndexStudent(course, row);
    return row;
}

std::string Padding(size_t width, size_t used) {
    return used < width ? std::string(width - used, ' ') : std::string();
}

// Keeps the progress screen and the wait cursor honest when a load ends early.
class LoadingScope {
  public:
    explicit LoadingScope(Host& host) : host_(host) { host_.SetWaitCursor(true); }
    ~LoadingScope() {
        host_.HideProgress();
        host_.SetWaitCursor(false);
    }

  private:
    Host& host_;
};

}  // namespace

std::string_view ProgressFixedText() {
    return kProgressFixedText;
}

void ClearStudentTable(Course& course) {
    for (int row = 1; row <= course.NumStudents; ++row) {
        StudentRec& student = course.Students[row];
        student.StudentId.clear();
        for (int s = 0; s <= course.NumSessions; ++s) {
            student.Score[s] = 0;
            student.Present[s] = kFalse;
        }
    }
    course.StudentIndex.clear();
}

void AddSessionToStudents(Course& course, int session) {
    RecomputeSession(course);
    for (int v = 1; v <= course.NumVoters; ++v) {
        const VoteRec& vote = course.Votes[v];
        int row = FindStudentRow(course, vote.StudentId);
        if (row == 0) {
            row = AddStudentRow(course, vote.StudentId, vote.RemoteId, session);
            if (!StartsWith(vote.StudentId, "#"))
                UpdateRosterRemote(course, vote.StudentId, vote.RemoteId, true);
        }
        StudentRec& student = course.Students[row];
        if (student.Present[session]) {
            // A second clicker of the same student voted in this session: the first line stands.
            std::string clickers = RemotesOfStudent(course, student.StudentId);
            if (!clickers.empty()) clickers.pop_back();
            course.MultiRemoteText += student.StudentId + "\r\n";
            AddMultiRemote(course, student.StudentId, clickers, SessionLabel(course, session));
        } else {
            student.Score[session] = vote.Score[0];
            student.Present[session] = kTrue;
            student.Score[0] += student.Score[session];
        }
    }
}

void AddRosterStudents(Course& course, int numSessions) {
    for (long i = 0; i < course.Roster.Allocated(); ++i) {
        const std::string& studentId = course.Roster[i].StudentId;
        // An empty ID matches the empty row behind the last student and adds nothing.
        if (TrimView(studentId).empty() || FindStudentRow(course, studentId) != 0) continue;
        AddStudentRow(course, studentId, "Unregistered", numSessions);
    }
}

void SortStudents(Course& course, DisplayOrder order) {
    const int count = course.NumStudents;
    std::vector<std::string> keys(count + 1);
    if (order == DisplayOrder::LastName) {
        for (int i = 1; i <= count; ++i) {
            RosterRec entry = GetRosterEntry(course, course.Students[i].StudentId);
            keys[i] = ToUpper(ReplaceAll(Trim(entry.LastName), " ", "_") + "  " +
                              ReplaceAll(Trim(entry.FirstName), " ", "_") + " " + entry.StudentId);
        }
    }
    std::vector<int> rows(count);
    std::iota(rows.begin(), rows.end(), 1);
    // Registered students first, then the unregistered remotes ("#" rows), each group in order.
    auto before = [&](int j, int i) {
        const std::string& idJ = course.Students[j].StudentId;
        const std::string& idI = course.Students[i].StudentId;
        bool hashJ = StartsWith(idJ, "#"), hashI = StartsWith(idI, "#");
        if (hashJ != hashI) return !hashJ;
        if (hashJ || order == DisplayOrder::StudentId) return idJ < idI;
        return keys[j] < keys[i];
    };
    std::stable_sort(rows.begin(), rows.end(), before);
    std::vector<StudentRec> sorted;
    sorted.reserve(count);
    for (int row : rows) sorted.push_back(std::move(course.Students[row]));
    for (int i = 1; i <= count; ++i) course.Students[i] = std::move(sorted[i - 1]);
    RebuildStudentIndex(course);
}

std::string SessionLabel(const Course& course, int session) {
    CheckSubscript(session, 0, kSessionTableUpper, "SessionTitle");
    const std::string& title = course.SessionTitle[session];
    if (!TrimView(title).empty()) return title;
    std::string date = SessionDate(course.SessionFile[session]);
    if (session <= 0) return date;
    int n = 1;
    while (n < session && SessionDate(course.SessionFile[session - n]) == date) ++n;
    return n >= 2 ? date + "-" + std::to_string(n) : date;
}

void AddMultiRemote(Course& course, std::string_view student, std::string_view clickers,
                    std::string_view session) {
    for (long row = 0;; ++row) {
        MultiRemoteRec& entry = course.MultiRemote[row];
        if (TrimView(entry.Student).empty()) {
            entry.Student = student;
            entry.Clickers = clickers;
            entry.Sessions = session;
            return;
        }
        if (SameText(entry.Student, student)) {
            entry.Sessions += ",";
            entry.Sessions += session;
            size_t from = 0;
            while (from <= clickers.size()) {
                size_t comma = clickers.find(',', from);
                if (comma == std::string_view::npos) comma = clickers.size();
                std::string_view part = clickers.substr(from, comma - from);
                if (entry.Clickers.find(part) == std::string::npos) {
                    entry.Clickers += ",";
                    entry.Clickers += part;
                }
                from = comma + 1;
            }
            return;
        }
    }
}

std::string MultiRemoteReport(const Course& course) {
    std::string report;
    int n = 0;
    for (long row = 0; row < course.MultiRemote.Allocated(); ++row) {
        const MultiRemoteRec& entry = course.MultiRemote[row];
        if (TrimView(entry.Student).empty()) continue;
        ++n;
        // The first row shows 17 characters of the clickers, later rows 21: kept as users know it.
        std::string number = std::to_string(n);
        std::string student = Left(entry.Student, 12);
        std::string clickers = Left(entry.Clickers, n == 1 ? 17 : 21);
        if (n > 1) report += "\r\n";
        report += number + Padding(10, number.size()) + student + Padding(20, student.size()) +
                  clickers + Padding(29, clickers.size()) + entry.Sessions;
    }
    return report;
}

std::string MultiRemoteWarning(const Course& course) {
    return "Warning! The student(s) below appear to be registered to multiple remotes used in the "
           "following session (also listed).\r\n"
           "Often, this occurs when a student is inadvertently registered to the wrong clicker."
           "\r\n\r\nTo resolve this problem:\r\n"
           "1.Find the below listed student(s) on the main screen of Tallory.\r\n"
           "2.Click on the student's name to view all clickers registered to that student.\r\n"
           "3.Confirm the correct ID with the student, and remove the incorrect clicker ID."
           "\r\n\r\n" +
           std::string(kContactSentence) +
           "\r\n\r\nSrNo   StudentID          Registered Clicker(s)             Affected "
           "Session(s)\r\n" +
           MultiRemoteReport(course);
}

void LoadSessions(Course& course, Host& host, MainScreen& screen) {
    LoadingScope scope(host);
    course.MultiRemote.Reset();

    std::string folder = CoursePath(course.AppPath, "\\SessionData");
    ClearStudentTable(course);
    course.MultiRemoteText.clear();
    screen.ClearTable();

    bool tooMany = false;
    std::vector<std::string> names = SortedLogNames(folder, tooMany);
    const int numFiles = static_cast<int>(names.size());
    if (tooMany)
        host.Message("Too many log files, only able to load the first " +
                     std::to_string(kMaxSessions));

    course.NumSessions = 1;
    course.NumStudents = 0;
    host.ShowProgress();
    host.SetProgressText("Loading Session Data");
    for (int i = 1; i <= numFiles; ++i) {
        // The total shown is one more than the number of files; users know the text so.
        host.SetProgressText("Loading Session Data in Memory - " + std::to_string(i) + " Of " +
                             std::to_string(numFiles + 1));
        host.SetProgressValue(static_cast<double>(i) / numFiles);
        const std::string& name = names[i - 1];
        ReadSessionLog(course, JoinPath(folder, name));
        if (course.NumQuestions > 0) {
            CheckSubscript(course.NumSessions, 0, kSessionTableUpper, "SessionFile");
            course.SessionFile[course.NumSessions] = name;
            course.SessionTitle[course.NumSessions] = course.Questions[0].Name;
            AddSessionToStudents(course, course.NumSessions);
            ++course.NumSessions;
        }
    }
    --course.NumSessions;
    host.SetProgressValue(1);

    host.SetProgressText("Adding Unregistered Students..");
    AddRosterStudents(course, course.NumSessions);

    screen.SessionsLoaded(course.NumSessions, course.NumStudents);

    host.SetProgressText("Sorting Data");
    SortStudents(course, screen.Order());

    if (course.MultiRemoteText.find('\n') != std::string::npos)
        host.Message(MultiRemoteWarning(course),
                     "Warning - Multiple clickers Registered with one Student", Icon::Exclamation,
                     Buttons::Ok, kTableText);

    screen.UpdateTable();
    host.SetProgressText("");
}

}  // namespace tallory
