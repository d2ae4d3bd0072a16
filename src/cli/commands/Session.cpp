// session N: a session read and scored as its "Set Scores" button does before its screen opens.
#include <memory>

#include "cli/Cli.h"
#include "scoring/SetScoresScreen.h"

namespace tallory::cli {

namespace {

int RunSession(Context& context, const std::string& word) {
    LoadCourseReadOnly(context);
    const int number = SessionNumber(context, word);
    ReadSessionForScoring(context.course, number);
    const std::string& file = context.course.SessionFile[number];
    Print(context, SessionJson(context.course, number, file),
          SessionText(context.course, number, file));
    return 0;
}

void AddSessionCommand(CLI::App& app, Context& context) {
    auto number = std::make_shared<std::string>();
    CLI::App& command = AddCommand(app, context, "session",
                                   "session N read and scored as its Set Scores button does",
                                   [&context, number] { return RunSession(context, *number); });
    AddSessionArgument(command, *number);
}

const CommandRegistration kRegistered("session", AddSessionCommand);

}  // namespace

}  // namespace tallory::cli
