#pragma once

#include "cli/commands/Commands.h"
#include "scoring/EditSessionScreen.h"

namespace tallory::cli {

// frmEditSession open on the session named by `word`, as the grid's session heading opens it, in
// the course loaded for the command (Needs::Course).
struct OpenedSessionEdit {
    OpenedSessionEdit(Context& context, const std::string& word)
        : number(SessionNumber(context, word)),
          grid(context.course),
          screen(context.course, context.host, grid, number) {}

    const int number;
    HeadlessSessionGrid grid;
    EditSessionScreen screen;
};

}  // namespace tallory::cli
