#include "results/status_texts.h"

#include "base/text_table.h"
#include "base/utf.h"
#include "engine/message_text.h"

namespace kelvane {
namespace {

std::u16string withNumber(TextId id, std::u16string_view place, std::uint64_t number)
{
    std::u16string filled(text(id));
    if (const std::size_t at = filled.find(place); at != std::u16string::npos)
        filled.replace(at, place.size(), decimal(static_cast<std::int64_t>(number)));
    return filled;
}

std::u16string sumText(TextId id, const MarkSum& sum, const SizeWords& size)
{
    return withText(withNumber(id, u"%d", sum.items), toUtf16(size({sum.bytes})));
}

}  // namespace

std::optional<std::u16string> markedText(const ResultsModel& model, const SizeWords& size)
{
    if (model.rowCount() == 0)
        return std::u16string(text(TextId::statusEmpty));
    const MarkSum ticked = model.inView(Mark::ticked);
    if (!model.hasTickBoxes() || ticked.items == 0)
        return std::nullopt;
    return sumText(TextId::statusMarked, ticked, size);
}

std::optional<std::u16string> itemsText(const ResultsModel& model, const SizeWords& size)
{
    if (model.rowCount() == 0)
        return std::nullopt;
    const MarkSum selected = model.inView(Mark::selected);
    if (selected.items > 1)
        return sumText(TextId::statusSelected, selected, size);
    return withNumber(TextId::statusItems, u"%u", model.rowCount());
}

}  // namespace kelvane
