#pragma once

#include <vector>

#include "common/RunTimeError.h"

namespace tallory {

// A table with fixed bounds 0..Upper whose rows are allocated only when first touched. Rows are
// never cleared or released, so a row keeps whatever an earlier use left in it; an index past the
// bounds is run-time error 9, never undefined behaviour.
template <class T, int Upper>
class Table {
  public:
    static constexpr int kUpper = Upper;

    // The name error 9 gives when an index falls outside the bounds; every table has one.
    explicit Table(const char* name) : name_(name) {}

    T& operator[](long index) {
        if (index < 0 || index > Upper) CheckSubscript(index, 0, Upper, name_);
        if (static_cast<size_t>(index) >= rows_.size()) rows_.resize(index + 1);
        return rows_[index];
    }

    const T& operator[](long index) const {
        if (index < 0 || index > Upper) CheckSubscript(index, 0, Upper, name_);
        if (static_cast<size_t>(index) >= rows_.size()) return Empty();
        return rows_[index];
    }

    // Rows allocated so far (not the rows in use: that is the owner's counter).
    long Allocated() const { return static_cast<long>(rows_.size()); }

    // Sets every allocated row back to its initial state, as a table cleared row by row would be.
    void Reset() {
        for (auto& row : rows_) row = T{};
    }

  private:
    static const T& Empty() {
        static const T empty{};
        return empty;
    }

    std::vector<T> rows_;
    const char* name_;
};

}  // namespace tallory
