#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace tallory::fuzz {

// One course folder for the whole run (in memory where possible), with its SessionData
// folder; removed when the process ends.
const std::string& FuzzFolder();

// Replaces the file at `path` with the bytes.
void WriteInput(const std::string& path, const uint8_t* data, size_t size);

}  // namespace tallory::fuzz
