#pragma once

#include <QWidget>
#include <array>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "grid/CourseWatch.h"
#include "grid/ScoreGrid.h"
#include "ui/ControlBinding.h"
#include "ui/FitText.h"
#include "web/CurlFetcher.h"

class QCheckBox;
class QComboBox;
class QFrame;
class QGridLayout;
class QLabel;
class QLineEdit;
class QScrollArea;
class QPushButton;
class QScrollBar;
class QTimer;
class QVBoxLayout;

namespace tallory {

class CommandLabel;
class CourseWatcher;
class QtHost;

// The main window, frmSubject, or with `largeFonts` its large-font layout FrmS_120DPI. It builds
// the controls, hands every event to ScoreGrid and repaints from the grid's state.
class MainWindow : public QWidget {
    Q_OBJECT
  public:
    MainWindow(Course& course, QtHost& host, bool largeFonts, QWidget* parent = nullptr);

    // Shows the window at a size that suits the screen.
    void ShowOnScreen();

    // The load handler, from the folder creation on: reads the course and fills the grid. The
    // single-instance test is the caller's, before the window is built.
    void Load();

    ScoreGrid& Grid() { return grid_; }
    // Edit > Undo: the newest change not undone, then the grid read again.
    void UndoLastChange();
    // Edit > History...
    void OpenHistory();
    // The share of its designed size at which the window shows its type.
    double TypeRatio() const { return fonts_.Ratio(); }

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    // Labels of one kind in the grid, which share one size of type.
    struct CellGroup {
        std::vector<QWidget*> cells;
        double points;
    };

    void BuildEditMenu(QVBoxLayout* root);
    void BuildHeader(QVBoxLayout* root);
    // The grid, one part at a time: the captions, the session cells with their headings, the
    // student rows, each session column's commands, the scroll bars; then the kinds of cell that
    // share a size of type.
    void BuildGrid(QVBoxLayout* root);
    CellGroup BuildGridCaptions(QGridLayout* layout);
    void BuildSessionCells(QGridLayout* layout);
    void BuildStudentRows(QGridLayout* layout);
    void BuildColumnCommands(QGridLayout* layout);
    void BuildGridScrollBars(QGridLayout* layout);
    void GroupCells(CellGroup captions);
    void BuildFooter(QVBoxLayout* root);
    void BuildHelp();
    CommandLabel* MakeLink(const QString& text, const char* name);
    void Scale(QWidget* widget, double pointSize, bool bold = false);
    void ApplyScale();
    void FitGrid();
    void PlaceHelp();
    void BindControls();
    // Tab in reading order: the name order, the moves, the headings, the names, the commands
    // under the grid, those of the course, then the footer with the exits last.
    void SetTabOrder();
    // Tab reaches a heading or a name only while it opens something.
    void PaintKeyboardCommands();
    // Names a screen reader speaks where a control's caption alone says too little.
    void NameForScreenReaders();
    void NameCells();
    void Repaint();
    // Moves the student rows by `step` (down when positive), as the bar at the right would.
    void MoveStudents(int step);
    void Guarded(const std::function<void()>& command);
    // The session logs are watched while the window is open; a log that another program wrote,
    // grew or removed is read into the grid, with a quiet notice in the header.
    void WatchCourse();
    void ReloadLogs(const std::vector<LogChange>& changes);

    void OnHeading(int index);
    void OnEdit(int column);
    void OnSessionSummaryReport();
    void OnTermSummaryReport();
    void OnSyncWebRegistrations();
    void OnWebUpdate();
    void OnStudent(int row);
    void Exit();

    Course& course_;
    QtHost& host_;
    ScoreGrid grid_;
    ControlBinding binding_;
    const bool largeFonts_;
    const QSize design_;

    QLabel* lblSubject_ = nullptr;
    QLabel* lblCMS_ = nullptr;
    QLabel* lblNotice_ = nullptr;
    QTimer* noticeTimer_ = nullptr;
    static constexpr int kNoticeMs = 10000;
    CourseWatcher* watcher_ = nullptr;
    int running_ = 0;
    std::set<std::string> shownAtLoad_;  // the messages the course's loads showed
    CommandLabel* lblExit_ = nullptr;
    QComboBox* cmbDisplayName_ = nullptr;
    CommandLabel* lblPrevious_ = nullptr;
    CommandLabel* lblNext_ = nullptr;
    QFrame* gridFrame_ = nullptr;
    std::array<CommandLabel*, kSessionLabels> lblSession_{};
    std::array<CommandLabel*, kGridRows + 1> lblStudentName_{};
    std::array<QLabel*, kGridRows + 1> lblTotal_{};
    std::array<QLabel*, kGridRows + 1> lblAverage_{};
    std::array<QPushButton*, kGridColumns> cmdEdit_{};
    std::array<QCheckBox*, kGridColumns> chkExport_{};
    QScrollBar* hscrlSession_ = nullptr;
    QScrollBar* vscrlStudent_ = nullptr;
    QPushButton* cmdHelp_ = nullptr;
    QPushButton* cmdExit_ = nullptr;
    CommandLabel* lblSessionSummaryReport_ = nullptr;
    CommandLabel* lblTermSummaryReport_ = nullptr;
    QPushButton* cmdExportAll_ = nullptr;
    QPushButton* cmdExportSelected_ = nullptr;
    CommandLabel* lblSyncWebRegn_ = nullptr;
    QPushButton* CmdWebUpdate_ = nullptr;
    CurlFetcher fetcher_;
    QPushButton* cmdViewAll_ = nullptr;
    QFrame* picHelp_ = nullptr;
    std::vector<QLabel*> lblHelpCaption_;
    QScrollArea* helpScroll_ = nullptr;
    QLineEdit* helpFolder_ = nullptr;
    QLabel* showBy_ = nullptr;
    // The window's type, and apart from it the help panel's, which fits the panel.
    FontScale fonts_;
    FontScale helpFonts_;
    std::vector<CellGroup> cellGroups_;
    // Wheel turns not yet a whole student.
    int wheelTurn_ = 0;
};

}  // namespace tallory
