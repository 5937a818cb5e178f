// The values of one sort key, taken out of all items once, so that comparing asks nobody.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/cancel.h"
#include "results/result_sort.h"

namespace kelvane {

class SortColumn {
public:
    // `items` in any order; the column knows them by their index in it. False from complete() when cancelled.
    SortColumn(ResultsModel& model, std::span<const ItemId> items, const SortKey& key, const PropertySource& properties,
               const CancelFlag& cancel);

    [[nodiscard]] bool complete() const { return complete_; }
    // Negative, 0 or positive; in the direction of the key.
    [[nodiscard]] int compare(std::uint32_t a, std::uint32_t b) const
    {
        const Entry& left = entries_[a];
        const Entry& right = entries_[b];
        if (left.missing != right.missing)
            return left.missing ? 1 : -1;
        if (left.rank != right.rank)
            return (left.rank < right.rank) == ascending_ ? -1 : 1;
        return left.length == 0 && right.length == 0 ? 0 : compareRest(left, right);
    }

private:
    // A number in an order of its own, or the first eight bytes of a text's key and where the rest is.
    struct Entry {
        std::uint64_t rank = 0;
        std::uint64_t start = 0;
        std::uint32_t length = 0;
        bool missing = false;
    };

    [[nodiscard]] int compareRest(const Entry& a, const Entry& b) const;
    [[nodiscard]] Entry entryOf(const PropValue& value, const TextFolding& folding);
    [[nodiscard]] Entry textEntry(std::u16string_view text, const TextFolding& folding);

    std::vector<Entry> entries_;
    std::string rest_;  // of all texts
    std::string key_;   // of the text in hand
    bool ascending_;
    bool complete_ = true;
};

}  // namespace kelvane
