#pragma once

#include <QAbstractTableModel>
#include <QDialog>
#include <QTableView>
#include <functional>

#include "grid/ClassView.h"

class QLabel;
class QLayout;
class QLineEdit;
class QPushButton;

namespace tallory {

class Host;
class ScoreGrid;
class TrendDelegate;

// The class view as a table model: every cell is asked for when it is painted, so a class of
// thousands by 99 sessions costs no more than the cells on the screen.
class ClassViewModel : public QAbstractTableModel {
    Q_OBJECT
  public:
    ClassViewModel(ClassView& view, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

    // Runs a change of the view's rows or columns (a refresh, a search) as a reset of the model.
    void Change(const std::function<void()>& change);

  private:
    ClassView& view_;
};

// A table whose first column stays at the left while the others scroll sideways: a second view
// over the same model and selection shows only that column, laid over the first.
class FrozenColumnTable : public QTableView {
    Q_OBJECT
  public:
    explicit FrozenColumnTable(QWidget* parent = nullptr);

    void setModel(QAbstractItemModel* model) override;
    QTableView* Frozen() const { return frozen_; }
    void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;

  protected:
    void resizeEvent(QResizeEvent* event) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    void updateGeometries() override;

  private:
    void HideAllButFirst();
    void PlaceFrozen();

    QTableView* frozen_;
};

// The whole class at a glance: all students by all sessions, read-only, sorted by any heading,
// searched by name or ID; beside each average a small line of the student's session scores. A name
// (or the Open Student command) opens the student's screen, a session's figure (or Open Session)
// that session's screen, as the grid does; afterwards the table reads Students again.
class ClassViewWindow : public QDialog {
    Q_OBJECT
  public:
    ClassViewWindow(Course& course, Host& host, ScoreGrid& grid, QWidget* parent = nullptr);

    FrozenColumnTable* Table() const { return table_; }
    const ClassView& View() const { return view_; }

    // The screens, for a shown row and a column of the view.
    void OpenStudent(int row);
    void OpenSession(int column);
    // Reads Students again and keeps the current student and column in sight.
    void Refresh();

  private:
    // The window, one part at a time: the search above, the table, the commands below; then
    // what the commands and the table's resets do.
    QLayout* BuildSearchBar();
    void BuildTable();
    QLayout* BuildCommands();
    void ConnectCommands();
    void KeepChoiceThroughResets();
    void Activated(const QModelIndex& index);
    // The current cell when its row is selected; nothing otherwise.
    QModelIndex Chosen() const;
    void ShowCounts();
    void SizeColumns();
    void UpdateCommands();
    void Guarded(const std::function<void()>& command);

    Course& course_;
    Host& host_;
    ScoreGrid& grid_;
    ClassView view_;
    ClassViewModel* model_;
    FrozenColumnTable* table_;
    QLineEdit* search_;
    QLabel* counts_;
    QPushButton* openStudent_;
    QPushButton* openSession_;
    TrendDelegate* trend_ = nullptr;
};

// Opens the class view over the main window's course, modally.
void OpenClassView(QWidget* parent, Course& course, Host& host, ScoreGrid& grid);

}  // namespace tallory
