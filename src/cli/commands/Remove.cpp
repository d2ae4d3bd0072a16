// remove N: empties the session's log and keeps the "x" copy; asks first (--yes confirms).
#include <memory>

#include "cli/SessionEdit.h"

namespace tallory::cli {

namespace {

int RunRemove(Context& context, const std::string& word) {
    OpenedSessionEdit opened(context, word);
    EditSessionScreen& screen = opened.screen;
    screen.cmdRemoveClick();
    const std::string& file = screen.lblFileName().text;
    // Only a copy that was written is named; a failed write has shown its message.
    nlohmann::json document = {
        {"number", opened.number},
        {"file", JsonText(file)},
        {"copy", screen.CopyWritten() ? nlohmann::json(JsonText("x" + file)) : nlohmann::json()},
        {"kept",
         screen.KeptLog().empty() ? nlohmann::json() : nlohmann::json(JsonText(screen.KeptLog()))},
        {"removed", screen.Removed()},
        {"sessions", context.course.NumSessions}};
    if (!screen.Removed())
        return Failed(context, document,
                      "session " + std::to_string(opened.number) + " was not removed" +
                          (screen.Confirmed() ? "" : " (--yes confirms)"));
    Print(context, document,
          "Removed " + file + "; its copy is x" + file + ", its original text is kept in " +
              screen.KeptLog() + ", " + std::to_string(context.course.NumSessions) +
              " sessions remain\n",
          Extras{.files = true});
    return 0;
}

}  // namespace

std::function<int()> DeclareRemoveCommand(CLI::App& command, Context& context) {
    auto number = std::make_shared<std::string>();
    AddSessionArgument(command, *number);
    return [&context, number] { return RunRemove(context, *number); };
}

}  // namespace tallory::cli
