#include "ui/OverviewWindow.h"

#include <QApplication>
#include <QBarCategoryAxis>
#include <QBarSeries>
#include <QBarSet>
#include <QChart>
#include <QChartView>
#include <QComboBox>
#include <QCursor>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QHorizontalBarSeries>
#include <QLabel>
#include <QLegend>
#include <QLineSeries>
#include <QPushButton>
#include <QScreen>
#include <QTableWidget>
#include <QToolTip>
#include <QVBoxLayout>
#include <QValueAxis>
#include <algorithm>
#include <cmath>

#include "common/Numbers.h"
#include "common/Text.h"
#include "grid/ScoreGrid.h"
#include "overview/OverviewPage.h"
#include "ui/HousekeepingDialogs.h"
#include "ui/QtHost.h"

namespace tallory {

namespace {

// A dark bar and a light dashed line with open marks: apart in colour and in grey alike.
const QColor kBarColour(0x1f, 0x4e, 0x79);
const QColor kLineColour(0xd9, 0x7a, 0x1e);

// Session labels stand under the columns while each has this much room; else sessions go by
// number, as the session choice lists them.
constexpr int kLabelWidth = 80;
// The chart's width that is not the plot's: its margins and the axis on the left.
constexpr int kChartFrame = 80;
constexpr int kQuestionCaption = 28;

QString Fixed(double value, int places) {
    return QString::fromStdString(FormatFixed(value, places));
}

QChartView* MakeChartView(QWidget* parent, const char* name) {
    auto* view = new QChartView(parent);
    view->setObjectName(name);
    view->setRenderHint(QPainter::Antialiasing);
    view->setMinimumSize(300, 220);
    view->setFocusPolicy(Qt::NoFocus);
    return view;
}

// A new chart for `view`, the old one (and its series and axes) gone with it.
QChart* NewChart(QChartView* view, const QString& title) {
    auto* chart = new QChart;
    chart->setTitle(title);
    QFont font = chart->titleFont();
    font.setBold(true);
    font.setPointSizeF(QApplication::font().pointSizeF() + 1);
    chart->setTitleFont(font);
    chart->setAnimationOptions(QChart::NoAnimation);
    chart->setMargins(QMargins(4, 4, 4, 4));
    chart->legend()->setAlignment(Qt::AlignBottom);
    QChart* old = view->chart();
    view->setChart(chart);
    delete old;
    view->setAccessibleName(title);
    return chart;
}

QValueAxis* PercentAxis() {
    auto* axis = new QValueAxis;
    axis->setRange(0, 100);
    axis->setTickCount(5);
    axis->setLabelFormat("%d%%");
    return axis;
}

// Tips over the bars of a set: `tip` gives the text of bar i.
template <class Tip>
void TipBars(QBarSet* set, Tip tip) {
    QObject::connect(set, &QBarSet::hovered, set, [tip](bool status, int index) {
        if (status)
            QToolTip::showText(QCursor::pos(), tip(index));
        else
            QToolTip::hideText();
    });
}

std::optional<double> ShareCorrect(const QuestionFigures& q) {
    if (!q.correct || q.answered == 0) return std::nullopt;
    return static_cast<double>(*q.correct) / q.answered;
}

}  // namespace

OverviewWindow::OverviewWindow(Course& course, Host& host, ScoreGrid& grid, QWidget* parent)
    : QDialog(parent),
      course_(course),
      host_(host),
      grid_(grid),
      facts_(new QLabel(this)),
      sessions_(MakeChartView(this, "chartSessions")),
      totals_(MakeChartView(this, "chartTotals")),
      questions_(MakeChartView(this, "chartQuestions")),
      session_(new QComboBox(this)),
      atRisk_(new QTableWidget(this)),
      openStudent_(new QPushButton("&Open Student", this)) {
    setObjectName("frmOverview");
    setWindowTitle("Course Overview");
    auto* root = new QVBoxLayout(this);
    facts_->setObjectName("lblFacts");
    facts_->setWordWrap(true);
    root->addWidget(facts_);

    auto* body = new QHBoxLayout;
    auto* charts = new QGridLayout;
    charts->addWidget(sessions_, 0, 0);
    charts->addWidget(totals_, 0, 1);
    auto* choice = new QHBoxLayout;
    auto* choiceCaption = new QLabel("&Questions of session:", this);
    choiceCaption->setBuddy(session_);
    session_->setObjectName("cboSession");
    session_->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    choice->addWidget(choiceCaption);
    choice->addWidget(session_);
    choice->addStretch(1);
    charts->addLayout(choice, 1, 0, 1, 2);
    charts->addWidget(questions_, 2, 0, 1, 2);
    charts->setRowStretch(0, 1);
    charts->setRowStretch(2, 1);
    body->addLayout(charts, 1);

    auto* side = new QVBoxLayout;
    auto* riskCaption = new QLabel("Students at &risk", this);
    QFont bold = riskCaption->font();
    bold.setBold(true);
    riskCaption->setFont(bold);
    riskCaption->setBuddy(atRisk_);
    auto* riskNote = new QLabel(
        "Present in fewer than 60% of the sessions, or absent from each of the last three.", this);
    riskNote->setWordWrap(true);
    atRisk_->setObjectName("tblAtRisk");
    atRisk_->setColumnCount(3);
    atRisk_->setHorizontalHeaderLabels({"Student", "Attended", "Total"});
    atRisk_->verticalHeader()->hide();
    atRisk_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    atRisk_->setSelectionBehavior(QAbstractItemView::SelectRows);
    atRisk_->setSelectionMode(QAbstractItemView::SingleSelection);
    atRisk_->setAlternatingRowColors(true);
    atRisk_->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
    atRisk_->horizontalHeader()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    atRisk_->horizontalHeader()->setSectionResizeMode(2, QHeaderView::ResizeToContents);
    atRisk_->setMinimumWidth(270);
    openStudent_->setObjectName("cmdOpenStudent");
    openStudent_->setToolTip("The clickers of the chosen student");
    openStudent_->setAutoDefault(false);
    side->addWidget(riskCaption);
    side->addWidget(riskNote);
    side->addWidget(atRisk_, 1);
    side->addWidget(openStudent_);
    body->addLayout(side, 0);
    root->addLayout(body, 1);

    auto* bottom = new QHBoxLayout;
    auto* page = new QPushButton("Write &Page", this);
    page->setObjectName("cmdWritePage");
    page->setToolTip("Write this overview as the page Reports/Overview.html and open it");
    page->setAutoDefault(false);
    bottom->addWidget(page);
    auto* close = new QPushButton("Close", this);
    close->setObjectName("cmdClose");
    close->setAutoDefault(false);
    bottom->addStretch(1);
    bottom->addWidget(close);
    root->addLayout(bottom);

    connect(session_, &QComboBox::currentIndexChanged, this,
            [this](int index) { ShowSession(index + 1); });
    connect(atRisk_, &QAbstractItemView::activated, this,
            [this](const QModelIndex& index) { OpenStudent(index.row()); });
    connect(openStudent_, &QPushButton::clicked, this,
            [this] { OpenStudent(atRisk_->currentRow()); });
    connect(atRisk_, &QTableWidget::itemSelectionChanged, this,
            [this] { openStudent_->setEnabled(!atRisk_->selectedItems().isEmpty()); });
    connect(page, &QPushButton::clicked, this, [this] { Guarded([&] { WritePage(); }); });
    connect(close, &QPushButton::clicked, this, &QDialog::accept);
    setTabOrder(session_, atRisk_);
    setTabOrder(atRisk_, openStudent_);
    setTabOrder(openStudent_, page);
    setTabOrder(page, close);

    Refresh();

    const QScreen* shown = parent ? parent->screen() : QApplication::primaryScreen();
    const QRect available = shown ? shown->availableGeometry() : QRect(0, 0, 1024, 768);
    resize(available.width() - 40, available.height() - 60);
    move(available.center() - rect().center());
    (atRisk_->rowCount() > 0 ? static_cast<QWidget*>(atRisk_) : session_)->setFocus();
}

void OverviewWindow::Guarded(const std::function<void()>& command) {
    RunGuarded(host_, command);
}

void OverviewWindow::Refresh() {
    overview_ = MakeCourseOverview(course_);
    int students = 0;
    for (int count : overview_.bins) students += count;
    double attendance = 0;
    for (const SessionFigures& s : overview_.sessions) attendance += s.attendance;
    if (!overview_.sessions.empty()) attendance /= overview_.sessions.size();
    facts_->setText(QString("<b>%1 sessions</b> &middot; <b>%2 students</b> &middot; mean "
                            "attendance <b>%3%</b> &middot; <b>%4</b> points available "
                            "&middot; <b>%5</b> at risk")
                        .arg(overview_.sessions.size())
                        .arg(students)
                        .arg(Fixed(attendance * 100, 0))
                        .arg(Fixed(overview_.available, 2))
                        .arg(overview_.atRisk.size()));
    FillCharts();
    FillAtRisk();
}

void OverviewWindow::FillCharts() {
    const int n = static_cast<int>(overview_.sessions.size());
    {
        QChart* chart = NewChart(sessions_, "Attendance and average by session");
        auto* attendance = new QBarSet("Attendance");
        attendance->setColor(kBarColour);
        attendance->setBorderColor(kBarColour);
        auto* bars = new QBarSeries;
        bars->append(attendance);
        auto* average = new QLineSeries;
        average->setName("Average (% of points)");
        QPen pen(kLineColour);
        pen.setWidthF(2.5);
        pen.setStyle(Qt::DashLine);
        average->setPen(pen);
        average->setPointsVisible(true);
        average->setMarkerSize(6);
        for (int i = 0; i < n; ++i) {
            const SessionFigures& s = overview_.sessions[i];
            attendance->append(s.attendance * 100);
            if (s.average && s.available > 0) average->append(i, *s.average / s.available * 100);
        }
        TipBars(attendance, [this](int i) {
            const SessionFigures& s = overview_.sessions.at(i);
            return QString("%1: %2 of %3 present (%4%), average %5 of %6")
                .arg(DisplayString(s.label))
                .arg(s.present)
                .arg(s.students)
                .arg(Fixed(s.attendance * 100, 0))
                .arg(s.average ? Fixed(*s.average, 2) : QString("-"))
                .arg(Fixed(s.available, 2));
        });
        chart->addSeries(bars);
        chart->addSeries(average);
        auto* x = new QBarCategoryAxis;
        sessionAxis_ = x;
        LabelSessions();
        chart->addAxis(x, Qt::AlignBottom);
        QValueAxis* y = PercentAxis();
        chart->addAxis(y, Qt::AlignLeft);
        for (QAbstractSeries* series :
             {static_cast<QAbstractSeries*>(bars), static_cast<QAbstractSeries*>(average)}) {
            series->attachAxis(x);
            series->attachAxis(y);
        }
    }
    {
        QChart* chart = NewChart(totals_, "Spread of term totals");
        chart->legend()->hide();
        auto* students = new QBarSet("Students");
        students->setColor(kBarColour);
        students->setBorderColor(kBarColour);
        int highest = 1;
        QStringList categories;
        for (int k = 0; k < kTotalBins; ++k) {
            students->append(overview_.bins[k]);
            highest = std::max(highest, overview_.bins[k]);
            categories << QString::number(k * 10);
        }
        auto* bars = new QBarSeries;
        bars->append(students);
        bars->setLabelsVisible(true);
        bars->setLabelsPosition(QAbstractBarSeries::LabelsOutsideEnd);
        students->setLabelColor(Qt::black);
        chart->addSeries(bars);
        auto* x = new QBarCategoryAxis;
        x->append(categories);
        x->setTitleText("Term total, from % of the " + Fixed(overview_.available, 2) + " points");
        chart->addAxis(x, Qt::AlignBottom);
        // Whole students on the scale, with room above the highest bar for its count.
        auto* y = new QValueAxis;
        const int step = (highest + 4) / 5;
        const int top = (highest * 6 / 5 / step + 1) * step;
        y->setRange(0, top);
        y->setTickCount(top / step + 1);
        y->setLabelFormat("%d");
        y->setTitleText("Students");
        chart->addAxis(y, Qt::AlignLeft);
        bars->attachAxis(x);
        bars->attachAxis(y);
    }
    const int chosen = session_->currentIndex();
    {
        const QSignalBlocker quiet(session_);
        session_->clear();
        for (const SessionFigures& s : overview_.sessions)
            session_->addItem(QString("%1. %2").arg(s.session).arg(DisplayString(s.label)));
    }
    const int shown = chosen >= 0 && chosen < n ? chosen : n - 1;
    session_->setEnabled(n > 0);
    if (shown >= 0) {
        const QSignalBlocker quiet(session_);
        session_->setCurrentIndex(shown);
    }
    ShowSession(shown + 1);
}

void OverviewWindow::LabelSessions() {
    if (!sessionAxis_) return;
    const int n = static_cast<int>(overview_.sessions.size());
    const bool named = n > 0 && (sessions_->width() - kChartFrame) / n >= kLabelWidth;
    QStringList categories;
    for (const SessionFigures& s : overview_.sessions)
        categories << (named ? DisplayString(Left(Trim(s.label), 12)) : QString::number(s.session));
    if (categories == sessionAxis_->categories()) return;
    sessionAxis_->clear();
    sessionAxis_->append(categories);
    sessionAxis_->setTitleText(named ? QString() : QString("Session"));
}

void OverviewWindow::resizeEvent(QResizeEvent* event) {
    QDialog::resizeEvent(event);
    LabelSessions();
}

void OverviewWindow::ShowSession(int session) {
    QString label = session >= 1 && session <= static_cast<int>(overview_.sessions.size())
                        ? DisplayString(overview_.sessions[session - 1].label)
                        : QString();
    std::vector<const QuestionFigures*> scored;
    int unscored = 0;
    for (const QuestionFigures& q : overview_.questions) {
        if (q.session != session) continue;
        if (ShareCorrect(q))
            scored.push_back(&q);
        else
            ++unscored;
    }
    // Hardest first, at the top; the axis lists categories from the bottom up.
    std::stable_sort(scored.begin(), scored.end(), [](const auto* a, const auto* b) {
        return *ShareCorrect(*a) > *ShareCorrect(*b);
    });
    QString title = label.isEmpty() ? QString("Share correct per question")
                                    : "Share correct per question, hardest first: " + label;
    if (unscored > 0)
        title += QString(" (%1 not shown: no correct answer set, or no answers)").arg(unscored);
    QChart* chart = NewChart(questions_, title);
    chart->legend()->hide();
    auto* correct = new QBarSet("Correct");
    correct->setColor(kBarColour);
    correct->setBorderColor(kBarColour);
    QStringList categories;
    for (const QuestionFigures* q : scored) {
        correct->append(std::round(*ShareCorrect(*q) * 100));
        QString name = DisplayString(q->question);
        if (name.size() > kQuestionCaption) name = name.left(kQuestionCaption - 1) + "\u2026";
        categories << QString("Q%1 %2").arg(q->number).arg(name);
    }
    TipBars(correct, [scored](int i) {
        const QuestionFigures& q = *scored.at(i);
        return QString("Q%1 %2: %3 of %4 correct")
            .arg(q.number)
            .arg(DisplayString(q.question))
            .arg(*q.correct)
            .arg(q.answered);
    });
    auto* bars = new QHorizontalBarSeries;
    bars->append(correct);
    bars->setLabelsVisible(true);
    bars->setLabelsFormat("@value%");
    bars->setLabelsPosition(QAbstractBarSeries::LabelsInsideEnd);
    chart->addSeries(bars);
    auto* y = new QBarCategoryAxis;
    y->append(categories);
    chart->addAxis(y, Qt::AlignLeft);
    QValueAxis* x = PercentAxis();
    x->setTitleText("Chose the correct answer, of those who answered");
    chart->addAxis(x, Qt::AlignBottom);
    bars->attachAxis(x);
    bars->attachAxis(y);
    correct->setLabelColor(Qt::white);
}

void OverviewWindow::FillAtRisk() {
    const int sessions = static_cast<int>(overview_.sessions.size());
    atRisk_->setRowCount(static_cast<int>(overview_.atRisk.size()));
    for (int r = 0; r < atRisk_->rowCount(); ++r) {
        const StudentAtRisk& student = overview_.atRisk[r];
        const QString id = DisplayString(Trim(student.id));
        auto* name = new QTableWidgetItem(student.name.empty() ? id : DisplayString(student.name));
        name->setToolTip("ID " + id + ": open the student's screen");
        name->setForeground(QColor(0, 0, 255));
        auto* attended =
            new QTableWidgetItem(QString("%1 of %2").arg(student.attended).arg(sessions));
        auto* total = new QTableWidgetItem(Fixed(student.total, 2));
        attended->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
        total->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
        atRisk_->setItem(r, 0, name);
        atRisk_->setItem(r, 1, attended);
        atRisk_->setItem(r, 2, total);
    }
    if (atRisk_->rowCount() > 0) atRisk_->setCurrentCell(0, 0);
    openStudent_->setEnabled(!atRisk_->selectedItems().isEmpty());
}

void OverviewWindow::OpenStudent(int row) {
    if (row < 0 || row >= static_cast<int>(overview_.atRisk.size())) return;
    const int student = overview_.atRisk[row].row;
    Guarded([&] { OpenEditStudent(this, course_, host_, grid_, student); });
    // A student's clickers may have changed under the figures.
    Guarded([&] { Refresh(); });
    if (atRisk_->rowCount() > 0) atRisk_->setCurrentCell(std::min(row, atRisk_->rowCount() - 1), 0);
}

void OverviewWindow::WritePage() {
    std::string error;
    if (WriteOverviewPage(course_, overview_, host_, error))
        host_.OpenDocument(OverviewPagePath(course_));
    else
        host_.Message("The page Reports/Overview.html was not written: " + error, "Course Overview",
                      Icon::Exclamation, Buttons::Ok);
}

void OpenOverview(QWidget* parent, Course& course, Host& host, ScoreGrid& grid) {
    OverviewWindow window(course, host, grid, parent);
    window.exec();
}

}  // namespace tallory
