#pragma once

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "TestSupport.h"

namespace tallory::test {

// Whether `text` holds `part`; a failure shows both.
inline testing::AssertionResult Holds(std::string_view text, std::string_view part) {
    if (text.find(part) != std::string_view::npos) return testing::AssertionSuccess();
    return testing::AssertionFailure() << "\"" << part << "\" is not in:\n" << text;
}

// The long texts the program shows, word for word, by what they are about
// (tests/data/messages.json): a text, or the texts of each case.
inline const nlohmann::json& Texts(const std::string& about) {
    static const nlohmann::json texts = nlohmann::json::parse(ReadBytes(DataPath("messages.json")));
    return texts.at(about);
}
inline std::string Said(const std::string& about) {
    return Texts(about).get<std::string>();
}

}  // namespace tallory::test
