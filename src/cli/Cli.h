#pragma once

#include <nlohmann/json.hpp>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "cli/ConsoleHost.h"
#include "common/Course.h"
#include "common/CourseLock.h"
#include "common/Host.h"
#include "grid/CourseLoad.h"
#include "grid/HeadlessGrid.h"

namespace tallory::cli {

// What every command gets: the course folder, the global options, the course and the host.
struct Context {
    std::string courseDir = ".";  // --course as given
    std::string invocationDir;    // the working folder the program was started in
    bool json = false;
    bool byName = false;     // --by-name, for the commands that declare it (AddByNameOption)
    double waitSeconds = 0;  // --wait: how long a writing command waits for the course's lock
    std::string command;     // the chosen command's name
    bool writes = true;      // the chosen command may write into the course (Writes::Course)
    CourseLock lock;         // held by a writing command for its run
    Course course;
    ConsoleHost host;
    // The course as the grid shows it after the start's load, for the commands that need it.
    HeadlessScreen grid;
    LoadedCourse loaded;
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

// Makes the course folder absolute (AppPath, no trailing separator) and moves into it.
void EnterCourse(Context& context);

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
