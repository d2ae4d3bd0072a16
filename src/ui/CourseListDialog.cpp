#include "ui/CourseListDialog.h"

#include <QDialogButtonBox>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/QtHost.h"

namespace tallory {

CourseListDialog::CourseListDialog(const std::string& programFolder, Host& host, QWidget* parent)
    : QDialog(parent), list_(programFolder), host_(host) {
    setObjectName("frmCourseList");
    UseDialogFrame(this);
    setWindowTitle("Welcome to Tallory");
    setMinimumSize(420, 360);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 18, 20, 16);
    auto* prompt = new QLabel("Choose your course:", this);
    QFont bold = prompt->font();
    bold.setBold(true);
    bold.setPointSizeF(bold.pointSizeF() * 1.2);
    prompt->setFont(bold);
    lstCourses_ = new QListWidget(this);
    lstCourses_->setObjectName("lstCourses");
    lstCourses_->setStyleSheet("QListWidget::item { padding: 5px 6px; }");
    cmdSetAndStart_ = new QPushButton("&Open Tallory", this);
    cmdSetAndStart_->setObjectName("cmdSetAndStart");
    cmdSetAndStart_->setDefault(true);
    auto* cmdExit = new QPushButton("&Exit", this);
    cmdExit->setObjectName("cmdExit");
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdSetAndStart_);
    buttons->addWidget(cmdExit);
    layout->addWidget(prompt);
    layout->addWidget(lstCourses_, 1);
    layout->addLayout(buttons);

    connect(cmdSetAndStart_, &QPushButton::clicked, this, [this] { SetAndStart(); });
    connect(cmdExit, &QPushButton::clicked, this, &QDialog::reject);

    list_.Load();
    for (const std::string& row : list_.Rows()) lstCourses_->addItem(DisplayString(row));
    cmdSetAndStart_->setEnabled(list_.StartEnabled());
    // No row is current until one is chosen, so the list shows no row as if it were selected
    // when it takes the focus; the first arrow key chooses the first row.
    lstCourses_->setCurrentIndex(QModelIndex());
}

void CourseListDialog::keyPressEvent(QKeyEvent* event) {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (enter && lstCourses_->selectedItems().isEmpty()) {
        event->accept();
        return;
    }
    QDialog::keyPressEvent(event);
}

void CourseListDialog::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    list_.Activate();
    if (list_.Selected() >= 0) lstCourses_->setCurrentRow(list_.Selected());
}

void CourseListDialog::SetAndStart() {
    const auto selected = lstCourses_->selectedItems();
    list_.Select(selected.isEmpty() ? -1 : lstCourses_->row(selected.first()));
    courseFolder_ = list_.SetAndStart(host_);
    accept();
}

}  // namespace tallory
