#include "housekeeping/ListPage.h"

#include <algorithm>

namespace tallory {

void SetListScroll(ScrollBar& scroll, int count) {
    scroll.maximum = count - kListRows;
    scroll.enabled = count > kListRows;
    if (scroll.enabled) scroll.value = 0;
}

int PagedValue(const ScrollBar& scroll, bool down) {
    if (!scroll.enabled) return scroll.value;
    const int moved = scroll.value + (down ? scroll.largeChange : -scroll.largeChange);
    return std::clamp(moved, scroll.minimum, std::max(scroll.minimum, scroll.maximum));
}

}  // namespace tallory
