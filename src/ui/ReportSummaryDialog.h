#pragma once

#include <QDialog>

#include "reports/RunReports.h"
#include "ui/ControlBinding.h"

class QWidget;

namespace tallory {

// FrmReportSummay: shown after the report run; its three links open the pages just written.
class ReportSummaryDialog : public QDialog {
    Q_OBJECT
  public:
    ReportSummaryDialog(ReportSummaryScreen& screen, QWidget* parent = nullptr);

  private:
    ReportSummaryScreen& screen_;
    ControlBinding binding_;
};

// The two report commands of the main window. A run that ends with every page written shows
// the summary dialog.
void RunSessionSummaryReport(QWidget* parent, Course& course, Host& host);
void RunTermSummaryReport(Course& course, Host& host);

}  // namespace tallory
