#include "engine/exact_partition.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "engine/classified_ahead.h"
#include "engine/ordered_tasks.h"

namespace kelvane {
namespace {

// The finaliser of SplitMix64 (Steele, Lea and Flood, OOPSLA 2014).
std::uint64_t mix(std::uint64_t x)
{
    x = (x ^ x >> 30) * 0xBF58476D1CE4E5B9u;
    x = (x ^ x >> 27) * 0x94D049BB133111EBu;
    return x ^ x >> 31;
}

// FNV-1a over UTF-16 units.
std::uint64_t hashText(std::u16string_view text)
{
    std::uint64_t hash = 0xCBF29CE484222325u;
    for (const char16_t unit : text)
        hash = (hash ^ unit) * 0x100000001B3u;
    return mix(hash);
}

std::uint64_t hashValue(const PropValue& value)
{
    if (value.kind == PropKind::text)
        return hashText(value.text);
    const bool zero = value.kind == PropKind::real && value.real() == 0;  // 0.0 and -0.0 are equal
    return mix((zero ? 0 : value.bits) + static_cast<std::uint64_t>(value.kind) * 0x9E3779B97F4A7C15u);
}

struct Entry {
    std::uint64_t hash;
    std::uint32_t position;
    friend bool operator<(const Entry& a, const Entry& b)
    {
        return a.hash != b.hash ? a.hash < b.hash : a.position < b.position;
    }
};

class Partitioner {
public:
    Partitioner(const ScanCriteria& criteria, const SortedCandidates& sorted, const PropertySource& properties,
                ShellNamespace& shell, const CancelFlag& cancel)
        : sorted_(sorted),
          properties_(properties),
          shell_(shell),
          cancel_(cancel),
          threads_(workerCount(criteria.options.threads))
    {
        if (criteria.has(scan_flag::sameType) && criteria.category() < Category::folders && !criteria.onlyPrimary)
            demands_.push_back(itemType);
        const std::size_t count = criteria.onlyPrimary ? 1 : criteria.properties.size();
        for (std::size_t i = 0; i < std::min(count, criteria.properties.size()); ++i) {
            const bool byClass = i == 0 && classesMustAgree(criteria);
            if (!byClass && criteria.properties[i].kind() != PropKind::date)
                demands_.push_back(criteria.properties[i]);
        }
        const auto opening = std::stable_partition(demands_.begin(), demands_.end(), isOfRecord);
        ofRecord_ = static_cast<std::size_t>(opening - demands_.begin());
    }

    // What the records tell parts most files; the values of those that are left are read at once, by all threads. False
    // when cancelled.
    bool run(bool classesAgree)
    {
        if (!partitionByRecords(classesAgree))
            return false;
        return ofRecord_ == demands_.size() || (readValues() && partitionFurther());
    }

    ExactPartitions result;

private:
    // Stands for the type rule, which goes by no property.
    static constexpr PropRef itemType{};

    static bool isOfRecord(const PropRef& demand)
    {
        return demand == itemType || demand.has(property_flag::fromFileRecord);
    }

    bool partitionByRecords(bool classesAgree)
    {
        const auto& classes = sorted_.classes;
        for (std::uint32_t begin = 0; begin < sorted_.size();) {
            std::uint32_t end = begin + 1;
            while (end < sorted_.size() && (!classesAgree || classes[end] == classes[begin]))
                ++end;
            if (end - begin > 1 && !takeClass(begin, end))
                return false;
            begin = end;
        }
        return !cancel_.cancelled();
    }

    bool readValues()
    {
        const auto readOf = [this](std::size_t member) {
            Candidate& file = sorted_.at(result.members[member]);
            for (std::size_t i = ofRecord_; i < demands_.size() && !cancel_.cancelled(); ++i)
                static_cast<void>(properties_.value(file, demands_[i]));
        };
        OrderedTasks tasks(result.members.size(), threads_, [&readOf] { return OrderedTasks::Task(readOf); });
        for (std::size_t i = 0; i < result.members.size(); ++i) {
            if (!tasks.await(i, cancel_, [] {}))
                return false;
        }
        return true;
    }

