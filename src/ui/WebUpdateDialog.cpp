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
    setWindowTitle("Web Update");
    auto* root = new QVBoxLayout(this);
    root->setContentsMargins(18, 16, 18, 14);
    auto* form = new QFormLayout;
    auto box = [&](const ControlState& caption, const ControlState& text, const char* name) {
        auto* field = new QLineEdit(DisplayString(text.text), this);
        field->setObjectName(name);
        field->setReadOnly(true);
        field->setMinimumWidth(300);
        form->addRow(QString::fromStdString(caption.text), field);
    };
    box(summary_.lblClicker(), summary_.txtClicker(), "txtClicker");
    box(summary_.lblGrader(), summary_.txtGrader(), "txtGrader");
    root->addLayout(form);

    auto* buttons = new QHBoxLayout;
    auto* quit = new QPushButton(QString::fromStdString(summary_.CmdQuit().text), this);
    quit->setObjectName("CmdQuit");
    auto* close = new QPushButton(QString::fromStdString(summary_.cmdClose().text), this);
    close->setObjectName("cmdClose");
    buttons->addWidget(quit);
    buttons->addStretch(1);
    buttons->addWidget(close);
    root->addLayout(buttons);
    connect(quit, &QPushButton::clicked, this, [this] { summary_.CmdQuitClick(); });
    connect(close, &QPushButton::clicked, this, [this] {
        summary_.cmdCloseClick();
        QDialog::reject();
    });
}

}  // namespace tallory
