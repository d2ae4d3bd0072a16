// --preview: a change run on a copy of the course, and what it would do to the grid.
#include <algorithm>
#include <filesystem>

#include "cli/Cli.h"
#include "cli/CommandTable.h"
#include "common/Numbers.h"
#include "common/Text.h"
#include "preview/ChangePreview.h"

namespace tallory::cli {

void AddPreviewOption(CLI::App& command, Context& context) {
    command.add_flag("--preview", context.preview,
                     "do it on a copy of the course and show which scores it would change; "
                     "nothing in the course folder is written");
}

namespace {

// The command works in the copy as it works in the course folder: the copy is its AppPath and
// its current folder, while the files and paths it reports are named as the course's.
class WorkingIn {
  public:
    WorkingIn(Context& context, const std::string& copy)
        : context_(context), course_(context.course.AppPath) {
        Move(copy);
        context_.host.workFolder = copy;
    }
    ~WorkingIn() {
        context_.host.workFolder.clear();
        Move(course_);
    }
    WorkingIn(const WorkingIn&) = delete;
    WorkingIn& operator=(const WorkingIn&) = delete;

  private:
    void Move(const std::string& folder) {
        context_.course.AppPath = folder;
        context_.course.ProgramFolder = folder;
        std::error_code error;
        std::filesystem::current_path(folder, error);
    }

    Context& context_;
    std::string course_;
};

nlohmann::json Figure(const std::optional<double>& score) {
    return score ? nlohmann::json(*score) : nlohmann::json(nullptr);
}

// The files that would change, those the command wrote first in the order it wrote them.
std::vector<std::string> InWrittenOrder(std::vector<std::string> files,
                                        const nlohmann::json& written) {
    auto rank = [&written](const std::string& file) {
        auto found = std::find(written.begin(), written.end(), nlohmann::json(JsonText(file)));
        return found - written.begin();
    };
    std::stable_sort(files.begin(), files.end(),
                     [&rank](const auto& a, const auto& b) { return rank(a) < rank(b); });
    return files;
}

nlohmann::json PreviewJson(const ChangePreview& preview, const nlohmann::json& written) {
    nlohmann::json files = nlohmann::json::array();
    for (const std::string& file : InWrittenOrder(preview.files, written))
        files.push_back(JsonText(file));
    nlohmann::json changes = nlohmann::json::array();
    for (const ScoreChange& change : preview.changes) {
        changes.push_back({{"id", JsonText(change.id)},
                           {"name", JsonText(change.name)},
                           {"session", JsonText(change.session)},
                           {"before", Figure(change.before)},
                           {"after", Figure(change.after)}});
    }
    return {{"files", files}, {"changes", changes}};
}

std::string PreviewText(const ChangePreview& preview, const nlohmann::json& written) {
    std::string text = "\nPreview, nothing written: " + PreviewSummary(preview) + "\n";
    for (const ScoreChange& change : preview.changes) {
        std::string who = Trim(change.id) + (change.name.empty() ? "" : " " + change.name);
        text += "  " + who + ", " + Trim(change.session) + ": " + change.beforeText + " -> " +
                change.afterText + "\n";
    }
    if (!preview.files.empty()) {
        text += "Files that would change:\n";
        for (const std::string& file : InWrittenOrder(preview.files, written))
            text += "  " + file + "\n";
    }
    return DisplayText(text);
}

}  // namespace

int RunPreview(Context& context) {
    int status = 0;
    const ChangePreview preview = PreviewChange(
        context.course.AppPath, context.byName ? DisplayOrder::LastName : DisplayOrder::StudentId,
        [&context, &status](const std::string& copy) {
            WorkingIn working(context, copy);
            status = context.run();
        });
    const nlohmann::json written = context.host.FilesJson();
    context.host.ForgetFiles();
    context.preview = false;
    // A command that ended without output (a refused edit in text mode) has said why already.
    if (context.pending) {
        Context::PendingOutput output = std::move(*context.pending);
        context.pending.reset();
        output.document["preview"] = PreviewJson(preview, written);
        Print(context, std::move(output.document), output.text + PreviewText(preview, written),
              Extras{
                  .files = output.files, .started = output.started, .clipboard = output.clipboard});
    }
    if (context.host.AnyUnsaved() && (status == 0 || status == 1)) status = kExitUnsaved;
    return status;
}

}  // namespace tallory::cli
