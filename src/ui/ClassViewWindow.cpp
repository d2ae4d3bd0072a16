#include "ui/ClassViewWindow.h"

#include <QApplication>
#include <QFont>
#include <QFontMetrics>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QShortcut>
#include <QStyledItemDelegate>
#include <QVBoxLayout>
#include <algorithm>
#include <memory>
#include <string>

#include "grid/ScoreGrid.h"
#include "ui/HousekeepingDialogs.h"
#include "ui/QtHost.h"
#include "ui/SessionDialogs.h"

namespace tallory {

namespace {

// The colours of the grid's names and absences.
const QColor kRed(255, 0, 0);
const QColor kBlue(0, 0, 255);
const QColor kAbsent(0x9a, 0x6a, 0x00);

// Room for the sort arrow and the padding of a heading.
constexpr int kHeadingPadding = 30;

// The trend beside a student's average: a small line of the session scores.
constexpr int kTrendWidth = 84;
const QColor kTrendLine(0x1f, 0x4e, 0x79);

}  // namespace

// Draws the average to the left of its cell and the student's session scores as a small line to
// the right, on one scale for the whole class; an absence breaks the line and shows as a mark on
// the floor.
class TrendDelegate : public QStyledItemDelegate {
  public:
    TrendDelegate(const Course& course, const ClassView& view, QObject* parent)
        : QStyledItemDelegate(parent), course_(course), view_(view) {}

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        QStyleOptionViewItem item(option);
        initStyleOption(&item, index);
        item.displayAlignment = Qt::AlignLeft | Qt::AlignVCenter;
        const QWidget* widget = option.widget;
        QStyle* style = widget ? widget->style() : QApplication::style();
        style->drawControl(QStyle::CE_ItemViewItem, &item, painter, widget);

        const int sessions = course_.NumSessions;
        if (sessions < 1 || index.row() >= view_.RowCount()) return;
        const StudentRec& student = course_.Students[view_.StudentAt(index.row())];
        const double top = top_ > 0 ? top_ : 1;
        const QRectF area =
            QRectF(option.rect).adjusted(option.rect.width() - kTrendWidth, 5, -6, -5);
        const double step = sessions > 1 ? area.width() / (sessions - 1) : 0;
        auto pointOf = [&](int s) {
            const double share = std::clamp(student.Score[s] / top, 0.0, 1.0);
            return QPointF(area.left() + step * (s - 1), area.bottom() - share * area.height());
        };
        const bool selected = option.state & QStyle::State_Selected;
        const QColor line = selected ? option.palette.highlightedText().color() : kTrendLine;
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        QPainterPath path;
        bool drawing = false;
        for (int s = 1; s <= sessions; ++s) {
            if (!student.Present[s]) {
                drawing = false;
                continue;
            }
            if (drawing)
                path.lineTo(pointOf(s));
            else
                path.moveTo(pointOf(s));
            drawing = true;
        }
        painter->setPen(QPen(line, 1.6));
        painter->drawPath(path);
        painter->setPen(Qt::NoPen);
        for (int s = 1; s <= sessions; ++s) {
            if (student.Present[s]) {
                painter->setBrush(line);
                painter->drawEllipse(pointOf(s), 1.6, 1.6);
            } else {
                painter->setBrush(selected ? line : kAbsent);
                const double x = area.left() + step * (s - 1);
                painter->drawRect(QRectF(x - 1.5, area.bottom() - 1, 3, 3));
            }
        }
        painter->restore();
    }

    // The highest session score of the class: the top of every student's line.
    void Rescale() {
        top_ = 0;
        for (int i = 1; i <= course_.NumStudents; ++i)
            for (int s = 1; s <= course_.NumSessions; ++s)
                if (course_.Students[i].Present[s])
                    top_ = std::max(top_, course_.Students[i].Score[s]);
    }

  private:
    double top_ = 0;
    const Course& course_;
    const ClassView& view_;
};

ClassViewModel::ClassViewModel(ClassView& view, QObject* parent)
    : QAbstractTableModel(parent), view_(view) {}

int ClassViewModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : view_.RowCount();
}

int ClassViewModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : view_.ColumnCount();
}

QVariant ClassViewModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    const int row = index.row(), column = index.column();
    const bool name = column == ClassView::kNameColumn;
    switch (role) {
        case Qt::DisplayRole:
            return DisplayString(view_.CellText(row, column));
        case Qt::ForegroundRole:
            if (name) return view_.Colour(row) == NameColour::Red ? kRed : kBlue;
            if (view_.Absent(row, column)) return kAbsent;
            return {};
        case Qt::ToolTipRole:
            return view_.Absent(row, column) ? QString("Absent") : QVariant();
        case Qt::FontRole:
            if (name) {
                QFont bold;
                bold.setBold(true);
                return bold;
            }
            return {};
        case Qt::TextAlignmentRole:
            return QVariant::fromValue(name ? Qt::AlignLeft | Qt::AlignVCenter
                                            : Qt::AlignCenter | Qt::AlignVCenter);
        default:
            return {};
    }
}

QVariant ClassViewModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal)
        return QAbstractTableModel::headerData(section, orientation, role);
    if (role == Qt::DisplayRole) return DisplayString(view_.HeaderText(section));
    if (role == Qt::ToolTipRole) {
        const std::string tip = view_.HeaderTip(section);
        return tip.empty() ? QVariant() : DisplayString(tip);
    }
    return {};
}

void ClassViewModel::sort(int column, Qt::SortOrder order) {
    Change([&] { view_.Sort(column, order == Qt::AscendingOrder); });
}

void ClassViewModel::Change(const std::function<void()>& change) {
    beginResetModel();
    change();
    endResetModel();
}

FrozenColumnTable::FrozenColumnTable(QWidget* parent)
    : QTableView(parent), frozen_(new QTableView(this)) {
    frozen_->setObjectName("frozenNames");
    frozen_->setFocusPolicy(Qt::NoFocus);
    frozen_->verticalHeader()->hide();
    frozen_->horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    frozen_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    frozen_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    frozen_->setFrameShape(QFrame::NoFrame);
    viewport()->stackUnder(frozen_);
    setHorizontalScrollMode(ScrollPerPixel);
    setVerticalScrollMode(ScrollPerPixel);
    frozen_->setVerticalScrollMode(ScrollPerPixel);

    connect(horizontalHeader(), &QHeaderView::sectionResized, this,
            [this](int section, int, int size) {
                if (section != 0) return;
                frozen_->setColumnWidth(0, size);
                PlaceFrozen();
            });
    connect(verticalHeader(), &QHeaderView::sectionResized, this,
            [this](int section, int, int size) { frozen_->setRowHeight(section, size); });
    connect(frozen_->verticalScrollBar(), &QAbstractSlider::valueChanged, verticalScrollBar(),
            &QAbstractSlider::setValue);
    connect(verticalScrollBar(), &QAbstractSlider::valueChanged, frozen_->verticalScrollBar(),
            &QAbstractSlider::setValue);
}

void FrozenColumnTable::setModel(QAbstractItemModel* model) {
    QTableView::setModel(model);
    frozen_->setModel(model);
    frozen_->setSelectionModel(selectionModel());
    // A reset forgets which sections were hidden; the main view's header resets first.
    connect(model, &QAbstractItemModel::modelReset, this, [this] { HideAllButFirst(); });
    HideAllButFirst();
    PlaceFrozen();
}

void FrozenColumnTable::HideAllButFirst() {
    const int columns = model() ? model()->columnCount() : 0;
    for (int column = 1; column < columns; ++column) frozen_->setColumnHidden(column, true);
    frozen_->setColumnWidth(0, columnWidth(0));
    frozen_->verticalScrollBar()->setValue(verticalScrollBar()->value());
}

void FrozenColumnTable::PlaceFrozen() {
    frozen_->setGeometry(verticalHeader()->width() + frameWidth(), frameWidth(), columnWidth(0),
                         viewport()->height() + horizontalHeader()->height());
}

