// rewrite N: Set Scores opened on the session and saved with no edit: read, score, write back.
#include <memory>

#include "cli/commands/Commands.h"
#include "scoring/SetScoresScreen.h"

namespace tallory::cli {

namespace {

int RunRewrite(Context& context, const std::string& word) {
    Course& course = context.course;
    const int number = SessionNumber(context, word);
    ReadSessionForScoring(course, number);
    HeadlessSessionGrid grid(course);
    SetScoresScreen screen(course, context.host, grid);
    screen.Load();
    screen.cmdSetClick();
    Print(context, nlohmann::json::object(), "");
    return screen.WriteSucceeded() ? 0 : 1;
}

}  // namespace

std::function<int()> DeclareRewriteCommand(CLI::App& command, Context& context) {
    auto number = std::make_shared<std::string>();
    AddSessionArgument(command, *number);
    return [&context, number] { return RunRewrite(context, *number); };
}

}  // namespace tallory::cli
