#pragma once

#include <QDialog>
#include <array>
#include <functional>

#include "housekeeping/GhostRemote.h"
#include "ui/ControlBinding.h"

class QCheckBox;
class QLayout;
class QLineEdit;
class QPushButton;
class QScrollBar;

namespace tallory {

// frmGhostRemote: the remotes nobody registered, ticked by hand or by the search, and deleted.
// Its tab to the unregistered students opens frmUnRegisteredStudents over it.
class GhostRemoteDialog : public QDialog {
    Q_OBJECT
  public:
    GhostRemoteDialog(GhostRemoteScreen& screen, Host& host, const UnregisteredTable& students,
                      QWidget* parent = nullptr);

    // Asked before the deletion does its work; false leaves everything as it is.
    std::function<bool()> lookFirst;

  public slots:
    // The window's close box and Escape close the list without a deletion.
    void reject() override;

  private:
    // The window, one part at a time: the list with its headings, rows and scroll bar; the buttons
    // below it; what they do.
    QWidget* BuildList();
    QLayout* BuildCommands();
    void ConnectCommands();
    struct RowWidgets {
        QLineEdit* serial;
        QLineEdit* remote;
        QLineEdit* total;
        QLineEdit* average;
        QCheckBox* select;
    };

    void Run(const std::function<void()>& handler);
    void BindControls();
    void CustomSelect();
    void ShowStudents();

    GhostRemoteScreen& screen_;
    Host& host_;
    const UnregisteredTable& students_;
    ControlBinding binding_;
    bool hidden_ = false;
    std::array<QPushButton*, 5> headings_{};
    std::array<RowWidgets, kListRows> rows_{};
    QScrollBar* vsScr_ = nullptr;
    QPushButton* cmdSelectAll_ = nullptr;
    QPushButton* cmdUnSelectAll_ = nullptr;
    QPushButton* cmdCustomSelect_ = nullptr;
    QPushButton* cmdDelete_ = nullptr;
    QPushButton* cmdUnRegisteredClickers_ = nullptr;
    QPushButton* cmdUnRegisteredStudents_ = nullptr;
};

}  // namespace tallory
