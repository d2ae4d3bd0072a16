#pragma once

#include <QDialog>
#include <QPixmap>
#include <QString>

class QWidget;

namespace tallory {

// frmViewHistogram: the chart of a question's results as the polling application saved it.
class HistogramDialog : public QDialog {
    Q_OBJECT
  public:
    HistogramDialog(const QString& caption, const QPixmap& chart, QWidget* parent = nullptr);
};

// Opens the chart at `path` modally under `caption`; a picture that cannot be loaded opens
// nothing. Returns whether the window was shown.
bool ShowHistogram(QWidget* parent, const QString& caption, const QString& path);

}  // namespace tallory
