#pragma once

#include <string>
#include <string_view>

#include "common/AtomicFile.h"

namespace tallory {

// Prints text files the way the session logs are laid out: a text item writes itself, a number
// item writes NumberItem, and a line is ended by CR LF only when the next line starts, so the last
// line of a file stays open.
class LinePrinter {
  public:
    explicit LinePrinter(AtomicFile& file) : file_(file) {}

    // Starts a new line; ends the previous one with CR LF.
    LinePrinter& NewLine();
    LinePrinter& Text(std::string_view text);
    LinePrinter& Number(double value);

  private:
    AtomicFile& file_;
    bool started_ = false;
};

}  // namespace tallory
