#include "common/Numbers.h"

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <fast_float/fast_float.h>

namespace tallory {

namespace {

bool IsBlank(char c) {
    return c == ' ' || c == '\t';
}

std::string_view TrimBlanks(std::string_view text) {
    while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
    return text;
}

// Length of the longest numeric prefix (sign, digits, point, exponent), 0 when there is none.
size_t NumericPrefix(std::string_view text, bool& hasExponent) {
    size_t i = 0;
    hasExponent = false;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) ++i;
    size_t digits = 0;
    while (i < text.size() && text[i] >= '0' && text[i] <= '9') ++i, ++digits;
    if (i < text.size() && text[i] == '.') {
        ++i;
        while (i < text.size() && text[i] >= '0' && text[i] <= '9') ++i, ++digits;
    }
    if (digits == 0) return 0;
    if (i < text.size() && (text[i] == 'e' || text[i] == 'E' || text[i] == 'd' || text[i] == 'D')) {
        size_t j = i + 1;
        if (j < text.size() && (text[j] == '+' || text[j] == '-')) ++j;
        size_t expDigits = 0;
        while (j < text.size() && text[j] >= '0' && text[j] <= '9') ++j, ++expDigits;
        if (expDigits > 0) {
            hasExponent = true;
            i = j;
        }
    }
    return i;
}

// The conversion through the standard library: the definition of what a number text is worth.
double ConvertPrefixReference(std::string_view number, bool hasExponent) {
    // from_chars takes no '+' and no 'D' exponent.
    bool negative = false;
    if (!number.empty() && (number[0] == '+' || number[0] == '-')) {
        negative = number[0] == '-';
        number.remove_prefix(1);
    }
    double value = 0;
    if (hasExponent) {
        std::string copy(number);
        for (char& c : copy)
            if (c == 'd' || c == 'D') c = 'E';
        std::from_chars(copy.data(), copy.data() + copy.size(), value);
    } else {
        std::from_chars(number.data(), number.data() + number.size(), value);
    }
    return negative ? -value : value;
}

// Up to this length a number without exponent lies between 1E-300 and 1E+300 or is exactly 0:
// no text of it can overflow or underflow.
constexpr size_t kPlainNumberLength = 300;

// The same value as ConvertPrefixReference, faster. Both conversions round correctly, so they
// agree wherever the standard library reports no range error: on every normal result, and on
// every zero that a short text without exponent gives. The rest (overflow, underflow, "D"
// exponents) takes the reference road, which leaves such values as it defines them.
double ConvertPrefix(std::string_view number, bool hasExponent) {
    const char* begin = number.data();
    const char* end = begin + number.size();
    bool negative = false;
    if (begin != end && (*begin == '+' || *begin == '-')) {
        negative = *begin == '-';
        ++begin;
    }
    double value = 0;
    fast_float::from_chars_result result = fast_float::from_chars(begin, end, value);
    if (result.ptr == end && result.ec == std::errc() &&
        ((!hasExponent && number.size() <= kPlainNumberLength) || std::isnormal(value)))
        return negative ? -value : value;
    return ConvertPrefixReference(number, hasExponent);
}

// The texts that fill the logs: blanks, a sign, up to 15 digits with or without a decimal point,
// blanks. Their digits form an integer below 2^53, which a double holds exactly, as it holds every
// power of ten up to 10^15; one division of the two rounds once, to the nearest double, which is
// the value every correct conversion of the text gives. So the short road needs no library call.
constexpr int kShortDigits = 15;
constexpr double kPowersOfTen[kShortDigits + 1] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                   1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};

enum class ShortScan {
    kNumber,     // a short number, converted
    kNoNumber,   // no digit where the number must begin: not numeric
    kOtherText,  // anything else: the general road decides
};

bool IsDigit(char c) {
    return static_cast<unsigned char>(c - '0') < 10;
}

