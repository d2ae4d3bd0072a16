// unregistered-students [--csv | --txt | --xls | --clipboard | --clipboard-tab]: the roster
// students without a clicker, and the list screen's exports.
#include <memory>

#include "cli/commands/Commands.h"
#include "common/Text.h"
#include "housekeeping/UnregisteredStudents.h"

namespace tallory::cli {

namespace {

using Command = void (UnregisteredStudentsScreen::*)();

int RunUnregisteredStudents(Context& context, const Command* command) {
    UnregisteredTable list;
    BuildUnregisteredList(context.course, list);
    UnregisteredStudentsScreen screen(context.course, context.host, list);
    screen.LoadData();
    if (*command) (screen.**command)();

    nlohmann::json students = nlohmann::json::array();
    std::string text;
    for (long i = 0; i < list.Allocated(); ++i) {
        const UnregisteredRec& row = list[i];
        if (!RowCounts(row)) continue;
        students.push_back({{"last", JsonText(row.LastName)},
                            {"first", JsonText(row.FirstName)},
                            {"id", JsonText(row.StudentId)}});
        // The clipboard export prints the list itself.
        if (!*command)
            text += DisplayText(row.StudentId + "  " + row.LastName + ", " + row.FirstName) + "\n";
    }
    Print(context, {{"students", students}}, text, Extras{.files = true, .clipboard = true});
    return 0;
}

}  // namespace

std::function<int()> DeclareUnregisteredStudentsCommand(CLI::App& sub, Context& context) {
    auto command = std::make_shared<Command>(nullptr);
    const struct {
        const char* name;
        Command handler;
        const char* description;
    } exports[] = {
        {"--csv", &UnregisteredStudentsScreen::CmdCSVClick,
         "write \"Unregistered Student List.CSV\" (comma-separated)"},
        {"--txt", &UnregisteredStudentsScreen::CmdTxtClick,
         "write \"Unregistered Student List.txt\" (comma-separated)"},
        {"--xls", &UnregisteredStudentsScreen::CmdExcelClick,
         "write \"Unregistered Student List.xls\" (tab-separated)"},
        {"--clipboard", &UnregisteredStudentsScreen::CmdClipboardClick,
         "copy the list, comma-separated"},
        {"--clipboard-tab", &UnregisteredStudentsScreen::CmdClipboardTabClick,
         "copy the list, tab-separated"},
    };
    std::vector<CLI::Option*> options;
    for (const auto& e : exports) {
        options.push_back(sub.add_flag_callback(
            e.name, [command, handler = e.handler] { *command = handler; }, e.description));
    }
    for (CLI::Option* a : options)
        for (CLI::Option* b : options)
            if (a != b) a->excludes(b);
    AddByNameOption(sub, context);
    return [&context, command] { return RunUnregisteredStudents(context, command.get()); };
}

}  // namespace tallory::cli
