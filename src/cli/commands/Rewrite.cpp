// rewrite N: Set Scores opened on the session and saved with no edit: read, score, write back.
#include <memory>

#include "cli/Cli.h"
#include "scoring/SetScoresScreen.h"

namespace tallory::cli {

namespace {

int RunRewrite(Context& context, const std::string& word) {
    LoadCourseReadOnly(context);
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

void AddRewriteCommand(CLI::App& app, Context& context) {
    auto number = std::make_shared<std::string>();
    CLI::App& command =
        AddCommand(app, context, "rewrite",
                   "write session N's log back as saving Set Scores with no edit does",
                   [&context, number] { return RunRewrite(context, *number); });
    AddSessionArgument(command, *number);
}

const CommandRegistration kRegistered("rewrite", AddRewriteCommand);

}  // namespace

}  // namespace tallory::cli
