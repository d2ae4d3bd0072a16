#pragma once

#include <QDialog>
#include <array>
#include <functional>

#include "housekeeping/UnregisteredStudents.h"
#include "ui/ControlBinding.h"

class QLayout;
class QLineEdit;
class QPushButton;
class QScrollBar;

namespace tallory {

// frmUnRegisteredStudents: the roster students without a clicker, and their exports.
class UnRegisteredStudentsDialog : public QDialog {
    Q_OBJECT
  public:
    UnRegisteredStudentsDialog(UnregisteredStudentsScreen& screen, Host& host,
                               QWidget* parent = nullptr);

  private:
    // The window, one part at a time: the list with its headings, rows and scroll bar; the export
    // buttons below it.
    QWidget* BuildList();
    QLayout* BuildExports();
    struct RowWidgets {
        QLineEdit* serial;
        QLineEdit* last;
        QLineEdit* first;
        QLineEdit* id;
    };

    void Run(const std::function<void()>& handler);
    void BindControls();

    UnregisteredStudentsScreen& screen_;
    Host& host_;
    ControlBinding binding_;
    std::array<RowWidgets, kListRows> rows_{};
    QScrollBar* vsScr_ = nullptr;
    QPushButton* cmdUnRegisteredClickers_ = nullptr;
    QPushButton* cmdUnRegisteredStudents_ = nullptr;
};

}  // namespace tallory
