// The fast number conversions against the standard library's, on any text: the same answer and
// the same double, bit for bit. The text is converted twice, so that the second answer may come
// from what the first remembered.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "common/Numbers.h"

namespace {

bool Same(double a, double b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::string_view text(reinterpret_cast<const char*>(data), size);
    double reference = -7;
    const bool numeric = tallory::ToDoubleReference(text, reference);
    for (int pass = 0; pass < 2; ++pass) {
        double fast = -7;
        if (tallory::ToDouble(text, fast) != numeric || !Same(fast, reference)) std::abort();
        if (tallory::IsNumeric(text) != numeric) std::abort();
    }
    if (!Same(tallory::LeadingNumber(text), tallory::LeadingNumberReference(text))) std::abort();
    return 0;
}
