#include "cleanup/cleanup_run.h"

#include <algorithm>
#include <utility>

#include "base/filled_text.h"
#include "base/utf.h"
#include "cleanup/cleanup_log.h"
#include "cleanup/cleanup_message.h"
#include "cleanup/summary_page.h"
#include "cleanup/touched_volumes.h"
#include "cleanup/trashless.h"

namespace kelvane {
namespace {

// Keeps every outcome, and tells the log, where one is kept, and whoever watches.
class Recorder final : public PassObserver {
public:
    Recorder(std::vector<ItemOutcome>& items, const CleanupPlan& plan, const ResultsModel& model, CleanupLog* log,
             PassObserver* watcher)
        : items_(items), plan_(plan), model_(model), log_(log), watcher_(watcher)
    {
        items_.resize(plan.commands.size());
        for (std::size_t command = 0; command < items_.size(); ++command)
            items_[command].command = command;
    }
    void itemBegins(std::size_t command) override
    {
        if (watcher_ != nullptr)
            watcher_->itemBegins(command);
    }
    void groupBegins(ItemId original) override
    {
        if (log_ != nullptr)
            log_->group(model_.item(original).file.item());
        if (watcher_ != nullptr)
            watcher_->groupBegins(original);
    }
    void itemEnded(const ItemOutcome& outcome) override
    {
        if (log_ != nullptr)
            log_->item(outcome, model_.item(plan_.commands[outcome.command].item).file.item());
        items_[outcome.command] = outcome;
        if (watcher_ != nullptr)
            watcher_->itemEnded(outcome);
    }
    void progress(std::uint64_t items, std::uint64_t bytes) override
    {
        if (watcher_ != nullptr)
            watcher_->progress(items, bytes);
    }

private:
    std::vector<ItemOutcome>& items_;
    const CleanupPlan& plan_;
    const ResultsModel& model_;
    CleanupLog* log_;
    PassObserver* watcher_;
};

class CleanupRun {
public:
    CleanupRun(const CleanupContext& context, const CleanupOptions& options, const CancelFlag& cancel)
        : context_(context), options_(options), cancel_(cancel)
    {
    }

    CleanupReport carryOut(const CleanupRequest& request, const PassRunner& pass)
    {
        selectMarked();
        if (!plan(request) || !settleTrashless() || !hasCommands())
            return std::move(report_);
        const std::string page = summaryPage(report_.plan, deletedForGood_, context_.sizes);
        if (!context_.questions.confirm({report_.plan, page}))
            return std::move(report_);
        const auto claimed = context_.journals.claim();
        const Status ready = claimed ? flushKept() : Status(claimed.error());
        if (!ready) {
            refuse(textOf({claimed ? CleanupFault::system : CleanupFault::journal, ready.error()}), ready.error());
            return std::move(report_);
        }
        auto journal = context_.journals.begin(report_.plan.action, context_.ports.clock.now());
        if (!journal) {
            refuse(textOf({CleanupFault::journal, journal.error()}), journal.error());
            return std::move(report_);
        }
        if (options_.writeLog)
            log_.emplace(report_.plan.action, context_.criteria, plainTextOf(page));
        runPass(pass, **journal);
        journal->reset();
        finish();
        return std::move(report_);
    }

private:
    // From here on what is marked and what is selected are the same rows.
    void selectMarked()
    {
        ResultsModel& results = context_.results;
        results.forEachRow([&](ItemId id) {
            if (results.isMarked(id))
                marked_.push_back(id);
        });
        if (results.markInForce() == Mark::selected)
            return;
        results.clearSelection();
        results.mark(marked_, Mark::selected, true);
    }

    void refuse(std::string words, Error error)
    {
        error.detail = std::move(words);
        context_.questions.showStatus(toUtf16(error.detail));
        report_.refused = std::move(error);
    }
    void refuse(TextId words, ErrorKind kind) { refuse(filledText(words), Error{kind, 0, {}}); }

    [[nodiscard]] bool plan(const CleanupRequest& request)
    {
        if (marked_.empty()) {
            refuse(TextId::nothingMarked, ErrorKind::invalid);
            return false;
        }
        auto planned = planCleanup(context_.results, request, context_.facts);
        if (!planned)
            refuse(planned.error().detail, planned.error());
        else
            report_.plan = std::move(*planned);
        return planned.ok();
    }

    // False when the person stops.
    [[nodiscard]] bool settleTrashless()
    {
        auto volumes =
            volumesWithoutTrash(report_.plan, context_.results, context_.ports.operations, context_.ports.files);
        if (volumes.empty())
            return true;
        const Trashless answer = context_.questions.withoutTrash(volumes);
        if (answer == Trashless::leaveAlone)
            leaveTrashlessAlone(report_.plan, volumes, context_.results, context_.facts);
        if (answer == Trashless::deleteForGood) {
            deleteTrashlessForGood(report_.plan, volumes);
            deletedForGood_ = std::move(volumes);
        }
        return answer != Trashless::stop;
    }

