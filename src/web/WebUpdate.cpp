#include "web/WebUpdate.h"

#include "common/Text.h"

namespace tallory {

namespace {

std::string UpdateText(const std::string& text) {
    return TrimView(text).empty() ? std::string("No upgrades available") : text;
}

}  // namespace

WebUpdateSummary::WebUpdateSummary(const WebUpdateTexts& texts) {
    lblClicker_.text = "Polvane";
    txtClicker_.text = UpdateText(texts.ClickerUpdateText);
    lblGrader_.text = "Tallory";
    txtGrader_.text = UpdateText(texts.GraderUpdateText);
    cmdClose_.text = "Cancel";
    CmdQuit_.text = "Quit Tallory and run Web update";
}

}  // namespace tallory
