#include "ui/ProgressDialog.h"

#include <QLabel>
#include <QProgressBar>
#include <QVBoxLayout>
#include <algorithm>

#include "scoring/SessionStore.h"
#include "ui/QtHost.h"

namespace tallory {

ProgressDialog::ProgressDialog(QWidget* parent) : QDialog(parent) {
    setObjectName("frmProgressBar");
    setWindowTitle("Tallory");
    setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint);
    setWindowModality(Qt::ApplicationModal);
    setMinimumWidth(460);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 20, 24, 20);
    layout->setSpacing(12);
    text_ = new QLabel(this);
    text_->setObjectName("lblProgress");
    QFont bold = text_->font();
    bold.setBold(true);
    text_->setFont(bold);
    bar_ = new QProgressBar(this);
    bar_->setRange(0, 1000);
    bar_->setTextVisible(false);
    auto* fixed = new QLabel(DisplayString(ProgressFixedText()), this);
    fixed->setWordWrap(true);
    layout->addWidget(text_);
    layout->addWidget(bar_);
    layout->addWidget(fixed);
}

void ProgressDialog::SetText(const QString& text) {
    text_->setText(text);
}

QString ProgressDialog::Text() const {
    return text_->text();
}

void ProgressDialog::SetValue(double fraction) {
    bar_->setValue(static_cast<int>(std::clamp(fraction, 0.0, 1.0) * 1000));
}

}  // namespace tallory
