// The fast conversions against the standard library's: the same answer and the same double, bit
// for bit, for every short text (fuzz_numbers takes them further, and holds NumberText to the
// printer's general form).
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "common/Numbers.h"

namespace tallory {
namespace {

uint64_t Bits(double value) {
    uint64_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

// Returns the number of texts that disagree, and reports the first few.
int CountDisagreements(const std::vector<std::string>& texts) {
    int wrong = 0;
    for (const std::string& text : texts) {
        double fast = -7, reference = -7;
        bool fastNumeric = ToDouble(text, fast);
        bool referenceNumeric = ToDoubleReference(text, reference);
        double leading = LeadingNumber(text), leadingReference = LeadingNumberReference(text);
        // The look-up for texts inside a line reads 8 bytes whatever the text's length: the
        // bytes past the text must not matter.
        const std::string padded = text + "9,9\"9e9x9";
        double inLine = -7;
        int16_t counter = -7, counterInLine = -7;
        bool inLineNumeric =
            ToDoubleReadable(std::string_view(padded).substr(0, text.size()), inLine);
        bool counterFits = ToInt16(text, counter);
        bool counterInLineFits =
            ToInt16Readable(std::string_view(padded).substr(0, text.size()), counterInLine);
        int16_t rounded = -7;
        bool roundedFits = referenceNumeric && RoundToInt16(reference, rounded);
        if (inLineNumeric != referenceNumeric || Bits(inLine) != Bits(reference) ||
            counterFits != roundedFits || counter != rounded || counterInLineFits != roundedFits ||
            counterInLine != rounded) {
            if (++wrong <= 10)
                ADD_FAILURE() << "\"" << text << "\": in a line " << inLineNumeric << " " << inLine
                              << ", as a count " << counterFits << " " << counter << " / "
                              << counterInLineFits << " " << counterInLine;
            continue;
        }
        if (fastNumeric != referenceNumeric || Bits(fast) != Bits(reference) ||
            Bits(leading) != Bits(leadingReference) || IsNumeric(text) != referenceNumeric) {
            if (++wrong <= 10)
                ADD_FAILURE() << "\"" << text << "\": ToDouble " << fastNumeric << " " << fast
                              << ", reference " << referenceNumeric << " " << reference
                              << "; LeadingNumber " << leading << ", reference "
                              << leadingReference;
        }
    }
    return wrong;
}

TEST(NumberConversion, EveryShortTextOfNumberCharactersGivesTheReferenceDouble) {
    // Every text of up to five characters over the characters that make or break a number.
    const std::string alphabet = " \t+-.019eEdDx,";
    std::vector<std::string> texts = {""};
    for (size_t from = 0, length = 1; length <= 5; ++length) {
        size_t to = texts.size();
        for (size_t i = from; i < to; ++i)
            for (char c : alphabet) texts.push_back(texts[i] + c);
        from = to;
    }
    EXPECT_EQ(CountDisagreements(texts), 0);
    // Again, now that short texts have answers remembered, in another order.
    std::reverse(texts.begin(), texts.end());
    EXPECT_EQ(CountDisagreements(texts), 0);
}

}  // namespace
}  // namespace tallory