    bool partitionFurther()
    {
        const ExactPartitions rough = std::exchange(result, {});
        for (const ExactPartitions::Part& part : rough.parts) {
            entries_.clear();
            for (const std::uint32_t member : rough.of(part))
                entries_.push_back({0, member});
            if (!refineInOrder(ofRecord_, demands_.size()))
                return false;
        }
        orderParts(0);
        return true;
    }

    bool takeClass(std::uint32_t begin, std::uint32_t end)
    {
        entries_.clear();
        for (std::uint32_t i = begin; i < end; ++i)
            entries_.push_back({0, i});
        return refineInOrder(0, ofRecord_);
    }

    // By their first members, from one part on.
    void orderParts(std::size_t first)
    {
        const auto firstMember = [&](const ExactPartitions::Part& part) { return result.members[part.begin]; };
        std::sort(result.parts.begin() + static_cast<std::ptrdiff_t>(first), result.parts.end(),
                  [&](const auto& a, const auto& b) { return firstMember(a) < firstMember(b); });
    }

    bool refineInOrder(std::size_t firstDemand, std::size_t endDemand)
    {
        const std::size_t first = result.parts.size();
        if (!refine(entries_, firstDemand, endDemand))
            return false;
        orderParts(first);
        return true;
    }

    // Splits by one demand after the other, each of them read only of files that are not alone yet.
    bool refine(std::span<Entry> entries, std::size_t demand, std::size_t endDemand)
    {
        if (demand == endDemand) {
            accept(entries);
            return true;
        }
        std::size_t kept = 0;
        for (const Entry& entry : entries) {
            if (cancel_.cancelled())
                return false;
            if (const auto hash = hashOf(entry.position, demand))
                entries[kept++] = {*hash, entry.position};
        }
        const std::span<Entry> present = entries.first(kept);
        std::sort(present.begin(), present.end());
        for (std::size_t begin = 0; begin < kept;) {
            std::size_t end = begin + 1;
            while (end < kept && present[end].hash == present[begin].hash)
                ++end;
            if (end - begin > 1 && !refine(present.subspan(begin, end - begin), demand + 1, endDemand))
                return false;
            begin = end;
        }
        return true;
    }

    // Nothing for a missing value, which equals no other.
    std::optional<std::uint64_t> hashOf(std::uint32_t position, std::size_t demand)
    {
        Candidate& file = sorted_.at(position);
        if (demands_[demand] == itemType)
            return hashText(shell_.itemType(file.item()));
        const PropValue value = properties_.value(file, demands_[demand]);
        if (value.missing())
            return std::nullopt;
        return hashValue(value);
    }

    void accept(std::span<const Entry> entries)
    {
        result.parts.push_back(
            {static_cast<std::uint32_t>(result.members.size()), static_cast<std::uint32_t>(entries.size())});
        for (const Entry& entry : entries)
            result.members.push_back(entry.position);
    }

    const SortedCandidates& sorted_;
    const PropertySource& properties_;
    ShellNamespace& shell_;
    const CancelFlag& cancel_;
    const unsigned threads_;
    std::vector<PropRef> demands_;  // those that the records tell first
    std::size_t ofRecord_ = 0;      // how many those are
    std::vector<Entry> entries_;
};

}  // namespace

bool classesMustAgree(const ScanCriteria& criteria) noexcept
{
    return criteria.primaryIsFirst && criteria.primary.kind() != PropKind::date;
}

std::optional<ExactPartitions> partitionExactly(const ScanCriteria& criteria, const SortedCandidates& sorted,
                                                const PropertySource& properties, ShellNamespace& shell,
                                                const CancelFlag& cancel)
{
    Partitioner partitioner(criteria, sorted, properties, shell, cancel);
    if (!partitioner.run(classesMustAgree(criteria)))
        return std::nullopt;
    return std::move(partitioner.result);
}

}  // namespace kelvane
