#pragma once

// The commands of the command table: each file of this folder declares one command's options and
// arguments on its subcommand and returns what runs once the whole command line has been parsed.
#include <functional>

#include "cli/Cli.h"
#include "cli/CommandTable.h"
#include "cli/SessionOutput.h"

namespace tallory::cli {

std::function<int()> DeclareClickersCommand(CLI::App& command, Context& context);
std::function<int()> DeclareExportCommand(CLI::App& command, Context& context);
std::function<int()> DeclareGridCommand(CLI::App& command, Context& context);
std::function<int()> DeclareHistoryCommand(CLI::App& command, Context& context);
std::function<int()> DeclareLogCommand(CLI::App& command, Context& context);
std::function<int()> DeclareOverviewCommand(CLI::App& command, Context& context);
std::function<int()> DeclarePurgeCommand(CLI::App& command, Context& context);
std::function<int()> DeclareRemoveCommand(CLI::App& command, Context& context);
std::function<int()> DeclareRenameCommand(CLI::App& command, Context& context);
std::function<int()> DeclareReportCommand(CLI::App& command, Context& context);
std::function<int()> DeclareRewriteCommand(CLI::App& command, Context& context);
std::function<int()> DeclareSessionCommand(CLI::App& command, Context& context);
std::function<int()> DeclareSetScoresCommand(CLI::App& command, Context& context);
std::function<int()> DeclareStudentCommand(CLI::App& command, Context& context);
std::function<int()> DeclareTermReportCommand(CLI::App& command, Context& context);
std::function<int()> DeclareUndoCommand(CLI::App& command, Context& context);
std::function<int()> DeclareUnregisteredStudentsCommand(CLI::App& command, Context& context);
std::function<int()> DeclareWebSyncCommand(CLI::App& command, Context& context);

}  // namespace tallory::cli
