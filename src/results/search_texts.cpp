#include "results/search_texts.h"

#include <utility>

#include "results/folded_bytes.h"
#include "results/result_columns.h"

namespace kelvane {

bool SearchTexts::use(std::vector<PropRef> columns)
{
    if (columns == columns_)
        return false;
    columns_ = std::move(columns);
    forget();
    return true;
}

void SearchTexts::forget()
{
    bytes_.clear();
    ends_.clear();
}

// Ids are given in rising order and never again, so what is new is at the end. A list that was cleared begins anew with
// another first file: the one that was is held here, so that no other one can lie where it lay.
void SearchTexts::makeAll()
{
    const std::uint32_t limit = model_.idLimit();
    const ShellItem* first = limit > 0 ? &model_.item(ItemId{0}).file.item() : nullptr;
    if (ends_.size() > limit || first != first_.get())
        forget();
    if (limit > 0)
        first_ = model_.item(ItemId{0}).file.itemRef();
    ends_.reserve(limit);
    while (ends_.size() < limit)
        append(static_cast<ItemId>(ends_.size()));
}

void SearchTexts::append(ItemId id)
{
    for (const PropRef& column : columns_) {
        if (columns_.size() > 1)
            bytes_ += ' ';
        appendFolded(bytes_, cellText(model_.file(id), column, properties_), properties_.folding());
    }
    ends_.push_back(bytes_.size());
}

std::string_view SearchTexts::of(ItemId id) const
{
    const auto index = static_cast<std::size_t>(id);
    if (index >= ends_.size())
        return {};
    const std::size_t start = index == 0 ? 0 : ends_[index - 1];
    return std::string_view(bytes_).substr(start, ends_[index] - start);
}

}  // namespace kelvane
