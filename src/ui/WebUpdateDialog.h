#pragma once

#include <QDialog>

#include "ui/ControlBinding.h"
#include "web/WebUpdate.h"

namespace tallory {

// frmWebUpdateSummary, "Web Update": what is new for the polling application and for Tallory.
class WebUpdateDialog : public QDialog {
    Q_OBJECT
  public:
    explicit WebUpdateDialog(QWidget* parent = nullptr);

  private:
    WebUpdateSummary summary_;
    ControlBinding binding_;
};

}  // namespace tallory
