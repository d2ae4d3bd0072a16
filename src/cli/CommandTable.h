#pragma once

#include <CLI/CLI.hpp>

#include <functional>
#include <span>
#include <string>

#include "cli/Cli.h"

namespace tallory::cli {

// What a command needs before it runs.
enum class Needs {
    Nothing,
    // The course read as the main window's start reads it, without writing anything, in the
    // display order --by-name chose: Context::grid and Context::loaded.
    Course,
};

// Whether a command may write into the course: one that may takes the course's lock for its run
// and journals its writes as one change; the others take no lock and never wait.
enum class Writes { Nothing, Course };

// Declares a command's options and arguments on its subcommand; returns what runs once the whole
// command line has been parsed (a usage error anywhere stops the program before any command
// starts), which returns the exit status.
using DeclareCommand = std::function<int()> (*)(CLI::App& command, Context& context);

struct CommandEntry {
    const char* name;
    const char* description;
    Needs needs;
    Writes writes;
    DeclareCommand declare;
};

// Every command of the program, in the order --help lists them (by name).
std::span<const CommandEntry> Commands();

// Every command of the table added to the program's App.
void AddCommands(CLI::App& app, Context& context);

// The global options (--course, --json, --yes, --no, --wait, --version) on the program's App.
void AddGlobalOptions(CLI::App& app, Context& context);

// The options some commands share. Each binds to the Context, so the command only declares them.
// --by-name: the display order "Last Name" instead of "Student ID".
void AddByNameOption(CLI::App& command, Context& context);
// --filter N (0..4) | --cancel: the answer to an option dialog (ChooseOption).
void AddOptionDialogOptions(CLI::App& command, Context& context);
// --preview: the command runs on a copy of the course and shows what it would change.
void AddPreviewOption(CLI::App& command, Context& context);
// The positional N of the commands that act on one session (1 for the grid's first session column).
CLI::Option* AddSessionArgument(CLI::App& command, std::string& number);

}  // namespace tallory::cli
