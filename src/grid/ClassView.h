#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "common/Course.h"
#include "grid/ScoreGrid.h"
#include "scoring/SessionStore.h"

namespace tallory {

// The whole class at a glance: every student of Students by every session, read-only, in an order
// and a selection of its own. The texts and colours are the grid's own (ScoreGrid.h), so the two
// views never disagree. Rows and columns count from 0.
//
// Columns: the name, the total, the average, then one per session from the first to the last.
class ClassView {
  public:
    static constexpr int kNameColumn = 0;
    static constexpr int kTotalColumn = 1;
    static constexpr int kAverageColumn = 2;
    static constexpr int kFirstSessionColumn = 3;

    explicit ClassView(const Course& course) : course_(course) {}

    // Reads Students again (after a screen changed them, or the grid's name order changed), then
    // sorts and searches as before. `order` is the grid's choice of last names or IDs.
    void Refresh(DisplayOrder order);

    int RowCount() const { return static_cast<int>(shown_.size()); }
    int ColumnCount() const { return kFirstSessionColumn + course_.NumSessions; }

    std::string HeaderText(int column) const;
    // The whole session label behind a heading cut to the grid's 12 characters; empty elsewhere.
    std::string HeaderTip(int column) const;
    std::string CellText(int row, int column) const;
    NameColour Colour(int row) const { return students_[shown_[row]].colour; }
    // An "Ab" cell: the student missed the session.
    bool Absent(int row, int column) const;

    // The row of Students a shown row stands for, and the session of a column (0 for none).
    int StudentAt(int row) const { return students_[shown_[row]].row; }
    // The student's ID as it stood at the last Refresh: a screen may reorder Students before the
    // view reads them again.
    const std::string& StudentIdAt(int row) const { return students_[shown_[row]].id; }
    int SessionAt(int column) const;
    // The shown row of a row of Students; -1 when the search hides it.
    int RowOf(int studentRow) const;
    // The shown row of a student ID; -1 when there is none to show.
    int RowOfId(std::string_view studentId) const;

    // Sorts the shown rows by a column. Names sort as text without regard to case, figures as
    // numbers; "Ab" counts below every number, so absences come first going up and last going
    // down. Rows that compare equal keep the grid's order.
    void Sort(int column, bool ascending);
    int SortColumn() const { return sortColumn_; }
    bool SortAscending() const { return ascending_; }

    // Shows only the students whose ID, last name or first name holds the text, without regard to
    // case; blanks around it are dropped, and an empty text shows everybody.
    void Search(std::string_view text);
    const std::string& SearchText() const { return search_; }

    // A shown cell; row -1 for none.
    struct Cell {
        int row = -1;
        int column = -1;
    };
    // Sorting, searching and refreshing move the rows: the chosen cell is kept by its student
    // before, and found again after.
    void KeepChoice(Cell chosen);
    // Where the kept student stands now, in the kept column as far as the columns still reach;
    // row -1 when nobody was chosen or the student is no longer shown.
    Cell KeptChoice() const;

  private:
    struct Student {
        int row = 0;           // in Students
        std::string id;        // StudentId
        std::string name;      // the grid's name text, without its leading blank
        std::string haystack;  // ID, last and first name, upper case, for the search
        NameColour colour = NameColour::Blue;
    };

    // The number a figure column sorts by; absent sorts below everything.
    double SortKey(const Student& student, int column) const;
    void Arrange();

    const Course& course_;
    std::vector<Student> students_;  // in the order of Students
    std::vector<int> shown_;         // indices into students_, in the shown order
    int sortColumn_ = -1;            // -1: the grid's order
    bool ascending_ = true;
    std::string search_;
    std::string chosenId_;  // empty: nobody chosen
    int chosenColumn_ = -1;
};

}  // namespace tallory
