#include "ui/MainWindow.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QResizeEvent>
#include <QScreen>
#include <QScrollBar>
#include <QShortcut>
#include <QStyle>
#include <QVBoxLayout>
#include <QWheelEvent>
#include <algorithm>

#include "common/Text.h"
#include "export/Export.h"
#include "ui/ClassViewWindow.h"
#include "ui/CommandLabel.h"
#include "ui/HousekeepingDialogs.h"
#include "ui/QtHost.h"
#include "ui/ReportSummaryDialog.h"
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
)";

// Font sizes in points at the window's design height. Points grow with the screen's pixels per
// inch, so a large-font screen shows larger type in both layouts.
constexpr double kTitlePoints = 17;
constexpr double kTextPoints = 10.5;
constexpr double kCellPoints = 12;
constexpr double kSmallPoints = 9.5;

struct Layout {
    QSize design;
    QSize minimum;
    QMargins margins;
};

// The ordinary layout, and the large-font one: the same controls in less room, so that the larger
// type still fits a 1024 x 768 screen.
constexpr Layout kSubjectLayout{{1000, 700}, {760, 540}, {20, 16, 20, 16}};
constexpr Layout kLargeFontLayout{{816, 600}, {640, 480}, {12, 8, 12, 8}};

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

QLabel* MakeLabel(QWidget* parent, const char* role, const QString& name,
                  Qt::Alignment alignment = Qt::AlignCenter) {
    auto* label = new QLabel(parent);
    label->setObjectName(name);
    label->setProperty("role", role);
    label->setAlignment(alignment);
    label->setMinimumWidth(10);
    return label;
}

}  // namespace

MainWindow::MainWindow(Course& course, QtHost& host, bool largeFonts, QWidget* parent)
    : QWidget(parent),
      course_(course),
      host_(host),
      grid_(course),
      largeFonts_(largeFonts),
      designHeight_(largeFonts ? kLargeFontLayout.design.height()
                               : kSubjectLayout.design.height()) {
    const Layout& layout = largeFonts ? kLargeFontLayout : kSubjectLayout;
    setObjectName(largeFonts ? "FrmS_120DPI" : "frmSubject");
    setWindowTitle("Tallory");
    setAttribute(Qt::WA_StyledBackground);
    setStyleSheet(kStyle);
    setMinimumSize(layout.minimum);

    auto* root = new QVBoxLayout(this);
    root->setContentsMargins(layout.margins);
    root->setSpacing(10);
    BuildHeader(root);
    BuildGrid(root);
    BuildFooter(root);
    BuildHelp();

    // CmdExitApp: the keyboard's way out, beside the Exit button and link.
    auto* exitApp = new QShortcut(QKeySequence::Quit, this);
    exitApp->setObjectName("CmdExitApp");
    connect(exitApp, &QShortcut::activated, this, [this] { Exit(); });

    BindControls();
    grid_.onChanged = [this] { Repaint(); };

    resize(layout.design);
    ApplyScale();
    Repaint();
}

void MainWindow::ShowOnScreen() {
    // On a screen of 1024 x 768 or less the window takes all of it; a larger one leaves room.
    const QScreen* shown = screen();
    const QRect available = shown ? shown->availableGeometry() : QRect(0, 0, 1024, 768);
    if (available.width() <= 1024 || available.height() <= 768) {
        setGeometry(available);
        showMaximized();
    } else {
        show();
    }
}

void MainWindow::Scale(QWidget* widget, double pointSize, bool bold) {
    QFont font = widget->font();
    font.setBold(bold);
    font.setPointSizeF(pointSize);
    widget->setFont(font);
    fonts_.push_back({widget, pointSize});
}

CommandLabel* MainWindow::MakeLink(const QString& text, const char* name) {
    auto* link = new CommandLabel(this);
    link->setObjectName(name);
    link->setText(text);
    link->setProperty("role", "link");
    link->setCursor(Qt::PointingHandCursor);
    link->SetHoverUnderline(true);
    return link;
}

