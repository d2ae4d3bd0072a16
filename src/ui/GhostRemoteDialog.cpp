#include "ui/GhostRemoteDialog.h"

#include <QCheckBox>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QVBoxLayout>

#include "ui/FilterGhostRemoteDialog.h"
#include "ui/HousekeepingStyle.h"
#include "ui/QtHost.h"
#include "ui/UnRegisteredStudentsDialog.h"

namespace tallory {

GhostRemoteDialog::GhostRemoteDialog(GhostRemoteScreen& screen, Host& host,
                                     const UnregisteredTable& students, QWidget* parent)
    : QDialog(parent), screen_(screen), host_(host), students_(students) {
    setObjectName("frmGhostRemote");
    UseDialogFrame(this);
    setWindowTitle(DisplayString(screen_.Form().text));
    setStyleSheet(kHousekeepingStyle);

    auto* root = new QVBoxLayout(this);
    root->setContentsMargins(18, 14, 18, 14);
    root->setSpacing(10);
    root->addLayout(MakeTabRow(this, cmdUnRegisteredClickers_, cmdUnRegisteredStudents_));
    root->addWidget(MakeHelp(this, GhostRemoteScreen::kHelpTitle, GhostRemoteScreen::HelpText()));

    root->addWidget(BuildList(), 1);
    root->addLayout(BuildCommands());

    ConnectCommands();
    resize(620, 510);
    BindControls();
    binding_.Paint();
}

QWidget* GhostRemoteDialog::BuildList() {
    auto* panel = new QFrame(this);
    panel->setObjectName("listPanel");
    auto* list = new QGridLayout(panel);
    list->setContentsMargins(12, 10, 8, 10);
    list->setHorizontalSpacing(6);
    list->setVerticalSpacing(4);
    const char* headingNames[] = {"CmdSerial", "CmdRemote", "CmdTotal", "CmdAvg", "CmdSelect"};
    for (int c = 0; c < 5; ++c) {
        headings_[c] = new QPushButton(panel);
        headings_[c]->setObjectName(headingNames[c]);
        headings_[c]->setProperty("role", "heading");
        headings_[c]->setFocusPolicy(Qt::NoFocus);
        const GhostHeading& heading = screen_.Headings()[c];
        if (!heading.tip.empty())
            headings_[c]->setToolTip("<b>" + DisplayString(heading.tipTitle).toHtmlEscaped() +
                                     "</b><br>" + DisplayString(heading.tip).toHtmlEscaped());
        list->addWidget(headings_[c], 0, c);
    }
    for (int r = 0; r < kListRows; ++r) {
        RowWidgets& row = rows_[r];
        auto page = [this](int key) { Run([&] { screen_.RowKeyDown(key); }); };
        row.serial = MakeRowBox(panel, QString("TxtSerial%1").arg(r), page);
        row.remote = MakeRowBox(panel, QString("TxtRemoteID%1").arg(r), page);
        row.total = MakeRowBox(panel, QString("TxtTotal%1").arg(r), page);
        row.average = MakeRowBox(panel, QString("TxtAverage%1").arg(r), page);
        row.select = new QCheckBox(panel);
        row.select->setObjectName(QString("ChkSelect%1").arg(r));
        connect(row.select, &QCheckBox::clicked, this,
                [this, r](bool checked) { Run([&] { screen_.ChkSelectClick(r, checked); }); });
        list->addWidget(row.serial, r + 1, 0);
        list->addWidget(row.remote, r + 1, 1);
        list->addWidget(row.total, r + 1, 2);
        list->addWidget(row.average, r + 1, 3);
        list->addWidget(row.select, r + 1, 4, Qt::AlignCenter);
    }
    vsScr_ = new QScrollBar(Qt::Vertical, panel);
    vsScr_->setObjectName("VsScr");
    connect(vsScr_, &QScrollBar::valueChanged, this,
            [this](int value) { Run([&] { screen_.VsScrChange(value); }); });
    list->addWidget(vsScr_, 1, 5, kListRows, 1);
    // The rows keep their height; spare room goes below the last.
    list->setRowStretch(kListRows + 1, 1);
    list->setColumnStretch(0, 1);
    list->setColumnStretch(1, 3);
    list->setColumnStretch(2, 2);
    list->setColumnStretch(3, 2);
    list->setColumnStretch(4, 1);
    return panel;
}

QLayout* GhostRemoteDialog::BuildCommands() {
    auto* buttons = new QHBoxLayout;
    cmdSelectAll_ = MakeButton(this, "CmdSelectAll");
    cmdUnSelectAll_ = MakeButton(this, "CmdUnSelectAll");
    cmdCustomSelect_ = MakeButton(this, "CmdCustomSelect");
    cmdDelete_ = MakeButton(this, "CmdDelete");
    cmdDelete_->setProperty("role", "danger");
    for (QPushButton* button : {cmdSelectAll_, cmdUnSelectAll_, cmdCustomSelect_})
        buttons->addWidget(button);
    buttons->addStretch(1);
    buttons->addWidget(cmdDelete_);
    return buttons;
}

void GhostRemoteDialog::ConnectCommands() {
    connect(cmdSelectAll_, &QPushButton::clicked, this,
            [this] { Run([&] { screen_.CmdSelectAllClick(); }); });
    connect(cmdUnSelectAll_, &QPushButton::clicked, this,
            [this] { Run([&] { screen_.CmdUnSelectAllClick(); }); });
    connect(cmdCustomSelect_, &QPushButton::clicked, this, [this] { CustomSelect(); });
    connect(cmdDelete_, &QPushButton::clicked, this, [this] {
        if (!lookFirst || lookFirst()) Run([&] { screen_.CmdDeleteClick(); });
    });
    connect(cmdUnRegisteredStudents_, &QPushButton::clicked, this, [this] { ShowStudents(); });
    // The current tab: pressing it keeps the list as it is.
    connect(cmdUnRegisteredClickers_, &QPushButton::clicked, this, [this] { binding_.Paint(); });
    screen_.onChanged = [this] {
        if (screen_.Form().visible) return;
        hidden_ = true;
        hide();
    };
}

void GhostRemoteDialog::BindControls() {
    for (int c = 0; c < 5; ++c) binding_.Bind(headings_[c], screen_.Headings()[c].button, true);
    for (int r = 0; r < kListRows; ++r) {
        const GhostRow& row = screen_.Row(r);
        binding_.Bind(rows_[r].serial, row.TxtSerial);
        binding_.Bind(rows_[r].remote, row.TxtRemoteID);
        binding_.Bind(rows_[r].total, row.TxtTotal);
        binding_.Bind(rows_[r].average, row.TxtAverage);
        binding_.Bind(rows_[r].select, row.ChkSelect);
    }
    binding_.Bind(vsScr_, screen_.VsScr());
    for (auto [button, state] :
         {std::pair{cmdSelectAll_, &screen_.CmdSelectAll()},
          std::pair{cmdUnSelectAll_, &screen_.CmdUnSelectAll()},
          std::pair{cmdCustomSelect_, &screen_.CmdCustomSelect()},
          std::pair{cmdDelete_, &screen_.CmdDelete()},
          std::pair{cmdUnRegisteredClickers_, &screen_.CmdUnRegisteredClickers()},
          std::pair{cmdUnRegisteredStudents_, &screen_.CmdUnRegisteredStudents()}})
        binding_.Bind(button, *state, true);
}

void GhostRemoteDialog::Run(const std::function<void()>& handler) {
    hidden_ = false;
    // A run-time error inside a handler ends the program with its message, as everywhere.
    RunGuarded(host_, handler);
    binding_.Paint();
    // A screen that hid itself ends this modal run; its opener shows it again, modally, unless
    // it was closed.
    if (screen_.Closed() || hidden_) done(screen_.Closed() ? Accepted : Rejected);
}

void GhostRemoteDialog::CustomSelect() {
    Run([&] {
        FilterGhostRemoteScreen search(screen_.GhostList());
        FilterGhostRemoteDialog dialog(search, host_, this);
        dialog.exec();
        screen_.AfterCustomSelect();
    });
}

void GhostRemoteDialog::ShowStudents() {
    Run([&] {
        screen_.Hide();
        UnregisteredStudentsScreen students(screen_.CourseData(), host_, students_);
        students.LoadData();
        UnRegisteredStudentsDialog dialog(students, host_, parentWidget());
        dialog.exec();
        screen_.Show();
    });
}

void GhostRemoteDialog::reject() {
    screen_.Close();
    QDialog::reject();
}

}  // namespace tallory