    [[nodiscard]] bool hasCommands()
    {
        const bool links = report_.plan.action == CleanupAction::link;
        if (report_.plan.commands.empty())
            refuse(links ? TextId::linkingNotPossible : TextId::cannotBeDeleted, ErrorKind::notSupported);
        return !report_.plan.commands.empty();
    }

    void runPass(const PassRunner& pass, JournalWriter& journal)
    {
        report_.ran = true;
        report_.run = journal.number();
        if (report_.plan.action == CleanupAction::link)
            context_.questions.showStatus(text(TextId::creatingLinks));
        Recorder recorder(report_.items, report_.plan, context_.results, log_ ? &*log_ : nullptr, context_.watcher);
        report_.pass = pass(report_.plan, context_.questions, journal, recorder);
        report_.noticesOff |= report_.pass.noticesOff;
        if (report_.pass.journalError || report_.pass.undecided != 0 || !flushDone())
            return;
        if (const Status ended = journal.end(); !ended)
            report_.pass.journalError = ended.error();
    }

    // What stays must not be in the memory only when its copies go. A volume that cannot be asked is no reason to
    // refuse, one whose device fails is.
    [[nodiscard]] Status flushKept() const
    {
        TouchedVolumes kept;
        for (const CleanupCommand& command : report_.plan.commands)
            kept.add(context_.results.item(command.kept).file.item());
        Status flushed = kept.flush(context_.ports.held);
        return !flushed && flushed.error().kind == ErrorKind::io ? flushed : Status();
    }

    [[nodiscard]] bool flushDone() const
    {
        TouchedVolumes touched;
        for (const ItemOutcome& outcome : report_.items) {
            if (outcome.result == ItemResult::done)
                touched.add(context_.results.item(report_.plan.commands[outcome.command].item).file.item());
        }
        return touched.flush(context_.ports.held).ok();
    }

    void finish()
    {
        if (log_)
            writeLog();
        report_.removed = report_.pass.cancel == CancelState::requested ? removeVanished() : removeHandled();
        report_.reclaimed = reclaimedBytes(report_.plan.marked, report_.removed);
        report_.message = cleanupMessage(report_.plan.marked, report_.removed, report_.pass.recycled, context_.sizes);
        if (context_.done)
            context_.done(report_);
        tell();
    }

    void writeLog()
    {
        log_->end(report_.pass, report_.plan, context_.results);
        WrittenLog written =
            writeCleanupLog(log_->text(), options_.logFile, context_.output, context_.places, context_.ports.clock);
        context_.memory.lastLog = report_.log = std::move(written.path);
        report_.logFailure = std::move(written.failure);
    }

    // What stays is not selected any more.
    std::uint64_t removeHandled()
    {
        std::vector<ItemId> handled;
        for (const ItemOutcome& outcome : report_.items) {
            if (outcome.result == ItemResult::done)
                handled.push_back(report_.plan.commands[outcome.command].item);
        }
        (void)context_.results.remove(handled, Undoable::no);
        context_.results.mark(marked_, Mark::selected, false);
        return handled.size();
    }

    // When the system's own work broke off nobody knows what it did last: the disk does. The person's request to stop
    // was for that work, and does not stop this.
    std::uint64_t removeVanished()
    {
        const CancelFlag goOn;
        const auto told = [this](std::u16string_view words) { context_.questions.showStatus(words); };
        const std::vector<ItemId> vanished =
            purgeVanished(context_.results, context_.ports.files, cancel_.cancelled() ? goOn : cancel_, told);
        context_.results.mark(marked_, Mark::selected, false);
        std::vector<ItemId> sorted = marked_;
        std::sort(sorted.begin(), sorted.end());
        return static_cast<std::uint64_t>(std::count_if(vanished.begin(), vanished.end(), [&](ItemId id) {
            return std::binary_search(sorted.begin(), sorted.end(), id);
        }));
    }

    void tell()
    {
        if (report_.message.empty())
            return;
        if (options_.quietSummary)
            context_.questions.showStatus(report_.message);
        else if (context_.questions.notify(report_.message))
            report_.noticesOff |= cleanup_notice::summary;
    }

    const CleanupContext& context_;
    const CleanupOptions& options_;
    const CancelFlag& cancel_;
    CleanupReport report_;
    std::vector<ItemId> marked_;  // in the order of the list
    std::vector<TrashlessVolume> deletedForGood_;
    std::optional<CleanupLog> log_;
};

}  // namespace

CleanupReport runCleanupBy(const PassRunner& pass, const CleanupContext& context, const CleanupRequest& request,
                           const CleanupOptions& options, const CancelFlag& cancel)
{
    return CleanupRun(context, options, cancel).carryOut(request, pass);
}

}  // namespace kelvane
