#include "common/Text.h"

#include <cstdint>

namespace tallory {

std::string_view TrimView(std::string_view text) {
    while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
    while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
    return text;
}

std::string Trim(std::string_view text) {
    return std::string(TrimView(text));
}

std::string TrimLeft(std::string_view text) {
    while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
    return std::string(text);
}

std::string TrimRight(std::string_view text) {
    while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
    return std::string(text);
}

static char UpperChar(char c) {
    return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 32) : c;
}
static char LowerChar(char c) {
    return (c >= 'A' && c <= 'Z') ? static_cast<char>(c + 32) : c;
}

std::string ToUpper(std::string_view text) {
    std::string result(text);
    for (char& c : result) c = UpperChar(c);
    return result;
}

std::string ToLower(std::string_view text) {
    std::string result(text);
    for (char& c : result) c = LowerChar(c);
    return result;
}

bool StartsWith(std::string_view text, std::string_view prefix) {
    return text.substr(0, prefix.size()) == prefix;
}

static size_t FindNoCase(std::string_view text, std::string_view part, size_t from) {
    if (part.empty()) return from <= text.size() ? from : std::string_view::npos;
    for (size_t i = from; i + part.size() <= text.size(); ++i) {
        size_t j = 0;
        while (j < part.size() && UpperChar(text[i + j]) == UpperChar(part[j])) ++j;
        if (j == part.size()) return i;
    }
    return std::string_view::npos;
}

bool ContainsNoCase(std::string_view text, std::string_view part) {
    return FindNoCase(text, part, 0) != std::string_view::npos;
}

std::string ReplaceAllNoCase(std::string_view text, std::string_view part, std::string_view with) {
    if (part.empty()) return std::string(text);
    std::string result;
    size_t from = 0;
    for (size_t at; (at = FindNoCase(text, part, from)) != std::string_view::npos;
         from = at + part.size()) {
        result.append(text.substr(from, at - from));
        result.append(with);
    }
    result.append(text.substr(from));
    return result;
}

std::string ReplaceAll(std::string_view text, std::string_view part, std::string_view with) {
    if (part.empty()) return std::string(text);
    std::string result;
    size_t from = 0;
    for (size_t at; (at = text.find(part, from)) != std::string_view::npos;
         from = at + part.size()) {
        result.append(text.substr(from, at - from));
        result.append(with);
    }
    result.append(text.substr(from));
    return result;
}

std::string NormalKey(std::string_view text) {
    return ToUpper(TrimView(text));
}

std::string Left(std::string_view text, size_t count) {
    return std::string(text.substr(0, count));
}

static bool IsValidUtf8(std::string_view bytes) {
    size_t i = 0;
    while (i < bytes.size()) {
        auto c = static_cast<unsigned char>(bytes[i]);
        size_t extra;
        if (c < 0x80)
            extra = 0;
        else if ((c >> 5) == 0x6)
            extra = 1;
        else if ((c >> 4) == 0xE)
            extra = 2;
        else if ((c >> 3) == 0x1E)
            extra = 3;
        else
            return false;
        if (i + extra >= bytes.size() && extra > 0) return false;
        for (size_t k = 1; k <= extra; ++k)
            if ((static_cast<unsigned char>(bytes[i + k]) >> 6) != 0x2) return false;
        i += extra + 1;
    }
    return true;
}

std::string Windows1252ToUtf8(std::string_view bytes) {
    // 0x80..0x9F differ from Latin-1.
    static const uint16_t high[32] = {
        0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
        0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
        0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};
    std::string out;
    out.reserve(bytes.size());
    for (char ch : bytes) {
        auto c = static_cast<unsigned char>(ch);
        uint32_t code = c < 0x80 ? c : (c < 0xA0 ? high[c - 0x80] : c);
        if (code < 0x80) {
            out += static_cast<char>(code);
        } else if (code < 0x800) {
            out += static_cast<char>(0xC0 | (code >> 6));
            out += static_cast<char>(0x80 | (code & 0x3F));
        } else {
            out += static_cast<char>(0xE0 | (code >> 12));
            out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
            out += static_cast<char>(0x80 | (code & 0x3F));
        }
    }
    return out;
}

std::string DisplayText(std::string_view bytes) {
    return IsValidUtf8(bytes) ? std::string(bytes) : Windows1252ToUtf8(bytes);
}

}  // namespace tallory
