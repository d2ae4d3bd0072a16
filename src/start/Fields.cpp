#include "start/Fields.h"

#include "common/Text.h"

namespace tallory {

std::string_view Fields::operator[](int index) const {
    if (index < 0 || index > count_) return {};
    uint32_t begin = index == 0 ? 0 : ends_[index - 1];
    return std::string_view(buffer_).substr(begin, ends_[index] - begin);
}

void SplitFields(std::string_view line, Fields& fields) {
    std::string& buffer = fields.buffer_;
    std::vector<uint32_t>& ends = fields.ends_;
    buffer.clear();
    ends.clear();
    buffer.reserve(line.size());
    int count = 0;
    bool quoted = false;
    for (char c : line) {
        if (c == '"') {
            quoted = !quoted;
        } else if ((c == ',' || c == '\n') && !quoted) {
            if (count < fields.top_) {
                ends.push_back(static_cast<uint32_t>(buffer.size()));
                ++count;
            } else {
                buffer += ':';
            }
        } else {
            buffer += c;
        }
    }
    ends.push_back(static_cast<uint32_t>(buffer.size()));
    uint32_t lastBegin = count == 0 ? 0 : ends[count - 1];
    if (ends[count] == lastBegin) --count;
    fields.count_ = count;
}

bool SameText(std::string_view a, std::string_view b) {
    std::string_view x = TrimView(a), y = TrimView(b);
    if (x.size() != y.size()) return false;
    for (size_t i = 0; i < x.size(); ++i) {
        char p = x[i], q = y[i];
        if (p >= 'a' && p <= 'z') p = static_cast<char>(p - 32);
        if (q >= 'a' && q <= 'z') q = static_cast<char>(q - 32);
        if (p != q) return false;
    }
    return true;
}

}  // namespace tallory
