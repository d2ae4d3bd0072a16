// log FILE: one log read by path and scored; no other log of the course is read first.
#include <memory>

#include "cli/commands/Commands.h"
#include "common/Paths.h"
#include "logs/SessionLog.h"
#include "registration/RemoteTable.h"
#include "scoring/Grading.h"
#include "start/Settings.h"

namespace tallory::cli {

namespace {

int RunLog(Context& context, const std::string& given) {
    Course& course = context.course;
    // The course's settings and registrations, so that remotes resolve.
    ReadConfig(course, context.host);
    ReadRemoteIds(course, context.host, CoursePath(course.AppPath, "\\SessionData\\RemoteID.csv"));
    const std::string path = context.InvocationPath(given);
    if (!FileExists(path)) throw UsageError{"no such log file: " + given};
    OpenSessionLog(course, path);
    std::string file = LastComponent(path);
    Print(context, SessionJson(course, 0, file), SessionText(course, 0, file));
    return 0;
}

}  // namespace

std::function<int()> DeclareLogCommand(CLI::App& command, Context& context) {
    auto file = std::make_shared<std::string>();
    command.add_option("FILE", *file, "the log file")->required()->type_name("");
    return [&context, file] { return RunLog(context, *file); };
}

}  // namespace tallory::cli
