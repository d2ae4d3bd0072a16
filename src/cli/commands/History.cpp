// history: the course's finished changes, newest first, each with the files it changed.
#include "common/History.h"
#include "cli/commands/Commands.h"

namespace tallory::cli {

namespace {

int RunHistory(Context& context) {
    const std::vector<HistoryEntry> entries = ReadHistory(context.course.AppPath);
    nlohmann::json list = nlohmann::json::array();
    std::string text;
    for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry) {
        const bool undone = IsUndone(entries, entry->id);
        nlohmann::json files = nlohmann::json::array();
        for (const HistoryFile& file : entry->files) files.push_back(JsonText(file.path));
        list.push_back({{"id", entry->id},
                        {"time", HistoryTime(entry->time)},
                        {"action", JsonText(entry->action)},
                        {"files", files},
                        {"undone", undone}});
        text += std::to_string(entry->id) + "  " + HistoryTime(entry->time) + "  " + entry->action +
                (undone ? "  (undone)" : "") + "\n";
        for (const HistoryFile& file : entry->files) text += "    " + file.path + "\n";
    }
    if (context.json) {
        std::cout << nlohmann::json{{"entries", list}}.dump(2) << "\n";
    } else {
        std::cout << (entries.empty() ? std::string("No changes in the history\n") : text);
    }
    return 0;
}

}  // namespace

std::function<int()> DeclareHistoryCommand(CLI::App&, Context& context) {
    return [&context] { return RunHistory(context); };
}

}  // namespace tallory::cli
