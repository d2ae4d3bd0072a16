#include "ui/ReportSummaryDialog.h"

#include <array>

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/CommandLabel.h"
#include "ui/FitText.h"
#include "ui/QtHost.h"

namespace tallory {

namespace {

constexpr const char* kStyle = R"(
QDialog#FrmReportSummay { background: rgb(248, 249, 245); }
QLabel#Label1 { color: #1b2b1b; }
QLabel[role="link"] { color: #1d5fbf; font-weight: bold; }
QLabel[role="text"] { color: #2b2b1f; }
)";

QLabel* Text(QWidget* parent, const char* name) {
    auto* label = new QLabel(parent);
    label->setObjectName(name);
    label->setProperty("role", "text");
    label->setWordWrap(true);
    return label;
}

}  // namespace

ReportSummaryDialog::ReportSummaryDialog(ReportSummaryScreen& screen, QWidget* parent)
    : QDialog(parent), screen_(screen) {
    const ReportSummaryScreen::Controls& controls = screen.controls();
    setObjectName("FrmReportSummay");
    UseDialogFrame(this);
    setWindowTitle(DisplayString(controls.Label1.text));
    setStyleSheet(kStyle);
    setMinimumWidth(560);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 18, 24, 18);
    layout->setSpacing(10);
    auto* heading = new QLabel(this);
    heading->setObjectName("Label1");
    SetTypeSize(heading, 16, true);
    binding_.Bind(heading, controls.Label1);
    layout->addWidget(heading);
    auto text = [&](const ControlState& state, const char* name) {
        QLabel* label = Text(this, name);
        binding_.Bind(label, state);
        layout->addWidget(label);
    };
    text(controls.lblFolder, "lblFolder");

    static const char* const kNames[] = {"LblReport1", "LblReport2", "lblReport3"};
    std::array<CommandLabel*, ReportSummaryScreen::kLinks> links{};
    for (int i = 0; i < ReportSummaryScreen::kLinks; ++i) {
        auto* link = new CommandLabel(this);
        link->setObjectName(kNames[i]);
        binding_.Bind(link, controls.links[i]);
        link->setProperty("role", "link");
        link->setToolTip(QString::fromStdString(controls.tips[i]));
        link->setCursor(Qt::PointingHandCursor);
        link->SetHoverUnderline(true);
        connect(link, &CommandLabel::clicked, this, [this, i] { screen_.LinkClick(i); });
        links[i] = link;
    }
    layout->addWidget(links[0]);
    text(controls.lblTermDescription, "lblTermDescription");
    layout->addWidget(links[1]);
    // The description of the voting data names the cumulative scores with their link.
    text(controls.lblVotingDescription, "lblVotingDescription");
    layout->addWidget(links[2]);
    text(controls.lblVotingDescriptionEnd, "lblVotingDescriptionEnd");

    auto* close = new QPushButton(this);
    close->setObjectName("lvButtons_H1");
    binding_.Bind(close, controls.lvButtons_H1, true);
    close->setMinimumWidth(110);
    connect(close, &QPushButton::clicked, this, &QDialog::accept);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(close);
    layout->addSpacing(6);
    layout->addLayout(buttons);
    binding_.Paint();
}

void RunSessionSummaryReport(QWidget* parent, Course& course, Host& host) {
    if (RunReports(course, host) != ReportRunEnd::Written) return;
    ReportSummaryScreen screen(course, host);
    ReportSummaryDialog dialog(screen, parent);
    dialog.exec();
}

void RunTermSummaryReport(Course& course, Host& host) {
    RunTermReports(course, host);
}

}  // namespace tallory
