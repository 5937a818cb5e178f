#include "results/keep_chain.h"

#include <algorithm>
#include <compare>
#include <functional>
#include <numeric>
#include <optional>
#include <string>
#include <utility>

#include "platform/native_text.h"
#include "props/value_order.h"

namespace kelvane {
namespace {

bool tellsPlaceOnly(const MarkingRule& rule)
{
    return rule.rule == KeepRule::under || rule.rule == KeepRule::nameMatches;
}

bool wantsLeast(KeepRule rule)
{
    return rule == KeepRule::smallest || rule == KeepRule::oldest || rule == KeepRule::shallowest ||
           rule == KeepRule::shortestPath;
}

std::vector<FolderText> folderTexts(const std::vector<std::string>& folders, const PathRules& rules)
{
    std::vector<FolderText> texts;
    for (const std::string& folder : folders)
        texts.emplace_back(folder, rules);
    return texts;
}

// A rule that none of the rows passes does not narrow.
template <class Rows, class Test>
bool keepThose(Rows& left, Test passes)
{
    Rows passing;
    std::copy_if(left.begin(), left.end(), std::back_inserter(passing), passes);
    if (passing.empty())
        return false;
    left = std::move(passing);
    return true;
}

// The rows whose value none surpasses; rows without a value (`missing`) are out as soon as one has any.
template <class Rows, class Value>
void keepBest(Rows& left, bool least, const std::vector<Value>& values,
              const std::function<bool(const Value&)>& missing,
              const std::function<std::weak_ordering(const Value&, const Value&)>& compare)
{
    std::optional<std::size_t> best;
    for (std::size_t at = 0; at < left.size(); ++at) {
        if (missing(values[at]))
            continue;
        const auto order = best ? compare(values[at], values[*best]) : std::weak_ordering::equivalent;
        if (!best || (least ? order < 0 : order > 0))
            best = at;
    }
    if (!best)
        return;
    Rows winners;
    for (std::size_t at = 0; at < left.size(); ++at) {
        if (!missing(values[at]) && compare(values[at], values[*best]) == 0)
            winners.push_back(left[at]);
    }
    left = std::move(winners);
}

}  // namespace

// One group, with the paths that rules asked for.
class KeepChain::Group {
public:
    Group(ResultsModel& model, std::span<const ItemId> items, const PathRules& paths)
        : model_(model), items_(items), rules_(paths), paths_(items.size())
    {
    }

    [[nodiscard]] std::size_t size() const { return items_.size(); }
    [[nodiscard]] ItemContext& file(std::uint32_t row) { return model_.file(items_[row]); }

    [[nodiscard]] std::string_view path(std::uint32_t row)
    {
        if (!paths_[row])
            paths_[row] = comparablePath(file(row).item(), rules_);
        return *paths_[row];
    }

    // An item without a parent has its whole path as its name.
    [[nodiscard]] std::string name(std::uint32_t row)
    {
        const std::string name = bytesFromNative(file(row).item().name());
        return name.substr(name.rfind(rules_.separator()) + 1);
    }

