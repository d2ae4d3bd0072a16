// SplitFields over any line and any top index: the fields it reports must lie in the line's
// bytes, and no field past the top index may exist. Where FindSeparators takes the line, the
// fields between its separators are those of SplitFields.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "start/Fields.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 1) return 0;
    const int top = data[0] % 32;  // small tops exercise the joining of surplus fields
    std::string_view line(reinterpret_cast<const char*>(data + 1), size - 1);
    tallory::Fields fields(top);
    tallory::SplitFields(line, fields);
    if (fields.Count() < -1 || fields.Count() > top) std::abort();
    size_t total = 0;
    for (int i = 0; i <= fields.Count(); ++i) total += fields[i].size();
    if (total > line.size()) std::abort();
    if (!fields[fields.Count() + 1].empty()) std::abort();

    std::vector<uint32_t> ends(static_cast<size_t>(top) + 1);
    const int separators = tallory::FindSeparators(line, ends.data(), top);
    if (separators >= 0) {
        for (int i = 0; i <= separators; ++i) {
            const uint32_t begin = i == 0 ? 0 : ends[i - 1] + 1;
            std::string_view field = line.substr(begin, ends[i] - begin);
            // The last field is not counted when empty, and then reads as empty all the same.
            if (field != fields[i]) std::abort();
        }
        if (separators - fields.Count() > 1 || separators < fields.Count()) std::abort();
    }
    return 0;
}
