#include "grid/ClassView.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "common/Numbers.h"
#include "common/Text.h"
#include "registration/Roster.h"

namespace tallory {

void ClassView::Refresh(DisplayOrder order) {
    students_.clear();
    students_.reserve(course_.NumStudents);
    for (int row = 1; row <= course_.NumStudents; ++row) {
        const StudentRec& student = course_.Students[row];
        const RosterRec entry = GetRosterEntry(course_, student.StudentId);
        Student shown;
        shown.row = row;
        shown.id = student.StudentId;
        // The grid's leading blank is its padding; a table cell pads itself.
        shown.name = Trim(StudentNameText(course_, student, order));
        // The fields apart, so that a search never matches across two of them.
        shown.haystack = DisplayText(Trim(student.StudentId) + "\n" + Trim(entry.LastName) + "\n" +
                                     Trim(entry.FirstName));
        shown.colour = NameColourOf(student);
        students_.push_back(std::move(shown));
    }
    // A session removed behind the view takes its sort column with it.
    if (sortColumn_ >= ColumnCount()) sortColumn_ = -1;
    Arrange();
}

int ClassView::SessionAt(int column) const {
    const int session = column - kFirstSessionColumn + 1;
    return session >= 1 && session <= course_.NumSessions ? session : 0;
}

std::string ClassView::HeaderText(int column) const {
    switch (column) {
        case kNameColumn:
            return "Student";
        case kTotalColumn:
            return "Total";
        case kAverageColumn:
            return "Average";
        default:
            const int session = SessionAt(column);
            return session ? SessionHeading(course_, session) : std::string();
    }
}

std::string ClassView::HeaderTip(int column) const {
    const int session = SessionAt(column);
    return session ? Trim(SessionLabel(course_, session)) : std::string();
}

std::string ClassView::CellText(int row, int column) const {
    const Student& shown = students_[shown_[row]];
    const StudentRec& student = course_.Students[shown.row];
    switch (column) {
        case kNameColumn:
            return shown.name;
        case kTotalColumn:
            return NumberText(student.Score[0]);
        case kAverageColumn:
            return NumberText(StudentAverage(course_, student));
        default:
            const int session = SessionAt(column);
            return session ? SessionCellText(student, session) : std::string();
    }
}

bool ClassView::Absent(int row, int column) const {
    const int session = SessionAt(column);
    return session && course_.Students[StudentAt(row)].Present[session] == 0;
}

int ClassView::RowOf(int studentRow) const {
    for (int row = 0; row < RowCount(); ++row)
        if (StudentAt(row) == studentRow) return row;
    return -1;
}

int ClassView::RowOfId(std::string_view studentId) const {
    for (int row = 0; row < RowCount(); ++row)
        if (StudentIdAt(row) == studentId) return row;
    return -1;
}

void ClassView::KeepChoice(Cell chosen) {
    const bool any = chosen.row >= 0 && chosen.row < RowCount();
    chosenId_ = any ? StudentIdAt(chosen.row) : std::string();
    chosenColumn_ = any ? chosen.column : -1;
}

ClassView::Cell ClassView::KeptChoice() const {
    const int row = chosenId_.empty() ? -1 : RowOfId(chosenId_);
    if (row < 0) return {};
    return {row, std::min(chosenColumn_, ColumnCount() - 1)};
}

double ClassView::SortKey(const Student& shown, int column) const {
    const StudentRec& student = course_.Students[shown.row];
    if (column == kTotalColumn) return student.Score[0];
    if (column == kAverageColumn) return StudentAverage(course_, student);
    const int session = SessionAt(column);
    if (student.Present[session] == 0) return -std::numeric_limits<double>::infinity();
    return student.Score[session];
}

void ClassView::Sort(int column, bool ascending) {
    sortColumn_ = column >= 0 && column < ColumnCount() ? column : -1;
    ascending_ = ascending;
    Arrange();
}

void ClassView::Search(std::string_view text) {
    search_ = Trim(text);
    Arrange();
}

void ClassView::Arrange() {
    shown_.clear();
    for (int i = 0; i < static_cast<int>(students_.size()); ++i)
        if (search_.empty() || ContainsNoCase(students_[i].haystack, search_)) shown_.push_back(i);
    if (sortColumn_ < 0) return;

    // Keys first, then one stable sort over them: the rows compare in constant time.
    std::vector<double> numbers;
    std::vector<std::string> names;
    if (sortColumn_ == kNameColumn) {
        names.reserve(students_.size());
        for (const Student& shown : students_) names.push_back(ToUpper(shown.name));
    } else {
        numbers.reserve(students_.size());
        for (const Student& shown : students_) numbers.push_back(SortKey(shown, sortColumn_));
    }
    auto less = [&](int a, int b) {
        return names.empty() ? numbers[a] < numbers[b] : names[a] < names[b];
    };
    if (ascending_)
        std::stable_sort(shown_.begin(), shown_.end(), less);
    else
        std::stable_sort(shown_.begin(), shown_.end(), [&](int a, int b) { return less(b, a); });
}

}  // namespace tallory
