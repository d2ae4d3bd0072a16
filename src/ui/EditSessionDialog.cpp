#include "ui/EditSessionDialog.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "common/Text.h"
#include "ui/QtHost.h"

namespace tallory {

namespace {

constexpr const char* kStyle = R"(
QDialog#frmEditSession { background: rgb(238, 240, 236); }
QLabel[role="fact"] { color: #5b6358; }
QLabel#lblFileName { color: #1f2a1f; font-weight: bold; }
QLineEdit { padding: 3px 5px; }
)";

// Characters of the screen's text before byte `offset` of its course-file bytes.
int CharactersBefore(const std::string& bytes, size_t offset) {
    return static_cast<int>(DisplayString(bytes.substr(0, offset)).size());
}

}  // namespace

EditSessionDialog::EditSessionDialog(EditSessionScreen& screen, Host& host, QWidget* parent)
    : QDialog(parent), screen_(screen), host_(host) {
    setObjectName("frmEditSession");
    UseDialogFrame(this);
    setWindowTitle("Edit Session");
    setStyleSheet(kStyle);

    auto* root = new QVBoxLayout(this);
    root->setContentsMargins(18, 16, 18, 14);
    root->setSpacing(12);
    auto* form = new QGridLayout;
    form->setHorizontalSpacing(10);
    form->setVerticalSpacing(8);
    auto* fileCaption = new QLabel("Session log :", this);
    fileCaption->setProperty("role", "fact");
    lblFileName_ = new QLabel(this);
    lblFileName_->setObjectName("lblFileName");
    auto* nameCaption = new QLabel("Session name :", this);
    nameCaption->setProperty("role", "fact");
    txtSessionName_ = new QLineEdit(this);
    txtSessionName_->setObjectName("txtSessionName");
    txtSessionName_->setMinimumWidth(320);
    form->addWidget(fileCaption, 0, 0);
    form->addWidget(lblFileName_, 0, 1);
    form->addWidget(nameCaption, 1, 0);
    form->addWidget(txtSessionName_, 1, 1);
    form->setColumnStretch(1, 1);
    root->addLayout(form);

    auto* buttons = new QHBoxLayout;
    cmdRemove_ = new QPushButton("Remove Session", this);
    cmdRemove_->setObjectName("cmdRemove");
    cmdCancel_ = new QPushButton("Cancel", this);
    cmdCancel_->setObjectName("cmdCancel");
    cmdSave_ = new QPushButton("Save", this);
    cmdSave_->setObjectName("cmdSave");
    // Enter in the title box saves through its own handler, not through a default button.
    for (QPushButton* button : {cmdRemove_, cmdCancel_, cmdSave_}) button->setAutoDefault(false);
    buttons->addWidget(cmdRemove_);
    buttons->addStretch(1);
    buttons->addWidget(cmdCancel_);
    buttons->addWidget(cmdSave_);
    root->addLayout(buttons);

    connect(txtSessionName_, &QLineEdit::textEdited, this,
            [this](const QString& text) { screen_.txtSessionNameChange(text.toStdString()); });
    connect(txtSessionName_, &QLineEdit::returnPressed, this,
            [this] { Run(&EditSessionScreen::txtSessionNameEnter); });
    connect(cmdSave_, &QPushButton::clicked, this,
            [this] { Run(&EditSessionScreen::cmdSaveClick); });
    connect(cmdRemove_, &QPushButton::clicked, this,
            [this] { Run(&EditSessionScreen::cmdRemoveClick); });
    connect(cmdCancel_, &QPushButton::clicked, this, [this] { Cancel(); });

    binding_.Bind(lblFileName_, screen_.lblFileName());
    binding_.Bind(txtSessionName_, screen_.txtSessionName());
    binding_.Paint();
}

void EditSessionDialog::Run(void (EditSessionScreen::*handler)()) {
    // A run-time error inside a handler ends the program with its message, as everywhere.
    RunGuarded(host_, [&] { (screen_.*handler)(); });
    binding_.Paint();
    if (screen_.Closed()) {
        if (screen_.Saved())
            accept();
        else
            QDialog::reject();
        return;
    }
    // A refused title: the offending text is selected for the instructor to change.
    const ControlState& box = screen_.txtSessionName();
    const int start = CharactersBefore(box.text, box.selectionStart);
    const int end = CharactersBefore(box.text, box.selectionStart + box.selectionLength);
    txtSessionName_->setFocus();
    txtSessionName_->setSelection(start, end - start);
}

void EditSessionDialog::reject() {
    if (screen_.HasUnsavedEdits() && !DropUnsavedEdits(host_)) return;
    Cancel();
}

void EditSessionDialog::Cancel() {
    screen_.cmdCancelClick();
    QDialog::reject();
}

}  // namespace tallory
