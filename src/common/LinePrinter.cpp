#include "common/LinePrinter.h"

#include "common/Numbers.h"

namespace tallory {

LinePrinter& LinePrinter::NewLine() {
    if (started_) file_.Write("\r\n");
    started_ = true;
    return *this;
}

LinePrinter& LinePrinter::Text(std::string_view text) {
    file_.Write(text);
    return *this;
}

LinePrinter& LinePrinter::Number(double value) {
    file_.Write(NumberItem(value));
    return *this;
}

}  // namespace tallory
