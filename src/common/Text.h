#pragma once

#include <string>
#include <string_view>

namespace tallory {

// Blanks only, as the course files use them; tabs are text.
std::string Trim(std::string_view text);
std::string TrimLeft(std::string_view text);
std::string TrimRight(std::string_view text);
std::string_view TrimView(std::string_view text);

std::string ToUpper(std::string_view text);
std::string ToLower(std::string_view text);

bool StartsWith(std::string_view text, std::string_view prefix);
bool ContainsNoCase(std::string_view text, std::string_view part);
// Every occurrence of `part`, found without regard to case, replaced by `with`.
std::string ReplaceAllNoCase(std::string_view text, std::string_view part, std::string_view with);
// Every occurrence of `part` (exact) replaced by `with`.
std::string ReplaceAll(std::string_view text, std::string_view part, std::string_view with);

// Trimmed and upper-cased: the key under which IDs are compared throughout the program.
std::string NormalKey(std::string_view text);

// First `count` characters (all when shorter).
std::string Left(std::string_view text, size_t count);

// Decodes course-file bytes for display: UTF-8 when valid, otherwise Windows-1252.
std::string DisplayText(std::string_view bytes);
// Decodes bytes as Windows-1252 into UTF-8, whatever they hold.
std::string Windows1252ToUtf8(std::string_view bytes);

}  // namespace tallory
