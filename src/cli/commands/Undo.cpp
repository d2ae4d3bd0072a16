// undo [ID]: puts back the files of a change as they were before it, as a change of its own.
#include <memory>

#include "cli/Cli.h"
#include "common/History.h"

namespace tallory::cli {

namespace {

int RunUndo(Context& context, int id) {
    if (id == 0) id = NewestUndoable(ReadHistory(context.course.AppPath));
    const UndoResult result = UndoEntry(context.course.AppPath, id, context.host);
    nlohmann::json restored = nlohmann::json::array();
    std::string text;
    for (const std::string& file : result.restored) {
        restored.push_back(JsonText(file));
        text += "Restored " + file + "\n";
    }
    Print(context, {{"restored", restored}}, text, Extras{.files = true});
    return 0;
}

void AddUndoCommand(CLI::App& app, Context& context) {
    auto id = std::make_shared<int>(0);
    CLI::App& command = AddCommand(
        app, context, "undo",
        "put back the files of change ID (default: the newest change not undone) as they were "
        "before it; files changed since are named in a question (--yes confirms)",
        [&context, id] { return RunUndo(context, *id); });
    command.add_option("ID", *id, "the change, as `history` numbers it")
        ->check(CLI::PositiveNumber)
        ->type_name("");
}

const CommandRegistration kRegistered("undo", AddUndoCommand);

}  // namespace

}  // namespace tallory::cli
