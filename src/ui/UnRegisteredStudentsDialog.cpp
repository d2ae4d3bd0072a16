#include "ui/UnRegisteredStudentsDialog.h"

#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QVBoxLayout>

#include "ui/HousekeepingStyle.h"
#include "ui/QtHost.h"

namespace tallory {

UnRegisteredStudentsDialog::UnRegisteredStudentsDialog(UnregisteredStudentsScreen& screen,
                                                       Host& host, QWidget* parent)
    : QDialog(parent), screen_(screen), host_(host) {
    setObjectName("frmUnRegisteredStudents");
    UseDialogFrame(this);
    setWindowTitle(DisplayString(UnregisteredStudentsScreen::kCaption));
    setStyleSheet(kHousekeepingStyle);

    auto* root = new QVBoxLayout(this);
    root->setContentsMargins(18, 14, 18, 14);
    root->setSpacing(10);
    root->addLayout(MakeTabRow(this, cmdUnRegisteredClickers_, cmdUnRegisteredStudents_));
    root->addWidget(MakeHelp(this, UnregisteredStudentsScreen::kHelpTitle,
                             UnregisteredStudentsScreen::HelpText()));

    root->addWidget(BuildList(), 1);
    root->addLayout(BuildExports());

    connect(cmdUnRegisteredClickers_, &QPushButton::clicked, this,
            [this] { Run([&] { screen_.CmdUnRegisteredClickersClick(); }); });
    // The current tab: pressing it keeps the list as it is.
    connect(cmdUnRegisteredStudents_, &QPushButton::clicked, this, [this] { binding_.Paint(); });
    resize(640, 480);
    BindControls();
    binding_.Paint();
}

QWidget* UnRegisteredStudentsDialog::BuildList() {
    auto* panel = new QFrame(this);
    panel->setObjectName("listPanel");
    auto* list = new QGridLayout(panel);
    list->setContentsMargins(12, 10, 8, 10);
    list->setHorizontalSpacing(6);
    list->setVerticalSpacing(4);
    const char* headings[] = {"#", "Last Name", "First Name", "Student Id"};
    for (int c = 0; c < 4; ++c) {
        auto* heading = new QLabel(headings[c], panel);
        heading->setProperty("role", "fact");
        QFont bold = heading->font();
        bold.setBold(true);
        heading->setFont(bold);
        list->addWidget(heading, 0, c);
    }
    for (int r = 0; r < kListRows; ++r) {
        auto page = [this](int key) { Run([&] { screen_.RowKeyDown(key); }); };
        RowWidgets& row = rows_[r];
        row.serial = MakeRowBox(panel, QString("TxtSerial%1").arg(r), page);
        row.last = MakeRowBox(panel, QString("TxtLastName%1").arg(r), page);
        row.first = MakeRowBox(panel, QString("TxtFirstName%1").arg(r), page);
        row.id = MakeRowBox(panel, QString("txtStudentId%1").arg(r), page);
        list->addWidget(row.serial, r + 1, 0);
        list->addWidget(row.last, r + 1, 1);
        list->addWidget(row.first, r + 1, 2);
        list->addWidget(row.id, r + 1, 3);
    }
    vsScr_ = new QScrollBar(Qt::Vertical, panel);
    vsScr_->setObjectName("VsScr");
    connect(vsScr_, &QScrollBar::valueChanged, this,
            [this](int value) { Run([&] { screen_.VsScrChange(value); }); });
    list->addWidget(vsScr_, 1, 4, kListRows, 1);
    // The rows keep their height; spare room goes below the last.
    list->setRowStretch(kListRows + 1, 1);
    list->setColumnStretch(0, 1);
    list->setColumnStretch(1, 3);
    list->setColumnStretch(2, 3);
    list->setColumnStretch(3, 3);
    return panel;
}

QLayout* UnRegisteredStudentsDialog::BuildExports() {
    auto* buttons = new QHBoxLayout;
    const struct {
        const char* name;
        const char* caption;
        void (UnregisteredStudentsScreen::*handler)();
    } commands[] = {
        {"CmdCSV", "CSV File", &UnregisteredStudentsScreen::CmdCSVClick},
        {"CmdTxt", "Text File", &UnregisteredStudentsScreen::CmdTxtClick},
        {"CmdExcel", "Excel File", &UnregisteredStudentsScreen::CmdExcelClick},
        {"CmdClipboard", "Copy (Comma)", &UnregisteredStudentsScreen::CmdClipboardClick},
        {"CmdClipboardTab", "Copy (Tab)", &UnregisteredStudentsScreen::CmdClipboardTabClick},
    };
    buttons->addWidget(new QLabel("Export:", this));
    for (const auto& command : commands) {
        QPushButton* button = MakeButton(this, command.name);
        button->setText(command.caption);
        const auto handler = command.handler;
        connect(button, &QPushButton::clicked, this,
                [this, handler] { Run([&] { (screen_.*handler)(); }); });
        buttons->addWidget(button);
    }
    buttons->addStretch(1);
    return buttons;
}

void UnRegisteredStudentsDialog::BindControls() {
    for (int r = 0; r < kListRows; ++r) {
        const UnregisteredRow& row = screen_.Row(r);
        binding_.Bind(rows_[r].serial, row.TxtSerial);
        binding_.Bind(rows_[r].last, row.TxtLastName);
        binding_.Bind(rows_[r].first, row.TxtFirstName);
        binding_.Bind(rows_[r].id, row.txtStudentId);
    }
    binding_.Bind(vsScr_, screen_.VsScr());
    binding_.Bind(cmdUnRegisteredClickers_, screen_.CmdUnRegisteredClickers(), true);
    binding_.Bind(cmdUnRegisteredStudents_, screen_.CmdUnRegisteredStudents(), true);
}

void UnRegisteredStudentsDialog::Run(const std::function<void()>& handler) {
    // A run-time error inside a handler ends the program with its message, as everywhere.
    RunGuarded(host_, handler);
    binding_.Paint();
    if (screen_.Closed()) accept();
}

}  // namespace tallory
