// term-report [--mode N]: the term summary report command, with the display mode of a run before.
#include <memory>
#include <sstream>

#include "cli/commands/Commands.h"
#include "reports/RunReports.h"

namespace tallory::cli {

namespace {

int RunTermReport(Context& context, int mode) {
    context.course.ReportDisplayMode = static_cast<int16_t>(mode);
    // Like the desktop command it makes no Reports folder: without one, the student term report
    // cannot be opened and the command ends with the run-time error.
    RunTermReports(context.course, context.host);
    std::ostringstream text;
    for (const auto& file : context.host.FilesJson()) text << file.get<std::string>() << "\n";
    Print(context, {{"mode", context.course.ReportDisplayMode}}, text.str(), Extras{.files = true});
    return 0;
}

}  // namespace

std::function<int()> DeclareTermReportCommand(CLI::App& command, Context& context) {
    auto mode = std::make_shared<int>(0);
    command
        .add_option("--mode", *mode,
                    "how students are shown, 0..4 as in the report's display preferences "
                    "(default 0, the mode at program start)")
        ->check(CLI::Range(0, 4))
        ->type_name("N");
    AddByNameOption(command, context);
    return [&context, mode] { return RunTermReport(context, *mode); };
}

}  // namespace tallory::cli
