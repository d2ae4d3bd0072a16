#pragma once

#include <string_view>

namespace tallory {

// The sentence that closes the warnings about clickers, telling where to ask for help.
inline constexpr std::string_view kContactSentence =
    "If you have questions or are unsure about how to proceed, contact support@tallory.example "
    "for additional assistance.";

}  // namespace tallory
