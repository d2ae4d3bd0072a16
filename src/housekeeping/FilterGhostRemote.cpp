#include "housekeeping/FilterGhostRemote.h"

#include <optional>
#include <string>
#include <vector>

#include "common/Numbers.h"
#include "common/RunTimeError.h"
#include "common/Text.h"
#include "registration/RemoteTable.h"

namespace tallory {

namespace {

constexpr const char* kBoxNames[kSearchBoxes] = {
    "TxtAvgEqual",    "txtAvgGrater", "TxtAvgLess",  "txtTotal",
    "txtTotalGrater", "txtTotalLess", "TxtRemoteId", "TxtRemoteIdContaining",
};

// An empty box is no criterion; anything else must be a number.
std::optional<double> NumberOf(const FilterGhostRemoteScreen& screen, SearchBox box) {
    const std::string text = Trim(screen.Box(box).text);
    if (text.empty()) return std::nullopt;
    double value = 0;
    if (!ToDouble(text, value))
        throw RunTimeError(kTypeMismatch, std::string("Search box ") +
                                              kBoxNames[static_cast<int>(box)] + ": " + text);
    return value;
}

struct NumberCriteria {
    std::optional<double> equal;
    std::optional<double> from;
    std::optional<double> to;

    bool Ticks(double value) const {
        if (equal && value == *equal) return true;
        // Both ends are inclusive; a range with one end open is a bound on that side only.
        if (from && to) return *from <= value && *to >= value;
        if (from) return value >= *from;
        if (to) return value <= *to;
        return false;
    }
};

// Splits at every comma; a text without one is a single part.
std::vector<std::string> Parts(std::string_view text) {
    std::vector<std::string> parts;
    size_t start = 0;
    for (size_t comma; (comma = text.find(',', start)) != std::string_view::npos; start = comma + 1)
        parts.push_back(NormalKey(text.substr(start, comma - start)));
    parts.push_back(NormalKey(text.substr(start)));
    return parts;
}

}  // namespace

bool IsSearchNumberKey(int key) {
    return (key >= '0' && key <= '9') || key == 8 || key == 13;
}

bool IsSearchKey(SearchBox box, int key) {
    if (box == SearchBox::TxtRemoteId || box == SearchBox::TxtRemoteIdContaining)
        return IsRemoteIdKey(key);
    return IsSearchNumberKey(key);
}

void FilterGhostRemoteScreen::BoxChange(SearchBox box, std::string_view text) {
    Box(box).text = std::string(text);
}

void FilterGhostRemoteScreen::CmdSelectClick() {
    // Every number is read before any tick changes, so a box that holds no number ends the run
    // with the list as it was.
    const NumberCriteria average{NumberOf(*this, SearchBox::TxtAvgEqual),
                                 NumberOf(*this, SearchBox::txtAvgGrater),
                                 NumberOf(*this, SearchBox::TxtAvgLess)};
    const NumberCriteria total{NumberOf(*this, SearchBox::txtTotal),
                               NumberOf(*this, SearchBox::txtTotalGrater),
                               NumberOf(*this, SearchBox::txtTotalLess)};
    const std::string remote = NormalKey(Box(SearchBox::TxtRemoteId).text);
    const std::string containing = Trim(Box(SearchBox::TxtRemoteIdContaining).text);
    const std::vector<std::string> parts =
        containing.empty() ? std::vector<std::string>{} : Parts(containing);

    // A search starts afresh: ticks made by hand are lost, whether a row matches or not.
    for (long i = 0; i < ghostList_.Allocated(); ++i) ghostList_[i].Selected = kFalse;
    for (long i = 0; i < ghostList_.Allocated(); ++i) {
        GhostRec& row = ghostList_[i];
        if (TrimView(row.RemoteId).empty()) continue;
        const std::string id = NormalKey(row.RemoteId);
        bool ticked = average.Ticks(row.Average) || total.Ticks(row.Total);
        if (!remote.empty() && id == remote) ticked = true;
        for (const std::string& part : parts)
            if (id.find(part) != std::string::npos) ticked = true;
        if (ticked) row.Selected = kTrue;
    }
    hidden_ = true;
}

void FilterGhostRemoteScreen::lvButtons_H1Click() {
    for (ControlState& box : boxes_) box.text.clear();
}

}  // namespace tallory
