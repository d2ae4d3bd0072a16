#pragma once

#include <QDialog>
#include <functional>
#include <string>
#include <vector>

#include "common/History.h"

class QLabel;
class QPushButton;
class QTreeWidget;

namespace tallory {

class Host;

// "History": the course's changes, newest first, each with the files it changed. The chosen one
// can be undone; files changed since are named before anything is touched.
class HistoryWindow : public QDialog {
    Q_OBJECT
  public:
    // `undone` runs after an undo changed the course: the grid reads it again.
    HistoryWindow(std::string courseFolder, Host& host, std::function<void()> undone,
                  QWidget* parent = nullptr);

    QTreeWidget* List() const { return list_; }
    QPushButton* UndoButton() const { return undo_; }
    // Undoes the chosen entry.
    void UndoChosen();
    // Reads the history again.
    void Refresh();

  private:
    void ChoiceChanged();

    std::string courseFolder_;
    Host& host_;
    std::function<void()> undone_;
    std::vector<HistoryEntry> entries_;
    QTreeWidget* list_;
    QLabel* note_;
    QPushButton* undo_;
};

// Edit > Undo: undoes the newest change not undone; false when there was none or it was left.
bool UndoNewestChange(const std::string& courseFolder, Host& host);
// The Undo command's caption: "Undo Set Scores of 09/15/2026", or "Undo" with nothing to undo.
QString UndoCaption(const std::string& courseFolder);

}  // namespace tallory
