#include "ui/FilterGhostRemoteDialog.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/HousekeepingStyle.h"
#include "ui/KeyFilter.h"
#include "ui/QtHost.h"

namespace tallory {

namespace {

QLabel* Caption(QWidget* parent, const char* text) {
    auto* label = new QLabel(text, parent);
    label->setProperty("role", "fact");
    return label;
}

}  // namespace

FilterGhostRemoteDialog::FilterGhostRemoteDialog(FilterGhostRemoteScreen& screen, Host& host,
                                                 QWidget* parent)
    : QDialog(parent), screen_(screen), host_(host) {
    setObjectName("frmFilterGhostRemote");
    UseDialogFrame(this);
    setWindowTitle(DisplayString(FilterGhostRemoteScreen::kCaption));
    setStyleSheet(kHousekeepingStyle);

    auto* root = new QVBoxLayout(this);
    root->setContentsMargins(18, 14, 18, 14);
    root->setSpacing(10);
    root->addWidget(
        MakeHelp(this, FilterGhostRemoteScreen::kCaption, FilterGhostRemoteScreen::kHelpText));

    root->addLayout(BuildSearchBoxes());
    root->addLayout(BuildCommands());

    ConnectCommands();
    setMinimumWidth(460);
    BindControls();
    binding_.Paint();
}

QLayout* FilterGhostRemoteDialog::BuildSearchBoxes() {
    const char* names[kSearchBoxes] = {"TxtAvgEqual", "txtAvgGrater",         "TxtAvgLess",
                                       "txtTotal",    "txtTotalGrater",       "txtTotalLess",
                                       "TxtRemoteId", "TxtRemoteIdContaining"};
    for (int b = 0; b < kSearchBoxes; ++b) {
        auto* box = new QLineEdit(this);
        box->setObjectName(names[b]);
        const auto which = static_cast<SearchBox>(b);
        box->installEventFilter(
            new KeyFilter(box, [which](int key) { return IsSearchKey(which, key); }));
        connect(box, &QLineEdit::textEdited, this, [this, which](const QString& text) {
            screen_.BoxChange(which, text.toStdString());
        });
        boxes_[b] = box;
    }
    auto box = [&](SearchBox which) { return boxes_[static_cast<int>(which)]; };
    auto* form = new QGridLayout;
    form->setHorizontalSpacing(8);
    form->setVerticalSpacing(8);
    int row = 0;
    form->addWidget(Caption(this, "Remote ID ="), row, 0);
    form->addWidget(box(SearchBox::TxtRemoteId), row++, 1, 1, 3);
    form->addWidget(Caption(this, "Remote ID Containing"), row, 0);
    form->addWidget(box(SearchBox::TxtRemoteIdContaining), row++, 1, 1, 3);
    form->addWidget(Caption(this, "Total Points = "), row, 0);
    form->addWidget(box(SearchBox::txtTotal), row++, 1);
    form->addWidget(Caption(this, "Total between"), row, 0);
    form->addWidget(box(SearchBox::txtTotalGrater), row, 1);
    form->addWidget(Caption(this, "and"), row, 2);
    form->addWidget(box(SearchBox::txtTotalLess), row++, 3);
    form->addWidget(Caption(this, "Points Average ="), row, 0);
    form->addWidget(box(SearchBox::TxtAvgEqual), row++, 1);
    form->addWidget(Caption(this, "Average between"), row, 0);
    form->addWidget(box(SearchBox::txtAvgGrater), row, 1);
    form->addWidget(Caption(this, "and"), row, 2);
    form->addWidget(box(SearchBox::TxtAvgLess), row++, 3);
    return form;
}

QLayout* FilterGhostRemoteDialog::BuildCommands() {
    auto* buttons = new QHBoxLayout;
    lvButtons_H1_ = MakeButton(this, "lvButtons_H1");
    lvButtons_H1_->setText("Clear Above Filter(s)");
    cmdSelect_ = MakeButton(this, "CmdSelect");
    cmdSelect_->setText("Select");
    buttons->addWidget(lvButtons_H1_);
    buttons->addStretch(1);
    buttons->addWidget(cmdSelect_);
    return buttons;
}

void FilterGhostRemoteDialog::ConnectCommands() {
    connect(cmdSelect_, &QPushButton::clicked, this, [this] {
        // A box that holds no number ends the program with the run-time error.
        RunGuarded(host_, [&] { screen_.CmdSelectClick(); });
        if (screen_.Hidden()) accept();
    });
    connect(lvButtons_H1_, &QPushButton::clicked, this, [this] {
        screen_.lvButtons_H1Click();
        binding_.Paint();
    });
}

void FilterGhostRemoteDialog::BindControls() {
    for (int b = 0; b < kSearchBoxes; ++b)
        binding_.Bind(boxes_[b], screen_.Box(static_cast<SearchBox>(b)));
}

}  // namespace tallory
