#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tallory {

// The fields of one CSV line, numbered from 0 up to a top index the caller chose. Holds a copy of
// the line in one buffer that is reused from line to line, and each field as a place in it, so
// splitting a long file allocates nothing and copies no field on its own.
class Fields {
  public:
    explicit Fields(int topIndex) : top_(topIndex) {}

    // Index of the last field, -1 when there is none.
    int Count() const { return count_; }
    bool Has(int index) const { return index >= 0 && index <= count_; }
    // The text of a field; empty for a field that is not there.
    std::string_view operator[](int index) const {
        if (index < 0 || index > count_) return {};
        const Span& span = spans_[static_cast<size_t>(index)];
        return std::string_view(buffer_.data() + span.begin, span.size);
    }
    std::string Text(int index) const { return std::string((*this)[index]); }
    int Top() const { return top_; }

  private:
    struct Span {
        uint32_t begin;
        uint32_t size;
    };
    friend void SplitFields(std::string_view line, Fields& fields);
    int top_;
    int count_ = -1;
    std::string buffer_;
    std::vector<Span> spans_;
};

// Splits a line at commas and line feeds outside double quotes. Quotes are dropped; fields past the
// top index are joined onto the last one with ":"; an empty last field is not counted.
void SplitFields(std::string_view line, Fields& fields);

// The separators of a line that has no double quote, for readers that take fields straight from
// the line: the positions of its commas and line feeds in order, then the line's size, into
// `ends`, which must hold `limit` + 1 entries. Returns the number of separators; -1 when the line
// holds a double quote or more than `limit` separators, whose fields only SplitFields gives. With
// `limit` the top index of a Fields, field i of SplitFields is the text between ends[i - 1] + 1
// (0 for the first) and ends[i].
int FindSeparators(std::string_view line, uint32_t* ends, int limit);

// The two scans FindSeparators chooses between, for the tests that compare them: the portable one
// and the one for processors with 256-bit registers, which is the portable one where the processor
// or the build has none.
namespace separator_scans {
int Portable(std::string_view line, uint32_t* ends, int limit);
int Wide(std::string_view line, uint32_t* ends, int limit);
bool WideAvailable();
}  // namespace separator_scans

// True when both texts, trimmed and in upper case, are equal.
bool SameText(std::string_view a, std::string_view b);

}  // namespace tallory
