// undo [ID]: puts back the files of a change as they were before it, as a change of its own.
#include <memory>

#include "cli/commands/Commands.h"
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

}  // namespace

std::function<int()> DeclareUndoCommand(CLI::App& command, Context& context) {
    auto id = std::make_shared<int>(0);
    command.add_option("ID", *id, "the change, as `history` numbers it")
        ->check(CLI::PositiveNumber)
        ->type_name("");
    return [&context, id] { return RunUndo(context, *id); };
}

}  // namespace tallory::cli
