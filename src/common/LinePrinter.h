#pragma once

#include <string>
#include <string_view>

#include "common/AtomicFile.h"

namespace tallory {

// Prints text files the way the session logs are laid out: a text item writes itself, a number
// item writes NumberItem, and a line is ended by CR LF only when the next line starts, so the last
// line of a file stays open. Items are gathered and handed to the file in large pieces: Flush
// before the file is committed.
class LinePrinter {
  public:
    explicit LinePrinter(AtomicFile& file);

    // Starts a new line; ends the previous one with CR LF.
    LinePrinter& NewLine();
    LinePrinter& Text(std::string_view text) {
        pending_.append(text);
        if (pending_.size() >= kPiece) Flush();
        return *this;
    }
    LinePrinter& Number(double value);
    // Hands everything printed so far to the file.
    void Flush();

  private:
    static constexpr size_t kPiece = size_t{1} << 16;

    AtomicFile& file_;
    std::string pending_;
    bool started_ = false;
};

}  // namespace tallory
