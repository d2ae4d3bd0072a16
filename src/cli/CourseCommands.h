#pragma once

#include "cli/Cli.h"

namespace tallory::cli {

// grid [--by-name]: the score grid as the main window shows it after its start sequence.
int GridCommand(Context& context);
// session N: a session read and scored as its "Set Scores" button does.
int SessionCommand(Context& context);
// log FILE: one log read by path, scored.
int LogCommand(Context& context);
// rewrite N: read, score and write the log back in place, as saving Set Scores unchanged does.
int RewriteCommand(Context& context);

}  // namespace tallory::cli
