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

std::string Context::InvocationPath(const std::string& path) const {
    std::filesystem::path given(path);
    if (given.is_absolute() || invocationDir.empty()) return path;
    return (std::filesystem::path(invocationDir) / given).string();
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

int RunCommand(Context& context) {
    // A preview writes nothing in the course: like a reading command it takes no lock.
    const bool writing = context.writes && !context.preview;
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
    if (context.writes) document["unsaved"] = context.host.UnsavedJson();
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