ShortScan ScanShortNumber(std::string_view text, double& value) {
    const char* p = text.data();
    const char* const end = p + text.size();
    while (p != end && IsBlank(*p)) ++p;
    bool negative = false;
    if (p != end && (*p == '+' || *p == '-')) negative = *p++ == '-';
    if (p == end || !(IsDigit(*p) || *p == '.')) return ShortScan::kNoNumber;
    uint64_t digitValue = 0;
    int digits = 0;
    int decimals = 0;
    for (; p != end && IsDigit(*p); ++p, ++digits)
        digitValue = digitValue * 10 + static_cast<uint64_t>(*p - '0');
    if (p != end && *p == '.') {
        for (++p; p != end && IsDigit(*p); ++p, ++digits, ++decimals)
            digitValue = digitValue * 10 + static_cast<uint64_t>(*p - '0');
    }
    if (digits == 0 || digits > kShortDigits) return ShortScan::kOtherText;
    while (p != end && IsBlank(*p)) ++p;
    if (p != end) return ShortScan::kOtherText;
    double converted = static_cast<double>(digitValue);
    if (decimals > 0) converted /= kPowersOfTen[decimals];
    value = negative ? -converted : converted;
    return ShortScan::kNumber;
}

// The 15 significant digits of a value and its decimal exponent: value = 0.d1d2...d15 x 10^exp.
struct Decimal {
    bool negative = false;
    char digits[16] = {};
    int exponent = 0;
};

Decimal ToDecimal(double value) {
    Decimal d;
    char buffer[40];
    std::snprintf(buffer, sizeof buffer, "%.14e", value);
    const char* p = buffer;
    if (*p == '-') d.negative = true, ++p;
    int n = 0;
    for (; *p && *p != 'e'; ++p)
        if (*p >= '0' && *p <= '9') d.digits[n++] = *p;
    d.digits[n] = 0;
    d.exponent = std::atoi(p + 1) + 1;
    return d;
}

// Rounds to `places` decimals on the decimal form; returns the kept digits as an integer and the
// power of ten of its last digit.
double RoundDecimal(double value, int places, bool halfEven) {
    if (value == 0 || !std::isfinite(value)) return value;
    Decimal d = ToDecimal(value);
    int kept = d.exponent + places;
    if (kept >= 15) return value;
    if (kept < 0) return 0;
    long long whole = 0;
    for (int i = 0; i < kept; ++i) whole = whole * 10 + (d.digits[i] - '0');
    int next = d.digits[kept] - '0';
    bool restZero = true;
    for (int i = kept + 1; i < 15; ++i)
        if (d.digits[i] != '0') restZero = false;
    bool up = next > 5 || (next == 5 && !restZero) ||
              (next == 5 && restZero && (!halfEven || (whole % 2) == 1));
    if (up) ++whole;
    char buffer[48];
    std::snprintf(buffer, sizeof buffer, "%s%llde%d", d.negative ? "-" : "", whole, -places);
    return std::strtod(buffer, nullptr);
}

}  // namespace

