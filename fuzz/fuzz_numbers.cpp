// The fast number conversions against the standard library's, on any text: the same answer and
// the same double, bit for bit; counts rounded as the reference rounds them. The text is
// converted twice, so that the second answer may come from what the first remembered, and once
// more as the head of a longer line, whose bytes past the text must not matter. The first eight
// bytes are also a double of any bit pattern, which NumberText writes as the printer's general
// form: 15 significant digits without trailing zeros.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "common/Numbers.h"

namespace {

bool Same(double a, double b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

// The printer's 15 significant digits without trailing zeros, written out the long way.
std::string Printed(double value) {
    if (value == 0) return "0";
    char buffer[40];
    std::snprintf(buffer, sizeof buffer, "%.15G", value);
    const std::string text(buffer);
    const size_t e = text.find('E');
    std::string mantissa = text.substr(0, e);
    if (mantissa.find('.') != std::string::npos) {
        while (mantissa.back() == '0') mantissa.pop_back();
        if (mantissa.back() == '.') mantissa.pop_back();
    }
    return mantissa + (e == std::string::npos ? "" : text.substr(e));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::string_view text(reinterpret_cast<const char*>(data), size);
    double reference = -7;
    const bool numeric = tallory::ToDoubleReference(text, reference);
    int16_t rounded = -7;
    const bool fits = numeric && tallory::RoundToInt16(reference, rounded);
    for (int pass = 0; pass < 2; ++pass) {
        double fast = -7;
        if (tallory::ToDouble(text, fast) != numeric || !Same(fast, reference)) std::abort();
        if (tallory::IsNumeric(text) != numeric) std::abort();
        int16_t counter = -7;
        if (tallory::ToInt16(text, counter) != fits || counter != rounded) std::abort();
    }
    const std::string padded = std::string(text) + "9,9\"9e9x9";
    const std::string_view inLine = std::string_view(padded).substr(0, size);
    double readable = -7;
    if (tallory::ToDoubleReadable(inLine, readable) != numeric || !Same(readable, reference))
        std::abort();
    int16_t counter = -7;
    if (tallory::ToInt16Readable(inLine, counter) != fits || counter != rounded) std::abort();
    if (!Same(tallory::LeadingNumber(text), tallory::LeadingNumberReference(text))) std::abort();
    if (size >= sizeof(double)) {
        double value;
        std::memcpy(&value, data, sizeof value);
        if (tallory::NumberText(value) != Printed(value)) std::abort();
    }
    return 0;
}
