#include "engine/alike_previews.h"

#include <map>
#include <utility>

#include "engine/ordered_tasks.h"

namespace kelvane {
namespace {

std::vector<AlikePreviews::Group> groupsOf(std::span<const PreviewSignature* const> signatures)
{
    std::map<std::pair<std::uint16_t, std::uint16_t>, AlikePreviews::Group> bySize;
    for (std::uint32_t i = 0; i < signatures.size(); ++i)
        if (signatures[i] != nullptr)
            bySize[{signatures[i]->width, signatures[i]->height}].push_back(i);
    std::vector<AlikePreviews::Group> groups;
    for (auto& [size, group] : bySize)
        groups.push_back(std::move(group));
    return groups;
}

}  // namespace

std::optional<AlikePreviews> AlikePreviews::find(std::span<const PreviewSignature* const> signatures, unsigned threads,
                                                 const CancelFlag& cancel)
{
    AlikePreviews made(signatures.size());
    made.groups_ = groupsOf(signatures);
    for (std::uint32_t group = 0; group < made.groups_.size(); ++group) {
        std::vector<const PreviewSignature*> members;
        for (const std::uint32_t number : made.groups_[group]) {
            made.places_[number] = {group, static_cast<std::uint32_t>(members.size())};
            members.push_back(signatures[number]);
        }
        made.indexes_.emplace_back(members, cancel);
        if (cancel.cancelled() || !made.findWithin(group, threads, cancel))
            return std::nullopt;
    }
    return made;
}

bool AlikePreviews::findWithin(std::uint32_t group, unsigned threads, const CancelFlag& cancel)
{
    const Group& members = groups_[group];
    if (members.size() < 2)
        return true;
    OrderedTasks tasks(members.size(), threads, [&]() -> OrderedTasks::Task {
        return [&](std::size_t i) {
            if (cancel.cancelled())
                return;
            auto nearest = indexes_[group].nearest(static_cast<std::uint32_t>(i), most);
            for (AlikePreview& alike : nearest)
                alike.number = members[alike.number];
            alikes_[members[i]] = std::move(nearest);
        };
    });
    for (std::size_t i = 0; i < members.size(); ++i)
        if (!tasks.await(i, cancel, [] {}))
            return false;
    return true;
}

std::optional<AlikePreview> AlikePreviews::nearest(std::uint32_t number,
                                                   const std::function<bool(std::uint32_t)>& wanted) const
{
    for (const AlikePreview& alike : alikes_[number])
        if (wanted(alike.number))
            return alike;
    if (alikes_[number].size() < most)
        return std::nullopt;
    const Place& place = places_[number];
    const Group& members = groups_[place.group];
    auto found = indexes_[place.group].nearest(place.number, 1, [&](std::uint32_t i) { return wanted(members[i]); });
    if (found.empty())
        return std::nullopt;
    found.front().number = members[found.front().number];
    return found.front();
}

}  // namespace kelvane