namespace {

// A value that is the double nearest to a decimal of at most three places and 15 significant
// digits (times and points as the logs hold them: 18.5, 0.25) prints as that decimal in the
// general form: it lies within half a unit of the last bit of the decimal, far inside half a unit
// of the 15th digit, and from 0.001 up the general form has no exponent. Written here straight
// from its digits; 0 when the value is no such decimal.
// The decimal of at most three places a magnitude below 10^11 is the nearest double to, as its
// digits without the point (`scaled`) and its places; false when there is none.
bool ShortDecimalOf(double magnitude, long long& scaled, int& places) {
    static constexpr double kScales[] = {10, 100, 1000};
    if (!(magnitude < 1e11)) return false;
    for (places = 1; places <= 3; ++places) {
        const double scale = kScales[places - 1];
        const double digits = std::nearbyint(magnitude * scale);
        if (digits / scale != magnitude) continue;
        scaled = static_cast<long long>(digits);
        return true;
    }
    return false;
}

size_t ShortDecimalTo(double value, char* out) {
    long long scaled;
    int places;
    if (!ShortDecimalOf(std::fabs(value), scaled, places)) return 0;
    char digits[24];
    const size_t count =
        static_cast<size_t>(std::to_chars(digits, digits + sizeof digits, scaled).ptr - digits);
    size_t at = 0;
    if (value < 0) out[at++] = '-';
    const size_t decimals = static_cast<size_t>(places);
    if (count <= decimals) {
        out[at++] = '0';
        out[at++] = '.';
        for (size_t i = count; i < decimals; ++i) out[at++] = '0';
        std::memcpy(out + at, digits, count);
        at += count;
    } else {
        std::memcpy(out + at, digits, count - decimals);
        at += count - decimals;
        out[at++] = '.';
        std::memcpy(out + at, digits + count - decimals, decimals);
        at += decimals;
    }
    while (out[at - 1] == '0') --at;
    if (out[at - 1] == '.') --at;
    return at;
}

// FormatFixed of a short decimal (see ShortDecimalTo) to at most six places, by whole numbers:
// its 15 significant digits are the decimal's own, so rounding them half away from zero is
// rounding the decimal's digits. False when the value is no such decimal.
bool FormatShortFixed(double value, int places, std::string& text) {
    static constexpr long long kPowers[] = {1, 10, 100, 1000, 10000, 100000, 1000000};
    long long scaled;
    int decimals;
    if (places < 0 || places > 6 || !ShortDecimalOf(std::fabs(value), scaled, decimals))
        return false;
    long long kept;
    if (decimals <= places) {
        kept = scaled * kPowers[places - decimals];
    } else {
        const long long divisor = kPowers[decimals - places];
        kept = (scaled + divisor / 2) / divisor;
    }
    const long long unit = kPowers[places];
    char buffer[40];
    char* at = buffer;
    if (value < 0 && kept != 0) *at++ = '-';  // no "-0.00"
    at = std::to_chars(at, buffer + sizeof buffer, kept / unit).ptr;
    if (places > 0) {
        *at++ = '.';
        const long long fraction = kept % unit;
        for (long long power = unit / 10; power >= 1; power /= 10)
            *at++ = static_cast<char>('0' + fraction / power % 10);
    }
    text.assign(buffer, at);
    return true;
}

}  // namespace

size_t NumberTextTo(double value, char* out) {
    if (value == 0) {
        out[0] = '0';
        return 1;
    }
    // A whole number below 10^15 prints as its digits in the general form: the usual grid cell.
    if (std::fabs(value) < 1e15 && value == std::trunc(value))
        return static_cast<size_t>(
            std::to_chars(out, out + kNumberTextSize, static_cast<long long>(value)).ptr - out);
    if (const size_t length = ShortDecimalTo(value, out); length > 0) return length;
    // The general form with 15 significant digits, as printf's "%.15G" gives it: no trailing
    // zeros, an exponent of at least two digits, its letter (and those of "INF", "NAN") upper case.
    char* end =
        std::to_chars(out, out + kNumberTextSize, value, std::chars_format::general, 15).ptr;
    for (char* c = out; c != end; ++c)
        if (*c >= 'a' && *c <= 'z') *c = static_cast<char>(*c - 'a' + 'A');
    return static_cast<size_t>(end - out);
}

std::string NumberText(double value) {
    char text[kNumberTextSize];
    return std::string(text, NumberTextTo(value, text));
}

size_t NumberItemTo(double value, char* out) {
    char text[kNumberTextSize];
    const size_t length = NumberTextTo(value, text);
    std::string_view digits(text, length);
    size_t at = 0;
    if (digits[0] == '-') {
        out[at++] = '-';
        digits.remove_prefix(1);
    } else {
        out[at++] = ' ';
    }
    if (digits.size() > 1 && digits[0] == '0' && digits[1] == '.') digits.remove_prefix(1);
    std::memcpy(out + at, digits.data(), digits.size());
    at += digits.size();
    out[at++] = ' ';
    return at;
}

std::string NumberItem(double value) {
    char item[kNumberItemSize];
    return std::string(item, NumberItemTo(value, item));
}

