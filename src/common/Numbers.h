#pragma once

#include <cstdint>
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
bool ToDouble(std::string_view text, double& value);

// Conversion to a 16-bit integer, rounding halves to even; false when not numeric or out of range.
bool ToInt16(std::string_view text, int16_t& value);

// The leading number of a text, 0 when it has none ("12abc" gives 12, " 3.5 x" gives 3.5).
double LeadingNumber(std::string_view text);

// Rounds to a 16-bit integer, halves to even; false when out of range.
bool RoundToInt16(double value, int16_t& result);

// ToDouble and LeadingNumber through the standard library's conversion alone: slower, and the
// definition the two above must equal for every text. Kept for the tests and fuzzers that compare.
bool ToDoubleReference(std::string_view text, double& value);
double LeadingNumberReference(std::string_view text);

}  // namespace tallory