void FrozenColumnTable::resizeEvent(QResizeEvent* event) {
    QTableView::resizeEvent(event);
    PlaceFrozen();
}

void FrozenColumnTable::updateGeometries() {
    QTableView::updateGeometries();
    PlaceFrozen();
}

QModelIndex FrozenColumnTable::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) {
    const QModelIndex current = QTableView::moveCursor(action, modifiers);
    // Going left, a cell that would slide under the names is brought out beside them.
    const int covered = frozen_->columnWidth(0);
    if (action == MoveLeft && current.column() > 0 && visualRect(current).left() < covered)
        horizontalScrollBar()->setValue(horizontalScrollBar()->value() +
                                        visualRect(current).left() - covered);
    return current;
}

void FrozenColumnTable::scrollTo(const QModelIndex& index, ScrollHint hint) {
    if (!index.isValid() || index.column() > 0) return QTableView::scrollTo(index, hint);
    // A name is always in sight sideways: only the rows move.
    const int beside = std::max(1, columnAt(frozen_->columnWidth(0) + 1));
    if (beside < model()->columnCount())
        QTableView::scrollTo(model()->index(index.row(), beside), hint);
}

ClassViewWindow::ClassViewWindow(Course& course, Host& host, ScoreGrid& grid, QWidget* parent)
    : QDialog(parent),
      course_(course),
      host_(host),
      grid_(grid),
      view_(course),
      model_(new ClassViewModel(view_, this)),
      table_(new FrozenColumnTable(this)),
      search_(new QLineEdit(this)),
      counts_(new QLabel(this)),
      openStudent_(new QPushButton("Open Student", this)),
      openSession_(new QPushButton("Open Session", this)) {
    setObjectName("frmClassView");
    setWindowTitle("Tallory - Whole Class");
    view_.Refresh(grid_.View().Order());

    auto* root = new QVBoxLayout(this);
    root->setContentsMargins(14, 12, 14, 12);
    root->setSpacing(8);
    root->addLayout(BuildSearchBar());
    BuildTable();
    root->addWidget(table_, 1);
    root->addLayout(BuildCommands());
    ConnectCommands();
    KeepChoiceThroughResets();

    SizeColumns();
    ShowCounts();
    UpdateCommands();

    // As much of the class as the screen holds, frame included.
    const QScreen* shown = parent ? parent->screen() : QApplication::primaryScreen();
    const QRect available = shown ? shown->availableGeometry() : QRect(0, 0, 1024, 768);
    resize(available.width() - 40, available.height() - 60);
    move(available.center() - rect().center());
    table_->setFocus();
}

QLayout* ClassViewWindow::BuildSearchBar() {
    auto* top = new QHBoxLayout;
    auto* searchCaption = new QLabel("Search:", this);
    search_->setObjectName("txtSearch");
    search_->setPlaceholderText("Name or student ID");
    search_->setClearButtonEnabled(true);
    search_->setMinimumWidth(240);
    searchCaption->setBuddy(search_);
    counts_->setObjectName("lblCounts");
    top->addWidget(searchCaption);
    top->addWidget(search_);
    top->addStretch(1);
    top->addWidget(counts_);
    return top;
}

