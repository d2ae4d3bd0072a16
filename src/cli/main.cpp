// tallory-cli: the grade book without windows, for scripts and for checking figures.
#include <iostream>
#include <string>

#include "cli/Cli.h"
#include "cli/CommandTable.h"
#include "common/RunTimeError.h"

namespace {

constexpr const char* kDescription =
    "tallory-cli: the grade book without windows. Every command first reads the course folder as "
    "the desktop program's start does; messages it would show go to stderr as [TITLE] TEXT.";

// A usage error: the reason on stderr, exit status 2, nothing run and nothing written.
int UsageFailure(const std::string& message) {
    std::cerr << "tallory-cli: " << message << "\nRun with --help for more information.\n";
    return 2;
}

}  // namespace

int main(int argc, char** argv) {
    using namespace tallory::cli;
    Context context;
    CLI::App app(kDescription, "tallory-cli");
    // Global options may stand before or after the command: the command hands them up.
    app.fallthrough();
    app.require_subcommand(1);
    AddGlobalOptions(app, context);
    AddCommands(app, context);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        // --help and --version end the parse with exit code 0 and print on stdout.
        if (error.get_exit_code() == 0) return app.exit(error);
        // A mistyped command is left over as an unexpected word: name it rather than the missing
        // command.
        if (app.get_subcommands().empty() && !app.remaining().empty())
            return UsageFailure("unknown command '" + app.remaining().front() + "'");
        return UsageFailure(error.what());
    }
    try {
        if (!context.run) return UsageFailure("no command given");
        EnterCourse(context);
        return RunCommand(context);
    } catch (const UsageError& error) {
        return UsageFailure(error.message);
    } catch (const tallory::RunTimeError& error) {
        std::cerr << error.what() << "\n";
        return 1;
    } catch (const std::exception& error) {
        std::cerr << "tallory-cli: " << error.what() << "\n";
        return 1;
    }
}
