#pragma once

#include <QDialog>
#include <functional>

#include "grid/EditStudent.h"
#include "ui/ControlBinding.h"

class QComboBox;
class QLabel;
class QLayout;
class QLineEdit;
class QPushButton;

namespace tallory {

// frmEditStudent: a student's clickers, or a stray clicker's votes, from a name in the grid.
class EditStudentDialog : public QDialog {
    Q_OBJECT
  public:
    EditStudentDialog(EditStudentScreen& screen, Host& host, QWidget* parent = nullptr);

    // Asked before a button that rewrites the logs does its work; false leaves everything as it
    // is.
    std::function<bool(void (EditStudentScreen::*)())> lookFirst;

  public slots:
    // The window's close box and Escape act as cmdCancel, once the instructor has agreed to drop
    // an edit that is not saved.
    void reject() override;

  private:
    // The window, one part at a time: the student's card, the clicker list, the new clicker, the
    // buttons; what they do.
    QWidget* BuildStudentCard();
    QLayout* BuildClickerList();
    QLayout* BuildNewClicker();
    QLayout* BuildCommands();
    void ConnectCommands();
    // cmdCancel: closes and drops the edit.
    void Cancel();
    void Run(void (EditStudentScreen::*handler)());
    void BindControls();
    void Repaint();

    EditStudentScreen& screen_;
    Host& host_;
    ControlBinding binding_;
    QLabel* label4_ = nullptr;
    QLabel* lblStudentID_ = nullptr;
    QLabel* lblLastName_ = nullptr;
    QComboBox* cmbClickList_ = nullptr;
    QLineEdit* txtNewClickerId_ = nullptr;
    QPushButton* cmdAdd_ = nullptr;
    QPushButton* cmdSave_ = nullptr;
    QPushButton* cmdRemove_ = nullptr;
    QPushButton* cmdCancel_ = nullptr;
};

}  // namespace tallory