void ClassViewWindow::BuildTable() {
    table_->setObjectName("tblClass");
    table_->setModel(model_);
    table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table_->setSelectionBehavior(QAbstractItemView::SelectRows);
    table_->setSelectionMode(QAbstractItemView::SingleSelection);
    table_->verticalHeader()->hide();
    table_->setAlternatingRowColors(true);
    table_->Frozen()->setAlternatingRowColors(true);
    table_->Frozen()->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table_->Frozen()->setSelectionBehavior(QAbstractItemView::SelectRows);
    const int rowHeight = QFontMetrics(table_->font()).height() + 10;
    trend_ = new TrendDelegate(course_, view_, table_);
    table_->setItemDelegateForColumn(ClassView::kAverageColumn, trend_);
    for (QTableView* view : {static_cast<QTableView*>(table_), table_->Frozen()}) {
        view->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
        view->verticalHeader()->setDefaultSectionSize(rowHeight);
        view->horizontalHeader()->setHighlightSections(false);
    }
    // Unsorted, the rows stand in the grid's order; a third click on a heading returns to it.
    QHeaderView* header = table_->horizontalHeader();
    header->setSortIndicatorClearable(true);
    header->setSortIndicator(-1, Qt::AscendingOrder);
    table_->setSortingEnabled(true);
    // The names' heading lies over the table's own: it sorts the same way.
    QHeaderView* nameHeader = table_->Frozen()->horizontalHeader();
    nameHeader->setSectionsClickable(true);
    nameHeader->setSortIndicatorShown(true);
    nameHeader->setSortIndicator(-1, Qt::AscendingOrder);
    connect(nameHeader, &QHeaderView::sectionClicked, this, [header](int) {
        if (header->sortIndicatorSection() != ClassView::kNameColumn)
            header->setSortIndicator(ClassView::kNameColumn, Qt::AscendingOrder);
        else if (header->sortIndicatorOrder() == Qt::AscendingOrder)
            header->setSortIndicator(ClassView::kNameColumn, Qt::DescendingOrder);
        else
            header->setSortIndicator(-1, Qt::AscendingOrder);
    });
    connect(header, &QHeaderView::sortIndicatorChanged, this,
            [nameHeader](int section, Qt::SortOrder order) {
                nameHeader->setSortIndicator(section == ClassView::kNameColumn ? section : -1,
                                             order);
            });
}

QLayout* ClassViewWindow::BuildCommands() {
    auto* bottom = new QHBoxLayout;
    openStudent_->setObjectName("cmdOpenStudent");
    openStudent_->setToolTip("The clickers of the chosen student");
    openSession_->setObjectName("cmdOpenSession");
    openSession_->setToolTip("Rename or remove the session of the chosen column");
    auto* close = new QPushButton("Close", this);
    close->setObjectName("cmdClose");
    // Enter in the table opens what is chosen; no button takes it first.
    for (QPushButton* button : {openStudent_, openSession_, close}) {
        button->setAutoDefault(false);
        button->setMinimumWidth(120);
    }
    bottom->addWidget(openStudent_);
    bottom->addWidget(openSession_);
    bottom->addStretch(1);
    bottom->addWidget(close);
    connect(close, &QPushButton::clicked, this, &QDialog::accept);
    return bottom;
}

void ClassViewWindow::ConnectCommands() {
    connect(search_, &QLineEdit::textChanged, this, [this](const QString& text) {
        model_->Change([&] { view_.Search(text.toStdString()); });
    });
    connect(table_, &QAbstractItemView::activated, this, &ClassViewWindow::Activated);
    connect(table_->Frozen(), &QAbstractItemView::activated, this, &ClassViewWindow::Activated);
    connect(openStudent_, &QPushButton::clicked, this, [this] { OpenStudent(Chosen().row()); });
    connect(openSession_, &QPushButton::clicked, this, [this] { OpenSession(Chosen().column()); });
    connect(table_->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this] { UpdateCommands(); });
    connect(table_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this] { UpdateCommands(); });
    // Ctrl+F to the search; Enter there chooses the first student found.
    auto* find = new QShortcut(QKeySequence::Find, this);
    connect(find, &QShortcut::activated, this, [this] {
        search_->setFocus();
        search_->selectAll();
    });
    connect(search_, &QLineEdit::returnPressed, this, [this] {
        if (view_.RowCount() == 0) return;
        table_->setCurrentIndex(model_->index(0, ClassView::kNameColumn));
        table_->setFocus();
    });
}