double Round(double value, int places) {
    return RoundDecimal(value, places, true);
}

std::string FormatFixed(double value, int places) {
    // A report prints a figure of every student in every session: most are short decimals.
    if (std::string text; FormatShortFixed(value, places, text)) return text;
    double rounded = RoundDecimal(value, places, false);
    if (rounded == 0) rounded = 0;  // no "-0.00"
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.*f", places, rounded);
    return buffer;
}

double Int(double value) {
    return std::floor(value);
}

bool IsNumeric(std::string_view text) {
    text = TrimBlanks(text);
    bool hasExponent;
    size_t length = NumericPrefix(text, hasExponent);
    return length > 0 && length == text.size();
}

namespace {

bool ConvertWhole(std::string_view text, double& value) {
    switch (ScanShortNumber(text, value)) {
        case ShortScan::kNumber:
            return true;
        case ShortScan::kNoNumber:
            return false;
        case ShortScan::kOtherText:
            break;
    }
    text = TrimBlanks(text);
    bool hasExponent;
    size_t length = NumericPrefix(text, hasExponent);
    if (length == 0 || length != text.size()) return false;
    double converted = ConvertPrefix(text, hasExponent);
    if (!std::isfinite(converted)) return false;
    value = converted;
    return true;
}

}  // namespace

namespace remembered_numbers {

void Remember(std::string_view text, uint64_t key, Entry& entry) {
    double converted = 0;
    bool numeric = ConvertWhole(text, converted);
    entry.key = key;
    entry.value = converted;
    entry.numeric = numeric ? 1 : 0;
    entry.fitsInt16 = numeric && RoundToInt16(converted, entry.counter);
}

bool ToDoubleMissed(std::string_view text, double& value) {
    if (!Rememberable(text)) return ConvertWhole(text, value);
    const uint64_t key = KeyOf(text);
    Entry& entry = EntryOf(key);
    Remember(text, key, entry);
    if (entry.numeric == 0) return false;
    value = entry.value;
    return true;
}

bool ToInt16Missed(std::string_view text, int16_t& value) {
    if (!Rememberable(text)) {
        double converted;
        return ConvertWhole(text, converted) && RoundToInt16(converted, value);
    }
    const uint64_t key = KeyOf(text);
    Entry& entry = EntryOf(key);
    Remember(text, key, entry);
    if (!entry.fitsInt16) return false;
    value = entry.counter;
    return true;
}

}  // namespace remembered_numbers

bool ToDoubleReference(std::string_view text, double& value) {
    text = TrimBlanks(text);
    bool hasExponent;
    size_t length = NumericPrefix(text, hasExponent);
    if (length == 0 || length != text.size()) return false;
    double converted = ConvertPrefixReference(text, hasExponent);
    if (!std::isfinite(converted)) return false;
    value = converted;
    return true;
}

bool RoundToInt16(double value, int16_t& result) {
    double rounded = std::nearbyint(value);  // the default rounding mode takes halves to even
    if (!(rounded >= -32768 && rounded <= 32767)) return false;
    result = static_cast<int16_t>(rounded);
    return true;
}

double LeadingNumber(std::string_view text) {
    while (!text.empty() && (IsBlank(text.front()) || text.front() == '\n' || text.front() == '\r'))
        text.remove_prefix(1);
    bool hasExponent;
    size_t length = NumericPrefix(text, hasExponent);
    if (length == 0) return 0;
    double value = ConvertPrefix(text.substr(0, length), hasExponent);
    return std::isfinite(value) ? value : 0;
}

double LeadingNumberReference(std::string_view text) {
    while (!text.empty() && (IsBlank(text.front()) || text.front() == '\n' || text.front() == '\r'))
        text.remove_prefix(1);
    bool hasExponent;
    size_t length = NumericPrefix(text, hasExponent);
    if (length == 0) return 0;
    double value = ConvertPrefixReference(text.substr(0, length), hasExponent);
    return std::isfinite(value) ? value : 0;
}

}  // namespace tallory
