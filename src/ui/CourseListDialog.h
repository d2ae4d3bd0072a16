#pragma once

#include <QDialog>
#include <string>

#include "start/ProgramStart.h"

class QListWidget;
class QPushButton;

namespace tallory {

// frmCourseList: the course screen of a DEBUG start. Accepted with a course folder, rejected when
// the user leaves; leaving ends the program.
class CourseListDialog : public QDialog {
    Q_OBJECT
  public:
    // A choice that cannot be remembered is reported to `host`.
    CourseListDialog(const std::string& programFolder, Host& host, QWidget* parent = nullptr);

    // The chosen course folder, after the dialog was accepted.
    const std::string& CourseFolder() const { return courseFolder_; }

  protected:
    void showEvent(QShowEvent* event) override;
    // Enter opens the selected course; with no row selected it does nothing, where the button
    // would open the Classes folder itself.
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void SetAndStart();

    CourseList list_;
    Host& host_;
    std::string courseFolder_;
    QListWidget* lstCourses_;
    QPushButton* cmdSetAndStart_;
};

}  // namespace tallory
