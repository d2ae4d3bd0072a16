#pragma once

#include <string>

#include "scoring/ScreenParts.h"

namespace tallory {

// What the program knows of newer versions of the polling application and of itself. Nothing
// fills these: the program has no update source, so both stay empty.
struct WebUpdateTexts {
    std::string ClickerUpdateText;
    std::string GraderUpdateText;
};

// frmWebUpdateSummary ("Web Update"), behind the main window's CmdWebUpdate. It only tells.
class WebUpdateSummary {
  public:
    explicit WebUpdateSummary(const WebUpdateTexts& texts = {});

    // cmdClose ("Cancel") closes the screen; CmdQuit does nothing.
    void cmdCloseClick() { closed_ = true; }
    void CmdQuitClick() {}

    bool Closed() const { return closed_; }
    const ControlState& lblClicker() const { return lblClicker_; }
    const ControlState& txtClicker() const { return txtClicker_; }
    const ControlState& lblGrader() const { return lblGrader_; }
    const ControlState& txtGrader() const { return txtGrader_; }
    const ControlState& cmdClose() const { return cmdClose_; }
    const ControlState& CmdQuit() const { return CmdQuit_; }

  private:
    ControlState lblClicker_;
    ControlState txtClicker_;
    ControlState lblGrader_;
    ControlState txtGrader_;
    ControlState cmdClose_;
    ControlState CmdQuit_;
    bool closed_ = false;
};

}  // namespace tallory
