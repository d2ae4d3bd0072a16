#include "cli/Cli.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <sstream>

#include "common/AtomicFile.h"
#include "common/ChangeJournal.h"
#include "common/Numbers.h"
#include "common/RecordingHost.h"
#include "common/Text.h"
#include "start/ProgramStart.h"

namespace tallory::cli {

Answer ConsoleHost::Message(std::string_view text, std::string_view title, Icon icon,
                            Buttons buttons, MessageStyle style) {
    // Without --yes or --no every question takes its safe answer, which is the default button of
    // a destructive one; the printed text keeps its blanks, so a table lines up as it stands.
    (void)style;
    const std::string shown = Shown(text);
    std::cerr << "[" << title << "] " << shown << "\n";
    messages_.push_back(nlohmann::json{{"title", JsonText(std::string(title))},
                                       {"text", JsonText(shown)},
                                       {"icon", IconName(icon)}});
    bool yes = answerYes.value_or(false);
    switch (buttons) {
        case Buttons::Ok:
            return Answer::Ok;
        case Buttons::OkCancel:
            return yes ? Answer::Ok : Answer::Cancel;
        case Buttons::YesNo:
        case Buttons::YesNoCancel:
            return yes ? Answer::Yes : Answer::No;
    }
    return Answer::Ok;
}

OptionChoice ConsoleHost::ChooseOption(const OptionDialog& dialog) {
    return OptionChoice{filter.value_or(dialog.preselected), cancel};
}

void ConsoleHost::StartProgram(const std::string& program, const std::string& argument) {
    std::string line = CourseRelative(program) + " " + argument;
    std::cerr << "[start] " << line << "\n";
    started_.push_back(line);
}

void ConsoleHost::SetClipboardText(const std::string& text) {
    clipboard_ = text;
    if (printClipboard) std::cout << text << std::flush;
}

void ConsoleHost::FileWritten(const std::string& path) {
    std::string relative = CourseRelative(path);
    if (std::find(files_.begin(), files_.end(), relative) == files_.end())
        files_.push_back(relative);
}

void ConsoleHost::FileNotWritten(const std::string& path, const std::string& reason) {
    std::cerr << "tallory-cli: " << Shown(reason) << "\n";
    std::string relative = CourseRelative(path);
    if (std::find(unsaved_.begin(), unsaved_.end(), relative) == unsaved_.end())
        unsaved_.push_back(relative);
}

nlohmann::json ConsoleHost::UnsavedJson() const {
    nlohmann::json unsaved = nlohmann::json::array();
    for (const std::string& file : unsaved_) unsaved.push_back(JsonText(file));
    return unsaved;
}

std::string ConsoleHost::Shown(std::string_view text) const {
    return workFolder.empty() ? std::string(text) : ReplaceAll(text, workFolder, appPath);
}

std::string ConsoleHost::CourseRelative(const std::string& path) const {
    const std::string& appPath = workFolder.empty() ? this->appPath : workFolder;
    std::filesystem::path full(path);
    // The process works in the course folder, so a bare name is a file of the course folder.
    if (full.is_relative()) full = std::filesystem::path(appPath) / full;
    full = full.lexically_normal();
    std::filesystem::path relative = full.lexically_relative(appPath);
    if (relative.empty() || *relative.begin() == "..") return full.generic_string();
    return relative.generic_string();
}

nlohmann::json ConsoleHost::FilesJson() const {
    nlohmann::json files = nlohmann::json::array();
    for (const std::string& file : files_) files.push_back(JsonText(file));
    return files;
}

nlohmann::json ConsoleHost::StartedJson() const {
    nlohmann::json started = nlohmann::json::array();
    for (const std::string& line : started_) started.push_back(JsonText(line));
    return started;
}

nlohmann::json ConsoleHost::ClipboardJson() const {
    if (!clipboard_) return nullptr;
    return JsonText(*clipboard_);
}

std::string Context::InvocationPath(const std::string& path) const {
    std::filesystem::path given(path);
    if (given.is_absolute() || invocationDir.empty()) return path;
    return (std::filesystem::path(invocationDir) / given).string();
}

namespace {

struct RegisteredCommand {
    std::string name;
    AddCommandFunction add;
};

// A function-local list, so that registrations in any file may run first.
std::vector<RegisteredCommand>& Registry() {
    static std::vector<RegisteredCommand> commands;
    return commands;
}

}  // namespace

CommandRegistration::CommandRegistration(const char* name, AddCommandFunction add) {
    Registry().push_back({name, add});
}

void AddRegisteredCommands(CLI::App& app, Context& context) {
    std::vector<RegisteredCommand> commands = Registry();
    std::sort(
        commands.begin(), commands.end(),
        [](const RegisteredCommand& a, const RegisteredCommand& b) { return a.name < b.name; });
    for (const RegisteredCommand& command : commands) command.add(app, context);
}

CLI::App& AddCommand(CLI::App& app, Context& context, const std::string& name,
                     const std::string& description, std::function<int()> run) {
    CLI::App* command = app.add_subcommand(name, description);
    command->footer(
        "Global options, before or after the command: --course DIR, --json, --yes | --no.");
    command->callback([&context, name, run = std::move(run)] {
        context.command = name;
        context.run = run;
    });
    return *command;
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

void EnterCourse(Context& context) {
    namespace fs = std::filesystem;
    std::error_code error;
    context.invocationDir = fs::current_path(error).string();
    fs::path folder = fs::absolute(fs::path(context.courseDir), error).lexically_normal();
    std::string appPath = folder.string();
    while (appPath.size() > 1 && appPath.back() == '/') appPath.pop_back();
    if (!fs::is_directory(appPath, error))
        throw UsageError{"no such course folder: " + context.courseDir};
    fs::current_path(appPath, error);
    if (error)
        throw UsageError{"cannot enter the course folder " + appPath + ": " + error.message()};
    context.course.AppPath = appPath;
    context.course.ProgramFolder = appPath;
    context.host.appPath = appPath;
    context.host.printClipboard = !context.json;
}

bool IsWritingCommand(const std::string& name) {
    static const char* const kReadOnly[] = {"grid", "session", "log", "clickers", "history"};
    for (const char* readOnly : kReadOnly)
        if (name == readOnly) return false;
    return true;
}

int RunCommand(Context& context) {
    // A preview writes nothing in the course: like a reading command it takes no lock.
    const bool writing = IsWritingCommand(context.command) && !context.preview;
    if (writing) {
        if (!context.lock.Take(context.course.AppPath, context.waitSeconds)) {
            const std::string reason =
                CourseLockedMessage(context.course.AppPath) +
                " Try again when it has finished, or wait for it with --wait SECONDS.";
            std::cerr << "tallory-cli: " << reason << "\n";
            if (context.json) {
                nlohmann::json document = {{"error", reason},
                                           {"messages", nlohmann::json::array()},
                                           {"unsaved", nlohmann::json::array()}};
                std::cout << document.dump(2) << "\n";
            }
            return kExitLocked;
        }
        RemoveLeftTemporaries(context.course);
    } else if (!context.lock.Take(context.course.AppPath)) {
        // A change is under way: it is not ours to finish.
        return context.preview ? RunPreview(context) : context.run();
    }
    // A change that another run left unfinished is undone before the course is read.
    const std::string undone = UndoInterruptedChange(context.course.AppPath);
    if (!undone.empty())
        context.host.Message(undone, kProgramTitle, Icon::Exclamation, Buttons::Ok);
    if (!writing) context.lock.Release();
    if (context.preview) return RunPreview(context);
    ChangeJournal change(context.course.AppPath, "tallory-cli " + context.command);
    int status = context.run();
    change.Finish();
    if (context.host.AnyUnsaved() && (status == 0 || status == 1)) status = kExitUnsaved;
    return status;
}

std::string JsonText(const std::string& bytes) {
    return Windows1252ToUtf8(bytes);
}

LoadedCourse LoadCourseReadOnly(Context& context) {
    HeadlessScreen screen(context.byName ? DisplayOrder::LastName : DisplayOrder::StudentId);
    return LoadCourse(context.course, context.host, screen, ReadOnlyLoad());
}

int NumberArgument(const std::string& word, int highest, const char* what) {
    double value = 0;
    if (!ToDouble(word, value) || value != Int(value) || value < 1 || value > highest) {
        throw UsageError{std::string(what) + " must be between 1 and " + std::to_string(highest) +
                         ", not '" + word + "'"};
    }
    return static_cast<int>(value);
}

int SessionNumber(const Context& context, const std::string& word) {
    return NumberArgument(word, context.course.NumSessions, "session number");
}

nlohmann::json SessionJson(const Course& course, int number, const std::string& file) {
    using nlohmann::json;
    const QuestionRec& session = course.Questions[0];
    json questions = json::array();
    for (int q = 1; q <= course.NumQuestions; ++q) {
        const QuestionRec& question = course.Questions[q];
        json counts = json::array(), points = json::array();
        for (int i = 0; i <= 6; ++i) counts.push_back(question.ResponseCount[i]);
        for (int i = 1; i <= 5; ++i) points.push_back(question.ChoicePoints[i]);
        questions.push_back({{"name", JsonText(question.Name)},
                             {"start", JsonText(question.StartTime)},
                             {"stop", JsonText(question.StopTime)},
                             {"correct", question.CorrectAnswer},
                             {"deleted", question.Deleted != 0},
                             {"anonymous", question.Anonymous != 0},
                             {"counts", counts},
                             {"points", points},
                             {"max", question.MaxPoints},
                             {"average", question.AveragePoints}});
    }
    json voters = json::array();
    for (int v = 1; v <= course.NumVoters; ++v) {
        const VoteRec& vote = course.Votes[v];
        json answers = json::array(), scores = json::array();
        for (int q = 1; q <= course.NumQuestions; ++q) {
            answers.push_back(vote.Answer[q]);
            scores.push_back(vote.Score[q]);
        }
        voters.push_back({{"student", JsonText(vote.StudentId)},
                          {"remote", JsonText(vote.RemoteId)},
                          {"total", vote.Score[0]},
                          {"answers", answers},
                          {"scores", scores}});
    }
    return {{"number", number},
            {"file", JsonText(file)},
            {"title", JsonText(session.Name)},
            {"title_deleted", session.Deleted != 0},
            {"performance", course.SessPerformance},
            {"participation", course.SessParticipation},
            {"min_reply", course.SessMinReply},
            {"min_correct", course.SessMinCorrect},
            {"max_points", session.MaxPoints},
            {"average", session.AveragePoints},
            {"questions", questions},
            {"voters", voters}};
}

std::string SessionText(const Course& course, int number, const std::string& file) {
    std::ostringstream out;
    const QuestionRec& session = course.Questions[0];
    out << "Session " << number << ": " << file;
    if (!TrimView(session.Name).empty()) out << "  \"" << DisplayText(session.Name) << "\"";
    out << "\nPerformance cap " << NumberText(course.SessPerformance) << ", participation "
        << NumberText(course.SessParticipation) << ", min reply " << course.SessMinReply
        << ", min correct " << course.SessMinCorrect << "\nAvailable points "
        << FormatFixed(session.MaxPoints) << ", class average "
        << NumberText(Round(session.AveragePoints, 2)) << "\n\n";
    out << "Question              Correct  A      B      C      D      E      Max    Average\n";
    for (int q = 1; q <= course.NumQuestions; ++q) {
        const QuestionRec& question = course.Questions[q];
        std::string name = DisplayText(question.Name);
        if (question.Deleted) name += " (deleted)";
        if (question.Anonymous) name += " (anonymous)";
        out << name << Padding(22, name.size())
            << (question.CorrectAnswer >= 1 && question.CorrectAnswer <= 5
                    ? std::string(1, static_cast<char>('A' + question.CorrectAnswer - 1))
                    : std::string("-"))
            << "        ";
        for (int i = 1; i <= 5; ++i) {
            std::string cell = std::to_string(question.ResponseCount[i]) + "/" +
                               NumberText(question.ChoicePoints[i]);
            out << cell << Padding(7, cell.size());
        }
        out << NumberText(question.MaxPoints) << Padding(7, NumberText(question.MaxPoints).size())
            << NumberText(Round(question.AveragePoints, 2)) << "\n";
    }
    out << "\nVoter                 Remote        Total\n";
    for (int v = 1; v <= course.NumVoters; ++v) {
        const VoteRec& vote = course.Votes[v];
        std::string student = DisplayText(vote.StudentId);
        out << student << Padding(22, student.size()) << vote.RemoteId
            << Padding(14, vote.RemoteId.size()) << NumberText(vote.Score[0]) << "\n";
    }
    return out.str();
}

std::string Padding(size_t width, size_t used) {
    return std::string(used < width ? width - used : 1, ' ');
}

void Print(const Context& context, nlohmann::json document, const std::string& text,
           Extras extras) {
    if (context.preview) {
        context.pending = Context::PendingOutput{std::move(document), text, extras.files,
                                                 extras.started, extras.clipboard};
        return;
    }
    // No sentence of success for work that was not saved: stderr has said what was not.
    if (!context.json) {
        if (!context.host.AnyUnsaved()) std::cout << text;
        return;
    }
    if (IsWritingCommand(context.command)) document["unsaved"] = context.host.UnsavedJson();
    if (extras.files) document["files"] = context.host.FilesJson();
    if (extras.started) document["started"] = context.host.StartedJson();
    if (extras.clipboard) document["clipboard"] = context.host.ClipboardJson();
    document["messages"] = context.host.MessagesJson();
    std::cout << document.dump(2) << "\n";
}

int Failed(const Context& context, nlohmann::json document, const std::string& reason) {
    std::cerr << "tallory-cli: " << reason << "\n";
    if (context.json) {
        document["error"] = reason;
        Print(context, document, "");
    }
    return 1;
}

}  // namespace tallory::cli
