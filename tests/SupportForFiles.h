#pragma once

#include <gtest/gtest.h>

#include <string_view>

namespace tallory::test {

// Whether `text` holds `part`; a failure shows both.
inline testing::AssertionResult Holds(std::string_view text, std::string_view part) {
    if (text.find(part) != std::string_view::npos) return testing::AssertionSuccess();
    return testing::AssertionFailure() << "\"" << part << "\" is not in:\n" << text;
}

}  // namespace tallory::test
