// SplitFields over any line and any top index: the fields it reports must lie in the line's
// bytes, and no field past the top index may exist.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

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
    return 0;
}
