#pragma once

#include "cli/Cli.h"
#include "scoring/EditSessionScreen.h"

namespace tallory::cli {

// The course loaded read-only and frmEditSession open on the session named by `word`, as the
// grid's session heading opens it.
struct OpenedSessionEdit {
    OpenedSessionEdit(Context& context, const std::string& word)
        : number(Choose(context, word)),
          grid(context.course),
          screen(context.course, context.host, grid, number) {}

    const int number;
    HeadlessSessionGrid grid;
    EditSessionScreen screen;

  private:
    static int Choose(Context& context, const std::string& word) {
        LoadCourseReadOnly(context);
        return SessionNumber(context, word);
    }
};

}  // namespace tallory::cli
