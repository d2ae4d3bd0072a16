#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace tallory {

// The program's number texts. Nobody formats a double by hand.

// General number text: up to 15 significant digits, no trailing zeros, scientific form for very
// large or small values ("12", "2.5", "0.5", "-0.25", "1E-10", "1.5E+20").
std::string NumberText(double value);

// The line printer's number item: a sign place (blank or minus), the general digits without a zero
// before the point, then one blank (" 12 ", "-1 ", " .5 ", " 0 ").
std::string NumberItem(double value);

// The same two into a buffer of at least the size given, without allocating; each returns the
// length of its text.
inline constexpr size_t kNumberTextSize = 32;
inline constexpr size_t kNumberItemSize = kNumberTextSize + 2;
size_t NumberTextTo(double value, char* out);
size_t NumberItemTo(double value, char* out);

// Rounds to `places` decimals, halves to the even neighbour, on the value's 15-digit decimal form.
double Round(double value, int places = 0);

// Fixed format with `places` decimals and at least one digit before the point, halves away from
// zero ("0.00" and "#0.00" with places = 2).
std::string FormatFixed(double value, int places = 2);

// The largest whole number not above the value.
double Int(double value);

// Lenient numeric test: surrounding blanks, a sign, digits with a decimal point, an exponent.
bool IsNumeric(std::string_view text);

// Conversion of a whole field to a float; false when the text is not numeric.
inline bool ToDouble(std::string_view text, double& value);

// Conversion to a 16-bit integer, rounding halves to even; false when not numeric or out of range.
inline bool ToInt16(std::string_view text, int16_t& value);

// The leading number of a text, 0 when it has none ("12abc" gives 12, " 3.5 x" gives 3.5).
double LeadingNumber(std::string_view text);

// Rounds to a 16-bit integer, halves to even; false when out of range.
bool RoundToInt16(double value, int16_t& result);

// ToDouble and LeadingNumber through the standard library's conversion alone: slower, and the
// definition the two above must equal for every text. Kept for the tests and fuzzers that compare.
bool ToDoubleReference(std::string_view text, double& value);
double LeadingNumberReference(std::string_view text);

// A log repeats a few hundred short texts millions of times (" 0 ", " 1 ", "A ", " 12.5 "), so
// the answers for texts of up to 8 characters are remembered, per thread, and the look-up is
// inline where the logs are read. The key is the text's bytes in one word with blanks after its
// end: texts with the same key differ only in trailing blanks, which the conversion drops, so they
// have the same answer.
namespace remembered_numbers {

constexpr int kBits = 11;

struct Entry {
    uint64_t key = 0;
    double value = 0;
    signed char numeric = -1;  // -1: nothing remembered yet
    bool fitsInt16 = false;    // the value rounds to a 16-bit integer, `counter`
    int16_t counter = 0;
};

inline thread_local constinit Entry table[1 << kBits];

// The key relies on the first character landing in the lowest byte.
inline bool Rememberable(std::string_view text) {
    return std::endian::native == std::endian::little && text.size() - 1 < sizeof(uint64_t);
}

// The bytes of a text of 1 to 8 characters, the first in the lowest byte, blanks after its end.
inline uint64_t KeyOf(std::string_view text) {
    const char* p = text.data();
    const size_t n = text.size();
    uint64_t key;
    if (n >= 4) {
        // Two loads that overlap in the middle, where both hold the same bytes.
        uint32_t low, high;
        std::memcpy(&low, p, 4);
        std::memcpy(&high, p + n - 4, 4);
        key = low | (uint64_t{high} << (8 * (n - 4)));
    } else {
        key = uint64_t{static_cast<unsigned char>(p[0])} |
              uint64_t{static_cast<unsigned char>(p[n / 2])} << (8 * (n / 2)) |
              uint64_t{static_cast<unsigned char>(p[n - 1])} << (8 * (n - 1));
    }
    if (n < 8) key |= uint64_t{0x2020202020202020} << (8 * n);
    return key;
}

// KeyOf for a text whose first 8 bytes may be read even when it is shorter: one load.
inline uint64_t KeyOfReadable(std::string_view text) {
    uint64_t word;
    std::memcpy(&word, text.data(), sizeof word);
    const uint64_t keep = ~uint64_t{0} >> (64 - 8 * text.size());
    return (word & keep) | (uint64_t{0x2020202020202020} & ~keep);
}

inline Entry& EntryOf(uint64_t key) {
    return table[(key * 0x9E3779B97F4A7C15) >> (64 - kBits)];
}

// The roads for texts whose answer is not at hand: they work it out, and remember it when the
// text is short enough.
void Remember(std::string_view text, uint64_t key, Entry& entry);
bool ToDoubleMissed(std::string_view text, double& value);
bool ToInt16Missed(std::string_view text, int16_t& value);

// The look-up of both conversions; `readable` when the 8 bytes from the text's start may be read.
template <bool readable>
inline const Entry* Find(std::string_view text) {
    if (!Rememberable(text)) return nullptr;
    const uint64_t key = readable ? KeyOfReadable(text) : KeyOf(text);
    const Entry& entry = EntryOf(key);
    if (entry.key == key && entry.numeric >= 0) [[likely]]
        return &entry;
    return nullptr;
}

template <bool readable>
inline bool ToDouble(std::string_view text, double& value) {
    if (const Entry* entry = Find<readable>(text)) {
        if (entry->numeric == 0) return false;
        value = entry->value;
        return true;
    }
    return ToDoubleMissed(text, value);
}

template <bool readable>
inline bool ToInt16(std::string_view text, int16_t& value) {
    if (const Entry* entry = Find<readable>(text)) {
        if (!entry->fitsInt16) return false;
        value = entry->counter;
        return true;
    }
    return ToInt16Missed(text, value);
}

}  // namespace remembered_numbers

inline bool ToDouble(std::string_view text, double& value) {
    return remembered_numbers::ToDouble<false>(text, value);
}

inline bool ToInt16(std::string_view text, int16_t& value) {
    return remembered_numbers::ToInt16<false>(text, value);
}

// The same two for a text inside a longer buffer, with at least 8 bytes from its start readable:
// the look-up reads them at once. For readers of whole lines.
inline bool ToDoubleReadable(std::string_view text, double& value) {
    return remembered_numbers::ToDouble<true>(text, value);
}

inline bool ToInt16Readable(std::string_view text, int16_t& value) {
    return remembered_numbers::ToInt16<true>(text, value);
}

}  // namespace tallory
