// Sorting so that a person who cancels does not wait for the end of it.
#pragma once

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <span>
#include <vector>

#include "base/cancel.h"

namespace kelvane {

// Merges two sorted runs behind `into`. False when cancelled.
template <class Value>
[[nodiscard]] bool mergeRuns(std::span<const Value> a, std::span<const Value> b, std::vector<Value>& into,
                             const CancelFlag& cancel)
{
    constexpr std::size_t betweenLooks = 65'536;
    while (!a.empty() && !b.empty()) {
        if (into.size() % betweenLooks == 0 && cancel.cancelled())
            return false;
        std::span<const Value>& from = b.front() < a.front() ? b : a;
        into.push_back(from.front());
        from = from.subspan(1);
    }
    into.insert(into.end(), a.begin(), a.end());
    into.insert(into.end(), b.begin(), b.end());
    return true;
}

// In blocks, each of which is sorted well within the time that a person waits. False when cancelled: the order is then
// any.
template <class Value>
[[nodiscard]] bool mergeSort(std::vector<Value>& values, std::size_t block, const CancelFlag& cancel)
{
    const std::size_t count = values.size();
    for (std::size_t i = 0; i < count; i += block) {
        if (cancel.cancelled())
            return false;
        std::sort(values.begin() + static_cast<std::ptrdiff_t>(i),
                  values.begin() + static_cast<std::ptrdiff_t>(std::min(i + block, count)));
    }
    std::vector<Value> merged;
    for (std::size_t run = block; run < count; run *= 2) {
        merged.clear();
        merged.reserve(count);
        const std::span<const Value> all(values);
        const auto runAt = [&](std::size_t i) {
            return all.subspan(std::min(i, count)).first(std::min(run, count - std::min(i, count)));
        };
        for (std::size_t i = 0; i < count; i += 2 * run)
            if (!mergeRuns(runAt(i), runAt(i + run), merged, cancel))
                return false;
        values.swap(merged);
    }
    return true;
}

}  // namespace kelvane
