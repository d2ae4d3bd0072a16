#include "ui/HistogramDialog.h"

#include <QLabel>
#include <QVBoxLayout>

#include "ui/QtHost.h"

namespace tallory {

namespace {

// The window leaves room of 500 twips (a third of an inch) around the picture each way.
constexpr int kMarginPixels = 500 / 15;

}  // namespace

HistogramDialog::HistogramDialog(const QString& caption, const QPixmap& chart, QWidget* parent)
    : QDialog(parent) {
    setObjectName("frmViewHistogram");
    UseDialogFrame(this);
    setWindowTitle(caption);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(kMarginPixels / 2, kMarginPixels / 2, kMarginPixels / 2,
                               kMarginPixels / 2);
    auto* picture = new QLabel(this);
    picture->setObjectName("Image1");
    picture->setPixmap(chart);
    picture->setAlignment(Qt::AlignCenter);
    layout->addWidget(picture);
    resize(chart.size() + QSize(kMarginPixels, kMarginPixels));
}

bool ShowHistogram(QWidget* parent, const QString& caption, const QString& path) {
    QPixmap chart(path);
    if (chart.isNull()) return false;
    HistogramDialog dialog(caption, chart, parent);
    dialog.exec();
    return true;
}

}  // namespace tallory
