#pragma once

#include <array>
#include <memory>
#include <optional>
#include <string>

#include "cli/commands/Commands.h"
#include "housekeeping/FilterGhostRemote.h"
#include "housekeeping/GhostRemote.h"
#include "housekeeping/UnregisteredStudents.h"

namespace tallory::cli {

// The boxes of the clicker search as the command line fills them, in SearchBox order.
struct SearchBoxes {
    std::array<std::optional<std::string>, kSearchBoxes> texts;
    bool Any() const;
};

// --avg-equal, --avg-from, --avg-to, --total-equal, --total-from, --total-to, --remote-id,
// --remote-containing.
void AddSearchOptions(CLI::App& command, SearchBoxes& boxes);

// The clicker list as CmdViewAll opens it on the loaded course (Needs::Course): the unregistered
// students' list built, frmGhostRemote loaded.
struct OpenedClickers {
    explicit OpenedClickers(Context& context);

    UnregisteredTable students;
    GhostRemoteScreen ghosts;
};

// CmdCustomSelect with the boxes filled and the search screen's CmdSelect, when any box is
// filled. A disabled button does nothing.
void RunSearch(GhostRemoteScreen& ghosts, const SearchBoxes& boxes);

// The rows that count, as shown.
nlohmann::json ClickersJson(const GhostRemoteScreen& ghosts);
std::string ClickersText(const GhostRemoteScreen& ghosts);

}  // namespace tallory::cli
