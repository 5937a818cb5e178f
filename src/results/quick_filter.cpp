#include "results/quick_filter.h"

#include <algorithm>
#include <utility>

#include "results/folded_bytes.h"

namespace kelvane {

QuickFilter::QuickFilter(ResultsModel& model, const PropertySource& properties)
    : model_(model), properties_(properties), texts_(model, properties)
{
}

void QuickFilter::searchIn(std::vector<PropRef> columns)
{
    if (texts_.use(std::move(columns)))
        narrows_ = false;
}

FilterOutcome QuickFilter::apply(std::u16string_view text)
{
    std::string wanted;
    appendFolded(wanted, text, properties_.folding());
    if (isActive() && (!narrows_ || wanted.find(active_) == std::string::npos))
        model_.showAll();
    active_ = std::move(wanted);
    narrows_ = true;
    if (active_.empty())
        return FilterOutcome::done;
    texts_.makeAll();
    model_.hideUnless(hiding_flag::filter,
                      [this](ItemId id) { return texts_.of(id).find(active_) != std::string_view::npos; });
    return model_.rowCount() > 0 ? FilterOutcome::done : FilterOutcome::nothingLeft;
}

void QuickFilter::showAll()
{
    active_.clear();
    model_.showAll();
}

bool filterApplies(std::u16string_view typed, std::uint32_t charactersToFilter)
{
    return typed.empty() || typed.size() >= charactersToFilter;
}

std::uint32_t showOnlyTags(ResultsModel& model, const std::vector<std::uint8_t>& tags)
{
    return model.hideUnless(hiding_flag::tags, [&](ItemId id) {
        return std::find(tags.begin(), tags.end(), model.item(id).tag) != tags.end();
    });
}

}  // namespace kelvane
