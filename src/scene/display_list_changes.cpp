#include "scene/display_list_changes.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <span>
#include <unordered_map>
#include <utility>

namespace tweenery {
namespace {

using Items = std::span<const DisplayItem>;
using Comparison = DisplayListComparison;

struct Part {
    const Layer* layer;
    size_t kind;
    bool operator==(const Part&) const = default;
};

struct PartHash {
    size_t operator()(const Part& part) const {
        return std::hash<const void*>()(part.layer) * 31 + part.kind;
    }
};

Part partOf(const DisplayItem& item) {
    return {item.layer, item.drawing.index()};
}

void addChange(const DisplayItem& before, const DisplayItem& after, const Comparison& comparison,
               DirtyArea& dirty) {
    if (after.looksLike(before, comparison.area, comparison.tolerance)) { return; }
    dirty.add(before);
    dirty.add(after);
}

// Index in `before` of each item of `after`, -1 for a new one.
std::vector<std::ptrdiff_t> matchesOf(Items before, Items after) {
    std::unordered_map<Part, std::ptrdiff_t, PartHash> places;
    places.reserve(before.size());
    for (size_t i = 0; i < before.size(); ++i) {
        places.emplace(partOf(before[i]), static_cast<std::ptrdiff_t>(i));
    }
    std::vector<std::ptrdiff_t> matches;
    matches.reserve(after.size());
    for (const DisplayItem& item : after) {
        const auto place = places.find(partOf(item));
        matches.push_back(place == places.end() ? -1 : place->second);
    }
    return matches;
}

// Keeps of the matches a longest rising sequence, items that kept their order; the others become
// -1: they passed some of those.
void keepRising(std::vector<std::ptrdiff_t>& matches) {
    std::vector<size_t> ends;  // of the sequences found, by length: the end with the least match
    std::vector<std::ptrdiff_t> previous(matches.size(), -1);
    for (size_t i = 0; i < matches.size(); ++i) {
        if (matches[i] < 0) { continue; }
        const auto end = std::lower_bound(
            ends.begin(), ends.end(), matches[i],
            [&](size_t index, std::ptrdiff_t match) { return matches[index] < match; });
        if (end != ends.begin()) { previous[i] = static_cast<std::ptrdiff_t>(*(end - 1)); }
        if (end == ends.end()) {
            ends.push_back(i);
        } else {
            *end = i;
        }
    }
    std::vector<std::ptrdiff_t> kept(matches.size(), -1);
    auto i = ends.empty() ? -1 : static_cast<std::ptrdiff_t>(ends.back());
    for (; i >= 0; i = previous[static_cast<size_t>(i)]) {
        kept[static_cast<size_t>(i)] = matches[static_cast<size_t>(i)];
    }
    matches = std::move(kept);
}

void addRearranged(Items before, Items after, const Comparison& comparison, DirtyArea& dirty) {
    std::vector<std::ptrdiff_t> matches = matchesOf(before, after);
    keepRising(matches);
    std::vector<bool> isKept(before.size(), false);
    for (size_t i = 0; i < after.size(); ++i) {
        if (matches[i] < 0) {
            dirty.add(after[i]);
            continue;
        }
        const auto match = static_cast<size_t>(matches[i]);
        isKept[match] = true;
        addChange(before[match], after[i], comparison, dirty);
    }
    for (size_t i = 0; i < before.size(); ++i) {
        if (!isKept[i]) { dirty.add(before[i]); }
    }
}

}  // namespace

void addChanges(const DisplayList& before, const DisplayList& after, const Comparison& comparison,
                DirtyArea& dirty) {
    Items left = before.items();
    Items right = after.items();
    while (!left.empty() && !right.empty() && right.front().isSamePartAs(left.front())) {
        addChange(left.front(), right.front(), comparison, dirty);
        left = left.subspan(1);
        right = right.subspan(1);
    }
    while (!left.empty() && !right.empty() && right.back().isSamePartAs(left.back())) {
        addChange(left.back(), right.back(), comparison, dirty);
        left = left.first(left.size() - 1);
        right = right.first(right.size() - 1);
    }
    if (!left.empty() || !right.empty()) { addRearranged(left, right, comparison, dirty); }
}

}  // namespace tweenery
