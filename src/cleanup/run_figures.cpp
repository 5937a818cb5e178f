#include "cleanup/run_figures.h"

namespace kelvane {

RunFigures figuresOf(const JournalRun& run)
{
    RunFigures figures;
    figures.number = run.number;
    figures.started = run.started;
    figures.action = run.action;
    figures.damaged = run.damaged;
    for (const JournalEntry& entry : run.entries) {
        const bool undone = entry.state == EntryState::undone;
        const bool taking = entry.state == EntryState::undoIntended;
        const bool done = undone || taking || entry.state == EntryState::done;
        figures.done += done ? 1 : 0;
        figures.bytes += done && entry.intent.itemWas.kind == FileKind::regular ? entry.intent.itemWas.size.bytes : 0;
        figures.undone += undone ? 1 : 0;
        figures.undecided += taking || entry.state == EntryState::intended ? 1 : 0;
        figures.canUndo += canComeBack(entry) ? 1 : 0;
    }
    return figures;
}

bool canComeBack(const JournalEntry& entry)
{
    return entry.state == EntryState::done && entry.intent.action != CleanupAction::deletePermanently;
}

}  // namespace kelvane
