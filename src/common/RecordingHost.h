#pragma once

#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "common/Host.h"

namespace tallory {

// A host for tests and scripts: keeps every message and progress text, answers questions from a
// script (or with a default answer when the script is empty).
class RecordingHost : public Host {
  public:
    struct Shown {
        std::string text;
        std::string title;
        Icon icon;
        Buttons buttons;
        MessageStyle style{};
        Answer defaultButton = Answer::Ok;  // the button Enter would press
    };

    Answer Message(std::string_view text, std::string_view title, Icon icon, Buttons buttons,
                   MessageStyle style = {}) override;
    void SetProgressText(std::string_view text) override { progressTexts.emplace_back(text); }
    void SetProgressValue(double fraction) override { lastProgress = fraction; }
    void SetProgressCaption(std::string_view caption) override {
        progressCaptions.emplace_back(caption);
    }
    void ShowProgress() override { ++progressShown; }
    void HideProgress() override { ++progressHidden; }
    void SetWaitCursor(bool on) override { waitCursor = on; }
    OptionChoice ChooseOption(const OptionDialog& dialog) override {
        dialogs.push_back(dialog);
        return option.value_or(OptionChoice{dialog.preselected, false});
    }
    void OpenDocument(const std::string& path) override { opened.push_back(path); }
    void StartProgram(const std::string& program, const std::string& argument) override {
        started.push_back(program + " " + argument);
    }
    void SetClipboardText(const std::string& text) override { clipboard = text; }
    void FileWritten(const std::string& path) override { written.push_back(path); }

    std::vector<Shown> messages;
    std::vector<std::string> progressTexts;
    std::vector<std::string> progressCaptions;
    std::deque<Answer> answers;  // answers to questions, in order
    Answer defaultAnswer = Answer::No;
    double lastProgress = 0;
    int progressShown = 0;
    int progressHidden = 0;
    bool waitCursor = false;
    std::vector<OptionDialog> dialogs;   // every option dialog shown
    std::optional<OptionChoice> option;  // the answer to option dialogs; the preselected when empty
    std::vector<std::string> opened;     // documents opened
    std::vector<std::string> started;    // programs started: path, a blank, the argument
    std::optional<std::string> clipboard;
    std::vector<std::string> written;  // files written, full paths, in order
};

const char* IconName(Icon icon);

}  // namespace tallory
