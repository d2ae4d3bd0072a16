#pragma once

#include <QString>
#include <functional>
#include <memory>
#include <string_view>

#include "common/Host.h"

class QWidget;

namespace tallory {

class ProgressDialog;

// Course-file bytes as a person reads them: UTF-8 when valid, otherwise Windows-1252, with the
// files' CR LF line ends as plain line breaks.
QString DisplayString(std::string_view bytes);

// The desktop program's Host: modal message boxes, the progress screen, the wait cursor.
class QtHost : public Host {
  public:
    QtHost();
    ~QtHost() override;

    Answer Message(std::string_view text, std::string_view title = kProgramTitle,
                   Icon icon = Icon::None, Buttons buttons = Buttons::Ok) override;
    void ShowProgress() override;
    void HideProgress() override;
    void SetProgressText(std::string_view text) override;
    void SetProgressValue(double fraction) override;
    void SetProgressCaption(std::string_view caption) override;
    void SetClipboardText(const std::string& text) override;
    void YieldEvents() override;
    void SetWaitCursor(bool on) override;

    // The progress screen while it is up, for tests; null otherwise.
    ProgressDialog* Progress() const { return progress_.get(); }

  private:
    std::unique_ptr<ProgressDialog> progress_;
    bool waitCursor_ = false;
    QString progressCaption_;
};

// Runs one command of the program. A run-time error ends the program: it is shown in a message box
// and the process ends at once, without writing anything more.
void RunGuarded(Host& host, const std::function<void()>& command);

}  // namespace tallory
