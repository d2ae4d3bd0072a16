#include "ui/WebSyncDialog.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include "grid/ScoreGrid.h"
#include "ui/FitText.h"
#include "ui/PreviewDialog.h"
#include "ui/QtHost.h"

namespace tallory {

namespace {

// The web registrations stand in the yellow box the screen's text speaks of.
constexpr const char* kStyle = R"(
QDialog#frmWebSync { background: rgb(238, 240, 236); }
QLabel#wNote { color: #1f2a1f; }
QLabel#wWhich { color: #5b6358; }
QLabel[role="caption"] { color: #5b6358; font-weight: bold; }
QListWidget#wWebList { background: rgb(255, 254, 166); border: 1px solid #c9c48a; }
QListWidget#wList { background: white; border: 1px solid #c8ccc3; }
)";

}  // namespace

WebSyncDialog::WebSyncDialog(WebSyncScreen& screen, Host& host, QWidget* parent)
    : QDialog(parent), screen_(screen), host_(host) {
    setObjectName("frmWebSync");
    UseDialogFrame(this);
    setWindowTitle("WebSync");
    setStyleSheet(kStyle);
    setMinimumSize(640, 420);

    auto* root = new QVBoxLayout(this);
    root->setContentsMargins(20, 18, 20, 16);
    root->setSpacing(10);
    wNote_ = new QLabel(this);
    wNote_->setObjectName("wNote");
    SetTypeSize(wNote_, 11);
    wNote_->setWordWrap(true);
    wNote_->setMinimumHeight(64);
    wNote_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    wWhich_ = new QLabel(this);
    wWhich_->setObjectName("wWhich");
    root->addWidget(wNote_);
    root->addWidget(wWhich_);

    root->addLayout(BuildLists(), 1);
    root->addLayout(BuildCommands());

    ConnectCommands();
    BindControls();
    screen_.onChanged = [this] { binding_.Paint(); };
    binding_.Paint();
}

QLayout* WebSyncDialog::BuildLists() {
    auto* lists = new QHBoxLayout;
    lists->setSpacing(14);
    auto column = [&](QLabel*& label, QListWidget*& list, const char* labelName,
                      const char* listName) {
        auto* box = new QVBoxLayout;
        label = new QLabel(this);
        label->setObjectName(labelName);
        label->setProperty("role", "caption");
        label->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
        list = new QListWidget(this);
        list->setObjectName(listName);
        // The boxes keep their places while hidden, so the screen does not jump between states.
        for (QWidget* widget : {static_cast<QWidget*>(label), static_cast<QWidget*>(list)}) {
            QSizePolicy policy = widget->sizePolicy();
            policy.setRetainSizeWhenHidden(true);
            widget->setSizePolicy(policy);
        }
        box->addWidget(label);
        box->addWidget(list, 1);
        lists->addLayout(box, 1);
    };
    column(wWebListLabel_, wWebList_, "wWebListLabel", "wWebList");
    column(wListLabel_, wList_, "wListLabel", "wList");
    return lists;
}

QLayout* WebSyncDialog::BuildCommands() {
    auto* buttons = new QHBoxLayout;
    wAccept_ = new QPushButton(this);
    wAccept_->setObjectName("wAccept");
    wIgnore_ = new QPushButton(this);
    wIgnore_->setObjectName("wIgnore");
    wSync_ = new QPushButton(this);
    wSync_->setObjectName("wSync");
    wCancel_ = new QPushButton(this);
    wCancel_->setObjectName("wCancel");
    for (QPushButton* button : {wAccept_, wIgnore_, wSync_, wCancel_}) {
        button->setAutoDefault(false);
        button->setMinimumWidth(96);
    }
    buttons->addWidget(wAccept_);
    buttons->addWidget(wIgnore_);
    buttons->addStretch(1);
    buttons->addWidget(wSync_);
    buttons->addWidget(wCancel_);
    return buttons;
}

void WebSyncDialog::ConnectCommands() {
    connect(wSync_, &QPushButton::clicked, this, [this] { Run(&WebSyncScreen::wSyncClick); });
    connect(wAccept_, &QPushButton::clicked, this, [this] { Run(&WebSyncScreen::wAcceptClick); });
    connect(wIgnore_, &QPushButton::clicked, this, [this] { Run(&WebSyncScreen::wIgnoreClick); });
    connect(wCancel_, &QPushButton::clicked, this, [this] { Run(&WebSyncScreen::wCancelClick); });
    connect(wList_, &QListWidget::currentRowChanged, this,
            [this](int row) { screen_.wListSelect(row); });
    connect(wWebList_, &QListWidget::itemClicked, this, [this] { wList_->setFocus(); });
}

WebSyncDialog::~WebSyncDialog() {
    screen_.onChanged = nullptr;
}

void WebSyncDialog::Run(void (WebSyncScreen::*handler)()) {
    RunGuarded(host_, [&] { (screen_.*handler)(); });
    if (screen_.Hidden()) {
        QDialog::accept();
        return;
    }
    binding_.Paint();
}

void WebSyncDialog::reject() {
    Run(&WebSyncScreen::wCancelClick);
}

void WebSyncDialog::BindControls() {
    binding_.Bind(wNote_, screen_.wNote());
    binding_.Bind(wWhich_, screen_.wWhich());
    binding_.Bind(wWebListLabel_, screen_.wWebListLabel());
    binding_.Bind(wListLabel_, screen_.wListLabel());
    binding_.Bind(wWebList_, screen_.wWebList().state, screen_.wWebList().rows);
    binding_.Bind(wList_, screen_.wList().state, screen_.wList().rows);
    for (auto [button, state] :
         {std::pair{wAccept_, &screen_.wAccept()}, std::pair{wIgnore_, &screen_.wIgnore()},
          std::pair{wSync_, &screen_.wSync()}, std::pair{wCancel_, &screen_.wCancel()}})
        binding_.Bind(button, *state, true);
}

void OpenWebSync(QWidget* parent, Course& course, Host& host, ScoreGrid& grid,
                 UrlFetcher& fetcher) {
    SyncWebRegistrations(course, host, grid, fetcher, [&](WebSyncScreen& screen) {
        WebSyncDialog dialog(screen, host, parent);
        dialog.exec();
        // What the registrations found do to grades, before they are written.
        if (screen.Cancelled()) return;
        const bool goAhead = GoAheadAfterPreview(
            parent,
            [&] { return PreviewOpenCourseChange(course, grid.Order(), SaveWebRegistrations); },
            MovesScores);
        if (!goAhead) screen.KeepNothing();
    });
}

}  // namespace tallory
