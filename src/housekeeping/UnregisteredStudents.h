#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "common/Course.h"
#include "common/Host.h"
#include "common/Table.h"
#include "housekeeping/ListPage.h"
#include "scoring/ScreenParts.h"

namespace tallory {

// A roster student with no clicker registered. A row counts when its trimmed StudentId is not
// empty.
struct UnregisteredRec {
    std::string LastName;
    std::string FirstName;
    std::string StudentId;
    int16_t Serial = 0;  // the row's own index
};

// UnregisteredList: rows 0..4000, filled by the main window before the clicker list opens.
struct UnregisteredTable : Table<UnregisteredRec, kMaxStudents> {
    UnregisteredTable() : Table("UnregisteredList") {}
};

bool RowCounts(const UnregisteredRec& row);

// Rebuilds the list from the roster students of Students that never got a clicker, in the order
// of Students, with their names from the roster.
void BuildUnregisteredList(const Course& course, UnregisteredTable& list);

// The list as one text: a header, a blank line, then "last,first,id" per row, each line ending
// in CR LF. Nothing is quoted, so a delimiter inside a name shifts the columns.
std::string UnregisteredText(const UnregisteredTable& list, char delimiter);
// Replaces the file with UnregisteredText. A file that cannot be written ends the command with
// a run-time error.
void WriteUnregisteredFile(Host& host, const UnregisteredTable& list, const std::string& path,
                           char delimiter);

// One visible row of the list.
struct UnregisteredRow {
    ControlState TxtSerial;
    ControlState TxtLastName;
    ControlState TxtFirstName;
    ControlState txtStudentId;
};

// frmUnRegisteredStudents, "View and Export Unregistered Student(s)": the list a page at a time,
// its three files and two clipboard exports.
class UnregisteredStudentsScreen {
  public:
    UnregisteredStudentsScreen(Course& course, Host& host, const UnregisteredTable& list);

    // Counts the rows, shows the first page and sets up the scroll bar.
    void LoadData();
    void VsScrChange(int value);
    // A key in one of the row boxes: page up and page down scroll the list like the bar.
    void RowKeyDown(int key);

    void CmdCSVClick();
    void CmdTxtClick();
    void CmdExcelClick();
    void CmdClipboardClick();
    void CmdClipboardTabClick();
    // The tab back to the unregistered clickers: this screen closes.
    void CmdUnRegisteredClickersClick() { closed_ = true; }

    int RowCount() const { return rowCount_; }
    const UnregisteredRow& Row(int r) const { return rows_[r]; }
    const ScrollBar& VsScr() const { return vsScr_; }
    const ControlState& CmdUnRegisteredClickers() const { return cmdUnRegisteredClickers_; }
    const ControlState& CmdUnRegisteredStudents() const { return cmdUnRegisteredStudents_; }
    bool Closed() const { return closed_; }

    static constexpr std::string_view kCaption = "View and Export Unregistered Student(s)";
    static constexpr std::string_view kHelpTitle = "Unregistered Student(s)";
    static std::string_view HelpText();

  private:
    void ShowRows();
    void ExportFile(std::string_view literal, char delimiter);
    void ExportClipboard(char delimiter);

    Course& course_;
    Host& host_;
    const UnregisteredTable& list_;
    int rowCount_ = 0;
    std::array<UnregisteredRow, kListRows> rows_;
    ScrollBar vsScr_ = kListScroll;
    ControlState cmdUnRegisteredClickers_{"Unregistered Polvane(s)"};
    ControlState cmdUnRegisteredStudents_{"Unregistered Student(s)"};
    bool closed_ = false;
};

}  // namespace tallory
