#pragma once

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "common/Course.h"
#include "common/CourseLock.h"
#include "common/Host.h"
#include "grid/CourseLoad.h"
#include "grid/HeadlessGrid.h"

namespace tallory::cli {

// The person at the console, answered from the command line: every message box is printed as
// "[TITLE] TEXT" on stderr and kept for the JSON output; questions take --yes / --no (No when
// neither was given), OK/Cancel questions take OK only with --yes, so a destructive question's
// safe default is the answer of a command line that gave none; the option dialog takes
// --filter / --cancel. Programs are never started, only listed; the clipboard is the output.
class ConsoleHost : public Host {
  public:
    Answer Message(std::string_view text, std::string_view title, Icon icon, Buttons buttons,
                   MessageStyle style = {}) override;
    OptionChoice ChooseOption(const OptionDialog& dialog) override;
    void StartProgram(const std::string& program, const std::string& argument) override;
    void SetClipboardText(const std::string& text) override;
    void FileWritten(const std::string& path) override;
    // Says why on stderr at once, and keeps the file for "unsaved".
    void FileNotWritten(const std::string& path, const std::string& reason) override;

    nlohmann::json MessagesJson() const { return messages_; }
    // Files that were meant to be written and were not, named as FilesJson names them.
    nlohmann::json UnsavedJson() const;
    bool AnyUnsaved() const { return !unsaved_.empty(); }
    // Files written, relative to the course folder, "/"-separated, once each, in first-write order.
    nlohmann::json FilesJson() const;
    // Forgets the files written so far (those of a preview's copy, which the course never saw).
    void ForgetFiles() { files_.clear(); }
    // Programs that would have been started: "file relative to the course folder" + " " + argument.
    nlohmann::json StartedJson() const;
    // The last text given to the clipboard; null when nothing was copied.
    nlohmann::json ClipboardJson() const;

    // Answers, from the command line.
    std::optional<bool> answerYes;
    std::optional<int> filter;  // --filter N: the option ticked in an option dialog
    bool cancel = false;        // --cancel: the option dialog's cancel button
    // Text mode prints the clipboard on stdout when it is set; JSON mode keeps it for the output.
    bool printClipboard = true;
    // The course folder, absolute: written files and started programs are named relative to it.
    std::string appPath;
    // Where the command works when that is not the course folder itself (the copy a preview
    // changes): its files are named, and its paths shown, as the course's.
    std::string workFolder;

  private:
    std::string CourseRelative(const std::string& path) const;
    // A text to show, its paths in the work folder shown as the course's.
    std::string Shown(std::string_view text) const;

    nlohmann::json messages_ = nlohmann::json::array();
    std::vector<std::string> files_;
    std::vector<std::string> unsaved_;
    std::vector<std::string> started_;
    std::optional<std::string> clipboard_;
};

// What every command gets: the course folder, the global options, the course and the host.
struct Context {
    std::string courseDir = ".";  // --course as given
    std::string invocationDir;    // the working folder the program was started in
    bool json = false;
    bool byName = false;     // --by-name, for the commands that declare it (AddByNameOption)
    double waitSeconds = 0;  // --wait: how long a writing command waits for the course's lock
    std::string command;     // the chosen command's name
    CourseLock lock;         // held by a writing command for its run
    Course course;
    ConsoleHost host;
    // Set by the chosen command's subcommand once the whole command line has been parsed.
    std::function<int()> run;
    // --preview: the command runs on a copy of the course, and what it printed waits in
    // `pending` until the copy's grid has been set against the course's (see RunPreview).
    bool preview = false;
    struct PendingOutput {
        nlohmann::json document;
        std::string text;
        bool files = false, started = false, clipboard = false;  // the Extras asked for
    };
    mutable std::optional<PendingOutput> pending;

