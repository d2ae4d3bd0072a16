#include "housekeeping/UnregisteredStudents.h"

#include "common/AtomicFile.h"
#include "common/Paths.h"
#include "common/RunTimeError.h"
#include "common/Text.h"
#include "registration/Roster.h"

namespace tallory {

namespace {

constexpr std::string_view kUnregisteredRemote = "UNREGISTERED";
constexpr std::string_view kLineEnd = "\r\n";

}  // namespace

bool RowCounts(const UnregisteredRec& row) {
    return !TrimView(row.StudentId).empty();
}

void BuildUnregisteredList(const Course& course, UnregisteredTable& list) {
    list.Reset();
    int n = 0;
    // Every row of Students, used or not: a row past the last student has an empty ID.
    for (long i = 0; i < course.Students.Allocated(); ++i) {
        const StudentRec& student = course.Students[i];
        if (TrimView(student.StudentId).empty()) continue;
        if (NormalKey(student.RemoteId) != kUnregisteredRemote) continue;
        const RosterRec entry = GetRosterEntry(course, student.StudentId);
        UnregisteredRec& row = list[n];
        row.LastName = entry.LastName;
        row.FirstName = entry.FirstName;
        row.StudentId = entry.StudentId;
        row.Serial = static_cast<int16_t>(n);
        ++n;
    }
}

std::string UnregisteredText(const UnregisteredTable& list, char delimiter) {
    const std::string d(1, delimiter);
    std::string text = "Last Name" + d + "First Name" + d + "Student Id";
    text.append(kLineEnd).append(kLineEnd);
    for (long i = 0; i < list.Allocated(); ++i) {
        const UnregisteredRec& row = list[i];
        if (!RowCounts(row)) continue;
        text.append(row.LastName).append(d).append(row.FirstName).append(d).append(row.StudentId);
        text.append(kLineEnd);
    }
    return text;
}

void WriteUnregisteredFile(Host& host, const UnregisteredTable& list, const std::string& path,
                           char delimiter) {
    std::string error;
    if (!ReplaceFile(path, UnregisteredText(list, delimiter), &error, &host))
        throw RunTimeError(kPathFileAccessError, path + ": " + error);
}

UnregisteredStudentsScreen::UnregisteredStudentsScreen(Course& course, Host& host,
                                                       const UnregisteredTable& list)
    : course_(course), host_(host), list_(list) {
    // This screen is the current one of the two tabs.
    cmdUnRegisteredStudents_.checked = true;
}

std::string_view UnregisteredStudentsScreen::HelpText() {
    return "These students are on the class roster but have no Polvane clicker registered, so "
           "none of their votes can count. Remind them to register the ID on the back of their "
           "clicker, either through the course's web registration or with the instructor, who "
           "can add it by clicking the student's name on the main screen of Tallory. Export the "
           "list to a file or the clipboard to send the reminder.";
}

void UnregisteredStudentsScreen::LoadData() {
    rowCount_ = 0;
    for (long i = 0; i < list_.Allocated(); ++i)
        if (RowCounts(list_[i])) ++rowCount_;
    vsScr_.value = 0;
    ShowRows();
    SetListScroll(vsScr_, rowCount_);
}

void UnregisteredStudentsScreen::ShowRows() {
    for (int r = 0; r < kListRows; ++r) {
        const UnregisteredRec& row = list_[vsScr_.value + r];
        UnregisteredRow& shown = rows_[r];
        const bool counts = RowCounts(row);
        shown.TxtSerial.text = counts ? std::to_string(row.Serial + 1) : "";
        shown.TxtLastName.text = counts ? row.LastName : "";
        shown.TxtFirstName.text = counts ? row.FirstName : "";
        shown.txtStudentId.text = counts ? row.StudentId : "";
    }
}

void UnregisteredStudentsScreen::VsScrChange(int value) {
    vsScr_.value = value;
    ShowRows();
}

void UnregisteredStudentsScreen::RowKeyDown(int key) {
    if (key != kKeyPageUp && key != kKeyPageDown) return;
    const int value = PagedValue(vsScr_, key == kKeyPageDown);
    if (value != vsScr_.value) VsScrChange(value);
}

void UnregisteredStudentsScreen::ExportFile(std::string_view literal, char delimiter) {
    WriteUnregisteredFile(host_, list_, CoursePath(course_.AppPath, literal), delimiter);
    // The message names the file as the course folder and the literal spell it.
    const std::string shown = course_.AppPath + "/" + std::string(literal.substr(1));
    host_.Message("Un Registered Student Data sucessfully Exported to '" + shown + "'", "Export",
                  Icon::Information);
}

void UnregisteredStudentsScreen::ExportClipboard(char delimiter) {
    host_.SetClipboardText(UnregisteredText(list_, delimiter));
    host_.Message("Un Registered Student(s) information copied to clipboard sucessfully", "Export");
}

void UnregisteredStudentsScreen::CmdCSVClick() {
    ExportFile("\\Unregistered Student List.CSV", ',');
}

void UnregisteredStudentsScreen::CmdTxtClick() {
    // The text file is comma-separated like the CSV file.
    ExportFile("\\Unregistered Student List.txt", ',');
}

void UnregisteredStudentsScreen::CmdExcelClick() {
    // Spreadsheets open tab-separated text under this name.
    ExportFile("\\Unregistered Student List.xls", '\t');
}

void UnregisteredStudentsScreen::CmdClipboardClick() {
    ExportClipboard(',');
}

void UnregisteredStudentsScreen::CmdClipboardTabClick() {
    ExportClipboard('\t');
}

}  // namespace tallory
