#pragma once

#include <string>
#include <string_view>

namespace tallory {

enum class Icon { None, Information, Exclamation, Question, Stop };
enum class Buttons { Ok, OkCancel, YesNo, YesNoCancel };
enum class Answer { Ok, Cancel, Yes, No };

// The title a message box takes when the program gives none.
inline constexpr std::string_view kProgramTitle = "Tallory";

// Everything that talks to a person. Logic never opens a window: it asks its Host.
class Host {
  public:
    virtual ~Host() = default;

    // A modal message box; returns the button pressed.
    virtual Answer Message(std::string_view text, std::string_view title = kProgramTitle,
                           Icon icon = Icon::None, Buttons buttons = Buttons::Ok) = 0;

    // The progress screen: shown for a long pass, its label text, its bar (0..1).
    virtual void ShowProgress() {}
    virtual void HideProgress() {}
    virtual void SetProgressText(std::string_view text) { (void)text; }
    virtual void SetProgressValue(double fraction) { (void)fraction; }

    // Lets pending events run, so the screen stays alive during a long pass.
    virtual void YieldEvents() {}

    virtual void SetWaitCursor(bool on) { (void)on; }
};

}  // namespace tallory
