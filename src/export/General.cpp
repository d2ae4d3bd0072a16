// The General export: the students by sessions table for a spreadsheet, from the program's own
// Students table, with the identifying columns the person picks.

#include <unordered_map>

#include "common/Numbers.h"
#include "common/Paths.h"
#include "common/Text.h"
#include "export/ExportTarget.h"
#include "registration/Roster.h"
#include "scoring/SessionStore.h"

namespace tallory {

namespace {

// frmGeneralExportFilter, loaded afresh for every export.
OptionDialog GeneralExportFilter() {
    OptionDialog dialog;
    dialog.title = "Select export option";
    dialog.heading = "What data would you like to export along with the scores?";
    dialog.choices = {"Student last name, first name, student ID ",
                      "Student last name, student ID ", "Student ID only ",
                      "Student last name, student first name", "Remote ID Only"};
    dialog.footer =
        "Your chosen format (above), along with your selected session scores, will then be "
        "written to a file in your course folder (Uploadfile.csv). As always, you may select to "
        "export just one session or multiple sessions.";
    dialog.acceptCaption = "Export";
    dialog.cancelCaption = "Cancel";
    dialog.preselected = 2;
    return dialog;
}

// The identifying columns of each ExportFilter value.
enum ExportFilter { kNamesAndId = 0, kLastNameAndId = 1, kIdOnly = 2, kNamesOnly = 3 };

// "Remote ID Only" writes the row's StudentId, as "Student ID only " does: an unregistered
// remote's row carries "#" and the remote as its ID.
int ExportFilterOf(int choice) {
    switch (choice) {
        case 0:
            return kNamesAndId;
        case 1:
            return kLastNameAndId;
        case 3:
            return kNamesOnly;
        default:
            return kIdOnly;
    }
}

constexpr std::string_view kHeadings[] = {
    "Last Name,First Name,Student ID",
    "Last Name,Student ID",
    "Student ID",
    "Last Name,First Name",
};

// The general wording of a failed write, which has its own spacing.
constexpr std::string_view kWriteError =
    "The UploadFile.csv is already open (with write access by another program). Please close "
    "this file before attempting to export scores from Tallory.\r\nWhile UploadFile.csv is open, "
    "any changes you make in Tallory will not be saved and will be overwritten. Please close "
    "UploadFile.csv before continuing with your work and exporting session data from Tallory";

// Names of the first Roster row of each ID, wherever in the table it stands.
class RosterNames {
  public:
    explicit RosterNames(const Course& course) : roster_(course.Roster) {
        for (long i = 0; i < roster_.Allocated(); ++i)
            rowOf_.emplace(NormalKey(roster_[i].StudentId), static_cast<int>(i));
    }

    // An unregistered remote's row shows its "#" ID in the last-name column.
    std::string LastNameOf(const std::string& studentId) const {
        const std::string_view id = TrimView(studentId);
        if (id.empty()) return {};
        if (id.front() == '#') return studentId;
        const RosterRec* row = Find(studentId);
        return row ? Trim(row->LastName) : std::string();
    }

    std::string FirstNameOf(const std::string& studentId) const {
        if (TrimView(studentId).empty()) return {};
        const RosterRec* row = Find(studentId);
        return row ? Trim(row->FirstName) : std::string();
    }

  private:
    const RosterRec* Find(const std::string& studentId) const {
        auto found = rowOf_.find(NormalKey(studentId));
        return found == rowOf_.end() ? nullptr : &roster_[found->second];
    }

    const Table<RosterRec, kMaxRoster>& roster_;
    std::unordered_map<std::string, int> rowOf_;
};

std::string IdentifyingCells(int filter, const RosterNames& names, const std::string& id) {
    switch (filter) {
        case kNamesAndId:
            return Quoted(names.LastNameOf(id)) + "," + Quoted(names.FirstNameOf(id)) + "," +
                   Quoted(id);
        case kLastNameAndId:
            return Quoted(names.LastNameOf(id)) + "," + Quoted(id);
        case kNamesOnly:
            return Quoted(names.LastNameOf(id)) + "," + Quoted(names.FirstNameOf(id));
        default:
            return Quoted(id);
    }
}

}  // namespace

void ReadGeneralRoster(Course& course, Host&, const ExportTarget& target) {
    ReadRoster(course, CoursePath(course.AppPath, "\\" + std::string(target.rosterFile)));
}

// The table of the program's own Students, with the identifying columns the person picks.
std::vector<UploadColumn> WriteGeneralUpload(Course& course, Host& host, const ExportTarget& target,
                                             const ExportRun& run) {
    const OptionChoice choice = host.ChooseOption(GeneralExportFilter());
    if (choice.cancelled) return {};
    const int filter = ExportFilterOf(choice.index);
    const RosterNames names(course);
    const bool fullUpload = run.fullUpload;
    const std::string path = CoursePath(course.AppPath, "\\" + std::string(target.uploadFile));
    const bool written = WriteUploadFile(host, path, kWriteError, [&] {
        std::string text(kHeadings[filter]);
        if (fullUpload) text += ", Total ";
        for (int k = 1; k <= course.NumSessions; ++k) {
            if (!ColumnWanted(course, fullUpload, k)) continue;
            // A title of blanks is a title here, though the label would replace it.
            const std::string& title = course.SessionTitle[k];
            text += title.empty() ? "," + SessionLabel(course, k) : ", " + title;
        }
        text += " \r\n";
        // Each row ends the line before it, so the file's last row has no line end.
        bool lineOpen = false;
        for (int i = 1; i <= course.NumStudents; ++i) {
            const StudentRec& student = course.Students[i];
            if (TrimView(student.StudentId).empty()) continue;
            if (lineOpen) text += "\r\n";
            text += IdentifyingCells(filter, names, student.StudentId);
            for (int k = 0; k <= course.NumSessions; ++k)
                if (ColumnWanted(course, fullUpload, k))
                    text += ", " + NumberText(student.Score[k]) + " ";
            lineOpen = true;
        }
        return text;
    });
    if (written) host.Message("Saved scores to file: " + path);
    return {};
}

}  // namespace tallory
