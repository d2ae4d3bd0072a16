// SplitFields over any line and any top index: the fields it reports must lie in the line's
// bytes, and no field past the top index may exist. Each separator scan (the portable one, the
// wide one, and the one the processor picks) refuses a line with a quote or with more separators
// than the top index, and otherwise ends its fields where SplitFields ends them.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "start/Fields.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 1) return 0;
    // Small tops exercise the joining of surplus fields; tops around 32 and 64 the block edges.
    const int top = data[0] % 128;
    std::string_view line(reinterpret_cast<const char*>(data + 1), size - 1);
    tallory::Fields fields(top);
    tallory::SplitFields(line, fields);
    if (fields.Count() < -1 || fields.Count() > top) std::abort();
    size_t total = 0;
    for (int i = 0; i <= fields.Count(); ++i) total += fields[i].size();
    if (total > line.size()) std::abort();
    if (!fields[fields.Count() + 1].empty()) std::abort();

    const bool plain = line.find('"') == std::string_view::npos &&
                       std::count_if(line.begin(), line.end(),
                                     [](char c) { return c == ',' || c == '\n'; }) <= top;
    for (auto scan : {&tallory::separator_scans::Portable, &tallory::separator_scans::Wide,
                      &tallory::FindSeparators}) {
        std::vector<uint32_t> ends(static_cast<size_t>(top) + 1, 0xDEADBEEF);
        const int separators = scan(line, ends.data(), top);
        if (!plain) {
            if (separators != -1) std::abort();
            continue;
        }
        if (separators < 0 || separators < fields.Count() || separators - fields.Count() > 1)
            std::abort();
        if (ends[separators] != line.size()) std::abort();
        for (int i = 0; i <= separators; ++i) {
            const uint32_t begin = i == 0 ? 0 : ends[i - 1] + 1;
            // The last field is not counted when empty, and then reads as empty all the same.
            if (line.substr(begin, ends[i] - begin) != fields[i]) std::abort();
        }
    }
    return 0;
}
