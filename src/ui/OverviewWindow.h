#pragma once

#include <QDialog>
#include <functional>

#include "overview/CourseOverview.h"

class QBarCategoryAxis;
class QChartView;
class QComboBox;
class QLabel;
class QPushButton;
class QTableWidget;

namespace tallory {

class Host;
class ScoreGrid;

// "Course Overview": the course at a glance. Attendance and the average by session, the spread
// of the term totals and the share correct of each question of a chosen session as charts, and
// beside them the students at risk; a name opens the student's screen as the grid's names do.
class OverviewWindow : public QDialog {
    Q_OBJECT
  public:
    OverviewWindow(Course& course, Host& host, ScoreGrid& grid, QWidget* parent = nullptr);

    const CourseOverview& Figures() const { return overview_; }
    QComboBox* SessionChoice() const { return session_; }
    QTableWidget* AtRiskTable() const { return atRisk_; }
    QChartView* QuestionsChart() const { return questions_; }

    // Shows the questions of session `session` (1..NumSessions), hardest first.
    void ShowSession(int session);
    // The student of row `row` of the at-risk list: their screen, then the figures again.
    void OpenStudent(int row);
    // Writes the overview as the page Reports/Overview.html and opens it in the browser.
    void WritePage();

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    void Refresh();
    // Names the sessions under their columns while they fit, numbers them otherwise.
    void LabelSessions();
    void FillCharts();
    void FillAtRisk();
    void Guarded(const std::function<void()>& command);

    Course& course_;
    Host& host_;
    ScoreGrid& grid_;
    CourseOverview overview_;
    QLabel* facts_;
    QChartView* sessions_;
    QBarCategoryAxis* sessionAxis_ = nullptr;
    QChartView* totals_;
    QChartView* questions_;
    QComboBox* session_;
    QTableWidget* atRisk_;
    QPushButton* openStudent_;
};

// Opens the overview of the main window's course, modally.
void OpenOverview(QWidget* parent, Course& course, Host& host, ScoreGrid& grid);

}  // namespace tallory
