#pragma once

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <utility>

#include "TestSupport.h"

namespace tallory::test {

// The long texts the program shows, word for word, by what they are about
// (tests/data/messages.json): a text, or the texts of each case.
inline const nlohmann::json& Texts(const std::string& about) {
    static const nlohmann::json texts = nlohmann::json::parse(ReadBytes(DataPath("messages.json")));
    return texts.at(about);
}
// With a blank to fill: every `fill.first` in it reads `fill.second`.
inline std::string Said(const std::string& about,
                        const std::pair<std::string_view, std::string_view>& fill = {}) {
    std::string text = Texts(about).get<std::string>();
    if (fill.first.empty()) return text;
    for (size_t at = 0; (at = text.find(fill.first, at)) != std::string::npos;
         at += fill.second.size())
        text.replace(at, fill.first.size(), fill.second);
    return text;
}

}  // namespace tallory::test
