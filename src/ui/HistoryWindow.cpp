#include "ui/HistoryWindow.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "common/Text.h"
#include "ui/QtHost.h"

namespace tallory {

namespace {

// Course bytes (titles, file names) are Windows-1252.
QString Shown(const std::string& bytes) {
    return QString::fromStdString(Windows1252ToUtf8(bytes));
}

constexpr int kIdRole = Qt::UserRole;

}  // namespace

HistoryWindow::HistoryWindow(std::string courseFolder, Host& host, std::function<void()> undone,
                             QWidget* parent)
    : QDialog(parent),
      courseFolder_(std::move(courseFolder)),
      host_(host),
      undone_(std::move(undone)) {
    setObjectName("frmHistory");
    setWindowTitle("History");
    resize(720, 440);
    auto* root = new QVBoxLayout(this);
    auto* heading = new QLabel(
        "Every change of the course, newest first. Choose one and press Undo to put its files "
        "back as they were before it; the undo is a change of its own and can be undone too.",
        this);
    heading->setWordWrap(true);
    root->addWidget(heading);

    list_ = new QTreeWidget(this);
    list_->setObjectName("lstHistory");
    list_->setColumnCount(3);
    list_->setHeaderLabels({"When", "Change", ""});
    list_->setRootIsDecorated(true);
    list_->setAlternatingRowColors(true);
    list_->header()->setStretchLastSection(false);
    list_->header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    list_->header()->setSectionResizeMode(1, QHeaderView::Stretch);
    list_->header()->setSectionResizeMode(2, QHeaderView::ResizeToContents);
    list_->setAccessibleName("Changes of the course");
    root->addWidget(list_, 1);

    note_ = new QLabel(this);
    note_->setObjectName("lblHistoryNote");
    note_->setWordWrap(true);
    root->addWidget(note_);

    auto* buttons = new QDialogButtonBox(this);
    undo_ = buttons->addButton("&Undo", QDialogButtonBox::ActionRole);
    undo_->setObjectName("cmdUndo");
    QPushButton* close = buttons->addButton(QDialogButtonBox::Close);
    root->addWidget(buttons);

    connect(list_, &QTreeWidget::currentItemChanged, this, [this] { ChoiceChanged(); });
    connect(undo_, &QPushButton::clicked, this, [this] { UndoChosen(); });
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    Refresh();
}

void HistoryWindow::Refresh() {
    entries_ = ReadHistory(courseFolder_);
    list_->clear();
    for (auto entry = entries_.rbegin(); entry != entries_.rend(); ++entry) {
        const bool undone = IsUndone(entries_, entry->id);
        QString time = QString::fromStdString(HistoryTime(entry->time)).replace('T', ' ');
        auto* item = new QTreeWidgetItem(
            list_, {time, Shown(entry->action), undone ? QString("undone") : QString()});
        item->setData(0, kIdRole, entry->id);
        if (undone)
            for (int column = 0; column < 3; ++column)
                item->setForeground(column, palette().brush(QPalette::Disabled, QPalette::Text));
        for (const HistoryFile& file : entry->files) {
            QString what = !file.before ? "made" : !file.after ? "removed" : "changed";
            new QTreeWidgetItem(item, {QString(), Shown(file.path), what});
        }
    }
    if (list_->topLevelItemCount() > 0) list_->setCurrentItem(list_->topLevelItem(0));
    ChoiceChanged();
}

void HistoryWindow::ChoiceChanged() {
    QTreeWidgetItem* item = list_->currentItem();
    while (item && item->parent()) item = item->parent();
    const int id = item ? item->data(0, kIdRole).toInt() : 0;
    const bool undone = id != 0 && IsUndone(entries_, id);
    undo_->setEnabled(id != 0 && !undone);
    if (entries_.empty()) {
        note_->setText("No change of this course has been made yet.");
    } else if (id == 0) {
        note_->setText(QString());
    } else {
        note_->setText(undone ? "This change is undone."
                              : QString("%1 file(s).").arg(item->childCount()));
    }
}

void HistoryWindow::UndoChosen() {
    QTreeWidgetItem* item = list_->currentItem();
    while (item && item->parent()) item = item->parent();
    if (!item) return;
    const int id = item->data(0, kIdRole).toInt();
    bool done = false;
    RunGuarded(host_, [&] { done = UndoEntry(courseFolder_, id, host_).done; });
    if (done && undone_) undone_();
    Refresh();
}

bool UndoNewestChange(const std::string& courseFolder, Host& host) {
    const int id = NewestUndoable(ReadHistory(courseFolder));
    return UndoEntry(courseFolder, id, host).done;
}

QString UndoCaption(const std::string& courseFolder) {
    const std::vector<HistoryEntry> entries = ReadHistory(courseFolder);
    const int id = NewestUndoable(entries);
    for (const HistoryEntry& entry : entries)
        if (entry.id == id) return "&Undo " + Shown(entry.action);
    return "&Undo";
}

}  // namespace tallory
