#pragma once

#include <QDialog>
#include <QString>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "common/Host.h"

class QButtonGroup;
class QWidget;

namespace tallory {

class ProgressDialog;

// Every dialog and message box of the program gets the same frame: a title and a close box, no
// minimise or maximise buttons. Call before the window is first shown.
void UseDialogFrame(QWidget* window);

// Course-file bytes as a person reads them: UTF-8 when valid, otherwise Windows-1252, with the
// files' CR LF line ends as plain line breaks.
QString DisplayString(std::string_view bytes);

// The modal option dialog (ChooseOption): a heading, five option buttons with the preselected one
// ticked, a footer, an accept and a cancel button.
class OptionDialogWindow : public QDialog {
  public:
    explicit OptionDialogWindow(const OptionDialog& dialog, QWidget* parent = nullptr);

    // The ticked option; cancelled unless the accept button closed the dialog.
    OptionChoice Choice() const;

  private:
    QButtonGroup* options_;
};

// The desktop program's Host: modal message boxes, the progress screen, the wait cursor, the
// option dialog, the desktop's viewer for documents, programs and the clipboard.
class QtHost : public Host {
  public:
    QtHost();
    ~QtHost() override;

    Answer Message(std::string_view text, std::string_view title = kProgramTitle,
                   Icon icon = Icon::None, Buttons buttons = Buttons::Ok,
                   MessageStyle style = {}) override;
    void ShowProgress() override;
    void HideProgress() override;
    void SetProgressText(std::string_view text) override;
    void SetProgressValue(double fraction) override;
    void SetProgressCaption(std::string_view caption) override;
    void SetClipboardText(const std::string& text) override;
    void YieldEvents() override;
    void SetWaitCursor(bool on) override;
    OptionChoice ChooseOption(const OptionDialog& dialog) override;
    void OpenDocument(const std::string& path) override;
    void StartProgram(const std::string& program, const std::string& argument) override;
    // A file not written is told once the command that wrote it has ended, all of its files in
    // one message (ShowUnsaved), so that a purge on a full disk gives one box, not one per log.
    void FileNotWritten(const std::string& path, const std::string& reason) override;
    void FileWritten(const std::string& path) override {
        if (written) written(path);
    }
    // Told of every file the program wrote (the course watcher's own writes).
    std::function<void(const std::string&)> written;
    // Shows the files not written since the last call, if any, and forgets them.
    void ShowUnsaved();

    // The progress screen while it is up, for tests; null otherwise.
    ProgressDialog* Progress() const { return progress_.get(); }

  private:
    std::unique_ptr<ProgressDialog> progress_;
    bool waitCursor_ = false;
    QString progressCaption_;
    std::vector<std::string> unsaved_;  // the reasons, in order
};

// The message for files not written: each reason names its file and the cause.
std::string UnsavedMessage(const std::vector<std::string>& reasons);

// Runs one command of the program. A run-time error ends the program: it is shown in a message box
// and the process ends at once, without writing anything more. Files the command could not write
// are told when it ends.
void RunGuarded(Host& host, const std::function<void()>& command);

}  // namespace tallory
