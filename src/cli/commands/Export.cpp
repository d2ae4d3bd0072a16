// export all|selected [--sessions LIST] [--filter N | --cancel] [--by-name]
// [--canvas-columns sessions|total] [--absent blank|zero]: the main window's Export All and Export
// Selected, in the format the course opened with.
#include <memory>

#include "cli/commands/Commands.h"
#include "common/Text.h"
#include "export/Export.h"

namespace tallory::cli {

namespace {

struct ExportOptions {
    std::string which;
    std::string sessions;
    // The Canvas upload's layout, which the desktop program asks for in its export dialog.
    std::string canvasColumns = "sessions";
    std::string absent = "blank";
};

int RunExportCommand(Context& context, const ExportOptions& options) {
    const LoadedCourse& loaded = context.loaded;
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
    const CanvasChoice canvas{options.canvasColumns == "total", options.absent == "zero"};
    const std::vector<UploadColumn> columns =
        options.which == "all"
            ? ExportAll(context.course, context.host, loaded.format.tag, canvas)
            : ExportSelected(context.course, context.host, loaded.format.tag, canvas);
    std::string text;
    for (const auto& file : context.host.FilesJson())
        text += "Wrote " + file.get<std::string>() + "\n";
    nlohmann::json document = nlohmann::json::object();
    // Only a Canvas export names its columns: the other targets' output stays as it was.
    if (NormalKey(loaded.format.tag) == "CANVAS") {
        document["columns"] = nlohmann::json::array();
        for (const UploadColumn& column : columns)
            document["columns"].push_back({{"title", column.title}, {"points", column.points}});
    }
    Print(context, document, text, Extras{.files = true, .started = true});
    return 0;
}

}  // namespace

std::function<int()> DeclareExportCommand(CLI::App& command, Context& context) {
    auto options = std::make_shared<ExportOptions>();
    command.add_option("WHICH", options->which, "all: every session; selected: the --sessions")
        ->required()
        ->check(CLI::IsMember({"all", "selected"}))
        ->type_name("all|selected");
    command
        .add_option("--sessions", options->sessions,
                    "the ticked sessions, comma-separated numbers from 1")
        ->type_name("LIST");
    command
        .add_option("--canvas-columns", options->canvasColumns,
                    "Canvas: one column per session (default) or one total column")
        ->check(CLI::IsMember({"sessions", "total"}))
        ->type_name("sessions|total");
    command
        .add_option("--absent", options->absent,
                    "Canvas: a session without a score is blank (default) or 0")
        ->check(CLI::IsMember({"blank", "zero"}))
        ->type_name("blank|zero");
    AddOptionDialogOptions(command, context);
    AddByNameOption(command, context);
    return [&context, options] { return RunExportCommand(context, *options); };
}

}  // namespace tallory::cli
