#pragma once

#include "cli/Cli.h"

namespace tallory::cli {

// set-scores N [--participation P] [--cap X | --no-cap] [--min-responses R]
//              [--question Q [--correct A..E|--] [--points a,b,c,d,e] [--delete|--restore]
//               [--title T]]...
// Works the Set Scores screen of session N: each option is the edit of one of its boxes, applied
// in the order given, then the session is saved as "Set" saves it. An edit the screen refuses
// stops the command before anything is written.
int SetScoresCommand(Context& context);
// rename N TITLE: the session's title, as the session edit screen saves it.
int RenameCommand(Context& context);
// remove N: empties the session's log and keeps the "x" copy; asks first (--yes to confirm).
int RemoveCommand(Context& context);

}  // namespace tallory::cli
