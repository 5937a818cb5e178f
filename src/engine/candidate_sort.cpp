#include "engine/candidate_sort.h"

#include <algorithm>
#include <iterator>
#include <numeric>

#include "engine/matcher.h"
#include "engine/merge_sort.h"
#include "props/value_order.h"

namespace kelvane {
namespace {

struct NumberKey {
    std::uint64_t key;
    std::uint32_t index;
    // A million numbers are sorted in place well within the time that a person who cancels waits.
    static constexpr std::size_t blockSize = 1'048'576;
    friend bool operator<(const NumberKey& a, const NumberKey& b)
    {
        return a.key != b.key ? a.key < b.key : a.index < b.index;
    }
};

struct ValueKey {
    PropValue value;
    std::uint32_t index;
    static constexpr std::size_t blockSize = 32'768;
    friend bool operator<(const ValueKey& a, const ValueKey& b)
    {
        const std::weak_ordering order = compareValues(a.value, b.value);
        return order != 0 ? order < 0 : a.index < b.index;
    }
};

bool equalKeys(const NumberKey& a, const NumberKey& b)
{
    return a.key == b.key;
}
bool equalKeys(const ValueKey& a, const ValueKey& b)
{
    return !a.value.missing() && compareValues(a.value, b.value) == 0;
}

// Signed numbers as unsigned ones of the same order.
std::uint64_t orderedBits(std::uint64_t bits)
{
    return bits ^ (std::uint64_t{1} << 63);
}

class Sorter {
public:
    Sorter(CandidateList& list, const PropertySource& properties, const CancelFlag& cancel, PropRef property)
        : list_(list), properties_(properties), cancel_(cancel), property_(property)
    {
    }

    // These give nothing when cancelled.
    std::optional<SortedCandidates> byValues()
    {
        const PropKind kind = property_.kind();
        std::vector<NumberKey> numbers;
        if ((kind == PropKind::number || kind == PropKind::date) && collectNumbers(numbers))
            return sort(numbers);
        return sortValues();
    }

    std::optional<SortedCandidates> byKeys(const std::vector<std::uint64_t>& wanted)
    {
        std::vector<NumberKey> keys;
        keys.reserve(list_.size());
        std::uint32_t index = 0;
        for (const Candidate& file : list_) {
            if (!file.group.isExcluded())
                keys.push_back({wanted[index], index});
            ++index;
        }
        std::optional<SortedCandidates> sorted = sort(keys);
        if (sorted)
            std::iota(sorted->classes.begin(), sorted->classes.end(), 0);
        return sorted;
    }

private:
    template <class Take>
    bool forEach(Take take)
    {
        std::uint32_t index = 0;
        for (Candidate& file : list_) {
            if (cancel_.cancelled())
                return false;
            if (!file.group.isExcluded() && !take(properties_.value(file, property_), index))
                return false;
            ++index;
        }
        return true;
    }

    // False for values that are not plain numbers after all (missing ones), and when cancelled.
    bool collectNumbers(std::vector<NumberKey>& keys)
    {
        keys.reserve(list_.size());
        return forEach([&](const PropValue& value, std::uint32_t index) {
            keys.push_back({orderedBits(value.bits), index});
            return !value.missing() && value.kind == property_.kind();
        });
    }

    std::optional<SortedCandidates> sortValues()
    {
        std::vector<ValueKey> keys;
        keys.reserve(list_.size());
        const bool complete = forEach([&](const PropValue& value, std::uint32_t index) {
            keys.push_back({value, index});
            return true;
        });
        return complete ? sort(keys) : std::nullopt;
    }

    // The numbers of the classes are given in a pass after the sort: a comparator that numbers while it sorts does not
    // keep its own promise from four equal files on.
    template <class Key>
    std::optional<SortedCandidates> sort(std::vector<Key>& keys)
    {
        if (!mergeSort(keys, Key::blockSize, cancel_))
            return std::nullopt;
        SortedCandidates sorted{&list_, {}, {}};
        sorted.order.reserve(keys.size());
        sorted.classes.reserve(keys.size());
        std::uint32_t number = 0;
        for (std::size_t i = 0; i < keys.size(); ++i) {
            if (i > 0 && !equalKeys(keys[i - 1], keys[i]))
                ++number;
            sorted.order.push_back(keys[i].index);
            sorted.classes.push_back(number);
        }
        return sorted;
    }

    CandidateList& list_;
    const PropertySource& properties_;
    const CancelFlag& cancel_;
    PropRef property_;
};

}  // namespace

void prepareCandidates(const ScanCriteria& criteria, CandidateList& candidates, const PropertySource& properties,
                       const GroupingMode& mode)
{
    if (mode.recheck) {
        std::erase_if(candidates, [&](Candidate& file) { return properties.value(file, criteria.primary).missing(); });
    }
    const bool keepExcluded = !(mode.recheck && mode.onlyGroupOf != nullptr);
    for (Candidate& file : candidates) {
        if (!(keepExcluded && file.group.isExcluded()))
            file.group.value = GroupField::none;
        if (mode.recheck && criteria.skipOffline && file.item().inFileSystem() && file.item().isOffline())
            file.group.value = GroupField::excluded;
    }
}

std::optional<SortedCandidates> sortCandidates(const ScanCriteria& criteria, CandidateList& candidates,
                                               const GroupingPorts& ports)
{
    Sorter sorter(candidates, ports.properties, ports.cancel, criteria.primary);
    if (isDescribed(criteria, ports.similar)) {
        const auto keys = ports.similar->order(criteria, candidates, ports.cancel);
        if (ports.cancel.cancelled())
            return std::nullopt;
        if (keys)
            return sorter.byKeys(*keys);
    }
    return sorter.byValues();
}

}  // namespace kelvane
