#include "ui/clean/left_items.h"

#include "base/desktop_texts/clean.h"
#include "ui/clean/items_dialog.h"
#include "ui/clean/text_values.h"
#include "ui/core/text.h"
#include "ui/core/window_link.h"

namespace kelvane {
namespace {

QString reasonOf(const ItemOutcome& outcome)
{
    switch (outcome.result) {
    case ItemResult::declined:
        return shown(desktop_text::staysDeclined);
    case ItemResult::newOriginal:
        return shown(TextId::tookOverAsKept);
    case ItemResult::notReached:
        return shown(desktop_text::staysStopped);
    default:
        return outcome.failure ? toQt(textOf(*outcome.failure)) : QString();
    }
}

void add(LeftItems& left, const ResultsModel& results, ItemId item, const QString& reason)
{
    left.items.push_back(item);
    left.rows.push_back({pathShown(results.item(item).file.item().path()), reason});
}

}  // namespace

LeftItems leftItems(const CleanupReport& report, const ResultsModel& results)
{
    LeftItems left;
    for (const ItemOutcome& outcome : report.items)
        if (outcome.result != ItemResult::done)
            add(left, results, report.plan.commands[outcome.command].item, reasonOf(outcome));
    for (const CleanupSkip& skip : report.plan.skipped)
        add(left, results, skip.item, shown(textOf(skip.why)));
    return left;
}

LeftItems leftItems(const DirectDeletion& deletion, const ResultsModel& results)
{
    LeftItems left;
    for (const FailedDeletion& failed : deletion.failed)
        add(left, results, failed.item,
            failed.reason.empty() ? shown(desktop_text::staysStopped) : toQt(failed.reason));
    return left;
}

void tellLeft(Workbench& bench, LeftItems left, TextId words)
{
    if (left.items.empty() || bench.isClosing())
        return;
    bench.results().clearSelection();
    bench.results().mark(left.items, Mark::selected, true);
    bench.toMain([rows = std::move(left.rows), words](WindowLink& link) mutable {
        const auto count = countedItems(rows.size()).toStdString();
        openItems(link, {"cleanupStays", shown(desktop_text::staysTitle), shown(words, {count}), std::move(rows)});
    });
}

}  // namespace kelvane
