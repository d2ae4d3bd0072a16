// clickers [SEARCH]: the list of clickers nobody registered, ticked by the search when asked.
#include "cli/commands/Clickers.h"

#include <memory>

#include "common/Numbers.h"
#include "common/Text.h"

namespace tallory::cli {

namespace {

struct SearchOption {
    SearchBox box;
    const char* name;
    const char* description;
};

constexpr SearchOption kSearchOptions[] = {
    {SearchBox::TxtAvgEqual, "--avg-equal", "search: Points Average ="},
    {SearchBox::txtAvgGrater, "--avg-from", "search: Average between ..."},
    {SearchBox::TxtAvgLess, "--avg-to", "search: ... and (average)"},
    {SearchBox::txtTotal, "--total-equal", "search: Total Points ="},
    {SearchBox::txtTotalGrater, "--total-from", "search: Total between ..."},
    {SearchBox::txtTotalLess, "--total-to", "search: ... and (total)"},
    {SearchBox::TxtRemoteId, "--remote-id", "search: Remote ID ="},
    {SearchBox::TxtRemoteIdContaining, "--remote-containing", "search: Remote ID Containing"},
};

int RunClickers(Context& context, const SearchBoxes& boxes) {
    OpenedClickers opened(context);
    RunSearch(opened.ghosts, boxes);
    nlohmann::json document = {{"clickers", ClickersJson(opened.ghosts)},
                               {"students_tab", opened.ghosts.CmdUnRegisteredStudents().enabled}};
    Print(context, document, ClickersText(opened.ghosts));
    return 0;
}

}  // namespace

std::function<int()> DeclareClickersCommand(CLI::App& command, Context& context) {
    auto boxes = std::make_shared<SearchBoxes>();
    AddByNameOption(command, context);
    AddSearchOptions(command, *boxes);
    return [&context, boxes] { return RunClickers(context, *boxes); };
}

bool SearchBoxes::Any() const {
    for (const auto& text : texts)
        if (text) return true;
    return false;
}

void AddSearchOptions(CLI::App& command, SearchBoxes& boxes) {
    for (const SearchOption& option : kSearchOptions)
        command
            .add_option_function<std::string>(
                option.name,
                [&boxes, box = option.box](const std::string& text) {
                    boxes.texts[static_cast<int>(box)] = text;
                },
                option.description)
            ->type_name("TEXT");
}

OpenedClickers::OpenedClickers(Context& context)
    : ghosts(context.course, context.host, context.grid, students) {
    BuildUnregisteredList(context.course, students);
    ghosts.Load();
}

void RunSearch(GhostRemoteScreen& ghosts, const SearchBoxes& boxes) {
    if (!boxes.Any() || !ghosts.CmdCustomSelect().enabled) return;
    FilterGhostRemoteScreen search(ghosts.GhostList());
    for (int b = 0; b < kSearchBoxes; ++b)
        if (boxes.texts[b]) search.BoxChange(static_cast<SearchBox>(b), *boxes.texts[b]);
    search.CmdSelectClick();
    ghosts.AfterCustomSelect();
}

nlohmann::json ClickersJson(const GhostRemoteScreen& ghosts) {
    nlohmann::json rows = nlohmann::json::array();
    for (int i = 0; i < ghosts.GhostCount(); ++i) {
        const GhostRec& row = ghosts.GhostList()[i];
        if (TrimView(row.RemoteId).empty()) continue;
        rows.push_back({{"serial", row.Serial + 1},
                        {"remote", JsonText(row.RemoteId)},
                        {"total", row.Total},
                        {"average", row.Average},
                        {"selected", row.Selected == kTrue}});
    }
    return rows;
}

std::string ClickersText(const GhostRemoteScreen& ghosts) {
    std::string text = "#     Remote ID   Total     Average   Select\n";
    for (int i = 0; i < ghosts.GhostCount(); ++i) {
        const GhostRec& row = ghosts.GhostList()[i];
        if (TrimView(row.RemoteId).empty()) continue;
        const std::string serial = std::to_string(row.Serial + 1);
        const std::string total = NumberText(row.Total);
        const std::string average = NumberText(row.Average);
        text += serial + Padding(6, serial.size()) + row.RemoteId +
                Padding(12, row.RemoteId.size()) + total + Padding(10, total.size()) + average +
                Padding(10, average.size()) + (row.Selected == kTrue ? "x" : "") + "\n";
    }
    return text;
}

}  // namespace tallory::cli
