#pragma once

#include <nlohmann/json.hpp>

#include <string>

#include "common/Course.h"

namespace tallory::cli {

// The session in Questions/Votes as the JSON object of `session`.
nlohmann::json SessionJson(const Course& course, int number, const std::string& file);
// The same as readable text.
std::string SessionText(const Course& course, int number, const std::string& file);

}  // namespace tallory::cli
