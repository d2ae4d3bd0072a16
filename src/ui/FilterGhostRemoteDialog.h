#pragma once

#include <QDialog>
#include <array>

#include "housekeeping/FilterGhostRemote.h"
#include "ui/ControlBinding.h"

class QLayout;
class QLineEdit;
class QPushButton;

namespace tallory {

// frmFilterGhostRemote: ticks rows of the clicker list by criteria.
class FilterGhostRemoteDialog : public QDialog {
    Q_OBJECT
  public:
    FilterGhostRemoteDialog(FilterGhostRemoteScreen& screen, Host& host, QWidget* parent = nullptr);

  private:
    // The window, one part at a time: the search boxes in their form; the buttons below; what they
    // do.
    QLayout* BuildSearchBoxes();
    QLayout* BuildCommands();
    void ConnectCommands();
    void BindControls();

    FilterGhostRemoteScreen& screen_;
    Host& host_;
    ControlBinding binding_;
    std::array<QLineEdit*, kSearchBoxes> boxes_{};
    QPushButton* cmdSelect_ = nullptr;
    QPushButton* lvButtons_H1_ = nullptr;
};

}  // namespace tallory
