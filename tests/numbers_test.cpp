// The fast conversions against the standard library's: the same answer and the same double, bit
// for bit, for every short text (fuzz_numbers takes them further, and NumberText too).
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <random>
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

TEST(NumberConversion, NumberTextIsThePrintersGeneralForm) {
    // The printer's 15 significant digits without trailing zeros, written out the long way.
    auto printed = [](double value) {
        if (value == 0) return std::string("0");
        char buffer[40];
        std::snprintf(buffer, sizeof buffer, "%.15G", value);
        std::string text(buffer);
        size_t e = text.find('E');
        std::string mantissa = text.substr(0, e);
        if (mantissa.find('.') != std::string::npos) {
            while (mantissa.back() == '0') mantissa.pop_back();
            if (mantissa.back() == '.') mantissa.pop_back();
        }
        return mantissa + (e == std::string::npos ? "" : text.substr(e));
    };
    std::mt19937_64 random(5);
    std::vector<double> values = {
        1,     -1,     17,     1e15 - 1,  1e15,          -1e15 + 1,  999999999999999.5,
        -0.0,  1e-10,  12.5,   47.5,      1e300,         -3.25,      4503599627370497,
        0.001, 0.0015, 0.0005, 0.1 + 0.2, 99999999999.9, 1e11 - 0.5, 1e11 + 0.5,
        -0.015};
    for (int i = 0; i < 20000; ++i) {
        values.push_back(static_cast<double>(static_cast<int64_t>(random() >> (i % 60))) *
                         (i % 2 ? 1 : -1));
        values.push_back((random() % 100000) / 4.0);
        // Times and points as the logs hold them, thirds that run to the last digit, and any
        // bit pattern at all: every exponent, subnormals, infinities and NaNs.
        values.push_back(static_cast<double>(random() % 1000000) / 1000 * (i % 3 ? 1 : -1));
        values.push_back(static_cast<double>(random() % 1000) / 3);
        values.push_back(std::bit_cast<double>(static_cast<uint64_t>(random())));
        // Tenths and hundredths as times are written, up to the largest the short form takes,
        // and the sums whose last bits miss the decimal.
        values.push_back(static_cast<double>(random() % 1000000000000) / 10 * (i % 3 ? 1 : -1));
        values.push_back(static_cast<double>(random() % 10000) / 100);
        values.push_back(static_cast<double>(random() % 100) / 10 + 0.2);
    }
    for (double value : values) EXPECT_EQ(NumberText(value), printed(value)) << value;
}

}  // namespace
}  // namespace tallory
