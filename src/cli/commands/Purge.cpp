// purge [REMOTE...] [--all] [SEARCH]: deletes the votes of ticked stray clickers from every log
// (asks first: --yes confirms).
#include <memory>
#include <vector>

#include "cli/commands/Clickers.h"
#include "common/RunTimeError.h"

namespace tallory::cli {

namespace {

struct PurgeRequest {
    std::vector<std::string> remotes;
    bool all = false;
    SearchBoxes boxes;
};

// The row a REMOTE of the command line ticks: the one that shows it padded; -1 when none does.
int RowOf(const GhostRemoteScreen& ghosts, const std::string& remote) {
    std::string shown;
    try {
        shown = PadRemote(remote);
    } catch (const RunTimeError&) {
        return -1;  // longer than any remote the list shows
    }
    for (int i = 0; i < ghosts.GhostCount(); ++i)
        if (ghosts.GhostList()[i].RemoteId == shown) return i;
    return -1;
}

int RunPurge(Context& context, const PurgeRequest& request) {
    OpenedClickers opened(context);
    GhostRemoteScreen& ghosts = opened.ghosts;
    // Every REMOTE must stand in the list before anything is ticked or written.
    std::vector<int> rows;
    for (const std::string& remote : request.remotes) {
        const int row = RowOf(ghosts, remote);
        if (row < 0) throw UsageError{"no unregistered clicker '" + remote + "' in the list"};
        rows.push_back(row);
    }
    // The search clears every tick, so it comes first.
    RunSearch(ghosts, request.boxes);
    if (request.all && ghosts.CmdSelectAll().enabled) ghosts.CmdSelectAllClick();
    for (int row : rows) ghosts.SetGhostSelected(row, kTrue);
    ghosts.ShowGhostRows();
    if (ghosts.CmdDelete().enabled) ghosts.CmdDeleteClick();

    nlohmann::json purged = nlohmann::json::array();
    std::string text;
    for (const std::string& remote : ghosts.Purged()) {
        purged.push_back(JsonText(remote));
        text += "Purged " + remote + "\n";
    }
    Print(context, {{"purged", purged}}, text, Extras{.files = true});
    return 0;
}

}  // namespace

std::function<int()> DeclarePurgeCommand(CLI::App& command, Context& context) {
    auto request = std::make_shared<PurgeRequest>();
    command.add_option("REMOTE", request->remotes, "a clicker of the list to tick")->type_name("");
    command.add_flag("--all", request->all, "tick every clicker of the list (Select All)");
    AddByNameOption(command, context);
    AddSearchOptions(command, request->boxes);
    AddPreviewOption(command, context);
    return [&context, request] { return RunPurge(context, *request); };
}

}  // namespace tallory::cli
