#include "results/results_model.h"

namespace kelvane {

// Grouping hands the members of one group over one after the other, so only the last group can be the file's own.
Status ResultsModel::add(const Candidate& file, std::uint32_t flags)
{
    const auto number = static_cast<std::uint32_t>(file.group.value);
    if (groups_.empty() || groups_.back()->number != number) {
        groups_.push_back(std::make_unique<ResultGroup>());
        groups_.back()->number = number;
    }
    ResultGroup& group = *groups_.back();
    group.approximate = group.approximate || (flags & add_flag::approximate) != 0;
    auto item = std::make_unique<ResultItem>();
    item->file = file.itemRef();
    item->groupNumber = number;
    item->group = &group;
    group.items.push_back(item.get());
    items_.push_back(std::move(item));
    return {};
}

void ResultsModel::clear()
{
    items_.clear();
    groups_.clear();
}

}  // namespace kelvane
