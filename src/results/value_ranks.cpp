#include "results/value_ranks.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <string>

#include "results/folded_bytes.h"
#include "results/list_values.h"

namespace kelvane {
namespace {

constexpr std::uint64_t signBit = std::uint64_t{1} << 63;
constexpr std::size_t itemsBetweenLooks = 1'024;  // at the cancel flag
constexpr std::size_t chunkBytes = sizeof(std::uint64_t);

// Doubles as unsigned numbers of the same order; NaN comes last.
std::uint64_t orderOf(double number)
{
    if (std::isnan(number))
        return UINT64_MAX;
    const auto bits = std::bit_cast<std::uint64_t>(number == 0 ? 0.0 : number);
    return (bits & signBit) != 0 ? ~bits : bits | signBit;
}

// Sorts values in stretches: first by the number or by the first eight bytes of a text's key, then each stretch of
// equal ones by the next eight, and so on. What is compared lies in the array that is sorted, and long beginnings that
// texts share, as paths do, are passed over once.
class RankedColumn {
public:
    explicit RankedColumn(std::size_t items) { entries_.reserve(items); }

    void addMissing() { ++next_; }
    void addNumber(std::uint64_t order) { entries_.push_back({order, next_++, false}); }
    void addText(std::u16string_view text, const TextFolding& folding)
    {
        starts_.resize(next_, keys_.size());  // also for the missing ones before it
        starts_.push_back(keys_.size());
        appendSortKey(keys_, text, folding);
        entries_.push_back({0, next_++, false});
    }

    // False when cancelled.
    [[nodiscard]] bool sort(PropKind kind, const CancelFlag& cancel)
    {
        starts_.push_back(keys_.size());
        const bool areTexts = kind == PropKind::text;
        std::vector<Stretch> stretches;
        take(stretches, {0, entries_.size(), 0}, areTexts);
        while (!stretches.empty() && !cancel.cancelled()) {
            const Stretch stretch = stretches.back();
            stretches.pop_back();
            divide(stretches, stretch, areTexts);
        }
        return !cancel.cancelled();
    }

    [[nodiscard]] ValueRanks ranks() const
    {
        ValueRanks result;
        for (const Entry& entry : entries_)
            result.distinct += entry.sameAsBefore ? 0 : 1;
        result.ranks.assign(next_, result.distinct);
        std::uint32_t seen = 0;
        for (const Entry& entry : entries_) {
            seen += entry.sameAsBefore ? 0 : 1;
            result.ranks[entry.index] = seen - 1;
        }
        return result;
    }

private:
    struct Entry {
        std::uint64_t chunk;
        std::uint32_t index;
        bool sameAsBefore;
    };
    // Entries that are equal up to the depth.
    struct Stretch {
        std::size_t first, end, depth;
    };

    // Bytes behind the end of a key are 0, as none in it is.
    [[nodiscard]] std::uint64_t chunkAt(std::uint32_t index, std::size_t depth) const
    {
        const auto* byte = reinterpret_cast<const unsigned char*>(keys_.data()) + starts_[index] + depth;
        const std::size_t left = starts_[index + 1] - starts_[index] - depth;
        std::uint64_t chunk = 0;
        if (left >= chunkBytes) {
            for (std::size_t i = 0; i < chunkBytes; ++i)
                chunk = chunk << 8 | byte[i];
            return chunk;
        }
        for (std::size_t i = 0; i < chunkBytes; ++i)
            chunk = chunk << 8 | (i < left ? byte[i] : 0u);
        return chunk;
    }

    void take(std::vector<Stretch>& stretches, Stretch stretch, bool areTexts)
    {
        if (stretch.end - stretch.first < 2)
            return;
        for (std::size_t i = stretch.first; areTexts && i < stretch.end; ++i)
            entries_[i].chunk = chunkAt(entries_[i].index, stretch.depth);
        stretches.push_back(stretch);
    }

    void divide(std::vector<Stretch>& stretches, Stretch stretch, bool areTexts)
    {
        const auto at = [&](std::size_t i) { return entries_.begin() + static_cast<std::ptrdiff_t>(i); };
        std::sort(at(stretch.first), at(stretch.end), [](const Entry& a, const Entry& b) { return a.chunk < b.chunk; });
        for (std::size_t first = stretch.first, end = first; first < stretch.end; first = end) {
            const std::uint64_t chunk = entries_[first].chunk;
            while (end < stretch.end && entries_[end].chunk == chunk)
                ++end;
            if (areTexts && (chunk & 0xFF) != 0)
                take(stretches, {first, end, stretch.depth + chunkBytes}, areTexts);
            else
                std::for_each(at(first + 1), at(end), [](Entry& entry) { entry.sameAsBefore = true; });
        }
    }

    std::vector<Entry> entries_;
    std::string keys_;
    std::vector<std::size_t> starts_;  // in keys_, by index, and the end
    std::uint32_t next_ = 0;           // index
};

void add(RankedColumn& column, const PropValue& value, const TextFolding& folding)
{
    if (value.missing())
        column.addMissing();
    else if (value.kind == PropKind::text)
        column.addText(value.text, folding);
    else
        column.addNumber(value.kind == PropKind::real ? orderOf(value.real()) : value.bits ^ signBit);
}

}  // namespace

std::optional<ValueRanks> rankValues(ResultsModel& model, std::span<const ItemId> items, const PropRef& property,
                                     const PropertySource& properties, const CancelFlag& cancel)
{
    RankedColumn column(items.size());
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (i % itemsBetweenLooks == 0 && cancel.cancelled())
            return std::nullopt;
        withListValue(model.file(items[i]), property, properties,
                      [&](const PropValue& value) { add(column, value, properties.folding()); });
    }
    if (!column.sort(property.kind(), cancel))
        return std::nullopt;
    return column.ranks();
}

}  // namespace kelvane
