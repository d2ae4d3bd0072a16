#pragma once

#include <algorithm>

namespace tallory {

// The main window shows four sessions by six students at a time.
constexpr int kGridColumns = 4;
constexpr int kGridRows = 6;

// The first session column shown after a load: the newest four sessions.
constexpr int NewestPage(int numSessions) {
    return std::max(0, numSessions - kGridColumns);
}

}  // namespace tallory
