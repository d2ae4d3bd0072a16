#pragma once

#include <QDialog>

#include "scoring/EditSessionScreen.h"
#include "ui/ControlBinding.h"

class QLabel;
class QLineEdit;
class QPushButton;

namespace tallory {

class Host;

// frmEditSession: renames or removes the session of a heading of the main window.
class EditSessionDialog : public QDialog {
    Q_OBJECT
  public:
    EditSessionDialog(EditSessionScreen& screen, Host& host, QWidget* parent = nullptr);

  public slots:
    // The window's close box and Escape act as cmdCancel, once the instructor has agreed to drop
    // an edit that is not saved.
    void reject() override;

  private:
    // cmdCancel: closes and drops the edit.
    void Cancel();
    void Run(void (EditSessionScreen::*handler)());

    EditSessionScreen& screen_;
    Host& host_;
    ControlBinding binding_;
    QLabel* lblFileName_ = nullptr;
    QLineEdit* txtSessionName_ = nullptr;
    QPushButton* cmdSave_ = nullptr;
    QPushButton* cmdRemove_ = nullptr;
    QPushButton* cmdCancel_ = nullptr;
};

}  // namespace tallory
