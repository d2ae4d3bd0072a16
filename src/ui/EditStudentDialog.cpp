#include "ui/EditStudentDialog.h"

#include <QComboBox>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/FitText.h"
#include "ui/KeyFilter.h"
#include "ui/QtHost.h"

namespace tallory {

namespace {

constexpr const char* kStyle = R"(
QDialog#frmEditStudent { background: rgb(238, 240, 236); }
QLabel#Label4 { color: #1f2a1f; }
QFrame#studentCard { background: white; border: 1px solid #c8ccc3; border-radius: 8px; }
QFrame#studentCard QLabel { background: transparent; }
QLabel[role="fact"] { color: #5b6358; }
QLabel#lblStudentID { color: rgb(0, 0, 255); }
QLabel#lblLastName { color: #1f2a1f; }
QLineEdit, QComboBox { padding: 3px 5px; }
QPushButton#cmdRemove { color: #8b0000; }
)";

QLabel* Caption(QWidget* parent, const QString& text) {
    auto* label = new QLabel(text, parent);
    label->setProperty("role", "fact");
    return label;
}

}  // namespace

EditStudentDialog::EditStudentDialog(EditStudentScreen& screen, Host& host, QWidget* parent)
    : QDialog(parent), screen_(screen), host_(host) {
    setObjectName("frmEditStudent");
    UseDialogFrame(this);
    setWindowTitle(DisplayString(screen_.Form().text));
    setStyleSheet(kStyle);
    setMinimumWidth(420);

    auto* root = new QVBoxLayout(this);
    root->setContentsMargins(18, 16, 18, 14);
    root->setSpacing(10);
    label4_ = new QLabel(this);
    label4_->setObjectName("Label4");
    SetTypeSize(label4_, 11.25, true);
    root->addWidget(label4_);

    root->addWidget(BuildStudentCard());

    root->addWidget(Caption(this, "Registered Clickers"));
    root->addLayout(BuildClickerList());

    root->addWidget(Caption(this, "Add New Clicker"));
    root->addLayout(BuildNewClicker());
    root->addLayout(BuildCommands());
    for (QPushButton* button : {cmdSave_, cmdAdd_, cmdRemove_, cmdCancel_})
        button->setAutoDefault(false);

    ConnectCommands();
    BindControls();
    screen_.onChanged = [this] { Repaint(); };
    Repaint();
}

QWidget* EditStudentDialog::BuildStudentCard() {
    auto* card = new QFrame(this);
    card->setObjectName("studentCard");
    auto* facts = new QGridLayout(card);
    facts->setContentsMargins(14, 10, 14, 10);
    facts->setHorizontalSpacing(10);
    lblStudentID_ = new QLabel(card);
    lblStudentID_->setObjectName("lblStudentID");
    SetTypeSize(lblStudentID_, 10.5, true);
    lblLastName_ = new QLabel(card);
    lblLastName_->setObjectName("lblLastName");
    facts->addWidget(Caption(card, "Student ID"), 0, 0);
    facts->addWidget(lblStudentID_, 0, 1);
    facts->addWidget(Caption(card, "Name"), 1, 0);
    facts->addWidget(lblLastName_, 1, 1);
    facts->setColumnStretch(1, 1);
    return card;
}

QLayout* EditStudentDialog::BuildClickerList() {
    auto* listRow = new QHBoxLayout;
    cmbClickList_ = new QComboBox(this);
    cmbClickList_->setObjectName("cmbClickList");
    cmdSave_ = new QPushButton(this);
    cmdSave_->setObjectName("cmdSave");
    listRow->addWidget(cmbClickList_, 1);
    listRow->addWidget(cmdSave_);
    return listRow;
}

QLayout* EditStudentDialog::BuildNewClicker() {
    auto* addRow = new QHBoxLayout;
    txtNewClickerId_ = new QLineEdit(this);
    txtNewClickerId_->setObjectName("TxtNewClickerId");
    txtNewClickerId_->installEventFilter(
        new KeyFilter(this, [](int key) { return EditStudentScreen::TxtNewClickerIdKey(key); }));
    cmdAdd_ = new QPushButton(this);
    cmdAdd_->setObjectName("CmdAdd");
    addRow->addWidget(txtNewClickerId_, 1);
    addRow->addWidget(cmdAdd_);
    return addRow;
}

QLayout* EditStudentDialog::BuildCommands() {
    auto* buttons = new QHBoxLayout;
    cmdRemove_ = new QPushButton(this);
    cmdRemove_->setObjectName("cmdRemove");
    cmdCancel_ = new QPushButton(this);
    cmdCancel_->setObjectName("cmdCancel");
    buttons->addWidget(cmdRemove_);
    buttons->addStretch(1);
    buttons->addWidget(cmdCancel_);
    return buttons;
}

void EditStudentDialog::ConnectCommands() {
    connect(cmbClickList_, &QComboBox::currentIndexChanged, this, [this](int index) {
        screen_.cmbClickListClick(index);
        Repaint();
    });
    connect(txtNewClickerId_, &QLineEdit::textEdited, this,
            [this](const QString& text) { screen_.TxtNewClickerIdChange(text.toStdString()); });
    // The three buttons that rewrite the logs show first what that does to grades.
    for (auto [button, handler] : {std::pair{cmdAdd_, &EditStudentScreen::CmdAddClick},
                                   std::pair{cmdSave_, &EditStudentScreen::cmdSaveClick},
                                   std::pair{cmdRemove_, &EditStudentScreen::cmdRemoveClick}}) {
        connect(button, &QPushButton::clicked, this, [this, handler] {
            if (!lookFirst || lookFirst(handler)) Run(handler);
        });
    }
    connect(cmdCancel_, &QPushButton::clicked, this, [this] { Cancel(); });
}

void EditStudentDialog::BindControls() {
    binding_.Bind(label4_, screen_.Label4());
    binding_.Bind(lblStudentID_, screen_.lblStudentID());
    binding_.Bind(lblLastName_, screen_.lblLastName());
    binding_.Bind(cmbClickList_, screen_.cmbClickList(), screen_.ClickList());
    binding_.Bind(txtNewClickerId_, screen_.TxtNewClickerId());
    for (auto [button, state] :
         {std::pair{cmdAdd_, &screen_.CmdAdd()}, std::pair{cmdSave_, &screen_.cmdSave()},
          std::pair{cmdRemove_, &screen_.cmdRemove()}, std::pair{cmdCancel_, &screen_.cmdCancel()}})
        binding_.Bind(button, *state, true);
}

void EditStudentDialog::Repaint() {
    binding_.Paint();
    if (!screen_.Form().visible) hide();
}

void EditStudentDialog::Run(void (EditStudentScreen::*handler)()) {
    // A run-time error inside a handler ends the program with its message, as everywhere.
    RunGuarded(host_, [&] { (screen_.*handler)(); });
    if (screen_.Closed()) {
        done(QDialog::Accepted);
        return;
    }
    Repaint();
    if (screen_.FocusNewClicker()) txtNewClickerId_->setFocus();
}

void EditStudentDialog::reject() {
    if (screen_.HasUnsavedEdits() && !DropUnsavedEdits(host_)) return;
    Cancel();
}

void EditStudentDialog::Cancel() {
    screen_.cmdCancelClick();
    QDialog::reject();
}

}  // namespace tallory
