#pragma once

namespace tallory {

// Makes the program's own kinds of control readable to a screen reader: a CommandLabel that acts
// (a link, a heading or a name that opens a screen) is a button that can be pressed, the others
// are text; the program's own top-level windows are windows. Call once, after the application
// object exists.
void InstallAccessibility();

}  // namespace tallory
