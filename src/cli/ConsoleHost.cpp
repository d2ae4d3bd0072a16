#include "cli/ConsoleHost.h"

#include <algorithm>
#include <filesystem>
#include <iostream>

#include "common/RecordingHost.h"
#include "common/Text.h"

namespace tallory::cli {

Answer ConsoleHost::Message(std::string_view text, std::string_view title, Icon icon,
                            Buttons buttons, MessageStyle style) {
    // Without --yes or --no every question takes its safe answer, which is the default button of
    // a destructive one; the printed text keeps its blanks, so a table lines up as it stands.
    (void)style;
    const std::string shown = Shown(text);
    std::cerr << "[" << title << "] " << shown << "\n";
    messages_.push_back(nlohmann::json{{"title", JsonText(std::string(title))},
                                       {"text", JsonText(shown)},
                                       {"icon", IconName(icon)}});
    bool yes = answerYes.value_or(false);
    switch (buttons) {
        case Buttons::Ok:
            return Answer::Ok;
        case Buttons::OkCancel:
            return yes ? Answer::Ok : Answer::Cancel;
        case Buttons::YesNo:
        case Buttons::YesNoCancel:
            return yes ? Answer::Yes : Answer::No;
    }
    return Answer::Ok;
}

OptionChoice ConsoleHost::ChooseOption(const OptionDialog& dialog) {
    return OptionChoice{filter.value_or(dialog.preselected), cancel};
}

void ConsoleHost::StartProgram(const std::string& program, const std::string& argument) {
    std::string line = CourseRelative(program) + " " + argument;
    std::cerr << "[start] " << line << "\n";
    started_.push_back(line);
}

void ConsoleHost::SetClipboardText(const std::string& text) {
    clipboard_ = text;
    if (printClipboard) std::cout << text << std::flush;
}

void ConsoleHost::FileWritten(const std::string& path) {
    std::string relative = CourseRelative(path);
    if (std::find(files_.begin(), files_.end(), relative) == files_.end())
        files_.push_back(relative);
}

void ConsoleHost::FileNotWritten(const std::string& path, const std::string& reason) {
    std::cerr << "tallory-cli: " << Shown(reason) << "\n";
    std::string relative = CourseRelative(path);
    if (std::find(unsaved_.begin(), unsaved_.end(), relative) == unsaved_.end())
        unsaved_.push_back(relative);
}

nlohmann::json ConsoleHost::UnsavedJson() const {
    nlohmann::json unsaved = nlohmann::json::array();
    for (const std::string& file : unsaved_) unsaved.push_back(JsonText(file));
    return unsaved;
}

std::string ConsoleHost::Shown(std::string_view text) const {
    return workFolder.empty() ? std::string(text) : ReplaceAll(text, workFolder, appPath);
}

std::string ConsoleHost::CourseRelative(const std::string& path) const {
    const std::string& appPath = workFolder.empty() ? this->appPath : workFolder;
    std::filesystem::path full(path);
    // The process works in the course folder, so a bare name is a file of the course folder.
    if (full.is_relative()) full = std::filesystem::path(appPath) / full;
    full = full.lexically_normal();
    std::filesystem::path relative = full.lexically_relative(appPath);
    if (relative.empty() || *relative.begin() == "..") return full.generic_string();
    return relative.generic_string();
}

nlohmann::json ConsoleHost::FilesJson() const {
    nlohmann::json files = nlohmann::json::array();
    for (const std::string& file : files_) files.push_back(JsonText(file));
    return files;
}

nlohmann::json ConsoleHost::StartedJson() const {
    nlohmann::json started = nlohmann::json::array();
    for (const std::string& line : started_) started.push_back(JsonText(line));
    return started;
}

nlohmann::json ConsoleHost::ClipboardJson() const {
    if (!clipboard_) return nullptr;
    return JsonText(*clipboard_);
}

std::string JsonText(const std::string& bytes) {
    return Windows1252ToUtf8(bytes);
}

}  // namespace tallory::cli
