#include "ui/clean/settling.h"

#include <span>

#include "app/cleanup_tools.h"
#include "base/desktop_texts/clean.h"
#include "cleanup/settle.h"
#include "cleanup/settled_text.h"
#include "ui/clean/boxes.h"
#include "ui/clean/items_dialog.h"
#include "ui/clean/text_values.h"
#include "ui/core/text.h"
#include "ui/core/window_link.h"

namespace kelvane {
namespace {

namespace say = desktop_text;

// What became of runs that a crash had interrupted, as sentences, and the files that nobody could decide on.
struct Settled {
    QStringList sums;
    std::vector<QStringList> undecided;
};

Settled settledOf(std::span<const SettledRun> runs)
{
    Settled told;
    for (const SettledRun& run : runs) {
        SettledRun sums = run;
        sums.unsettled.clear();
        for (const std::string& line : settledLines(sums))
            told.sums.push_back(toQt(line));
        for (const Unsettled& one : run.unsettled) {
            const std::string reason = textOf(one.failure);
            told.undecided.push_back(
                {pathShown(one.item), one.left.empty()
                                          ? toQt(reason)
                                          : shown(say::settledBeside, {reason, pathShown(one.left).toStdString()})});
        }
    }
    return told;
}

void tellSettled(Workbench& bench, Settled told)
{
    if (!told.undecided.empty())
        told.sums.push_back(shown(say::settledUndecided));
    bench.toMain([told = std::move(told)](WindowLink& link) mutable {
        const QString text = told.sums.join(QLatin1Char('\n'));
        if (told.undecided.empty())
            openBox(link, {"settledRuns", QMessageBox::Information, shown(say::settledTitle), text});
        else
            openItems(link, {"settledRuns", shown(say::settledTitle), text, std::move(told.undecided)});
    });
}

void tellUnreadable(Workbench& bench, const Error& error)
{
    bench.toMain([text = shown(say::runsUnreadable, {errorShown(error).toStdString()})](WindowLink& link) {
        openBox(link, {"settledRuns", QMessageBox::Warning, shown(say::settledTitle), text});
    });
}

}  // namespace

void settleEarlierRuns(Workbench& bench)
{
    CleanupTools tools(bench.platform());
    if (const auto numbers = tools.journals().unfinished(); numbers && numbers->empty())
        return;
    const auto running = bench.begin(Job::undoing);  // it may take as long as contents are compared
    bench.tell(text(say::settling));
    const auto runs = settleUnfinished(tools.journals(), tools.ports());
    if (!runs)
        tellUnreadable(bench, runs.error());
    else if (!runs->empty())
        tellSettled(bench, settledOf(*runs));
}

}  // namespace kelvane