void ClassViewWindow::KeepChoiceThroughResets() {
    // Sorting, searching and refreshing all reset the model: the chosen student stays chosen and
    // in sight.
    connect(model_, &QAbstractItemModel::modelAboutToBeReset, this, [this] {
        const QModelIndex current = Chosen();
        view_.KeepChoice(current.isValid() ? ClassView::Cell{current.row(), current.column()}
                                           : ClassView::Cell{});
    });
    connect(model_, &QAbstractItemModel::modelReset, this, [this] {
        ShowCounts();
        const ClassView::Cell kept = view_.KeptChoice();
        if (kept.row >= 0) {
            const QModelIndex index = model_->index(kept.row, kept.column);
            table_->selectionModel()->setCurrentIndex(
                index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
            table_->scrollTo(index);
        } else {
            // Nobody chosen, or the chosen student gone: the new order from its top.
            table_->verticalScrollBar()->setValue(0);
        }
        UpdateCommands();
    });
}

void ClassViewWindow::SizeColumns() {
    trend_->Rescale();
    QHeaderView* header = table_->horizontalHeader();
    const QFontMetrics headings(header->font());
    int widest = headings.horizontalAdvance("Average");
    for (int column = ClassView::kFirstSessionColumn; column < view_.ColumnCount(); ++column)
        widest =
            std::max(widest, headings.horizontalAdvance(DisplayString(view_.HeaderText(column))));
    header->setDefaultSectionSize(widest + kHeadingPadding);
    for (int column = 1; column < view_.ColumnCount(); ++column)
        table_->setColumnWidth(column, widest + kHeadingPadding);
    table_->setColumnWidth(ClassView::kAverageColumn, widest + kHeadingPadding + kTrendWidth);

    QFont bold = table_->font();
    bold.setBold(true);
    const QFontMetrics names(bold);
    int name = headings.horizontalAdvance("Student") + kHeadingPadding;
    for (int row = 0; row < view_.RowCount(); ++row)
        name = std::max(name, names.horizontalAdvance(
                                  DisplayString(view_.CellText(row, ClassView::kNameColumn))));
    table_->setColumnWidth(ClassView::kNameColumn, std::min(name + 24, 320));
}

void ClassViewWindow::ShowCounts() {
    const int all = course_.NumStudents;
    QString text = view_.RowCount() == all
                       ? QString("%1 students").arg(all)
                       : QString("%1 of %2 students").arg(view_.RowCount()).arg(all);
    counts_->setText(text + QString(", %1 sessions").arg(course_.NumSessions));
}

QModelIndex ClassViewWindow::Chosen() const {
    // The cell the focus rests on counts only when its row shows as chosen.
    const QModelIndex current = table_->currentIndex();
    if (!current.isValid() || !table_->selectionModel()->isRowSelected(current.row())) return {};
    return current;
}

void ClassViewWindow::UpdateCommands() {
    const QModelIndex current = Chosen();
    openStudent_->setEnabled(current.isValid());
    openSession_->setEnabled(current.isValid() && view_.SessionAt(current.column()) != 0);
}

void ClassViewWindow::Guarded(const std::function<void()>& command) {
    RunGuarded(host_, command);
}

void ClassViewWindow::Activated(const QModelIndex& index) {
    if (!index.isValid() || index != Chosen()) return;
    // A session's figure opens the session; a name, total or average the student.
    if (view_.SessionAt(index.column()) != 0)
        OpenSession(index.column());
    else
        OpenStudent(index.row());
}

void ClassViewWindow::OpenStudent(int row) {
    if (row < 0 || row >= view_.RowCount()) return;
    const int student = view_.StudentAt(row);
    Guarded([&] { OpenEditStudent(this, course_, host_, grid_, student); });
    Refresh();
}

void ClassViewWindow::OpenSession(int column) {
    const int session = view_.SessionAt(column);
    if (session == 0) return;
    Guarded([&] { OpenEditSession(this, course_, host_, grid_, session); });
    Refresh();
}

void ClassViewWindow::Refresh() {
    model_->Change([&] { view_.Refresh(grid_.View().Order()); });
    SizeColumns();
}

void OpenClassView(QWidget* parent, Course& course, Host& host, ScoreGrid& grid) {
    ClassViewWindow window(course, host, grid, parent);
    window.exec();
}

}  // namespace tallory