void MainWindow::BuildHeader(QVBoxLayout* root) {
    auto* header = new QHBoxLayout;
    header->setSpacing(12);
    lblSubject_ = new QLabel(this);
    lblSubject_->setObjectName("lblSubject");
    Scale(lblSubject_, kTitlePoints, true);
    lblCMS_ = new QLabel(this);
    lblCMS_->setObjectName("lblCMS");
    lblCMS_->setToolTip("The grade-book format of this course");
    Scale(lblCMS_, kSmallPoints);
    lblExit_ = MakeLink("Exit", "lblExit");
    Scale(lblExit_, kTextPoints);
    connect(lblExit_, &CommandLabel::clicked, this, [this] { Exit(); });
    header->addWidget(lblSubject_, 1);
    header->addWidget(lblCMS_, 0, Qt::AlignVCenter);
    header->addWidget(lblExit_, 0, Qt::AlignVCenter);
    root->addLayout(header);

    auto* tools = new QHBoxLayout;
    tools->setSpacing(8);
    auto* showBy = new QLabel("Show names by", this);
    Scale(showBy, kTextPoints);
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
    tools->addWidget(showBy);
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

    // Columns: name, four sessions, total, average, the student scroll bar.
    const int totalColumn = 1 + kGridColumns;
    const int averageColumn = totalColumn + 1;
    const int scrollColumn = averageColumn + 1;
    auto caption = [&](const QString& text, int column, Qt::Alignment alignment) {
        QLabel* label = MakeLabel(gridFrame_, "caption", QString(), alignment);
        label->setText(text);
        Scale(label, kSmallPoints, true);
        layout->addWidget(label, 0, column);
    };
    caption("Student", 0, Qt::AlignLeft | Qt::AlignVCenter);
    caption("Total", totalColumn, Qt::AlignCenter);
    caption("Average", averageColumn, Qt::AlignCenter);

    for (int index = 0; index < kSessionLabels; ++index) {
        const int column = index / kLabelsPerColumn;
        const int row = index % kLabelsPerColumn;
        auto* label = new CommandLabel(gridFrame_);
        label->setObjectName(QString("lblSession%1").arg(index));
        label->setProperty("role", row == 0 ? "heading" : "cell");
        label->setAlignment(Qt::AlignCenter);
        label->setMinimumWidth(10);
        Scale(label, row == 0 ? kTextPoints : kCellPoints, row == 0);
        connect(label, &CommandLabel::clicked, this, [this, index] { OnHeading(index); });
        layout->addWidget(label, row, 1 + column);
        lblSession_[index] = label;
    }
    for (int r = 1; r <= kGridRows; ++r) {
        lblStudentName_[r] = new CommandLabel(gridFrame_);
        lblStudentName_[r]->setObjectName(QString("lblStudentName%1").arg(r));
        lblStudentName_[r]->setProperty("role", "name");
        lblStudentName_[r]->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
        lblStudentName_[r]->setMinimumWidth(10);
        connect(lblStudentName_[r], &CommandLabel::clicked, this, [this, r] { OnStudent(r); });
        lblTotal_[r] = MakeLabel(gridFrame_, "total", QString("lblTotal%1").arg(r));
        lblAverage_[r] = MakeLabel(gridFrame_, "average", QString("lblAverage%1").arg(r));
        Scale(lblStudentName_[r], kCellPoints, true);
        Scale(lblTotal_[r], kCellPoints, true);
        Scale(lblAverage_[r], kTextPoints);
        layout->addWidget(lblStudentName_[r], r, 0);
        layout->addWidget(lblTotal_[r], r, totalColumn);
        layout->addWidget(lblAverage_[r], r, averageColumn);
        layout->setRowStretch(r, 1);
    }

    const int commandRow = kLabelsPerColumn;
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
        layout->addLayout(commands, commandRow, 1 + c);
    }

    hscrlSession_ = new QScrollBar(Qt::Horizontal, gridFrame_);
    hscrlSession_->setObjectName("hscrlSession");
    KeepPlaceWhenHidden(hscrlSession_);
    connect(hscrlSession_, &QScrollBar::valueChanged, this,
            [this](int value) { Guarded([&] { grid_.SessionScrollChanged(value); }); });
    auto* barRow = new QHBoxLayout;
    barRow->setContentsMargins(6, 10, 6, 0);
    barRow->addWidget(hscrlSession_);
    layout->addLayout(barRow, commandRow + 1, 1, 1, kGridColumns);

    vscrlStudent_ = new QScrollBar(Qt::Vertical, gridFrame_);
    vscrlStudent_->setObjectName("vscrlStudent");
    KeepPlaceWhenHidden(vscrlStudent_);
    connect(vscrlStudent_, &QScrollBar::valueChanged, this,
            [this](int value) { Guarded([&] { grid_.StudentScrollChanged(value); }); });
    layout->addWidget(vscrlStudent_, 1, scrollColumn, kGridRows, 1);

    layout->setColumnStretch(0, 26);
    for (int c = 1; c <= kGridColumns; ++c) layout->setColumnStretch(c, 17);
    layout->setColumnStretch(totalColumn, 10);
    layout->setColumnStretch(averageColumn, 19);
    root->addWidget(gridFrame_, 1);
}