    // By UTF-16 units, or by the folders that lead to the item.
    [[nodiscard]] std::size_t pathLength(std::uint32_t row, bool inFolders)
    {
        const std::string plain = withoutLongPrefix(bytesFromNative(file(row).item().fullName()), rules_);
        if (inFolders)
            return static_cast<std::size_t>(std::count(plain.begin(), plain.end(), rules_.separator()));
        return displayFromNative(nativeFromBytes(plain)).size();
    }

private:
    ResultsModel& model_;
    std::span<const ItemId> items_;
    const PathRules& rules_;
    std::vector<std::optional<std::string>> paths_;
};

KeepChain::KeepChain(ResultsModel& model, const MarkingPlan& plan, const MarkingPorts& ports)
    : model_(model),
      ports_(ports),
      size_(ports.properties.catalogue().byName("System.Size")),
      dateModified_(ports.properties.catalogue().byName("System.DateModified")),
      preferred_(folderTexts(plan.preferredFolders, ports.paths)),
      protected_(folderTexts(plan.protectedFolders, ports.paths)),
      keepsAllLeft_(!plan.chain.empty() && std::all_of(plan.chain.begin(), plan.chain.end(), tellsPlaceOnly)),
      mayLoseGroups_(plan.mayMarkWholeGroups())
{
    for (const MarkingRule& rule : plan.chain)
        rules_.push_back({rule.rule, FolderText(rule.folder, ports.paths), FileMasks(rule.masks)});
}

std::vector<bool> KeepChain::kept(std::span<const ItemId> items)
{
    Group group(model_, items, ports_.paths);
    Rows left(items.size());
    std::iota(left.begin(), left.end(), 0u);
    narrowToPreferred(group, left);
    if (mayLoseGroups_)
        std::erase_if(left, [&](std::uint32_t row) { return !rules_.front().folder.keeps(group.path(row)); });
    else
        std::for_each(rules_.begin(), rules_.end(), [&](const Rule& rule) { narrow(group, rule, left); });
    if (!keepsAllLeft_)
        left.resize(1);

    std::vector<bool> keep(items.size());
    for (const std::uint32_t row : left)
        keep[row] = true;
    protect(group, keep);
    // Whatever the rules said: nobody loses a group who was not told.
    if (!mayLoseGroups_ && std::find(keep.begin(), keep.end(), true) == keep.end())
        keep.front() = true;
    return keep;
}

void KeepChain::narrowToPreferred(Group& group, Rows& left) const
{
    (void)std::any_of(preferred_.begin(), preferred_.end(), [&](const FolderText& folder) {
        return keepThose(left, [&](std::uint32_t row) { return folder.holds(group.path(row)); });
    });
}

void KeepChain::narrow(Group& group, const Rule& rule, Rows& left) const
{
    const auto byValue = [&](const PropRef& property) {
        std::vector<PropValue> values;
        for (const std::uint32_t row : left)
            values.push_back(ports_.properties.value(group.file(row), property));
        keepBest<Rows, PropValue>(left, wantsLeast(rule.keep), values, &PropValue::missing, compareValues);
    };
    const auto byPath = [&](bool inFolders) {
        std::vector<std::size_t> lengths;
        for (const std::uint32_t row : left)
            lengths.push_back(group.pathLength(row, inFolders));
        keepBest<Rows, std::size_t>(
            left, wantsLeast(rule.keep), lengths, [](std::size_t) { return false; }, std::compare_three_way());
    };
    switch (rule.keep) {
    case KeepRule::biggest:
    case KeepRule::smallest:
        return byValue(size_);
    case KeepRule::newest:
    case KeepRule::oldest:
        return byValue(dateModified_);
    case KeepRule::first:
        return left.resize(1);
    case KeepRule::last:
        left = {left.back()};
        return;
    case KeepRule::under:
        (void)keepThose(left, [&](std::uint32_t row) { return rule.folder.keeps(group.path(row)); });
        return;
    case KeepRule::nameMatches:
        (void)keepThose(left, [&](std::uint32_t row) { return rule.masks.admits(group.name(row)); });
        return;
    case KeepRule::deepest:
    case KeepRule::shallowest:
        return byPath(true);
    case KeepRule::longestPath:
    case KeepRule::shortestPath:
        return byPath(false);
    }
}

void KeepChain::protect(Group& group, std::vector<bool>& kept)
{
    protectedRows_ = 0;
    if (protected_.empty())
        return;
    for (std::uint32_t row = 0; row < kept.size(); ++row) {
        const auto holds = [&](const FolderText& folder) { return folder.holds(group.path(row)); };
        if (!kept[row] && std::any_of(protected_.begin(), protected_.end(), holds)) {
            kept[row] = true;
            ++protectedRows_;
        }
    }
}

}  // namespace kelvane
