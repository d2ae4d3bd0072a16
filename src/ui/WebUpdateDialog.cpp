#include "ui/WebUpdateDialog.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/QtHost.h"

namespace tallory {

WebUpdateDialog::WebUpdateDialog(QWidget* parent) : QDialog(parent) {
    setObjectName("frmWebUpdateSummary");
    UseDialogFrame(this);
    setWindowTitle("Web Update");
    auto* root = new QVBoxLayout(this);
    root->setContentsMargins(18, 16, 18, 14);
    auto* form = new QFormLayout;
    auto box = [&](const ControlState& caption, const ControlState& text, const char* name) {
        auto* label = new QLabel(this);
        auto* field = new QLineEdit(this);
        field->setObjectName(name);
        field->setReadOnly(true);
        field->setMinimumWidth(300);
        label->setBuddy(field);
        form->addRow(label, field);
        binding_.Bind(label, caption);
        binding_.Bind(field, text);
    };
    box(summary_.lblClicker(), summary_.txtClicker(), "txtClicker");
    box(summary_.lblGrader(), summary_.txtGrader(), "txtGrader");
    root->addLayout(form);

    auto* buttons = new QHBoxLayout;
    auto* quit = new QPushButton(this);
    quit->setObjectName("CmdQuit");
    auto* close = new QPushButton(this);
    close->setObjectName("cmdClose");
    buttons->addWidget(quit);
    buttons->addStretch(1);
    buttons->addWidget(close);
    root->addLayout(buttons);
    binding_.Bind(quit, summary_.CmdQuit(), true);
    binding_.Bind(close, summary_.cmdClose(), true);
    connect(quit, &QPushButton::clicked, this, [this] {
        summary_.CmdQuitClick();
        binding_.Paint();
    });
    connect(close, &QPushButton::clicked, this, [this] {
        summary_.cmdCloseClick();
        QDialog::reject();
    });
    binding_.Paint();
}

}  // namespace tallory
