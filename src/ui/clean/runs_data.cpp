#include "ui/clean/runs_data.h"

#include "app/cleanup_tools.h"
#include "base/desktop_texts/clean.h"
#include "cleanup/run_figures.h"
#include "ui/clean/text_values.h"
#include "ui/core/text.h"
#include "ui/core/workbench.h"

namespace kelvane {
namespace {

namespace say = desktop_text;

TextId textOf(CleanupAction action)
{
    if (action == CleanupAction::link)
        return TextId::undoRunLink;
    return action == CleanupAction::recycle ? TextId::undoRunTrash : TextId::undoRunDelete;
}

QString stateOf(const RunFigures& run)
{
    QStringList parts;
    if (run.done > 0 && run.undone == run.done)
        parts.push_back(shown(say::runsTaken));
    else if (run.undone > 0)
        parts.push_back(shown(say::runsPartly, {countedItems(run.undone).toStdString()}));
    else if (run.canUndo > 0)
        parts.push_back(shown(say::runsCan));
    else if (run.done > 0 && run.undecided == 0)
        parts.push_back(shown(say::runsForGood));
    if (run.undecided > 0)
        parts.push_back(shown(say::runsUndecided, {countedItems(run.undecided).toStdString()}));
    if (run.damaged)
        parts.push_back(shown(say::runsDamaged));
    return parts.join(QStringLiteral("; "));
}

RunLine lineOf(const RunFigures& run)
{
    return {run.number,
            run.canUndo > 0,
            {QString::number(static_cast<std::uint32_t>(run.number)), timeShown(run.started), shown(textOf(run.action)),
             QString::number(run.done), sizeShown(run.bytes), stateOf(run)}};
}

RunLine unreadableLine(RunNumber number, const Error& error)
{
    return {number,
            false,
            {QString::number(static_cast<std::uint32_t>(number)),
             {},
             {},
             {},
             {},
             shown(say::undoNotOpened, {errorShown(error).toStdString()})}};
}

TextId stateOf(const JournalEntry& entry)
{
    switch (entry.state) {
    case EntryState::done:
        return canComeBack(entry) ? say::runItemDone : say::runsForGood;
    case EntryState::notDone:
        return say::runItemNotDone;
    case EntryState::undone:
        return say::runsTaken;
    default:
        return say::runItemUndecided;
    }
}

}  // namespace

QStringList runTitles()
{
    return {shown(say::runsNumber), shown(say::runsWhen),    shown(say::runsWhat),
            shown(say::runsFiles),  shown(say::markingSize), shown(say::runsState)};
}

QStringList runItemTitles()
{
    return {shown(say::staysFile), shown(say::runsState)};
}

Result<std::vector<RunLine>> earlierRuns(Workbench& bench)
{
    std::vector<RunLine> lines;
    CleanupTools tools(bench.platform());
    const auto numbers = tools.journals().list();
    if (!numbers)
        return numbers.error();
    for (auto number = numbers->rbegin(); number != numbers->rend(); ++number) {
        const auto run = tools.journals().read(*number);
        lines.push_back(run ? lineOf(figuresOf(*run)) : unreadableLine(*number, run.error()));
    }
    return lines;
}

std::vector<RunItemLine> itemsOfRun(Workbench& bench, RunNumber number)
{
    std::vector<RunItemLine> lines;
    CleanupTools tools(bench.platform());
    const auto run = tools.journals().read(number);
    if (!run)
        return lines;
    for (const JournalEntry& entry : run->entries)
        lines.push_back({entry.intent.item, canComeBack(entry), {pathShown(entry.intent.item), shown(stateOf(entry))}});
    return lines;
}

}  // namespace kelvane
