// export all|selected [--sessions LIST] [--filter N | --cancel] [--by-name]: the main window's
// Export All and Export Selected, in the format the course opened with.
#include <memory>

#include "cli/Cli.h"
#include "common/Text.h"
#include "export/Export.h"

namespace tallory::cli {

namespace {

struct ExportOptions {
    std::string which;
    std::string sessions;
};

int RunExportCommand(Context& context, const ExportOptions& options) {
    const LoadedCourse loaded = LoadCourseReadOnly(context);
    // The ticks above the session columns: every session of the list, none without it.
    if (!options.sessions.empty()) {
        size_t start = 0;
        for (;;) {
            const size_t comma = options.sessions.find(',', start);
            const std::string word = Trim(options.sessions.substr(start, comma - start));
            context.course.ExportSel[SessionNumber(context, word)] = 1;
            if (comma == std::string::npos) break;
            start = comma + 1;
        }
    }
    if (options.which == "all") {
        ExportAll(context.course, context.host, loaded.format.tag);
    } else {
        ExportSelected(context.course, context.host, loaded.format.tag);
    }
    std::string text;
    for (const auto& file : context.host.FilesJson())
        text += "Wrote " + file.get<std::string>() + "\n";
    Print(context, nlohmann::json::object(), text, Extras{.files = true, .started = true});
    return 0;
}

void AddExportCommand(CLI::App& app, Context& context) {
    auto options = std::make_shared<ExportOptions>();
    CLI::App& command =
        AddCommand(app, context, "export", "export grades for the course's management system",
                   [&context, options] { return RunExportCommand(context, *options); });
    command.add_option("WHICH", options->which, "all: every session; selected: the --sessions")
        ->required()
        ->check(CLI::IsMember({"all", "selected"}))
        ->type_name("all|selected");
    command
        .add_option("--sessions", options->sessions,
                    "the ticked sessions, comma-separated numbers from 1")
        ->type_name("LIST");
    AddOptionDialogOptions(command, context);
    AddByNameOption(command, context);
}

const CommandRegistration kRegistered("export", AddExportCommand);

}  // namespace

}  // namespace tallory::cli
