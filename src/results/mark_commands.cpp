#include "results/mark_commands.h"

namespace kelvane {
namespace {

std::vector<ItemId> rowsWith(const ResultsModel& model, Mark mark, bool on)
{
    std::vector<ItemId> rows;
    model.forEachRow([&](ItemId id) {
        if (model.item(id).has(static_cast<std::uint16_t>(mark)) == on)
            rows.push_back(id);
    });
    return rows;
}

CommandAnswer storeMarks(const ResultsModel& model, StoredMarks& stored)
{
    stored.clear();
    for (const ItemId id : rowsWith(model, Mark::ticked, true))
        stored.add(model.item(id).file.item());
    return {stored.empty() ? TextId::nothingTicked : TextId::marksStored};
}

CommandAnswer setStored(ResultsModel& model, const StoredMarks& stored, bool ticked)
{
    if (stored.empty())
        return {TextId::noMarksStored};
    std::vector<ItemId> rows = rowsWith(model, Mark::ticked, !ticked);
    std::erase_if(rows, [&](ItemId id) { return !stored.contains(model.item(id).file.item()); });
    model.mark(rows, Mark::ticked, ticked);
    return {};
}

// Ticks out of view do not count: with those only, no item would stay in view.
CommandAnswer showTicked(ResultsModel& model)
{
    if (model.inView(Mark::ticked).items == 0)
        return {TextId::nothingTicked};
    model.hideUnless(hiding_flag::tickedOnly, [&](ItemId id) { return model.item(id).isTicked(); });
    return {};
}

CommandAnswer beepUnless(bool done)
{
    return {.message = std::nullopt, .beep = !done};
}

}  // namespace

TextId nameOf(MarkCommand command) noexcept
{
    switch (command) {
    case MarkCommand::storeMarks:
        return TextId::commandStoreMarks;
    case MarkCommand::tickStored:
        return TextId::commandTickStored;
    case MarkCommand::untickStored:
        return TextId::commandUntickStored;
    case MarkCommand::invertTicks:
        return TextId::commandInvertTicks;
    case MarkCommand::clearTicks:
        return TextId::commandClearTicks;
    case MarkCommand::showTicked:
        return TextId::commandShowTicked;
    case MarkCommand::showAll:
        return TextId::commandShowAll;
    case MarkCommand::removeSelection:
        return TextId::commandRemoveSelection;
    case MarkCommand::regroupSelection:
        return TextId::commandRegroup;
    case MarkCommand::mergeWithPrevious:
        break;
    }
    return TextId::commandMerge;
}

CommandAnswer carryOut(MarkCommand command, ResultsModel& model, StoredMarks& stored)
{
    switch (command) {
    case MarkCommand::storeMarks:
        return storeMarks(model, stored);
    case MarkCommand::tickStored:
        return setStored(model, stored, true);
    case MarkCommand::untickStored:
        return setStored(model, stored, false);
    case MarkCommand::invertTicks:
        model.invertTicks();
        break;
    case MarkCommand::clearTicks:
        model.clearTicks();
        break;
    case MarkCommand::showTicked:
        return showTicked(model);
    case MarkCommand::showAll:
        model.showAll();
        break;
    case MarkCommand::removeSelection:
        model.remove(rowsWith(model, Mark::selected, true));
        break;
    case MarkCommand::regroupSelection:
        return beepUnless(model.regroupSelection());
    case MarkCommand::mergeWithPrevious:
        return beepUnless(model.mergeWithPrevious());
    }
    return {};
}

}  // namespace kelvane
