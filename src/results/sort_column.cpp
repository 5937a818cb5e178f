#include "results/sort_column.h"

#include <bit>
#include <cmath>
#include <cstring>

#include "results/folded_bytes.h"
#include "results/result_columns.h"

namespace kelvane {
namespace {

constexpr std::uint64_t signBit = std::uint64_t{1} << 63;
constexpr std::size_t itemsBetweenLooks = 1'024;  // at the cancel flag

// Doubles as unsigned numbers of the same order; NaN comes last.
std::uint64_t rankOf(double number)
{
    if (std::isnan(number))
        return UINT64_MAX;
    const auto bits = std::bit_cast<std::uint64_t>(number == 0 ? 0.0 : number);
    return (bits & signBit) != 0 ? ~bits : bits | signBit;
}

std::uint64_t firstEight(std::string_view bytes)
{
    std::uint64_t rank = 0;
    for (std::size_t i = 0; i < 8; ++i)
        rank = rank << 8 | (i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0u);
    return rank;
}

}  // namespace

SortColumn::SortColumn(ResultsModel& model, std::span<const ItemId> items, const SortKey& key,
                       const PropertySource& properties, const CancelFlag& cancel)
    : ascending_(key.ascending)
{
    entries_.reserve(items.size());
    for (const ItemId id : items) {
        if (entries_.size() % itemsBetweenLooks == 0 && cancel.cancelled()) {
            complete_ = false;
            return;
        }
        withListValue(model.file(id), key.property, properties,
                      [&](const PropValue& value) { entries_.push_back(entryOf(value, properties.folding())); });
    }
}

SortColumn::Entry SortColumn::entryOf(const PropValue& value, const TextFolding& folding)
{
    if (value.missing())
        return {.missing = true};
    switch (value.kind) {
    case PropKind::text:
        return textEntry(value.text, folding);
    case PropKind::real:
        return {.rank = rankOf(value.real())};
    default:
        return {.rank = value.bits ^ signBit};
    }
}

SortColumn::Entry SortColumn::textEntry(std::u16string_view text, const TextFolding& folding)
{
    key_.clear();
    appendSortKey(key_, text, folding);
    Entry entry{.rank = firstEight(key_), .start = rest_.size()};
    if (key_.size() > 8) {
        entry.length = static_cast<std::uint32_t>(key_.size() - 8);
        rest_.append(key_, 8);
    }
    return entry;
}

int SortColumn::compareRest(const Entry& a, const Entry& b) const
{
    const std::string_view left(rest_.data() + a.start, a.length);
    const int order = left.compare(std::string_view(rest_.data() + b.start, b.length));
    return ascending_ ? order : -order;
}

}  // namespace kelvane
