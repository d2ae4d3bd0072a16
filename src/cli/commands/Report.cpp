// report [--filter N | --cancel]: the session summary report command, every page of the course.
#include <sstream>

#include "cli/Cli.h"
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
    LoadCourseReadOnly(context);
    RunReports(context.course, context.host);
    Print(context, {{"mode", context.course.ReportDisplayMode}}, FilesText(context),
          Extras{.files = true});
    return 0;
}

void AddReportCommand(CLI::App& app, Context& context) {
    CLI::App& command =
        AddCommand(app, context, "report",
                   "write every HTML report: each session's summary and detail, the term pages",
                   [&context] { return RunReport(context); });
    AddOptionDialogOptions(command, context);
    AddByNameOption(command, context);
}

const CommandRegistration kRegistered("report", AddReportCommand);

}  // namespace

}  // namespace tallory::cli
