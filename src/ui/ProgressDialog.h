#pragma once

#include <QDialog>

class QLabel;
class QProgressBar;

namespace tallory {

// frmProgressBar: stands over the main window during a long pass and keeps the user out of it.
class ProgressDialog : public QDialog {
    Q_OBJECT
  public:
    explicit ProgressDialog(QWidget* parent = nullptr);

    void SetText(const QString& text);
    // 0..1
    void SetValue(double fraction);
    QString Text() const;

  protected:
    // Only the program closes the progress screen.
    void reject() override {}

  private:
    QLabel* text_;
    QProgressBar* bar_;
};

}  // namespace tallory
