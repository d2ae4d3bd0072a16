#pragma once

#include <nlohmann/json.hpp>

#include <optional>
#include <string>
#include <vector>

#include "common/Host.h"

namespace tallory::cli {

// Texts of the course files are bytes; JSON needs UTF-8 (bytes above 0x7F as Windows-1252).
std::string JsonText(const std::string& bytes);

// The person at the console, answered from the command line: every message box is printed as
// "[TITLE] TEXT" on stderr and kept for the JSON output; questions take --yes / --no (No when
// neither was given), OK/Cancel questions take OK only with --yes, so a destructive question's
// safe default is the answer of a command line that gave none; the option dialog takes
// --filter / --cancel. Programs are never started, only listed; the clipboard is the output.
class ConsoleHost : public Host {
  public:
    Answer Message(std::string_view text, std::string_view title, Icon icon, Buttons buttons,
                   MessageStyle style = {}) override;
    OptionChoice ChooseOption(const OptionDialog& dialog) override;
    void StartProgram(const std::string& program, const std::string& argument) override;
    void SetClipboardText(const std::string& text) override;
    void FileWritten(const std::string& path) override;
    // Says why on stderr at once, and keeps the file for "unsaved".
    void FileNotWritten(const std::string& path, const std::string& reason) override;

    nlohmann::json MessagesJson() const { return messages_; }
    // Files that were meant to be written and were not, named as FilesJson names them.
    nlohmann::json UnsavedJson() const;
    bool AnyUnsaved() const { return !unsaved_.empty(); }
    // Files written, relative to the course folder, "/"-separated, once each, in first-write order.
    nlohmann::json FilesJson() const;
    // Forgets the files written so far (those of a preview's copy, which the course never saw).
    void ForgetFiles() { files_.clear(); }
    // Programs that would have been started: "file relative to the course folder" + " " + argument.
    nlohmann::json StartedJson() const;
    // The last text given to the clipboard; null when nothing was copied.
    nlohmann::json ClipboardJson() const;

    // Answers, from the command line.
    std::optional<bool> answerYes;
    std::optional<int> filter;  // --filter N: the option ticked in an option dialog
    bool cancel = false;        // --cancel: the option dialog's cancel button
    // Text mode prints the clipboard on stdout when it is set; JSON mode keeps it for the output.
    bool printClipboard = true;
    // The course folder, absolute: written files and started programs are named relative to it.
    std::string appPath;
    // Where the command works when that is not the course folder itself (the copy a preview
    // changes): its files are named, and its paths shown, as the course's.
    std::string workFolder;

  private:
    std::string CourseRelative(const std::string& path) const;
    // A text to show, its paths in the work folder shown as the course's.
    std::string Shown(std::string_view text) const;

    nlohmann::json messages_ = nlohmann::json::array();
    std::vector<std::string> files_;
    std::vector<std::string> unsaved_;
    std::vector<std::string> started_;
    std::optional<std::string> clipboard_;
};

}  // namespace tallory::cli