    // A path argument as the person meant it: relative ones are relative to the folder the program
    // was started in, not the course folder the process has moved into.
    std::string InvocationPath(const std::string& path) const;
};

// ---- Commands -----------------------------------------------------------------------------------
// A command is one file under src/cli/commands/ with an Add function that declares its subcommand
// with AddCommand, and one registration line at namespace scope:
//
//     const CommandRegistration kRegistered("grid", AddGridCommand);
//
// The command files are compiled into the program itself (not a library), so every registration
// runs before main. Commands appear in --help sorted by name.
using AddCommandFunction = void (*)(CLI::App& app, Context& context);

struct CommandRegistration {
    CommandRegistration(const char* name, AddCommandFunction add);
};

// Every registered command added to the program's App, in name order.
void AddRegisteredCommands(CLI::App& app, Context& context);

// Declares a subcommand. `run` runs once the whole command line has been parsed (a usage error
// anywhere stops the program before any command starts); it returns the exit status.
CLI::App& AddCommand(CLI::App& app, Context& context, const std::string& name,
                     const std::string& description, std::function<int()> run);

// The options some commands share. Each binds to the Context, so the command only declares them.
// --by-name: the display order "Last Name" instead of "Student ID".
void AddByNameOption(CLI::App& command, Context& context);
// --filter N (0..4) | --cancel: the answer to an option dialog (ChooseOption).
void AddOptionDialogOptions(CLI::App& command, Context& context);

// --preview: the command runs on a copy of the course and shows what it would change.
void AddPreviewOption(CLI::App& command, Context& context);

// The positional N of the commands that act on one session (1 for the grid's first session column).
CLI::Option* AddSessionArgument(CLI::App& command, std::string& number);

// The global options (--course, --json, --yes, --no, --version) on the program's App.
void AddGlobalOptions(CLI::App& app, Context& context);

// Makes the course folder absolute (AppPath, no trailing separator) and moves into it.
void EnterCourse(Context& context);

// True for the commands that may write into the course; the others take no lock and never wait.
bool IsWritingCommand(const std::string& name);

// Exit statuses beyond 0 (done), 1 (not done) and 2 (usage).
constexpr int kExitUnsaved = 3;  // ran to its end, but a file was not written
constexpr int kExitLocked = 4;   // another Tallory is changing the course: nothing done

// Runs the chosen command in the entered course: a writing command first takes the course's
// lock (or ends with kExitLocked) and clears what killed runs left; every command undoes a
// change another run left unfinished when no one holds the lock; the command's writes are one
// journaled change; a run that left a file unwritten ends with kExitUnsaved.
int RunCommand(Context& context);

// A --preview run: the command, answered as it would be, works on a copy of the course; its output
// gains "preview" (the files that would change and every grid cell whose figure would), and its
// "files" are none, since nothing in the course folder was written.
int RunPreview(Context& context);

// ---- Work ---------------------------------------------------------------------------------------
// Reads the course as the main window's start sequence does, without writing anything, in the
// display order --by-name chose.
LoadedCourse LoadCourseReadOnly(Context& context);

// The session in Questions/Votes as the JSON object of `session`.
nlohmann::json SessionJson(const Course& course, int number, const std::string& file);
// The same as readable text.
std::string SessionText(const Course& course, int number, const std::string& file);

// Texts of the course files are bytes; JSON needs UTF-8 (bytes above 0x7F as Windows-1252).
std::string JsonText(const std::string& bytes);

// Parses a whole number argument 1..highest; throws UsageError naming `what` otherwise.
int NumberArgument(const std::string& word, int highest, const char* what);

// Parses a session number argument 1..NumSessions; throws UsageError otherwise.
int SessionNumber(const Context& context, const std::string& word);

// Blanks that pad a column of `width` after `used` characters (at least one).
std::string Padding(size_t width, size_t used);

// A usage error found after parsing (a session number out of range...): message on stderr, exit
// status 2. Throw it before anything is written.
struct UsageError {
    std::string message;
};

// ---- Output -------------------------------------------------------------------------------------
// The keys besides "messages" that a command's JSON carries, for the commands that have them.
struct Extras {
    bool files = false;      // "files": FilesJson()
    bool started = false;    // "started": StartedJson()
    bool clipboard = false;  // "clipboard": ClipboardJson()
};

// Writes the JSON document (with "messages" and the extras asked for) or the text on stdout.
void Print(const Context& context, nlohmann::json document, const std::string& text,
           Extras extras = {});

// Ends a command that did not do what was asked: the reason on stderr, and in JSON as "error";
// exit status 1.
int Failed(const Context& context, nlohmann::json document, const std::string& reason);

}  // namespace tallory::cli
