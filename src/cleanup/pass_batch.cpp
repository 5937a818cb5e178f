#include "cleanup/pass_batch.h"

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

}  // namespace kelvane
