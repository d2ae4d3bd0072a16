// tallory-cli: the grade book without windows, for scripts and for checking figures.
#include <cstring>
#include <iostream>
#include <string>
#include <vector>

#include "cli/Cli.h"
#include "cli/CourseCommands.h"
#include "cli/ScoringCommands.h"
#include "common/RunTimeError.h"

namespace {

using tallory::cli::Context;
using tallory::cli::UsageError;

struct Command {
    const char* name;
    int (*run)(Context&);
};

const Command kCommands[] = {
    {"grid", tallory::cli::GridCommand},
    {"session", tallory::cli::SessionCommand},
    {"log", tallory::cli::LogCommand},
    {"rewrite", tallory::cli::RewriteCommand},
    {"set-scores", tallory::cli::SetScoresCommand},
    {"rename", tallory::cli::RenameCommand},
    {"remove", tallory::cli::RemoveCommand},
};

const char* kUsage =
    "usage: tallory-cli [--course DIR] COMMAND [ARGS] [--json] [--yes|--no]\n"
    "commands:\n"
    "  grid [--by-name]      the score grid of the course\n"
    "  session N             session N read and scored as Set Scores shows it\n"
    "  log FILE              one log file read and scored\n"
    "  rewrite N             write session N's log back as saving Set Scores unchanged does\n"
    "  set-scores N [--participation P] [--cap X | --no-cap] [--min-responses R]\n"
    "             [--question Q (--correct A..E|--) (--points a,b,c,d,e) (--delete|--restore)\n"
    "              (--title T)]...   edit session N's scoring as Set Scores does, and save\n"
    "  rename N TITLE        give session N a new title\n"
    "  remove N --yes        remove session N (its log is emptied, a copy xL... kept)\n";

}  // namespace

int main(int argc, char** argv) {
    Context context;
    std::string commandName;
    try {
        for (int i = 1; i < argc; ++i) {
            std::string word = argv[i];
            if (word == "--course") {
                if (i + 1 >= argc) throw UsageError{"--course needs a folder"};
                context.courseDir = argv[++i];
            } else if (word == "--json") {
                context.json = true;
            } else if (word == "--yes") {
                context.host.answerYes = true;
            } else if (word == "--no") {
                context.host.answerYes = false;
            } else if (word == "--help" || word == "-h") {
                std::cout << kUsage;
                return 0;
            } else if (commandName.empty() && word.rfind("--", 0) != 0) {
                commandName = word;
            } else {
                context.args.push_back(word);
            }
        }
        if (commandName.empty()) throw UsageError{"no command given"};
        for (const Command& command : kCommands)
            if (commandName == command.name) return command.run(context);
        throw UsageError{"unknown command '" + commandName + "'"};
    } catch (const UsageError& error) {
        std::cerr << "tallory-cli: " << error.message << "\n" << kUsage;
        return 2;
    } catch (const tallory::RunTimeError& error) {
        std::cerr << error.what() << "\n";
        return 1;
    } catch (const std::exception& error) {
        std::cerr << "tallory-cli: " << error.what() << "\n";
        return 1;
    }
}
