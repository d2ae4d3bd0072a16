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
    char item[kNumberItemSize];
    return Text(std::string_view(item, NumberItemTo(value, item)));
}

void LinePrinter::Flush() {
    file_.Write(std::string_view(pending_.data(), used_));
    used_ = 0;
}

}  // namespace tallory
