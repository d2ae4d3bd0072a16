#pragma once

#include <QDialog>
#include <functional>

#include "preview/ChangePreview.h"

class QLabel;
class QPushButton;
class QTableWidget;

namespace tallory {

// What a change is about to do to grades, before it is made: the count of scores, students and
// sessions it moves, every moved score (student, session, before -> after), and the choice to go
// ahead or to leave everything as it is. Cancel is the default button: a hurried Enter changes
// nothing.
class PreviewDialog : public QDialog {
    Q_OBJECT
  public:
    explicit PreviewDialog(const ChangePreview& preview, QWidget* parent = nullptr);

    QLabel* Summary() const { return summary_; }
    QTableWidget* List() const { return list_; }
    QPushButton* GoAhead() const { return goAhead_; }
    QPushButton* Cancel() const { return cancel_; }

  private:
    QLabel* summary_ = nullptr;
    QTableWidget* list_ = nullptr;
    QPushButton* goAhead_ = nullptr;
    QPushButton* cancel_ = nullptr;
};

// Whether a change is one to look at first: it rewrites more than one log.
bool WorthPreviewing(const ChangePreview& preview);
// Whether a change moves any score (for a change of the registrations, which rewrites no log).
bool MovesScores(const ChangePreview& preview);

// Works out the preview (under the wait cursor) and, when the change is worth it, asks; true
// when the change may go ahead. A preview that cannot be worked out (no room for the copy) is
// said, and the change may still go ahead if the instructor wants it.
bool GoAheadAfterPreview(QWidget* parent, const std::function<ChangePreview()>& preview,
                         bool (*worth)(const ChangePreview&) = WorthPreviewing);

}  // namespace tallory
