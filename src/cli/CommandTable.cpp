#include "cli/CommandTable.h"

#include <utility>

#include "cli/commands/Commands.h"

namespace tallory::cli {

namespace {

constexpr CommandEntry kCommands[] = {
    {"clickers", "the clickers that voted but belong to no student; the search options tick rows",
     Needs::Course, Writes::Nothing, DeclareClickersCommand},
    {"export", "export grades for the course's management system", Needs::Course, Writes::Course,
     DeclareExportCommand},
    {"grid", "the score grid of the course, as the main window shows it", Needs::Course,
     Writes::Nothing, DeclareGridCommand},
    {"history", "the course's changes, newest first, each with the files it changed",
     Needs::Nothing, Writes::Nothing, DeclareHistoryCommand},
    {"log", "one log file read by path and scored", Needs::Nothing, Writes::Nothing,
     DeclareLogCommand},
    {"overview",
     "the course at a glance: attendance, averages, the spread of "
     "totals, students at risk, questions answered",
     Needs::Course, Writes::Course, DeclareOverviewCommand},
    {"purge",
     "delete the votes of the ticked unregistered clickers from every log (asks first: --yes "
     "confirms)",
     Needs::Course, Writes::Course, DeclarePurgeCommand},
    {"remove",
     "remove session N: its log is emptied, a copy xL... kept (asks first: --yes confirms)",
     Needs::Course, Writes::Course, DeclareRemoveCommand},
    {"rename", "give session N a new title", Needs::Course, Writes::Course, DeclareRenameCommand},
    {"report", "write every HTML report: each session's summary and detail, the term pages",
     Needs::Course, Writes::Course, DeclareReportCommand},
    {"rewrite", "write session N's log back as saving Set Scores with no edit does", Needs::Course,
     Writes::Course, DeclareRewriteCommand},
    {"session", "session N read and scored as its Set Scores button does", Needs::Course,
     Writes::Nothing, DeclareSessionCommand},
    {"set-scores",
     "edit session N's scoring as the Set Scores screen does, in the order given, and save",
     Needs::Course, Writes::Course, DeclareSetScoresCommand},
    {"student",
     "the student editing screen of a name in the grid (\"#\" + remote for a clicker nobody "
     "registered), and its buttons",
     Needs::Course, Writes::Course, DeclareStudentCommand},
    {"term-report",
     "write the term summary, the student voting data and the student term report again",
     Needs::Course, Writes::Course, DeclareTermReportCommand},
    {"undo",
     "put back the files of change ID (default: the newest change not undone) as they were "
     "before it; files changed since are named in a question (--yes confirms)",
     Needs::Nothing, Writes::Course, DeclareUndoCommand},
    {"unregistered-students", "the roster students without a clicker; the options export the list",
     Needs::Course, Writes::Course, DeclareUnregisteredStudentsCommand},
    {"websync", "register clickers from their web registrations", Needs::Course, Writes::Course,
     DeclareWebSyncCommand},
};

// The one load of the course for every command that needs it, run inside the command's run so
// that a preview loads its copy of the course.
void LoadCommandCourse(Context& context) {
    context.grid =
        HeadlessScreen(context.byName ? DisplayOrder::LastName : DisplayOrder::StudentId);
    context.loaded = LoadCourse(context.course, context.host, context.grid, ReadOnlyLoad());
}

}  // namespace

std::span<const CommandEntry> Commands() {
    return kCommands;
}

void AddCommands(CLI::App& app, Context& context) {
    for (const CommandEntry& entry : kCommands) {
        CLI::App* command = app.add_subcommand(entry.name, entry.description);
        command->footer(
            "Global options, before or after the command: --course DIR, --json, --yes | --no.");
        std::function<int()> run = entry.declare(*command, context);
        if (entry.needs == Needs::Course) {
            run = [&context, run = std::move(run)] {
                LoadCommandCourse(context);
                return run();
            };
        }
        command->callback([&context, &entry, run = std::move(run)] {
            context.command = entry.name;
            context.writes = entry.writes == Writes::Course;
            context.run = run;
        });
    }
}

void AddByNameOption(CLI::App& command, Context& context) {
    command.add_flag("--by-name", context.byName,
                     "sort the students by last name (display order \"Last Name\")");
}

void AddOptionDialogOptions(CLI::App& command, Context& context) {
    CLI::Option* filter =
        command
            .add_option_function<int>(
                "--filter", [&context](const int& index) { context.host.filter = index; },
                "the option chosen in the option dialog, 0..4 (default: the preselected one)")
            ->check(CLI::Range(0, 4))
            ->type_name("N");
    CLI::Option* cancel =
        command.add_flag("--cancel", context.host.cancel, "press the option dialog's Cancel");
    filter->excludes(cancel);
}

CLI::Option* AddSessionArgument(CLI::App& command, std::string& number) {
    return command.add_option("N", number, "the session, 1 for the first column of the grid")
        ->required()
        ->type_name("");
}

void AddGlobalOptions(CLI::App& app, Context& context) {
    app.add_option("--course", context.courseDir, "the course folder (default: the current one)")
        ->type_name("DIR");
    app.add_flag("--json", context.json, "print JSON instead of text");
    CLI::Option* yes = app.add_flag_callback(
        "--yes", [&context] { context.host.answerYes = true; },
        "answer questions with Yes (OK/Cancel questions with OK)");
    CLI::Option* no = app.add_flag_callback(
        "--no", [&context] { context.host.answerYes = false; },
        "answer questions with No (the default)");
    yes->excludes(no);
    app.add_option("--wait", context.waitSeconds,
                   "a writing command waits up to SECONDS for another Tallory to finish with the "
                   "course")
        ->check(CLI::NonNegativeNumber)
        ->type_name("SECONDS");
    app.set_version_flag("--version", "tallory-cli " + std::to_string(TALLORY_VERSION_MAJOR) + "." +
                                          std::to_string(TALLORY_VERSION_MINOR) + "." +
                                          std::to_string(TALLORY_VERSION_REV));
}

}  // namespace tallory::cli
