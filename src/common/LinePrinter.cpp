#include "common/LinePrinter.h"

#include "common/Numbers.h"

namespace tallory {

LinePrinter::LinePrinter(AtomicFile& file) : file_(file) {
    pending_.reserve(kPiece + kNumberItemSize);
}

LinePrinter& LinePrinter::NewLine() {
    if (started_) pending_.append("\r\n");
    started_ = true;
    return *this;
}

LinePrinter& LinePrinter::Number(double value) {
    char item[kNumberItemSize];
    return Text(std::string_view(item, NumberItemTo(value, item)));
}

void LinePrinter::Flush() {
    file_.Write(pending_);
    pending_.clear();
}

}  // namespace tallory
