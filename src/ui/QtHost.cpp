#include "ui/QtHost.h"

#include <QApplication>
#include <QButtonGroup>
#include <QClipboard>
#include <QDesktopServices>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QLabel>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QUrl>
#include <QVBoxLayout>
#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "common/RunTimeError.h"
#include "common/Text.h"
#include "ui/ProgressDialog.h"

namespace tallory {

namespace {

QMessageBox::Icon ToQt(Icon icon) {
    switch (icon) {
        case Icon::Information:
            return QMessageBox::Information;
        case Icon::Exclamation:
            return QMessageBox::Warning;
        case Icon::Question:
            return QMessageBox::Question;
        case Icon::Stop:
            return QMessageBox::Critical;
        case Icon::None:
            break;
    }
    return QMessageBox::NoIcon;
}

QMessageBox::StandardButtons ToQt(Buttons buttons) {
    switch (buttons) {
        case Buttons::OkCancel:
            return QMessageBox::Ok | QMessageBox::Cancel;
        case Buttons::YesNo:
            return QMessageBox::Yes | QMessageBox::No;
        case Buttons::YesNoCancel:
            return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
        case Buttons::Ok:
            break;
    }
    return QMessageBox::Ok;
}

QMessageBox::StandardButton ToQt(Answer answer) {
    switch (answer) {
        case Answer::Yes:
            return QMessageBox::Yes;
        case Answer::No:
            return QMessageBox::No;
        case Answer::Cancel:
            return QMessageBox::Cancel;
        case Answer::Ok:
            break;
    }
    return QMessageBox::Ok;
}

// A text whose columns are lined up with blanks: a fixed-width font, and room for its widest
// table line (a line with a run of blanks), so that the box wraps only the prose around it.
void ShowAsTable(QMessageBox& box, const QString& text) {
    auto* label = box.findChild<QLabel*>("qt_msgbox_label");
    if (!label) return;
    const QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    label->setFont(fixed);
    const QFontMetrics metrics(fixed);
    int widest = 0;
    for (const QString& line : text.split('\n'))
        if (line.contains("  ")) widest = std::max(widest, metrics.horizontalAdvance(line));
    const QScreen* screen = box.screen();
    const int room = screen ? screen->availableGeometry().width() * 9 / 10 - 80 : widest;
    label->setMinimumWidth(std::min(widest + metrics.averageCharWidth(), room));
}

Answer FromQt(int button) {
    switch (button) {
        case QMessageBox::Yes:
            return Answer::Yes;
        case QMessageBox::No:
            return Answer::No;
        case QMessageBox::Cancel:
            return Answer::Cancel;
        default:
            return Answer::Ok;
    }
}

}  // namespace

void UseDialogFrame(QWidget* window) {
    window->setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                           Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint);
}

QString DisplayString(std::string_view bytes) {
    QString text = QString::fromStdString(DisplayText(bytes));
    text.replace("\r\n", "\n");
    text.replace('\r', '\n');
    return text;
}

OptionDialogWindow::OptionDialogWindow(const OptionDialog& dialog, QWidget* parent)
    : QDialog(parent), options_(new QButtonGroup(this)) {
    setObjectName("frmOptions");
    UseDialogFrame(this);
    setWindowTitle(DisplayString(dialog.title));
    setModal(true);
    auto* layout = new QVBoxLayout(this);
    auto* heading = new QLabel(DisplayString(dialog.heading), this);
    heading->setObjectName("lblHdr");
    heading->setWordWrap(true);
    layout->addWidget(heading);
    for (int index = 0; index < static_cast<int>(dialog.choices.size()); ++index) {
        // A dialog of fewer choices leaves the rest empty: they are not shown.
        if (dialog.choices[index].empty()) continue;
        auto* option = new QRadioButton(DisplayString(dialog.choices[index]), this);
        option->setObjectName(QString("optExport%1").arg(index));
        option->setChecked(index == dialog.preselected);
        options_->addButton(option, index);
        layout->addWidget(option);
    }
    auto* footer = new QLabel(DisplayString(dialog.footer), this);
    footer->setObjectName("lblFtr");
    footer->setWordWrap(true);
    layout->addWidget(footer);
    auto* buttons = new QDialogButtonBox(this);
    QPushButton* accept =
        buttons->addButton(DisplayString(dialog.acceptCaption), QDialogButtonBox::AcceptRole);
    accept->setObjectName("CmdExport");
    accept->setDefault(true);
    QPushButton* cancel =
        buttons->addButton(DisplayString(dialog.cancelCaption), QDialogButtonBox::RejectRole);
    cancel->setObjectName("CmdStop");
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
}

OptionChoice OptionDialogWindow::Choice() const {
    OptionChoice choice;
    choice.index = options_->checkedId();
    choice.cancelled = result() != QDialog::Accepted;
    return choice;
}

