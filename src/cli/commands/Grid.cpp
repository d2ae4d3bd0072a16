// grid [--by-name]: the score grid as the main window shows it after its start sequence.
#include <sstream>

#include "cli/Cli.h"
#include "common/Numbers.h"
#include "common/Text.h"
#include "registration/Roster.h"

namespace tallory::cli {

namespace {

// The grid's "Average:" figure: the total over all sessions, attended or not.
double GridAverage(const Course& course, const StudentRec& student) {
    return course.NumSessions < 1 ? 0 : Round(student.Score[0] / course.NumSessions, 2);
}

std::string GridText(const Course& course, const LoadedCourse& loaded) {
    std::ostringstream out;
    out << DisplayText(loaded.courseName) << "  (" << loaded.format.caption << ")\n";
    std::string header = "Student" + Padding(24, 7) + "Total   Average  ";
    out << header;
    for (int s = 1; s <= course.NumSessions; ++s) {
        std::string label = Left(Trim(SessionLabel(course, s)), 12);
        out << DisplayText(label) << Padding(14, label.size());
    }
    out << "\n";
    for (int i = 1; i <= course.NumStudents; ++i) {
        const StudentRec& student = course.Students[i];
        RosterRec entry = GetRosterEntry(course, student.StudentId);
        // A roster line of a bare ID has the ID for a last name: no need to show it twice.
        std::string name = Trim(student.StudentId);
        std::string last = Trim(entry.LastName), first = Trim(entry.FirstName);
        if (!last.empty() && last != name) name += " " + last + (first.empty() ? "" : ", " + first);
        name = Left(name, 30);
        std::string total = NumberText(student.Score[0]);
        std::string average = NumberText(GridAverage(course, student));
        out << DisplayText(name) << Padding(31, name.size()) << total << Padding(8, total.size())
            << average << Padding(9, average.size());
        for (int s = 1; s <= course.NumSessions; ++s) {
            std::string cell = student.Present[s] ? NumberText(student.Score[s]) : "Ab";
            out << cell << Padding(14, cell.size());
        }
        out << "\n";
    }
    return out.str();
}

int RunGrid(Context& context) {
    LoadedCourse loaded = LoadCourseReadOnly(context);
    const Course& course = context.course;
    nlohmann::json sessions = nlohmann::json::array();
    for (int s = 1; s <= course.NumSessions; ++s) {
        sessions.push_back({{"number", s},
                            {"file", JsonText(course.SessionFile[s])},
                            {"title", JsonText(course.SessionTitle[s])},
                            {"label", JsonText(SessionLabel(course, s))}});
    }
    nlohmann::json students = nlohmann::json::array();
    for (int i = 1; i <= course.NumStudents; ++i) {
        const StudentRec& student = course.Students[i];
        RosterRec entry = GetRosterEntry(course, student.StudentId);
        nlohmann::json scores = nlohmann::json::array();
        for (int s = 1; s <= course.NumSessions; ++s) {
            if (student.Present[s])
                scores.push_back(student.Score[s]);
            else
                scores.push_back(nullptr);
        }
        students.push_back({{"id", JsonText(student.StudentId)},
                            {"remote", JsonText(student.RemoteId)},
                            {"last", JsonText(entry.LastName)},
                            {"first", JsonText(entry.FirstName)},
                            {"total", student.Score[0]},
                            {"average", GridAverage(course, student)},
                            {"scores", scores}});
    }
    nlohmann::json document = {{"course", JsonText(loaded.courseName)},
                               {"cms", loaded.format.caption},
                               {"sessions", sessions},
                               {"students", students}};
    Print(context, document, GridText(course, loaded));
    return 0;
}

void AddGridCommand(CLI::App& app, Context& context) {
    CLI::App& command = AddCommand(app, context, "grid",
                                   "the score grid of the course, as the main window shows it",
                                   [&context] { return RunGrid(context); });
    AddByNameOption(command, context);
}

const CommandRegistration kRegistered("grid", AddGridCommand);

}  // namespace

}  // namespace tallory::cli
