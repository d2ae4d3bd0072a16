// session N: a session read and scored as its "Set Scores" button does before its screen opens.
#include <memory>

#include "cli/commands/Commands.h"
#include "scoring/SetScoresScreen.h"

namespace tallory::cli {

namespace {

int RunSession(Context& context, const std::string& word) {
    const int number = SessionNumber(context, word);
    ReadSessionForScoring(context.course, number);
    const std::string& file = context.course.SessionFile[number];
    Print(context, SessionJson(context.course, number, file),
          SessionText(context.course, number, file));
    return 0;
}

}  // namespace

std::function<int()> DeclareSessionCommand(CLI::App& command, Context& context) {
    auto number = std::make_shared<std::string>();
    AddSessionArgument(command, *number);
    return [&context, number] { return RunSession(context, *number); };
}

}  // namespace tallory::cli
