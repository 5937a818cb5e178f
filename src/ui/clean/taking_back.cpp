#include "ui/clean/taking_back.h"

#include "app/cleanup_tools.h"
#include "base/desktop_texts/clean.h"
#include "cleanup/run_figures.h"
#include "cleanup/undo.h"
#include "ui/clean/boxes.h"
#include "ui/clean/items_dialog.h"
#include "ui/clean/progress_teller.h"
#include "ui/clean/text_values.h"
#include "ui/core/text.h"
#include "ui/core/window_link.h"

namespace kelvane {
namespace {

namespace say = desktop_text;

void tellBox(Workbench& bench, QMessageBox::Icon icon, const QString& text)
{
    bench.toMain([icon, text](WindowLink& link) { openBox(link, {"undoTold", icon, shown(say::undoTitle), text}); });
}

std::uint64_t sizeOf(const JournalEntry& entry)
{
    return entry.intent.itemWas.kind == FileKind::regular ? entry.intent.itemWas.size.bytes : 0;
}

// One run that is taken back, or some of its items.
class TakingBack {
public:
    TakingBack(Workbench& bench, CleanupTools& tools, std::set<std::filesystem::path> items)
        : bench_(bench), tools_(tools), items_(std::move(items)), progress_(bench)
    {
    }

    void run(RunNumber number)
    {
        auto opened = tools_.journals().reopen(number);
        if (!opened)
            return tellNotOpened(opened.error());
        for (const JournalEntry& entry : opened->run.entries)
            count(entry);
        if (wanted_.items == 0)
            return tellBox(bench_, QMessageBox::Information, shown(say::undoNothing));
        if (!confirmed(opened->run) || bench_.cancel().cancelled())
            return;
        progress_.begin(shown(say::undoProgress), wanted_.items, 0);
        const UndoOutcome outcome = carryOut(*opened);
        progress_.end();
        tell(outcome);
    }

private:
    [[nodiscard]] bool isWanted(const JournalEntry& entry) const
    {
        return canComeBack(entry) && (items_.empty() || items_.contains(entry.intent.item));
    }
    void count(const JournalEntry& entry)
    {
        if (isWanted(entry)) {
            ++wanted_.items;
            wanted_.bytes += sizeOf(entry);
        }
    }
    [[nodiscard]] bool confirmed(const JournalRun& run)
    {
        const QString question =
            shown(say::undoQuestion, {timeShown(run.started).toStdString(), countedItems(wanted_.items).toStdString(),
                                      sizeShown(wanted_.bytes).toStdString()});
        const BoxSpec spec{
            "undoConfirm",   QMessageBox::Question, shown(say::undoTitle), question, QMessageBox::Yes | QMessageBox::No,
            QMessageBox::Yes};
        return askBox(bench_, spec, QMessageBox::No) == QMessageBox::Yes;
    }
    UndoOutcome carryOut(Journals::Opened& opened)
    {
        std::uint64_t done = 0;
        const auto told = [&](const UndoneItem& item) {
            if (item.failure)
                failed_.push_back({pathShown(item.item), toQt(textOf(*item.failure))});
            else if (item.metadataNotKept)
                failed_.push_back({pathShown(item.item), shown(say::undoPartly, {errorText(*item.metadataNotKept)})});
            progress_.item(++done, 0, [&] { return pathShown(item.item); });
        };
        const auto filter = [this](const JournalEntry& entry) { return isWanted(entry); };
        return undoRun(opened, tools_.ports(), filter, told, bench_.cancel());
    }
    [[nodiscard]] static std::string errorText(const Error& error) { return errorShown(error).toStdString(); }

    void tell(const UndoOutcome& outcome)
    {
        const QString text =
            shown(outcome.cancelled ? say::undoStopped : say::undoDone,
                  {countedItems(outcome.restored).toStdString(), sizeShown(outcome.bytes).toStdString()});
        bench_.tell(fromQt(text));
        if (outcome.journalError)
            tellBox(bench_, QMessageBox::Warning, shown(TextId::undoJournalFailed, {errorText(*outcome.journalError)}));
        if (failed_.empty())
            return tellBox(bench_, QMessageBox::Information, text);
        bench_.toMain([text, failed = outcome.failed, rows = std::move(failed_)](WindowLink& link) mutable {
            QString all = text;
            if (failed > 0)
                all += QLatin1Char('\n') + shown(say::undoFailedText, {countedItems(failed).toStdString()});
            openItems(link, {"undoFailed", shown(say::undoNotTaken), all, std::move(rows)});
        });
    }
    void tellNotOpened(const Error& error)
    {
        tellBox(bench_, QMessageBox::Warning,
                error.kind == ErrorKind::tooManyOpen ? shown(say::undoBusy)
                                                     : shown(say::undoNotOpened, {errorText(error)}));
    }

    Workbench& bench_;
    CleanupTools& tools_;
    const std::set<std::filesystem::path> items_;
    ProgressTeller progress_;
    MarkSum wanted_;
    std::vector<QStringList> failed_;
};

// What cannot be read cannot be taken back. Number 0 is nobody's: there is none.
Result<RunNumber> latestRun(Workbench& bench, Journals& journals)
{
    const auto numbers = journals.list();
    if (!numbers)
        return numbers.error();
    for (auto number = numbers->rbegin(); number != numbers->rend(); ++number) {
        bench.serve();
        const auto run = journals.read(*number);
        if (run && figuresOf(*run).canUndo > 0)
            return *number;
    }
    return RunNumber{};
}

}  // namespace

void takeBackLast(Workbench& bench)
{
    const auto running = bench.begin(Job::undoing);
    if (!running)
        return bench.tell(text(say::otherWorkRuns));
    CleanupTools tools(bench.platform());
    const auto last = latestRun(bench, tools.journals());
    if (!last)
        return tellBox(bench, QMessageBox::Warning,
                       shown(say::runsUnreadable, {errorShown(last.error()).toStdString()}));
    if (*last == RunNumber{})
        return tellBox(bench, QMessageBox::Information, shown(say::undoNothing));
    TakingBack(bench, tools, {}).run(*last);
}

void takeBack(Workbench& bench, RunNumber run, const std::set<std::filesystem::path>& items)
{
    const auto running = bench.begin(Job::undoing);
    if (!running)
        return bench.tell(text(say::otherWorkRuns));
    CleanupTools tools(bench.platform());
    TakingBack(bench, tools, items).run(run);
}

}  // namespace kelvane
