#pragma once

#include <array>
#include <cstdint>
#include <cstring>
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
        // A log is millions of items of a few bytes: those are copied in place, without a call.
        if (text.size() <= kShortItem)
            CopyShort(pending_.data() + used_, text.data(), text.size());
        else
            AppendLong(text);
        used_ += text.size();
        if (used_ >= kPiece) Flush();
        return *this;
    }
    LinePrinter& Number(double value);
    // Hands everything printed so far to the file.
    void Flush();

  private:
    static constexpr size_t kPiece = size_t{1} << 16;
    static constexpr size_t kShortItem = 16;

    // Copies n <= kShortItem bytes as two overlapping words, halves or single bytes.
    static void CopyShort(char* to, const char* from, size_t n) {
        if (n >= 8) {
            std::memcpy(to, from, 8);
            std::memcpy(to + n - 8, from + n - 8, 8);
        } else if (n >= 4) {
            std::memcpy(to, from, 4);
            std::memcpy(to + n - 4, from + n - 4, 4);
        } else {
            for (size_t i = 0; i < n; ++i) to[i] = from[i];
        }
    }
    void AppendLong(std::string_view text);

    // The number items printed lately, by the value's bits. A log repeats a few hundred values
    // (points, times to the tenth, attempts) hundreds of thousands of times, and printing one
    // anew costs several times copying it.
    struct PrintedNumber {
        uint64_t bits = 0;
        uint8_t length = 0;  // 0: nothing kept here yet (an item is never empty)
        char item[kShortItem + 7];
    };
    static constexpr int kPrintedBits = 10;
    std::array<PrintedNumber, size_t{1} << kPrintedBits> printed_{};

    AtomicFile& file_;
    // Bytes 0 to used_ are printed and not yet handed over. Its size is kept at least
    // kPiece + kShortItem, so that a short item always fits behind what is pending.
    std::string pending_;
    size_t used_ = 0;
    bool started_ = false;
};

}  // namespace tallory
