#pragma once

#include <array>
#include <string>
#include <string_view>

namespace tallory {

enum class Icon { None, Information, Exclamation, Question, Stop };
enum class Buttons { Ok, OkCancel, YesNo, YesNoCancel };
enum class Answer { Ok, Cancel, Yes, No };

// How a message box shows beyond its words.
struct MessageStyle {
    // The question deletes or drops something: No (or Cancel) is the default button, so that a
    // hurried Enter keeps the data.
    bool destructive = false;
    // The text lines up columns with blanks: it is shown in a fixed-width font.
    bool table = false;
};

inline constexpr MessageStyle kDestructive{.destructive = true};
inline constexpr MessageStyle kTableText{.table = true};

// The button that Enter presses: the first one, except the safe one of a destructive question.
constexpr Answer DefaultButton(Buttons buttons, MessageStyle style) {
    switch (buttons) {
        case Buttons::Ok:
            return Answer::Ok;
        case Buttons::OkCancel:
            return style.destructive ? Answer::Cancel : Answer::Ok;
        case Buttons::YesNo:
        case Buttons::YesNoCancel:
            return style.destructive ? Answer::No : Answer::Yes;
    }
    return Answer::Ok;
}

// The title a message box takes when the program gives none.
inline constexpr std::string_view kProgramTitle = "Tallory";

// A modal dialog of five option buttons (optExport) with an accept and a cancel button: the General
// export's "Select export option" and the reports' "HTML Report Display Preferences".
struct OptionDialog {
    std::string title;
    std::string heading;                   // lblHdr
    std::array<std::string, 5> choices;    // optExport(0..4)
    std::string footer;                    // lblFtr
    std::string acceptCaption = "Export";  // CmdExport
    std::string cancelCaption = "Cancel";  // CmdStop
    int preselected = 2;
};

// What the person chose in an OptionDialog: the ticked option and whether Cancel closed it.
struct OptionChoice {
    int index = 2;
    bool cancelled = false;
};

// Everything that talks to a person. Logic never opens a window: it asks its Host.
class Host {
  public:
    virtual ~Host() = default;

    // A modal message box; returns the button pressed.
    virtual Answer Message(std::string_view text, std::string_view title = kProgramTitle,
                           Icon icon = Icon::None, Buttons buttons = Buttons::Ok,
                           MessageStyle style = {}) = 0;

    // The progress screen: shown for a long pass, its label text, its bar (0..1).
    virtual void ShowProgress() {}
    virtual void HideProgress() {}
    virtual void SetProgressText(std::string_view text) { (void)text; }
    virtual void SetProgressValue(double fraction) { (void)fraction; }
    // The progress screen's window title until it is next taken down; the program's title after.
    virtual void SetProgressCaption(std::string_view caption) { (void)caption; }

    // Lets pending events run, so the screen stays alive during a long pass.
    virtual void YieldEvents() {}

    virtual void SetWaitCursor(bool on) { (void)on; }

    // The option dialog, shown modally; a host without a person takes the preselected option.
    virtual OptionChoice ChooseOption(const OptionDialog& dialog) {
        return OptionChoice{dialog.preselected, false};
    }

    // Shows a finished document (a report page) in the desktop's browser or viewer.
    virtual void OpenDocument(const std::string& path) { (void)path; }

    // Starts another program (the sibling upload/download tool) with one argument, and does not
    // wait for it. `program` is a full path.
    virtual void StartProgram(const std::string& program, const std::string& argument) {
        (void)program;
        (void)argument;
    }

    // Clears the clipboard and gives it the text.
    virtual void SetClipboardText(const std::string& text) { (void)text; }

    // A course file was written or replaced (full path); AtomicFile reports every commit here.
    virtual void FileWritten(const std::string& path) { (void)path; }

    // A course file could not be written or replaced (full path); the old file, if any, stands.
    // `reason` names the file and the cause.
    virtual void FileNotWritten(const std::string& path, const std::string& reason) {
        (void)path;
        (void)reason;
    }
};

}  // namespace tallory
