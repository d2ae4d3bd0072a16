#include "ui/PreviewDialog.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <exception>

#include "common/Text.h"
#include "ui/QtHost.h"

namespace tallory {

namespace {

QTableWidgetItem* Cell(const QString& text, Qt::Alignment alignment = Qt::AlignLeft) {
    auto* item = new QTableWidgetItem(text);
    item->setTextAlignment(alignment | Qt::AlignVCenter);
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
    return item;
}

QString FilesSentence(const ChangePreview& preview) {
    const int files = static_cast<int>(preview.files.size());
    return files == 1 ? QString("It rewrites 1 course file.")
                      : QString("It rewrites %1 course files.").arg(files);
}

}  // namespace

PreviewDialog::PreviewDialog(const ChangePreview& preview, QWidget* parent) : QDialog(parent) {
    setObjectName("PreviewDialog");
    UseDialogFrame(this);
    setWindowTitle("Before the change");

    auto* root = new QVBoxLayout(this);
    root->setContentsMargins(18, 14, 18, 14);
    root->setSpacing(10);

    summary_ = new QLabel(DisplayString(PreviewSummary(preview)) + ".", this);
    summary_->setObjectName("PreviewSummary");
    QFont bold = summary_->font();
    bold.setBold(true);
    bold.setPointSizeF(bold.pointSizeF() * 1.15);
    summary_->setFont(bold);
    summary_->setWordWrap(true);
    root->addWidget(summary_);

    auto* files = new QLabel(FilesSentence(preview), this);
    files->setObjectName("PreviewFiles");
    QStringList names;
    for (const std::string& file : preview.files) names << DisplayString(file);
    files->setToolTip(names.join("\n"));
    root->addWidget(files);

    list_ = new QTableWidget(static_cast<int>(preview.changes.size()), 3, this);
    list_->setObjectName("PreviewList");
    list_->setHorizontalHeaderLabels({"Student", "Session", "Score before -> after"});
    list_->verticalHeader()->hide();
    list_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    list_->setSelectionBehavior(QAbstractItemView::SelectRows);
    list_->setAlternatingRowColors(true);
    list_->setAccessibleName("Scores this change moves");
    for (int r = 0; r < list_->rowCount(); ++r) {
        const ScoreChange& change = preview.changes[static_cast<size_t>(r)];
        std::string who = Trim(change.id);
        if (!change.name.empty()) who += "  " + change.name;
        list_->setItem(r, 0, Cell(DisplayString(who)));
        list_->setItem(r, 1, Cell(DisplayString(Trim(change.session))));
        list_->setItem(
            r, 2,
            Cell(DisplayString(change.beforeText + "  ->  " + change.afterText), Qt::AlignHCenter));
    }
    list_->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
    list_->horizontalHeader()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    list_->horizontalHeader()->setSectionResizeMode(2, QHeaderView::ResizeToContents);
    list_->setVisible(!preview.changes.empty());
    root->addWidget(list_, 1);

    auto* question =
        new QLabel("Go ahead with the change? Cancel leaves everything as it is.", this);
    question->setWordWrap(true);
    root->addWidget(question);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    goAhead_ = new QPushButton("Go Ahead", this);
    goAhead_->setObjectName("PreviewGoAhead");
    cancel_ = new QPushButton("Cancel", this);
    cancel_->setObjectName("PreviewCancel");
    cancel_->setDefault(true);
    cancel_->setFocus();
    buttons->addWidget(goAhead_);
    buttons->addWidget(cancel_);
    root->addLayout(buttons);
    connect(goAhead_, &QPushButton::clicked, this, &QDialog::accept);
    connect(cancel_, &QPushButton::clicked, this, &QDialog::reject);
    resize(560, preview.changes.empty() ? 180 : 460);
}

bool WorthPreviewing(const ChangePreview& preview) {
    return std::max(preview.logs, preview.logsWritten) > 1;
}

bool MovesScores(const ChangePreview& preview) {
    return !preview.changes.empty();
}

bool GoAheadAfterPreview(QWidget* parent, const std::function<ChangePreview()>& preview,
                         bool (*worth)(const ChangePreview&)) {
    ChangePreview worked;
    QString failure;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    try {
        worked = preview();
    } catch (const std::exception& error) {
        failure = DisplayString(error.what());
    }
    QApplication::restoreOverrideCursor();
    if (!failure.isEmpty()) {
        return QMessageBox::question(parent, "Before the change",
                                     "What this change does to grades could not be worked out:\n" +
                                         failure + "\n\nGo ahead with the change anyway?",
                                     QMessageBox::Yes | QMessageBox::No,
                                     QMessageBox::No) == QMessageBox::Yes;
    }
    if (!worth(worked)) return true;
    PreviewDialog dialog(worked, parent);
    return dialog.exec() == QDialog::Accepted;
}

}  // namespace tallory