QtHost::QtHost() = default;
QtHost::~QtHost() {
    SetWaitCursor(false);
}

Answer QtHost::Message(std::string_view text, std::string_view title, Icon icon, Buttons buttons,
                       MessageStyle style) {
    // A message box must be answered even while the wait cursor is up.
    const bool waiting = waitCursor_;
    SetWaitCursor(false);
    const QString shown = DisplayString(text);
    QMessageBox box(ToQt(icon), DisplayString(title), shown, ToQt(buttons),
                    QApplication::activeWindow());
    box.setObjectName("MessageBox");
    UseDialogFrame(&box);
    box.setDefaultButton(ToQt(DefaultButton(buttons, style)));
    if (style.table) ShowAsTable(box, shown);
    // Cancel or No answers the window's close button, as it would a question on paper.
    if (buttons == Buttons::YesNo) box.setEscapeButton(QMessageBox::No);
    const int pressed = box.exec();
    SetWaitCursor(waiting);
    return FromQt(pressed);
}

void QtHost::ShowProgress() {
    if (!progress_) progress_ = std::make_unique<ProgressDialog>(QApplication::activeWindow());
    if (!progressCaption_.isEmpty()) progress_->setWindowTitle(progressCaption_);
    progress_->show();
    progress_->raise();
    YieldEvents();
}

void QtHost::HideProgress() {
    // A caption lasts as long as the screen it was given to.
    progressCaption_.clear();
    if (!progress_) return;
    progress_->hide();
    progress_.reset();
}

void QtHost::SetProgressText(std::string_view text) {
    YieldEvents();
    if (progress_) progress_->SetText(DisplayString(text));
    YieldEvents();
}

void QtHost::SetProgressValue(double fraction) {
    if (progress_) progress_->SetValue(fraction);
}

void QtHost::SetProgressCaption(std::string_view caption) {
    progressCaption_ = DisplayString(caption);
    if (progress_) progress_->setWindowTitle(progressCaption_);
}

void QtHost::SetClipboardText(const std::string& text) {
    QClipboard* clipboard = QGuiApplication::clipboard();
    clipboard->clear();
    // The text keeps its CR LF line ends: it is pasted into spreadsheets and mail as it stands.
    clipboard->setText(QString::fromStdString(DisplayText(text)));
}

void QtHost::YieldEvents() {
    QCoreApplication::processEvents();
}

void QtHost::SetWaitCursor(bool on) {
    if (on == waitCursor_) return;
    waitCursor_ = on;
    if (on)
        QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    else
        QGuiApplication::restoreOverrideCursor();
}

OptionChoice QtHost::ChooseOption(const OptionDialog& dialog) {
    const bool waiting = waitCursor_;
    SetWaitCursor(false);
    OptionDialogWindow window(dialog, QApplication::activeWindow());
    window.exec();
    SetWaitCursor(waiting);
    return window.Choice();
}

void QtHost::OpenDocument(const std::string& path) {
    QDesktopServices::openUrl(QUrl::fromLocalFile(QString::fromStdString(path)));
}

void QtHost::StartProgram(const std::string& program, const std::string& argument) {
    QProcess::startDetached(QString::fromStdString(program), {QString::fromStdString(argument)});
}

void QtHost::FileNotWritten(const std::string& path, const std::string& reason) {
    (void)path;  // the reason names it
    if (std::find(unsaved_.begin(), unsaved_.end(), reason) == unsaved_.end())
        unsaved_.push_back(reason);
}

void QtHost::ShowUnsaved() {
    if (unsaved_.empty()) return;
    const std::string text = UnsavedMessage(unsaved_);
    unsaved_.clear();
    Message(text, kProgramTitle, Icon::Exclamation);
}

std::string UnsavedMessage(const std::vector<std::string>& reasons) {
    constexpr size_t kListed = 10;
    std::string text = reasons.size() == 1
                           ? "A file was not saved; it stands as it was before."
                           : std::to_string(reasons.size()) +
                                 " files were not saved; each stands as it was before.";
    text += "\r\n";
    for (size_t i = 0; i < reasons.size() && i < kListed; ++i) text += "\r\n" + reasons[i];
    if (reasons.size() > kListed)
        text += "\r\n... and " + std::to_string(reasons.size() - kListed) + " more.";
    return text;
}

void RunGuarded(Host& host, const std::function<void()>& command) {
    std::string message;
    try {
        command();
        if (auto* desktop = dynamic_cast<QtHost*>(&host)) desktop->ShowUnsaved();
        return;
    } catch (const RunTimeError& error) {
        message = error.Message();
    } catch (const std::exception& error) {
        message = error.what();
    }
    host.HideProgress();
    host.SetWaitCursor(false);
    host.Message(message, kProgramTitle, Icon::Stop);
    std::fflush(nullptr);
    std::_Exit(EXIT_FAILURE);
}

}  // namespace tallory