void MainWindow::BuildFooter(QVBoxLayout* root) {
    auto* footer = new QHBoxLayout;
    cmdHelp_ = new QPushButton("Help", this);
    cmdHelp_->setObjectName("cmdHelp");
    cmdExit_ = new QPushButton("Exit", this);
    cmdExit_->setObjectName("cmdExit");
    for (QPushButton* button : {cmdHelp_, cmdExit_}) {
        Scale(button, kTextPoints);
        button->setMinimumWidth(110);
    }
    connect(cmdHelp_, &QPushButton::clicked, this,
            [this] { Guarded([&] { grid_.ToggleHelp(); }); });
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
    commands->addStretch(1);
    // The grade exports, in the format the course was opened with (lblCMS's tag).
    cmdExportAll_ = new QPushButton("Export All", this);
    cmdExportAll_->setObjectName("CmdExportAll");
    cmdExportSelected_ = new QPushButton("Export Selected", this);
    cmdExportSelected_->setObjectName("CmdExportSelected");
    for (QPushButton* button : {cmdExportAll_, cmdExportSelected_}) {
        Scale(button, kTextPoints);
        button->setMinimumWidth(130);
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
    layout->setContentsMargins(24, 18, 24, 18);
    layout->setSpacing(8);
    auto* title = new QLabel("Tallory Help", picHelp_);
    title->setObjectName("LblHelpTitle");
    Scale(title, kTitlePoints - 3, true);
    layout->addWidget(title);
    for (const char* text : HelpCaptions()) {
        auto* label = new QLabel(QString::fromUtf8(text), picHelp_);
        label->setObjectName(QString("LblHelpCaption%1").arg(lblHelpCaption_.size()));
        label->setWordWrap(true);
        Scale(label, kTextPoints);
        layout->addWidget(label);
        lblHelpCaption_.push_back(label);
    }
    layout->addStretch(1);
    picHelp_->hide();
}

void MainWindow::Load() {
    Guarded([&] { grid_.Start(host_, largeFonts_); });
}

void MainWindow::Guarded(const std::function<void()>& command) {
    RunGuarded(host_, command);
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
    // Fonts follow the height; the layouts share out the width and height among the controls.
    const double ratio = std::max(0.8, height() / designHeight_);
    for (const ScaledFont& scaled : fonts_) {
        QFont font = scaled.widget->font();
        font.setPointSizeF(scaled.pointSize * ratio);
        scaled.widget->setFont(font);
    }
}

void MainWindow::PlaceHelp() {
    picHelp_->setGeometry(gridFrame_->geometry().adjusted(24, 12, -24, -12));
    picHelp_->raise();
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
    if (!grid_.View().studentScroll.enabled) return;
    Guarded([&] { grid_.MouseWheel(rotation); });
    event->accept();
}

void MainWindow::BindControls() {
    const GridView& view = grid_.View();
    binding_.Bind(lblSubject_, view.lblSubject);
    binding_.Bind(lblCMS_, view.lblCMS);
    binding_.Bind(lblExit_, view.lblExit);
    binding_.Bind(lblNext_, view.lblNext);
    binding_.Bind(lblPrevious_, view.lblPrevious);
    binding_.Bind(cmbDisplayName_, view.cmbDisplayName);
    // The clicker lists are a command of the window like the choice of name order.
    binding_.Bind(static_cast<QWidget*>(cmdViewAll_), view.cmbDisplayName);
    binding_.Bind(cmdHelp_, view.cmdHelp, true);
    binding_.Bind(cmdExit_, view.CmdExit);
    binding_.Bind(picHelp_, view.PicHelp);
    for (QLabel* caption : lblHelpCaption_) binding_.Bind(caption, view.LblHelpCaption);
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
    for (auto [bar, state] : {std::pair{hscrlSession_, &view.sessionScroll},
                              std::pair{vscrlStudent_, &view.studentScroll}}) {
        const QSignalBlocker block(bar);
        bar->setRange(state->minimum, state->maximum);
        bar->setSingleStep(state->smallChange);
        bar->setPageStep(state->largeChange);
        bar->setValue(state->value);
        bar->setVisible(state->visible);
        bar->setEnabled(state->enabled);
    }
    if (view.HelpOpen()) PlaceHelp();
}

}  // namespace tallory
