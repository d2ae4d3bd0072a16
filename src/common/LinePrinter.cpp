#include "common/LinePrinter.h"

#include "common/Numbers.h"

namespace tallory {

LinePrinter::LinePrinter(AtomicFile& file) : file_(file) {
    pending_.resize(kPiece + kShortItem);
}

LinePrinter& LinePrinter::NewLine() {
    if (started_) Text("\r\n");
    started_ = true;
    return *this;
}

void LinePrinter::AppendLong(std::string_view text) {
    if (used_ + text.size() > pending_.size()) pending_.resize(used_ + text.size());
    std::memcpy(pending_.data() + used_, text.data(), text.size());
}

LinePrinter& LinePrinter::Number(double value) {
    uint64_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    PrintedNumber& kept = printed_[(bits * 0x9E3779B97F4A7C15ull) >> (64 - kPrintedBits)];
    if (kept.length != 0 && kept.bits == bits)
        return Text(std::string_view(kept.item, kept.length));
    char item[kNumberItemSize];
    const size_t length = NumberItemTo(value, item);
    if (length <= sizeof kept.item) {
        kept.bits = bits;
        kept.length = static_cast<uint8_t>(length);
        std::memcpy(kept.item, item, length);
    }
    return Text(std::string_view(item, length));
}

void LinePrinter::Flush() {
    file_.Write(std::string_view(pending_.data(), used_));
    used_ = 0;
}

}  // namespace tallory
