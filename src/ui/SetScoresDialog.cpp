#include "ui/SetScoresDialog.h"

#include <QApplication>
#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QPixmap>
#include <QPushButton>
#include <QRadioButton>
#include <QShortcut>
#include <QSignalBlocker>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>
#include <vector>

#include "common/Text.h"
#include "ui/CommandLabel.h"
#include "ui/HistogramDialog.h"
#include "ui/QtHost.h"
#include "ui/ScreenFit.h"

namespace tallory {

namespace {

constexpr const char* kStyle = R"(
QDialog#frmSetSessionScoring, QDialog#frmSetScr_120DPI { background: rgb(238, 240, 236); }
QFrame[role="panel"] { background: white; border: 1px solid #c8ccc3; border-radius: 8px; }
QFrame[role="panel"] QLabel { background: transparent; }
QLabel#lblClass { color: #1b2b1b; }
QLabel[role="fact"] { color: #5b6358; }
QLabel[role="value"] { color: #1f2a1f; font-weight: bold; }
QLabel[role="section"] { color: #1f2a1f; font-weight: bold; }
QLabel[role="choice"] { color: #1f2a1f; font-weight: bold; border-bottom: 2px solid #b5bbae;
                        padding: 2px; }
QLabel[role="count"] { color: #222; padding: 2px; }
QLabel#lblQuestionDelete { color: #b00020; font-weight: bold; background: #fdecee;
                           border: 1px solid #f3b7bf; border-radius: 6px; padding: 3px 10px; }
QLabel[role="link"] { color: #1d5fbf; padding: 2px 6px; }
QLabel[role="link"]:disabled { color: #9aa39a; }
QLabel#Image1 { background: #f7f8f5; border: 1px solid #d8dbd3; border-radius: 6px; }
QLineEdit { padding: 2px 4px; }
QLineEdit:disabled { color: #8d948a; background: #f1f2ee; }
QFrame#PicHelp { background: #fffef4; border: 1px solid #c9c48a; border-radius: 8px; }
QFrame#PicHelp QLabel { background: transparent; color: #2b2b1f; }
)";

// The large-font twin: the screen's own scaling already enlarges its type, so it packs the same
// controls closer instead.
struct Spacing {
    QMargins margins;
    int spacing;
    QSize size;
};
constexpr Spacing kOrdinarySpacing{{18, 14, 18, 14}, 10, {940, 600}};
constexpr Spacing kLargeFontSpacing{{10, 8, 10, 8}, 6, {800, 580}};

QString Shown(const std::string& bytes) {
    return DisplayString(bytes);
}

QLabel* MakeCaption(QWidget* parent, const QString& text, const char* role = "fact") {
    auto* label = new QLabel(text, parent);
    label->setProperty("role", role);
    return label;
}

QFrame* MakePanel(QWidget* parent) {
    auto* panel = new QFrame(parent);
    panel->setProperty("role", "panel");
    return panel;
}

}  // namespace

SetScoresDialog::SetScoresDialog(Course& course, Host& host, SessionGrid& grid, bool largeFonts,
                                 QWidget* parent)
    : QDialog(parent),
      host_(host),
      screen_(course, host, grid,
              SetScoresOptions{largeFonts,
                               [](const std::string& path) {
                                   return !QImage(QString::fromStdString(path)).isNull();
                               }}),
      largeFonts_(largeFonts) {
    setObjectName(largeFonts ? "frmSetScr_120DPI" : "frmSetSessionScoring");
    UseDialogFrame(this);
    setWindowTitle(QString::fromUtf8(kSetScoresTitle.data(), kSetScoresTitle.size()));
    setStyleSheet(kStyle);
    const Spacing& spacing = largeFonts_ ? kLargeFontSpacing : kOrdinarySpacing;

    auto* root = new QVBoxLayout(this);
    root->setContentsMargins(spacing.margins);
    root->setSpacing(spacing.spacing);
    root->addWidget(BuildHeader());
    auto* body = new QHBoxLayout;
    body->setSpacing(12);
    body->addWidget(BuildQuestion(), 3);
    body->addWidget(BuildSession(), 2);
    root->addLayout(body, 1);
    root->addWidget(BuildButtons());
    BuildHelp();

    // As large as designed where the screen has room for it with its frame; when it is shown, a
    // screen too small for its controls makes its type smaller (ScreenFit).
    resize(spacing.size.boundedTo(RoomFor(this)));

    BindControls();
    AddQuestionKeys();
    screen_.Load();
    Repaint();
}

QLineEdit* SetScoresDialog::MakeBox(QWidget* parent, const QString& name, Validation validation) {
    auto* box = new QLineEdit(parent);
    box->setObjectName(name);
    validations_[box] = std::move(validation);
    connect(box, &QLineEdit::editingFinished, this, [this, box] {
        // Cancel closes without asking the box: its text goes with the rest. Nor does the
        // question about unsaved edits, which takes the focus for a moment, leave the box.
        if (QApplication::focusWidget() == cmdCancel_ || asking_) return;
        Leave(box);
    });
    return box;
}

QLabel* SetScoresDialog::MakeValue(const char* name) {
    auto* label = new QLabel(this);
    label->setObjectName(name);
    label->setProperty("role", "value");
    return label;
}

QWidget* SetScoresDialog::BuildHeader() {
    auto* header = new QWidget(this);
    auto* layout = new QVBoxLayout(header);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    lblClass_ = new QLabel(header);
    lblClass_->setObjectName("lblClass");
    QFont title = lblClass_->font();
    title.setPointSizeF(title.pointSizeF() * 1.5);
    title.setBold(true);
    lblClass_->setFont(title);
    layout->addWidget(lblClass_);

    auto* facts = new QHBoxLayout;
    facts->setSpacing(6);
    lblSession_ = MakeValue("lblSession");
    lblTime_ = MakeValue("lblTime");
    lblStudents_ = MakeValue("lblStudents");
    lblAverage_ = MakeValue("lblAverage");
    const std::pair<const char*, QLabel*> pairs[] = {{"Session :", lblSession_},
                                                     {"Time :", lblTime_},
                                                     {"Students :", lblStudents_},
                                                     {"Class Average :", lblAverage_}};
    for (const auto& [caption, value] : pairs) {
        facts->addWidget(MakeCaption(header, caption));
        facts->addWidget(value);
        facts->addSpacing(18);
    }
    facts->addStretch(1);
    layout->addLayout(facts);
    return header;
}

QWidget* SetScoresDialog::BuildQuestion() {
    QFrame* panel = MakePanel(this);
    auto* layout = new QVBoxLayout(panel);
    layout->setContentsMargins(16, 12, 16, 12);
    layout->setSpacing(8);
    layout->addLayout(BuildNavigation(panel));
    layout->addLayout(BuildQuestionForm(panel));
    layout->addLayout(BuildChoices(panel));
    layout->addLayout(BuildDeletion(panel));
    layout->addLayout(BuildPictures(panel));

    Image1_ = new QLabel(panel);
    Image1_->setObjectName("Image1");
    Image1_->setAlignment(Qt::AlignCenter);
    Image1_->setMinimumHeight(120);
    Image1_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    layout->addWidget(Image1_, 1);
    layout->addStretch(0);
    return panel;
}

QLayout* SetScoresDialog::BuildNavigation(QWidget* panel) {
    auto* navigation = new QHBoxLayout;
    lblCurQuestionNo_ = MakeValue("lblCurQuestionNo");
    lblTotQuestions_ = MakeValue("lblTotQuestions");
    navigation->addWidget(MakeCaption(panel, "Question", "section"));
    navigation->addWidget(lblCurQuestionNo_);
    navigation->addWidget(MakeCaption(panel, "of", "section"));
    navigation->addWidget(lblTotQuestions_);
    navigation->addStretch(1);
    lblPrevious_ = new CommandLabel(panel);
    lblPrevious_->setObjectName("lblPrevious");
    lblPrevious_->setText(QString::fromUtf8("\u2039 Previous"));
    lblNext_ = new CommandLabel(panel);
    lblNext_->setObjectName("lblNext");
    lblNext_->setText(QString::fromUtf8("Next \u203A"));
    for (CommandLabel* link : {lblPrevious_, lblNext_}) {
        link->setProperty("role", "link");
        link->setCursor(Qt::PointingHandCursor);
        link->SetHoverUnderline(true);
        link->SetKeyboardCommand(true);
        navigation->addWidget(link);
    }
    connect(lblPrevious_, &CommandLabel::clicked, this,
            [this] { Command([this] { screen_.lblPreviousClick(); }); });
    connect(lblNext_, &CommandLabel::clicked, this,
            [this] { Command([this] { screen_.lblNextClick(); }); });
    return navigation;
}

QLayout* SetScoresDialog::BuildQuestionForm(QWidget* panel) {
    auto* form = new QGridLayout;
    form->setHorizontalSpacing(10);
    form->setVerticalSpacing(8);
    txtQuestionName_ = new QLineEdit(panel);
    txtQuestionName_->setObjectName("txtQuestionName");
    connect(txtQuestionName_, &QLineEdit::textEdited, this,
            [this](const QString& text) { screen_.txtQuestionNameChange(text.toStdString()); });
    form->addWidget(MakeCaption(panel, "Question Title :"), 0, 0);
    form->addWidget(txtQuestionName_, 0, 1, 1, 2);

    cmbCorrect_ = new QComboBox(panel);
    cmbCorrect_->setObjectName("cmbCorrect");
    for (std::string_view choice : kCorrectChoices)
        cmbCorrect_->addItem(QString::fromUtf8(choice.data(), choice.size()));
    connect(cmbCorrect_, &QComboBox::activated, this,
            [this](int index) { Command([this, index] { screen_.cmbCorrectClick(index); }); });
    lblQuestionDelete_ = new QLabel(panel);
    lblQuestionDelete_->setObjectName("lblQuestionDelete");
    auto* answerRow = new QHBoxLayout;
    answerRow->addWidget(cmbCorrect_);
    answerRow->addSpacing(12);
    answerRow->addWidget(lblQuestionDelete_);
    answerRow->addStretch(1);
    QSizePolicy keep = lblQuestionDelete_->sizePolicy();
    keep.setRetainSizeWhenHidden(true);
    lblQuestionDelete_->setSizePolicy(keep);
    form->addWidget(MakeCaption(panel, "Correct Answer :"), 1, 0);
    form->addLayout(answerRow, 1, 1, 1, 2);
    form->setColumnStretch(1, 1);
    return form;
}

QLayout* SetScoresDialog::BuildChoices(QWidget* panel) {
    auto* choices = new QGridLayout;
    choices->setHorizontalSpacing(8);
    choices->setVerticalSpacing(6);
    choices->addWidget(MakeCaption(panel, "Points :"), 1, 0);
    choices->addWidget(MakeCaption(panel, "Vote Count :"), 2, 0);
    choices->addWidget(MakeCaption(panel, "% of Votes  :"), 3, 0);
    for (int i = 0; i < 5; ++i) {
        auto* letter = MakeCaption(panel, QString(QChar('A' + i)), "choice");
        letter->setAlignment(Qt::AlignCenter);
        choices->addWidget(letter, 0, i + 1);
        txtPoints_[i] = MakeBox(
            panel, QString("txtPoints%1").arg(i),
            {[this, i](const std::string& text) { return screen_.txtPointsValidate(i, text); },
             true, false});
        txtPoints_[i]->setAlignment(Qt::AlignCenter);
        txtPoints_[i]->setMaximumWidth(90);
        choices->addWidget(txtPoints_[i], 1, i + 1, Qt::AlignCenter);
        lblNum_[i] = MakeCaption(panel, "", "count");
        lblNum_[i]->setObjectName(QString("lblNum%1").arg(i));
        lblPer_[i] = MakeCaption(panel, "", "count");
        lblPer_[i]->setObjectName(QString("lblPer%1").arg(i));
        for (QLabel* figure : {lblNum_[i], lblPer_[i]}) figure->setAlignment(Qt::AlignCenter);
        choices->addWidget(lblNum_[i], 2, i + 1);
        choices->addWidget(lblPer_[i], 3, i + 1);
        choices->setColumnStretch(i + 1, 1);
    }
    return choices;
}

QLayout* SetScoresDialog::BuildDeletion(QWidget* panel) {
    auto* deletion = new QHBoxLayout;
    deletion->addWidget(MakeCaption(panel, "Delete This Question?"));
    OptYes_ = new QRadioButton("Yes", panel);
    OptYes_->setObjectName("OptYes");
    OptNo_ = new QRadioButton("No", panel);
    OptNo_->setObjectName("OptNo");
    auto* group = new QButtonGroup(panel);
    group->addButton(OptYes_);
    group->addButton(OptNo_);
    connect(OptYes_, &QRadioButton::clicked, this,
            [this] { Command([this] { screen_.OptYesClick(); }); });
    connect(OptNo_, &QRadioButton::clicked, this,
            [this] { Command([this] { screen_.OptNoClick(); }); });
    deletion->addWidget(OptYes_);
    deletion->addWidget(OptNo_);
    deletion->addStretch(1);
    return deletion;
}

QLayout* SetScoresDialog::BuildPictures(QWidget* panel) {
    auto* pictures = new QHBoxLayout;
    cmdViewScreenShot_ = new QPushButton(panel);
    cmdViewScreenShot_->setObjectName("cmdViewScreenShot");
    cmdHistogram_ = new QPushButton("VIEW RESULTS CHART", panel);
    cmdHistogram_->setObjectName("cmdHistogram");
    connect(cmdViewScreenShot_, &QPushButton::clicked, this,
            [this] { Command([this] { screen_.cmdViewScreenShotClick(); }); });
    connect(cmdHistogram_, &QPushButton::clicked, this,
            [this] { Command([this] { ShowHistogram(); }); });
    pictures->addWidget(cmdViewScreenShot_);
    pictures->addWidget(cmdHistogram_);
    pictures->addStretch(1);
    return pictures;
}

QWidget* SetScoresDialog::BuildSession() {
    QFrame* panel = MakePanel(this);
    auto* layout = new QGridLayout(panel);
    layout->setContentsMargins(16, 12, 16, 12);
    layout->setHorizontalSpacing(10);
    layout->setVerticalSpacing(10);
    int row = 0;
    auto addRow = [&](const QString& caption, QWidget* value) {
        QLabel* label = MakeCaption(panel, caption);
        label->setWordWrap(true);
        layout->addWidget(label, row, 0);
        layout->addWidget(value, row, 1, Qt::AlignLeft | Qt::AlignVCenter);
        ++row;
        return label;
    };
    layout->addWidget(MakeCaption(panel, "Session Scoring", "section"), row++, 0, 1, 2);

    txtPointsAwarded_ =
        MakeBox(panel, "txtPointsAwarded",
                {[this](const std::string& text) { return screen_.txtPointsAwardedValidate(text); },
                 false, false});
    txtMinResponses_ =
        MakeBox(panel, "txtMinResponses",
                {[this](const std::string& text) { return screen_.txtMinResponsesValidate(text); },
                 true, false});
    txtPerfMaxPoints_ =
        MakeBox(panel, "txtPerfMaxPoints",
                {[this](const std::string& text) { return screen_.txtPerfMaxPointsValidate(text); },
                 true, true});
    for (QLineEdit* box : {txtPointsAwarded_, txtMinResponses_, txtPerfMaxPoints_})
        box->setMaximumWidth(90);
    pointsAwardedCaption_ = addRow("Points Awarded :", txtPointsAwarded_);
    addRow("Minimum number of required responses (to qualify for points) :", txtMinResponses_);

    chkTruncPerf_ = new QCheckBox("Not to Exceed", panel);
    chkTruncPerf_->setObjectName("chkTruncPerf");
    connect(chkTruncPerf_, &QCheckBox::clicked, this, [this](bool checked) {
        Command([this, checked] {
            if (screen_.chkTruncPerfClick(checked)) {
                Repaint();
                txtPerfMaxPoints_->setFocus();
            }
        });
    });
    layout->addWidget(chkTruncPerf_, row, 0);
    layout->addWidget(txtPerfMaxPoints_, row++, 1, Qt::AlignLeft | Qt::AlignVCenter);

    auto* rule = new QFrame(panel);
    rule->setFrameShape(QFrame::HLine);
    rule->setStyleSheet("color: #e4e7e0;");
    layout->addWidget(rule, row++, 0, 1, 2);

    lblTotalPerfPoints_ = MakeValue("lblTotalPerfPoints");
    lblTotalPoints_ = MakeValue("lblTotalPoints");
    lblNonDeleted_ = MakeValue("lblNonDeleted");
    lblDeleteNo_ = MakeValue("lblDeleteNo");
    addRow("Total Performance points for this Session :", lblTotalPerfPoints_);
    addRow("Total Points Available :", lblTotalPoints_);
    addRow("Undeleted Question(s) :", lblNonDeleted_);
    addRow("Question(s) Deleted :", lblDeleteNo_);
    layout->setRowStretch(row, 1);
    layout->setColumnStretch(0, 1);
    return panel;
}

QWidget* SetScoresDialog::BuildButtons() {
    auto* bar = new QWidget(this);
    auto* layout = new QHBoxLayout(bar);
    layout->setContentsMargins(0, 0, 0, 0);
    cmdHelp_ = new QPushButton("Help", bar);
    cmdHelp_->setObjectName("cmdHelp");
    cmdCancel_ = new QPushButton("Cancel", bar);
    cmdCancel_->setObjectName("cmdCancel");
    cmdSet_ = new QPushButton("Set and Close", bar);
    cmdSet_->setObjectName("cmdSet");
    // Enter in a box only leaves it; nothing is saved without pressing Set.
    for (QPushButton* button : {cmdHelp_, cmdCancel_, cmdSet_, cmdViewScreenShot_, cmdHistogram_})
        button->setAutoDefault(false);
    connect(cmdHelp_, &QPushButton::clicked, this, [this] {
        screen_.cmdHelpClick();
        Repaint();
    });
    connect(cmdCancel_, &QPushButton::clicked, this, [this] { Cancel(); });
    connect(cmdSet_, &QPushButton::clicked, this,
            [this] { Command([this] { screen_.cmdSetClick(); }); });
    layout->addWidget(cmdHelp_);
    layout->addStretch(1);
    layout->addWidget(cmdCancel_);
    layout->addWidget(cmdSet_);
    return bar;
}

void SetScoresDialog::BuildHelp() {
    PicHelp_ = new QFrame(this);
    PicHelp_->setObjectName("PicHelp");
    auto* layout = new QVBoxLayout(PicHelp_);
    layout->setContentsMargins(20, 16, 20, 16);
    layout->setSpacing(10);
    auto* title = new QLabel(QString::fromUtf8(SetScoresScreen::kHelpTitle), PicHelp_);
    title->setObjectName("LblHelpTitle");
    QFont bold = title->font();
    bold.setBold(true);
    bold.setPointSizeF(bold.pointSizeF() * 1.2);
    title->setFont(bold);
    layout->addWidget(title);
    int index = 0;
    for (std::string_view caption : SetScoresScreen::HelpCaptions()) {
        auto* label = new QLabel(QString::fromUtf8(caption.data(), caption.size()), PicHelp_);
        label->setObjectName(QString("LblHelpCaption%1").arg(index++));
        label->setWordWrap(true);
        layout->addWidget(label);
    }
    PicHelp_->hide();
}

void SetScoresDialog::PlaceHelp() {
    if (!PicHelp_) return;
    // The panel stands over the middle of the form, as tall as its text.
    const int margin = 48;
    const int width = std::max(200, this->width() - 2 * margin);
    const int height =
        std::min(PicHelp_->layout()->totalHeightForWidth(width), this->height() - 2 * margin);
    PicHelp_->setGeometry(margin, std::max(margin, (this->height() - height) / 2), width, height);
    PicHelp_->raise();
}

void SetScoresDialog::resizeEvent(QResizeEvent* event) {
    QDialog::resizeEvent(event);
    PlaceHelp();
}

void SetScoresDialog::Leave(QLineEdit* box) {
    auto found = validations_.find(box);
    if (found == validations_.end() || validating_ || !box->isEnabled()) return;
    validating_ = true;
    const Validation& validation = found->second;
    const bool accepted = validation.validate(box->text().toStdString());
    validating_ = false;
    Repaint();
    if (accepted) refused_ = false;
    if (!validation.keepFocus || accepted) return;
    box->setFocus();
    if (validation.selectAll) box->selectAll();
    // A click that took the focus from the box arrives after this refusal and is void; once the
    // events of that moment have run, the next click acts again.
    refused_ = true;
    QTimer::singleShot(0, this, [this] { refused_ = false; });
}

void SetScoresDialog::Command(const std::function<void()>& handler) {
    // A void click leaves its control as the screen holds it, not as the click drew it.
    if (refused_) {
        Repaint();
        return;
    }
    // Labels take no focus, so the box being edited has not been left yet.
    if (auto* box = qobject_cast<QLineEdit*>(QApplication::focusWidget());
        box && validations_.count(box)) {
        Leave(box);
        if (refused_) {
            Repaint();
            return;
        }
    }
    // A run-time error inside a handler ends the program with its message, as everywhere.
    RunGuarded(host_, handler);
    Repaint();
    CloseWhenDone();
}

void SetScoresDialog::CloseWhenDone() {
    if (!screen_.Closed()) return;
    if (screen_.SetPressed())
        accept();
    else
        QDialog::reject();
}

void SetScoresDialog::reject() {
    if (screen_.HasUnsavedEdits() || BoxPending()) {
        asking_ = true;
        const bool drop = DropUnsavedEdits(host_);
        asking_ = false;
        if (!drop) return;
    }
    Cancel();
}

void SetScoresDialog::Cancel() {
    screen_.cmdCancelClick();
    QDialog::reject();
}

bool SetScoresDialog::BoxPending() const {
    const SetScoresControls& c = screen_.Controls();
    std::vector<std::pair<const QLineEdit*, const ControlState*>> boxes = {
        {txtPointsAwarded_, &c.txtPointsAwarded},
        {txtMinResponses_, &c.txtMinResponses},
        {txtPerfMaxPoints_, &c.txtPerfMaxPoints}};
    for (int i = 0; i < 5; ++i) boxes.emplace_back(txtPoints_[i], &c.txtPoints[i]);
    return std::any_of(boxes.begin(), boxes.end(), [](const auto& box) {
        return box.first->isEnabled() && box.first->text() != DisplayString(box.second->text);
    });
}

void SetScoresDialog::AddQuestionKeys() {
    const std::pair<QKeySequence, bool> keys[] = {
        {QKeySequence(Qt::Key_PageUp), false},
        {QKeySequence(Qt::ALT | Qt::Key_Left), false},
        {QKeySequence(Qt::Key_PageDown), true},
        {QKeySequence(Qt::ALT | Qt::Key_Right), true},
    };
    for (const auto& [sequence, next] : keys) {
        auto* shortcut = new QShortcut(sequence, this);
        connect(shortcut, &QShortcut::activated, this, [this, next = next] {
            // A label that is disabled takes no click, and no key either.
            if (!(next ? lblNext_ : lblPrevious_)->isEnabled()) return;
            Command([this, next] {
                if (next)
                    screen_.lblNextClick();
                else
                    screen_.lblPreviousClick();
            });
        });
    }
}

void SetScoresDialog::ShowHistogram() {
    const std::string chart = screen_.cmdHistogramClick();
    if (chart.empty()) return;
    tallory::ShowHistogram(this, Shown(screen_.LogBaseName()), QString::fromStdString(chart));
}

void SetScoresDialog::ShowPicture(const std::string& path) {
    if (path == picturePath_ && !Image1_->pixmap().isNull()) return;
    picturePath_ = path;
    QPixmap picture(QString::fromStdString(path));
    if (picture.isNull()) {
        Image1_->clear();
        return;
    }
    const QSize room(std::max(Image1_->width(), 320) - 8, std::max(Image1_->height(), 180) - 8);
    Image1_->setPixmap(picture.scaled(room, Qt::KeepAspectRatio, Qt::SmoothTransformation));
}

void SetScoresDialog::BindControls() {
    const SetScoresControls& c = screen_.Controls();
    const std::pair<QLabel*, const ControlState*> labels[] = {
        {lblClass_, &c.lblClass},
        {lblSession_, &c.lblSession},
        {lblTime_, &c.lblTime},
        {lblStudents_, &c.lblStudents},
        {lblAverage_, &c.lblAverage},
        {lblTotQuestions_, &c.lblTotQuestions},
        {lblCurQuestionNo_, &c.lblCurQuestionNo},
        {lblNonDeleted_, &c.lblNonDeleted},
        {lblDeleteNo_, &c.lblDeleteNo},
        {lblTotalPerfPoints_, &c.lblTotalPerfPoints},
        {lblTotalPoints_, &c.lblTotalPoints},
        {lblQuestionDelete_, &c.lblQuestionDelete}};
    for (const auto& [label, state] : labels) binding_.Bind(label, *state);
    for (const auto& [box, state] : {std::pair{txtPointsAwarded_, &c.txtPointsAwarded},
                                     std::pair{txtMinResponses_, &c.txtMinResponses},
                                     std::pair{txtPerfMaxPoints_, &c.txtPerfMaxPoints},
                                     std::pair{txtQuestionName_, &c.txtQuestionName}})
        binding_.Bind(box, *state);
    // The caption of the participation box goes and comes with it.
    binding_.Bind(static_cast<QWidget*>(pointsAwardedCaption_), c.txtPointsAwarded);
    for (int i = 0; i < 5; ++i) {
        binding_.Bind(txtPoints_[i], c.txtPoints[i]);
        binding_.Bind(lblNum_[i], c.lblNum[i]);
        binding_.Bind(lblPer_[i], c.lblPer[i]);
    }
    binding_.Bind(chkTruncPerf_, c.chkTruncPerf);
    binding_.Bind(OptYes_, c.OptYes);
    binding_.Bind(OptNo_, c.OptNo);
    binding_.Bind(cmbCorrect_, c.cmbCorrect);
    for (const auto& [widget, state] :
         {std::pair<QWidget*, const ControlState*>{lblNext_, &c.lblNext},
          {lblPrevious_, &c.lblPrevious},
          {cmdHistogram_, &c.cmdHistogram},
          {PicHelp_, &c.PicHelp}})
        binding_.Bind(widget, *state);
    for (const auto& [button, state] :
         {std::pair{cmdSet_, &c.cmdSet}, std::pair{cmdCancel_, &c.cmdCancel},
          std::pair{cmdHelp_, &c.cmdHelp}})
        binding_.Bind(button, *state);
    binding_.Bind(cmdViewScreenShot_, c.cmdViewScreenShot, true);
}

void SetScoresDialog::Repaint() {
    const SetScoresControls& c = screen_.Controls();
    binding_.Paint();
    // The picture's path is the state; the widget shows the picture itself.
    if (c.Image1.visible) ShowPicture(c.Image1.text);
    Image1_->setVisible(c.Image1.visible);
    if (c.PicHelp.visible) PlaceHelp();
}

}  // namespace tallory
