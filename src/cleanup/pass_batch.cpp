#include "cleanup/pass_batch.h"

#include <cstddef>

namespace kelvane {
namespace {

JournalIntent intentOf(const BatchItem& item, const CleanupCommand& command)
{
    JournalIntent intent;
    intent.action = command.action;
    intent.item = item.pair.itemPath;
    intent.itemWas = stampOf(item.pair.itemNow);
    intent.kept = item.pair.keptPath;
    intent.keptWas = stampOf(item.pair.keptNow);
    intent.temporary = item.temporary;
    intent.metadata = item.metadata;
    return intent;
}

}  // namespace

bool ranOutOfHandles(const BatchItem& item)
{
    return item.failure && item.failure->error.kind == ErrorKind::tooManyOpen;
}

void leaveHandles(PassBatch& batch)
{
    batch.erase(batch.begin() + static_cast<std::ptrdiff_t>((batch.size() + 1) / 2), batch.end());
}

Status writeAhead(PassBatch& batch, const CleanupPlan& plan, JournalWriter& journal)
{
    bool any = false;
    for (BatchItem& item : batch) {
        if (item.failure)
            continue;
        const auto entry = journal.intend(intentOf(item, plan.commands[item.command]));
        if (!entry)
            return entry.error();
        item.entry = *entry;
        any = true;
    }
    return any ? journal.flush() : Status{};
}

Status withdraw(std::span<BatchItem> items, JournalWriter& journal)
{
    for (BatchItem& item : items) {
        if (!item.entry)
            continue;
        if (const Status finished = journal.finish(*item.entry, EntryState::notDone); !finished)
            return finished;
        item.entry.reset();
    }
    return {};
}

}  // namespace kelvane
