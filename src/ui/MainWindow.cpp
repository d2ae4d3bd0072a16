#include "ui/MainWindow.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QPushButton>
#include <QResizeEvent>
#include <QScrollArea>
#include <QScrollBar>
#include <QShortcut>
#include <QStyle>
#include <QTimer>
#include <QVBoxLayout>
#include <QWheelEvent>
#include <algorithm>
#include <utility>

#include "common/Paths.h"
#include "common/Text.h"
#include "export/Export.h"
#include "ui/ClassViewWindow.h"
#include "ui/CommandLabel.h"
#include "ui/CourseWatcher.h"
#include "ui/HelpText.h"
#include "ui/HistoryWindow.h"
#include "ui/HousekeepingDialogs.h"
#include "ui/OverviewWindow.h"
#include "ui/QtHost.h"
#include "ui/ReportSummaryDialog.h"
#include "ui/ScreenFit.h"
#include "ui/SessionDialogs.h"
#include "ui/WebSyncDialog.h"
#include "ui/WebUpdateDialog.h"

namespace tallory {

namespace {

// The window's surface and the average labels keep the colours instructors know them by.
constexpr const char* kStyle = R"(
QWidget#frmSubject, QWidget#FrmS_120DPI { background: rgb(238, 240, 236); }
QFrame#gridFrame { background: white; border: 1px solid #c8ccc3; border-radius: 8px; }
QLabel[role="heading"] { color: #1f2a1f; border-bottom: 2px solid #b5bbae; padding: 6px 4px; }
QLabel[role="heading"]:disabled { color: #8d948a; }
QLabel[role="cell"] { color: #222; border-bottom: 1px solid #e4e7e0; padding: 4px; }
QLabel[role="cell"][absent="true"] { color: #9a6a00; }
QLabel[role="name"] { border-bottom: 1px solid #e4e7e0; padding: 4px 8px; }
QLabel[role="name"][colour="red"] { color: rgb(255, 0, 0); }
QLabel[role="name"][colour="blue"] { color: rgb(0, 0, 255); }
QLabel[role="total"] { color: #222; border-bottom: 1px solid #e4e7e0; padding: 4px; }
QLabel[role="average"] { background: rgb(255, 254, 166); color: #333;
                         border-bottom: 1px solid #e8e5a0; padding: 4px 8px; }
QLabel[role="caption"] { color: #5b6358; padding: 6px 4px; border-bottom: 2px solid #b5bbae; }
QLabel[role="link"] { color: #1d5fbf; padding: 2px 6px; }
QLabel[role="link"]:disabled { color: #9aa39a; }
QLabel#lblCMS { background: #dfe6f3; color: #234; border-radius: 10px; padding: 3px 12px; }
QLabel#lblSubject { color: #1b2b1b; }
QFrame#PicHelp { background: #fffef4; border: 1px solid #c9c48a; border-radius: 8px; }
QFrame#PicHelp QLabel { color: #2b2b1f; }
QScrollArea#helpScroll, QScrollArea#helpScroll > QWidget, QWidget#helpPage { background: transparent; }
)";

// Font sizes in points at the window's design height. Points grow with the screen's pixels per
// inch, so a large-font screen shows larger type in both layouts.
constexpr double kTitlePoints = 17;
constexpr double kTextPoints = 10.5;
constexpr double kCellPoints = 12;
constexpr double kSmallPoints = 9.5;

struct Layout {
    QSize design;
    QMargins margins;
};

// The ordinary layout, and the large-font one: the same controls in less room, so that the larger
// type still fits a 1024 x 768 screen.
constexpr Layout kSubjectLayout{{1000, 700}, {20, 16, 20, 16}};
constexpr Layout kLargeFontLayout{{816, 600}, {12, 8, 12, 8}};

// The window can be made as small as a 640 x 480 screen at twice the usual pixels per inch; its
// type then shrinks with it, down to this share of the designed size.
constexpr QSize kSmallestWindow(320, 240);
constexpr double kSmallestRatio = 0.3;

// Students one notch of the mouse wheel moves.
constexpr int kStudentsPerNotch = 3;

// The grid's columns: name, four sessions, total, average, the student scroll bar; its rows: the
// headings, six students, then each session column's commands and the session scroll bar.
constexpr int kTotalColumn = 1 + kGridColumns;
constexpr int kAverageColumn = kTotalColumn + 1;
constexpr int kScrollColumn = kAverageColumn + 1;
constexpr int kCommandRow = kLabelsPerColumn;

void SetProperty(QWidget* widget, const char* name, const QVariant& value) {
    if (widget->property(name) == value) return;
    widget->setProperty(name, value);
    widget->style()->unpolish(widget);
    widget->style()->polish(widget);
}

void KeepPlaceWhenHidden(QWidget* widget) {
    QSizePolicy policy = widget->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    widget->setSizePolicy(policy);
}

// A label of the grid takes the width its column gives it, whatever its text: its type fits the
// cell rather than the cell the type.
void InCell(QLabel* label) {
    label->setMinimumWidth(10);
    label->setSizePolicy(QSizePolicy::Ignored, label->sizePolicy().verticalPolicy());
}

QLabel* MakeLabel(QWidget* parent, const char* role, const QString& name,
                  Qt::Alignment alignment = Qt::AlignCenter) {
    auto* label = new QLabel(parent);
    label->setObjectName(name);
    label->setProperty("role", role);
    label->setAlignment(alignment);
    InCell(label);
    return label;
}

}  // namespace

MainWindow::MainWindow(Course& course, QtHost& host, bool largeFonts, QWidget* parent)
    : QWidget(parent),
      course_(course),
      host_(host),
      grid_(course),
      largeFonts_(largeFonts),
      design_(largeFonts ? kLargeFontLayout.design : kSubjectLayout.design) {
    const Layout& layout = largeFonts ? kLargeFontLayout : kSubjectLayout;
    setObjectName(largeFonts ? "FrmS_120DPI" : "frmSubject");
    setWindowTitle("Tallory");
    setAttribute(Qt::WA_StyledBackground);
    setStyleSheet(kStyle);
    setMinimumSize(kSmallestWindow);

    auto* root = new QVBoxLayout(this);
    // The type follows the window, not the window the type: the window may be made smaller than
    // its controls ask for at the present size of type, which then shrinks to fit.
    root->setSizeConstraint(QLayout::SetNoConstraint);
    root->setContentsMargins(layout.margins);
    root->setSpacing(10);
    BuildEditMenu(root);
    BuildHeader(root);
    BuildGrid(root);
    BuildFooter(root);
    BuildHelp();

    // CmdExitApp: the keyboard's way out, beside the Exit button and link.
    auto* exitApp = new QShortcut(QKeySequence::Quit, this);
    exitApp->setObjectName("CmdExitApp");
    connect(exitApp, &QShortcut::activated, this, [this] { Exit(); });

    BindControls();
    SetTabOrder();
    NameForScreenReaders();
    grid_.onChanged = [this] { Repaint(); };

    resize(layout.design);
    ApplyScale();
    Repaint();
}

void MainWindow::ShowOnScreen() {
    // On a screen of 1024 x 768 or less the window takes all of it; a larger one leaves room
    // around a window somewhat larger than its design, frame and all.
    const QRect available = AvailableArea(this);
    if (available.width() <= 1024 || available.height() <= 768) {
        setGeometry(available);
        showMaximized();
        return;
    }
    const double grow = std::max(1.0, std::min(available.width() * 0.7 / design_.width(),
                                               available.height() * 0.8 / design_.height()));
    const QSize size = (QSizeF(design_) * grow).toSize().boundedTo(RoomFor(this));
    const QMargins frame = FrameMargins(this);
    const QSize framed = size.grownBy(frame);
    resize(size);
    move(available.left() + (available.width() - framed.width()) / 2,
         available.top() + (available.height() - framed.height()) / 2);
    show();
}

void MainWindow::Scale(QWidget* widget, double pointSize, bool bold) {
    fonts_.Add(widget, pointSize, bold);
}

CommandLabel* MainWindow::MakeLink(const QString& text, const char* name) {
    auto* link = new CommandLabel(this);
    link->setObjectName(name);
    link->setText(text);
    link->setProperty("role", "link");
    link->setCursor(Qt::PointingHandCursor);
    link->SetHoverUnderline(true);
    link->SetKeyboardCommand(true);
    return link;
}

void MainWindow::BuildHeader(QVBoxLayout* root) {
    auto* header = new QHBoxLayout;
    header->setSpacing(12);
    lblSubject_ = new QLabel(this);
    lblSubject_->setObjectName("lblSubject");
    // A long course name gives way to the commands beside it.
    InCell(lblSubject_);
    Scale(lblSubject_, kTitlePoints, true);
    cellGroups_.push_back({{lblSubject_}, kTitlePoints});
    lblCMS_ = new QLabel(this);
    lblCMS_->setObjectName("lblCMS");
    lblCMS_->setToolTip("The grade-book format of this course");
    Scale(lblCMS_, kSmallPoints);
    lblExit_ = MakeLink("Exit", "lblExit");
    Scale(lblExit_, kTextPoints);
    connect(lblExit_, &CommandLabel::clicked, this, [this] { Exit(); });
    header->addWidget(lblSubject_, 1);
    lblNotice_ = new QLabel(this);
    lblNotice_->setObjectName("lblNotice");
    Scale(lblNotice_, kSmallPoints);
    noticeTimer_ = new QTimer(this);
    noticeTimer_->setSingleShot(true);
    connect(noticeTimer_, &QTimer::timeout, lblNotice_, &QLabel::clear);
    header->addWidget(lblNotice_, 0, Qt::AlignVCenter);
    header->addWidget(lblCMS_, 0, Qt::AlignVCenter);
    header->addWidget(lblExit_, 0, Qt::AlignVCenter);
    root->addLayout(header);

    auto* tools = new QHBoxLayout;
    tools->setSpacing(8);
    showBy_ = new QLabel("Show names by", this);
    Scale(showBy_, kTextPoints);
    cmbDisplayName_ = new QComboBox(this);
    cmbDisplayName_->setObjectName("cmbDisplayName");
    cmbDisplayName_->addItems({"Last Name", "Student ID"});
    cmbDisplayName_->setCurrentIndex(static_cast<int>(DisplayOrder::StudentId));
    Scale(cmbDisplayName_, kTextPoints);
    // Repaint sets the row with signals blocked, so only a change by the user arrives here.
    connect(cmbDisplayName_, &QComboBox::currentIndexChanged, this, [this](int row) {
        Guarded([&] { grid_.DisplayNameChanged(static_cast<DisplayOrder>(row), host_); });
    });
    lblPrevious_ = MakeLink(QString::fromUtf8("\u25C0  Previous"), "lblPrevious");
    lblNext_ = MakeLink(QString::fromUtf8("Next  \u25B6"), "lblNext");
    for (CommandLabel* move : {lblPrevious_, lblNext_}) {
        Scale(move, kTextPoints, true);
        KeepPlaceWhenHidden(move);
    }
    connect(lblPrevious_, &CommandLabel::clicked, this,
            [this] { Guarded([&] { grid_.PreviousClick(); }); });
    connect(lblNext_, &CommandLabel::clicked, this,
            [this] { Guarded([&] { grid_.NextClick(); }); });
    tools->addWidget(showBy_);
    tools->addWidget(cmbDisplayName_);
    tools->addStretch(1);
    tools->addWidget(lblPrevious_);
    tools->addSpacing(8);
    tools->addWidget(lblNext_);
    root->addLayout(tools);
}

void MainWindow::BuildGrid(QVBoxLayout* root) {
    gridFrame_ = new QFrame(this);
    gridFrame_->setObjectName("gridFrame");
    auto* layout = new QGridLayout(gridFrame_);
    layout->setContentsMargins(14, 10, 10, 12);
    layout->setHorizontalSpacing(0);
    layout->setVerticalSpacing(0);
    CellGroup captions = BuildGridCaptions(layout);
    BuildSessionCells(layout);
    BuildStudentRows(layout);
    BuildColumnCommands(layout);
    BuildGridScrollBars(layout);

    // Shares of the width by the length of what each column shows: "Average: 12.34" is the
    // longest text of a row, a date the longest of a session.
    layout->setColumnStretch(0, 24);
    for (int c = 1; c <= kGridColumns; ++c) layout->setColumnStretch(c, 16);
    layout->setColumnStretch(kTotalColumn, 9);
    layout->setColumnStretch(kAverageColumn, 24);
    root->addWidget(gridFrame_, 1);
    GroupCells(std::move(captions));
}

MainWindow::CellGroup MainWindow::BuildGridCaptions(QGridLayout* layout) {
    CellGroup captions{{}, kSmallPoints};
    auto caption = [&](const QString& text, int column, Qt::Alignment alignment) {
        QLabel* label = MakeLabel(gridFrame_, "caption", QString(), alignment);
        label->setText(text);
        Scale(label, kSmallPoints, true);
        layout->addWidget(label, 0, column);
        captions.cells.push_back(label);
    };
    caption("Student", 0, Qt::AlignLeft | Qt::AlignVCenter);
    caption("Total", kTotalColumn, Qt::AlignCenter);
    caption("Average", kAverageColumn, Qt::AlignCenter);
    return captions;
}

void MainWindow::BuildSessionCells(QGridLayout* layout) {
    for (int index = 0; index < kSessionLabels; ++index) {
        const int column = index / kLabelsPerColumn;
        const int row = index % kLabelsPerColumn;
        auto* label = new CommandLabel(gridFrame_);
        label->setObjectName(QString("lblSession%1").arg(index));
        label->setProperty("role", row == 0 ? "heading" : "cell");
        label->setAlignment(Qt::AlignCenter);
        InCell(label);
        Scale(label, row == 0 ? kTextPoints : kCellPoints, row == 0);
        connect(label, &CommandLabel::clicked, this, [this, index] { OnHeading(index); });
        layout->addWidget(label, row, 1 + column);
        lblSession_[index] = label;
    }
}

void MainWindow::BuildStudentRows(QGridLayout* layout) {
    for (int r = 1; r <= kGridRows; ++r) {
        lblStudentName_[r] = new CommandLabel(gridFrame_);
        lblStudentName_[r]->setObjectName(QString("lblStudentName%1").arg(r));
        lblStudentName_[r]->setProperty("role", "name");
        lblStudentName_[r]->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
        InCell(lblStudentName_[r]);
        connect(lblStudentName_[r], &CommandLabel::clicked, this, [this, r] { OnStudent(r); });
        lblTotal_[r] = MakeLabel(gridFrame_, "total", QString("lblTotal%1").arg(r));
        lblAverage_[r] = MakeLabel(gridFrame_, "average", QString("lblAverage%1").arg(r));
        Scale(lblStudentName_[r], kCellPoints, true);
        Scale(lblTotal_[r], kCellPoints, true);
        Scale(lblAverage_[r], kTextPoints);
        layout->addWidget(lblStudentName_[r], r, 0);
        layout->addWidget(lblTotal_[r], r, kTotalColumn);
        layout->addWidget(lblAverage_[r], r, kAverageColumn);
        layout->setRowStretch(r, 1);
    }
}

void MainWindow::BuildColumnCommands(QGridLayout* layout) {
    for (int c = 0; c < kGridColumns; ++c) {
        auto* commands = new QVBoxLayout;
        commands->setContentsMargins(6, 8, 6, 0);
        commands->setSpacing(4);
        cmdEdit_[c] = new QPushButton("Set Scores", gridFrame_);
        cmdEdit_[c]->setObjectName(QString("cmdEdit%1").arg(c));
        chkExport_[c] = new QCheckBox("Export", gridFrame_);
        chkExport_[c]->setObjectName(QString("chkExport%1").arg(c));
        Scale(cmdEdit_[c], kSmallPoints);
        Scale(chkExport_[c], kSmallPoints);
        KeepPlaceWhenHidden(cmdEdit_[c]);
        KeepPlaceWhenHidden(chkExport_[c]);
        connect(cmdEdit_[c], &QPushButton::clicked, this, [this, c] { OnEdit(c); });
        connect(chkExport_[c], &QCheckBox::clicked, this,
                [this, c](bool checked) { Guarded([&] { grid_.ExportChanged(c, checked); }); });
        commands->addWidget(cmdEdit_[c]);
        commands->addWidget(chkExport_[c], 0, Qt::AlignHCenter);
        layout->addLayout(commands, kCommandRow, 1 + c);
    }
}

void MainWindow::BuildGridScrollBars(QGridLayout* layout) {
    hscrlSession_ = new QScrollBar(Qt::Horizontal, gridFrame_);
    hscrlSession_->setObjectName("hscrlSession");
    KeepPlaceWhenHidden(hscrlSession_);
    connect(hscrlSession_, &QScrollBar::valueChanged, this,
            [this](int value) { Guarded([&] { grid_.SessionScrollChanged(value); }); });
    auto* barRow = new QHBoxLayout;
    barRow->setContentsMargins(6, 10, 6, 0);
    barRow->addWidget(hscrlSession_);
    layout->addLayout(barRow, kCommandRow + 1, 1, 1, kGridColumns);

    vscrlStudent_ = new QScrollBar(Qt::Vertical, gridFrame_);
    vscrlStudent_->setObjectName("vscrlStudent");
    KeepPlaceWhenHidden(vscrlStudent_);
    connect(vscrlStudent_, &QScrollBar::valueChanged, this,
            [this](int value) { Guarded([&] { grid_.StudentScrollChanged(value); }); });
    layout->addWidget(vscrlStudent_, 1, kScrollColumn, kGridRows, 1);
}

void MainWindow::GroupCells(CellGroup captions) {
    // Each kind of label keeps one size of type across the grid, the size its widest text allows.
    CellGroup headings{{}, kTextPoints}, cells{{}, kCellPoints}, names{{}, kCellPoints},
        totals{{}, kCellPoints}, averages{{}, kTextPoints};
    for (int index = 0; index < kSessionLabels; ++index)
        (index % kLabelsPerColumn == 0 ? headings : cells).cells.push_back(lblSession_[index]);
    for (int r = 1; r <= kGridRows; ++r) {
        names.cells.push_back(lblStudentName_[r]);
        totals.cells.push_back(lblTotal_[r]);
        averages.cells.push_back(lblAverage_[r]);
    }
    for (CellGroup* group : {&captions, &headings, &cells, &names, &totals, &averages})
        cellGroups_.push_back(*group);
}

void MainWindow::BuildFooter(QVBoxLayout* root) {
    auto* footer = new QHBoxLayout;
    cmdHelp_ = new QPushButton("Help", this);
    cmdHelp_->setObjectName("cmdHelp");
    cmdExit_ = new QPushButton("Exit", this);
    cmdExit_->setObjectName("cmdExit");
    for (QPushButton* button : {cmdHelp_, cmdExit_}) Scale(button, kTextPoints);
    connect(cmdHelp_, &QPushButton::clicked, this, [this] {
        Guarded([&] { grid_.ToggleHelp(); });
        // The keyboard follows: into the help text to scroll it, back to Help when it closes.
        if (grid_.View().HelpOpen())
            helpScroll_->setFocus(Qt::OtherFocusReason);
        else
            cmdHelp_->setFocus(Qt::OtherFocusReason);
    });
    connect(cmdExit_, &QPushButton::clicked, this, [this] { Exit(); });
    lblSessionSummaryReport_ = MakeLink("HTML Reports", "lblSessionSummaryReport");
    lblTermSummaryReport_ = MakeLink("Term Summary Report", "lblTermSummaryReport");
    for (CommandLabel* report : {lblSessionSummaryReport_, lblTermSummaryReport_}) {
        Scale(report, kTextPoints);
        report->SetHoverUnderline(true);
    }
    lblSessionSummaryReport_->setToolTip("Write every HTML report of the course");
    lblTermSummaryReport_->setToolTip("Write the term summary and the student term report again");
    connect(lblSessionSummaryReport_, &CommandLabel::clicked, this,
            [this] { OnSessionSummaryReport(); });
    connect(lblTermSummaryReport_, &CommandLabel::clicked, this, [this] { OnTermSummaryReport(); });
    lblSyncWebRegn_ = MakeLink("Sync Web Registrations", "lblSyncWebRegn");
    Scale(lblSyncWebRegn_, kTextPoints);
    connect(lblSyncWebRegn_, &CommandLabel::clicked, this, [this] { OnSyncWebRegistrations(); });
    CmdWebUpdate_ = new QPushButton("Web Update", this);
    CmdWebUpdate_->setObjectName("CmdWebUpdate");
    Scale(CmdWebUpdate_, kTextPoints);
    connect(CmdWebUpdate_, &QPushButton::clicked, this, [this] { OnWebUpdate(); });
    cmdViewAll_ = new QPushButton("Unregistered Clickers", this);
    cmdViewAll_->setObjectName("CmdViewAll");
    Scale(cmdViewAll_, kTextPoints);
    connect(cmdViewAll_, &QPushButton::clicked, this,
            [this] { Guarded([&] { OpenViewAll(this, course_, host_, grid_); }); });
    // The course's commands stand in a row of their own above Help and Exit, so that every caption
    // stays whole on a 1024 x 768 screen.
    auto* commands = new QHBoxLayout;
    commands->addWidget(cmdViewAll_);
    commands->addWidget(CmdWebUpdate_);
    // Every student by every session in one table, beside the grid's four by six.
    auto* classView = new QPushButton("Whole Class", this);
    classView->setObjectName("cmdClassView");
    classView->setToolTip("All students by all sessions, sortable and searchable");
    Scale(classView, kTextPoints);
    connect(classView, &QPushButton::clicked, this,
            [this] { Guarded([&] { OpenClassView(this, course_, host_, grid_); }); });
    // A command of the window like the clicker lists: off with them while help is up.
    binding_.Bind(static_cast<QWidget*>(classView), grid_.View().cmbDisplayName);
    commands->addWidget(classView);
    // The course at a glance: attendance, averages, the spread of totals, who is at risk.
    auto* overview = new QPushButton("Course Overview", this);
    overview->setObjectName("cmdOverview");
    overview->setToolTip("Charts of attendance and scores, and the students at risk");
    Scale(overview, kTextPoints);
    connect(overview, &QPushButton::clicked, this,
            [this] { Guarded([&] { OpenOverview(this, course_, host_, grid_); }); });
    binding_.Bind(static_cast<QWidget*>(overview), grid_.View().cmbDisplayName);
    commands->addWidget(overview);
    commands->addStretch(1);
    // The grade exports, in the format the course was opened with (lblCMS's tag).
    cmdExportAll_ = new QPushButton("Export All", this);
    cmdExportAll_->setObjectName("CmdExportAll");
    cmdExportSelected_ = new QPushButton("Export Selected", this);
    cmdExportSelected_->setObjectName("CmdExportSelected");
    for (QPushButton* button : {cmdExportAll_, cmdExportSelected_}) {
        Scale(button, kTextPoints);
        commands->addWidget(button);
    }
    connect(cmdExportAll_, &QPushButton::clicked, this,
            [this] { Guarded([&] { ExportAll(course_, host_, grid_.Format().tag); }); });
    connect(cmdExportSelected_, &QPushButton::clicked, this,
            [this] { Guarded([&] { ExportSelected(course_, host_, grid_.Format().tag); }); });
    root->addLayout(commands);

    footer->addWidget(cmdHelp_);
    footer->addStretch(1);
    for (CommandLabel* link : {lblSessionSummaryReport_, lblTermSummaryReport_, lblSyncWebRegn_}) {
        footer->addWidget(link, 0, Qt::AlignVCenter);
        footer->addSpacing(12);
    }
    footer->addStretch(1);
    footer->addWidget(cmdExit_);
    root->addLayout(footer);
}

void MainWindow::BuildHelp() {
    picHelp_ = new QFrame(this);
    picHelp_->setObjectName("PicHelp");
    auto* layout = new QVBoxLayout(picHelp_);
    layout->setContentsMargins(24, 18, 12, 18);
    layout->setSpacing(8);
    auto* title = new QLabel("Tallory Help", picHelp_);
    title->setObjectName("LblHelpTitle");
    helpFonts_.Add(title, kTitlePoints - 3, true);
    layout->addWidget(title);
    // The text keeps the window's type and scrolls within the panel, rather than shrink until it
    // fits and can no longer be read.
    helpScroll_ = new QScrollArea(picHelp_);
    helpScroll_->setObjectName("helpScroll");
    helpScroll_->setFrameShape(QFrame::NoFrame);
    helpScroll_->setWidgetResizable(true);
    helpScroll_->setFocusPolicy(Qt::StrongFocus);
    auto* page = new QWidget(helpScroll_);
    page->setObjectName("helpPage");
    auto* text = new QVBoxLayout(page);
    text->setContentsMargins(0, 0, 12, 0);
    text->setSpacing(6);
    for (const HelpParagraph& paragraph : MainWindowHelp(course_)) {
        if (paragraph.kind == HelpParagraph::Folder) {
            // A path runs as long as it likes; in a box it can be read whole and copied.
            helpFolder_ = new QLineEdit(paragraph.text, page);
            helpFolder_->setObjectName("txtHelpFolder");
            helpFolder_->setReadOnly(true);
            helpFonts_.Add(helpFolder_, kTextPoints);
            text->addWidget(helpFolder_);
            continue;
        }
        const bool heading = paragraph.kind == HelpParagraph::Heading;
        auto* label = new QLabel(paragraph.text, page);
        label->setObjectName(QString("LblHelpCaption%1").arg(lblHelpCaption_.size()));
        label->setWordWrap(true);
        if (heading) text->addSpacing(8);
        helpFonts_.Add(label, heading ? kTextPoints + 1 : kTextPoints, heading);
        text->addWidget(label);
        lblHelpCaption_.push_back(label);
    }
    text->addStretch(1);
    helpScroll_->setWidget(page);
    layout->addWidget(helpScroll_, 1);
    picHelp_->hide();
}

void MainWindow::Load() {
    RememberingHost host(host_, shownAtLoad_, false);
    Guarded([&] { grid_.Start(host, largeFonts_); });
    WatchCourse();
    // The keyboard starts in the grid, where the arrows move the view.
    if (lblSession_[0]->focusPolicy() != Qt::NoFocus && lblSession_[0]->isEnabled())
        lblSession_[0]->setFocus(Qt::OtherFocusReason);
}

void MainWindow::BuildEditMenu(QVBoxLayout* root) {
    auto* bar = new QMenuBar(this);
    bar->setObjectName("mnuBar");
    QMenu* edit = bar->addMenu("&Edit");
    edit->setObjectName("mnuEdit");
    QAction* undo = edit->addAction("&Undo", this, [this] { UndoLastChange(); });
    undo->setObjectName("mnuUndo");
    undo->setShortcut(QKeySequence::Undo);
    undo->setShortcutContext(Qt::WindowShortcut);
    QAction* history = edit->addAction("&History...", this, [this] { OpenHistory(); });
    history->setObjectName("mnuHistory");
    // The caption names the change an Undo takes back, read when the menu opens.
    connect(edit, &QMenu::aboutToShow, this, [this, undo] {
        undo->setText(UndoCaption(course_.AppPath));
        undo->setEnabled(undo->text() != "&Undo");
    });
    // The bar stands in the window's top margin rather than in the layout, so that the grid keeps
    // all its room on the smallest screens.
    (void)root;
    bar->adjustSize();
    bar->move(0, 0);
    bar->raise();
    addAction(undo);
}

void MainWindow::UndoLastChange() {
    Guarded([&] {
        if (UndoNewestChange(course_.AppPath, host_)) grid_.Start(host_, largeFonts_);
    });
}

void MainWindow::OpenHistory() {
    HistoryWindow window(
        course_.AppPath, host_, [this] { Guarded([&] { grid_.Start(host_, largeFonts_); }); },
        this);
    window.exec();
}

void MainWindow::Guarded(const std::function<void()>& command) {
    ++running_;
    RunGuarded(host_, command);
    --running_;
}

// Our own writes (Set Scores, purge, removing a session) happen while their screen is open; the
// watcher waits for it to close, and a log left as our write left it is no news: the screen
// reloaded the grid already.
void MainWindow::WatchCourse() {
    const std::string folder = CoursePath(course_.AppPath, "\\SessionData");
    if (!QDir(QString::fromStdString(folder)).exists()) return;
    watcher_ = new CourseWatcher(
        folder, [this] { return running_ > 0; },
        [this](const std::vector<LogChange>& changes) { ReloadLogs(changes); }, this);
    host_.written = [watcher = QPointer<CourseWatcher>(watcher_)](const std::string& path) {
        if (watcher) watcher->Wrote(path);
    };
}

void MainWindow::ReloadLogs(const std::vector<LogChange>& changes) {
    // A session is named as its column heading names it; a removed log's heading is the one the
    // grid showed before the reload.
    std::map<std::string, std::string> labels;
    auto remember = [&] {
        for (int s = 1; s <= course_.NumSessions && s <= kSessionTableUpper; ++s)
            labels[course_.SessionFile[s]] = Trim(SessionHeading(course_, s));
    };
    remember();
    RememberingHost quiet(host_, shownAtLoad_, true);
    Guarded([&] { grid_.ReloadSessions(quiet); });
    remember();
    lblNotice_->setText(QString::fromStdString(ChangeNotice(changes, [&](const std::string& file) {
        auto found = labels.find(file);
        return found == labels.end() ? std::string() : found->second;
    })));
    noticeTimer_->start(kNoticeMs);
}

void MainWindow::OnHeading(int index) {
    Guarded([&] {
        if (const int session = grid_.HeadingClick(index))
            OpenEditSession(this, course_, host_, grid_, session);
    });
}

void MainWindow::OnEdit(int column) {
    Guarded([&] {
        if (const int session = grid_.EditClick(column))
            OpenSetScores(this, course_, host_, grid_, session, largeFonts_);
    });
}

void MainWindow::OnSessionSummaryReport() {
    Guarded([&] { RunSessionSummaryReport(this, course_, host_); });
}

void MainWindow::OnTermSummaryReport() {
    Guarded([&] { RunTermSummaryReport(course_, host_); });
}

void MainWindow::OnSyncWebRegistrations() {
    Guarded([&] { OpenWebSync(this, course_, host_, grid_, fetcher_); });
}

void MainWindow::OnWebUpdate() {
    WebUpdateDialog dialog(this);
    dialog.exec();
}

void MainWindow::OnStudent(int row) {
    Guarded([&] {
        if (const int student = grid_.StudentClick(row))
            OpenEditStudent(this, course_, host_, grid_, student);
    });
}

void MainWindow::Exit() {
    // Every change is written when it is made: there is nothing to save.
    close();
    QCoreApplication::exit(0);
}

void MainWindow::ApplyScale() {
    // Type follows the window by the smaller of its two ratios to the design, so a narrow window
    // gets type that fits across as well as down, and smaller still while the commands around the
    // grid would not fit; the layouts share out the width and height among the controls.
    const double wanted =
        std::min(1.0 * height() / design_.height(), 1.0 * width() / design_.width());
    FitLayout(this, fonts_, size(), wanted, kSmallestRatio);
    SetDialogTypeRatio(fonts_.Ratio());
    // The cells take their new sizes now, so that their type is fitted to the cells it will have.
    layout()->activate();
    gridFrame_->layout()->activate();
    FitGrid();
}

void MainWindow::FitGrid() {
    const double ratio = fonts_.Ratio();
    for (const CellGroup& group : cellGroups_) FitCells(group.cells, group.points * ratio);
}

void MainWindow::PlaceHelp() {
    picHelp_->setGeometry(gridFrame_->geometry().adjusted(24, 12, -24, -12));
    picHelp_->raise();
    // The help text takes the type of the window, or less where the panel would cut it off.
    FitLayout(picHelp_, helpFonts_, picHelp_->size(), fonts_.Ratio(), kSmallestRatio);
}

void MainWindow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    if (isMinimized()) return;
    ApplyScale();
    PlaceHelp();
}

void MainWindow::wheelEvent(QWheelEvent* event) {
    const int rotation = event->angleDelta().y();
    if (rotation == 0) return QWidget::wheelEvent(event);
    event->accept();
    if (!grid_.View().studentScroll.enabled) return;
    // Three students a notch, as lists elsewhere on the desktop move; a fine-grained wheel or
    // touchpad adds its small turns up until they make a student.
    wheelTurn_ += rotation;
    const int students = wheelTurn_ * kStudentsPerNotch / QWheelEvent::DefaultDeltasPerStep;
    wheelTurn_ -= students * QWheelEvent::DefaultDeltasPerStep / kStudentsPerNotch;
    MoveStudents(-students);
}

void MainWindow::MoveStudents(int step) {
    const ScrollBar& students = grid_.View().studentScroll;
    if (step == 0 || !students.visible || !students.enabled) return;
    const int value = std::clamp(students.value + step, students.minimum, students.maximum);
    if (value != students.value) Guarded([&] { grid_.StudentScrollChanged(value); });
}

void MainWindow::keyPressEvent(QKeyEvent* event) {
    // Keys that the control with the focus leaves alone move the grid's view.
    static constexpr std::pair<int, GridKey> kKeys[] = {
        {Qt::Key_Left, GridKey::Left}, {Qt::Key_Right, GridKey::Right}, {Qt::Key_Up, GridKey::Up},
        {Qt::Key_Down, GridKey::Down}, {Qt::Key_Home, GridKey::Home},   {Qt::Key_End, GridKey::End},
    };
    if ((event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier) {
        // Enter presses the button with the focus, as Space does: a window's buttons have no
        // default one to take it.
        const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
        if (auto* button = qobject_cast<QPushButton*>(QApplication::focusWidget());
            enter && button && isAncestorOf(button) && button->isEnabled()) {
            event->accept();
            button->click();
            return;
        }
        // A Page key moves by the six rows the grid shows, as the bar's own page does.
        if (event->key() == Qt::Key_PageUp || event->key() == Qt::Key_PageDown) {
            event->accept();
            MoveStudents(event->key() == Qt::Key_PageDown ? kGridRows : -kGridRows);
            return;
        }
        for (const auto& [code, key] : kKeys) {
            if (event->key() != code) continue;
            Guarded([&] { grid_.KeyDown(key); });
            event->accept();
            return;
        }
    }
    QWidget::keyPressEvent(event);
}

void MainWindow::SetTabOrder() {
    std::vector<QWidget*> order = {cmbDisplayName_, lblPrevious_, lblNext_};
    for (int c = 0; c < kGridColumns; ++c) order.push_back(lblSession_[c * kLabelsPerColumn]);
    for (int r = 1; r <= kGridRows; ++r) order.push_back(lblStudentName_[r]);
    for (QPushButton* edit : cmdEdit_) order.push_back(edit);
    for (QCheckBox* mark : chkExport_) order.push_back(mark);
    for (QWidget* widget : std::initializer_list<QWidget*>{
             cmdViewAll_, CmdWebUpdate_, cmdExportAll_, cmdExportSelected_, cmdHelp_, helpScroll_,
             helpFolder_, lblSessionSummaryReport_, lblTermSummaryReport_, lblSyncWebRegn_,
             cmdExit_, lblExit_})
        order.push_back(widget);
    for (size_t i = 1; i < order.size(); ++i) setTabOrder(order[i - 1], order[i]);
}

void MainWindow::NameForScreenReaders() {
    cmbDisplayName_->setAccessibleName("Show names by");
    showBy_->setBuddy(cmbDisplayName_);
    hscrlSession_->setAccessibleName("Sessions");
    vscrlStudent_->setAccessibleName("Students");
    picHelp_->setAccessibleName("Tallory Help");
    helpScroll_->setAccessibleName("Help text");
    helpScroll_->verticalScrollBar()->setAccessibleName("Scroll the help text");
    helpScroll_->horizontalScrollBar()->setAccessibleName("Scroll the help text sideways");
    helpFolder_->setAccessibleName("Course folder");
    lblCMS_->setAccessibleDescription(lblCMS_->toolTip());
    lblPrevious_->setAccessibleName("Previous session");
    lblNext_->setAccessibleName("Next session");
    lblExit_->setAccessibleName("Exit");
}

void MainWindow::NameCells() {
    // A screen reader hears a cell as whose score, of which session, it is: the grid's rows and
    // columns are labels laid out by hand, not a table it could ask.
    const GridView& view = grid_.View();
    auto shown = [](const ControlState& state) { return DisplayString(Trim(state.text)); };
    for (int c = 0; c < kGridColumns; ++c) {
        const QString session = shown(view.lblSession[c * kLabelsPerColumn]);
        lblSession_[c * kLabelsPerColumn]->setAccessibleName(
            session.isEmpty() ? QString() : "Session " + session);
        cmdEdit_[c]->setAccessibleName("Set Scores, " + session);
        chkExport_[c]->setAccessibleName("Export " + session);
        for (int r = 1; r <= kGridRows; ++r) {
            const QString student = shown(view.lblStudentName[r]);
            const QString score = shown(view.lblSession[c * kLabelsPerColumn + r]);
            QString name;
            if (!student.isEmpty() && !session.isEmpty() && !score.isEmpty())
                name = student + ", " + session + ", " +
                       (grid_.HoverOf(c * kLabelsPerColumn + r).tip.empty() ? "score " + score
                                                                            : QString("absent"));
            lblSession_[c * kLabelsPerColumn + r]->setAccessibleName(name);
        }
    }
    for (int r = 1; r <= kGridRows; ++r) {
        const QString student = shown(view.lblStudentName[r]);
        lblStudentName_[r]->setAccessibleName(student.isEmpty() ? QString() : "Student " + student);
        lblTotal_[r]->setAccessibleName(
            student.isEmpty() ? QString() : student + ", total " + shown(view.lblTotal[r]));
        lblAverage_[r]->setAccessibleName(
            student.isEmpty() ? QString() : student + ", " + shown(view.lblAverage[r]));
    }
}

void MainWindow::PaintKeyboardCommands() {
    const GridView& view = grid_.View();
    for (int r = 1; r <= kGridRows; ++r)
        lblStudentName_[r]->SetKeyboardCommand(!TrimView(view.lblStudentName[r].text).empty());
    for (int index = 0; index < kSessionLabels; ++index)
        lblSession_[index]->SetKeyboardCommand(index % kLabelsPerColumn == 0 &&
                                               grid_.HoverOf(index).underline);
}

void MainWindow::BindControls() {
    const GridView& view = grid_.View();
    binding_.Bind(lblSubject_, view.lblSubject);
    binding_.Bind(lblCMS_, view.lblCMS);
    // The command labels keep their own captions: the states hold only whether they show and act.
    for (auto [link, state] :
         {std::pair{lblExit_, &view.lblExit}, std::pair{lblNext_, &view.lblNext},
          std::pair{lblPrevious_, &view.lblPrevious}})
        binding_.Bind(static_cast<QWidget*>(link), *state);
    binding_.Bind(cmbDisplayName_, view.cmbDisplayName);
    // The clicker lists are a command of the window like the choice of name order.
    binding_.Bind(static_cast<QWidget*>(cmdViewAll_), view.cmbDisplayName);
    binding_.Bind(cmdHelp_, view.cmdHelp, true);
    binding_.Bind(cmdExit_, view.CmdExit);
    binding_.Bind(picHelp_, view.PicHelp);
    binding_.Bind(hscrlSession_, view.sessionScroll);
    // The students' bar pages by the rows the grid shows.
    binding_.Bind(vscrlStudent_, view.studentScroll, kGridRows);
    // The help's paragraphs keep their own text: the state holds whether they show and act.
    for (QLabel* caption : lblHelpCaption_)
        binding_.Bind(static_cast<QWidget*>(caption), view.LblHelpCaption);
    // The window's commands that the grid keeps no state of go with the name order: off while
    // the help panel is open, like every control but the help and the ways out.
    for (QWidget* command : std::initializer_list<QWidget*>{
             cmdExportAll_, cmdExportSelected_, CmdWebUpdate_, lblSessionSummaryReport_,
             lblTermSummaryReport_, lblSyncWebRegn_, showBy_})
        binding_.Bind(command, view.cmbDisplayName);
    for (int index = 0; index < kSessionLabels; ++index)
        binding_.Bind(lblSession_[index], view.lblSession[index]);
    for (int r = 1; r <= kGridRows; ++r) {
        binding_.Bind(lblStudentName_[r], view.lblStudentName[r]);
        binding_.Bind(lblTotal_[r], view.lblTotal[r]);
        binding_.Bind(lblAverage_[r], view.lblAverage[r]);
    }
    for (int c = 0; c < kGridColumns; ++c) {
        binding_.Bind(cmdEdit_[c], view.cmdEdit[c]);
        binding_.Bind(chkExport_[c], view.chkExport[c]);
    }
}

void MainWindow::Repaint() {
    const GridView& view = grid_.View();
    setWindowTitle(view.caption.empty() ? QString("Tallory") : DisplayString(view.caption));
    binding_.Paint();
    // What a ControlState does not hold: the colour of a name and the pointer over it, the
    // pointer over a heading or an absence, and the ranges of the scroll bars.
    for (int r = 1; r <= kGridRows; ++r) {
        // A name opens the student's clickers.
        const bool named = !TrimView(view.lblStudentName[r].text).empty();
        lblStudentName_[r]->SetHoverUnderline(named);
        lblStudentName_[r]->setCursor(named ? Qt::PointingHandCursor : Qt::ArrowCursor);
        SetProperty(lblStudentName_[r], "colour",
                    view.nameColour[r] == NameColour::Red ? "red" : "blue");
    }
    for (int index = 0; index < kSessionLabels; ++index) {
        CommandLabel* label = lblSession_[index];
        const Hover hover = grid_.HoverOf(index);
        label->SetHoverUnderline(hover.underline);
        label->setCursor(hover.handCursor ? Qt::PointingHandCursor : Qt::ArrowCursor);
        label->setToolTip(QString::fromStdString(hover.tip));
        if (index % kLabelsPerColumn != 0)
            SetProperty(label, "absent", !hover.tip.empty() ? "true" : "false");
    }
    PaintKeyboardCommands();
    // Under the help only its ways out are usable: the Edit menu waits too.
    if (auto* bar = findChild<QMenuBar*>("mnuBar")) bar->setEnabled(!view.HelpOpen());
    NameCells();
    // New texts may be wider than the old ones.
    FitGrid();
    if (view.HelpOpen()) {
        // The folder the course was opened from, which the start may have chosen after the
        // window was built.
        helpFolder_->setText(QDir::toNativeSeparators(DisplayString(course_.AppPath)));
        PlaceHelp();
    }
}

}  // namespace tallory
