// report [--filter N | --cancel]: the session summary report command, every page of the course.
#include <sstream>

#include "cli/commands/Commands.h"
#include "reports/RunReports.h"

namespace tallory::cli {

namespace {

// The pages written, one a line, relative to the course folder.
std::string FilesText(const Context& context) {
    std::ostringstream out;
    for (const auto& file : context.host.FilesJson()) out << file.get<std::string>() << "\n";
    return out.str();
}

int RunReport(Context& context) {
    RunReports(context.course, context.host);
    Print(context, {{"mode", context.course.ReportDisplayMode}}, FilesText(context),
          Extras{.files = true});
    return 0;
}

}  // namespace

std::function<int()> DeclareReportCommand(CLI::App& command, Context& context) {
    AddOptionDialogOptions(command, context);
    AddByNameOption(command, context);
    return [&context] { return RunReport(context); };
}

}  // namespace tallory::cli
