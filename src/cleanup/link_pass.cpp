#include "cleanup/link_pass.h"

#include "base/filled_text.h"
#include "base/utf.h"
#include "cleanup/guards.h"
#include "cleanup/item_linker.h"
#include "cleanup/item_links.h"
#include "cleanup/pass_batch.h"
#include "cleanup/pass_report.h"
#include "cleanup/temporary_name.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

constexpr int invalidFunction = 1;  // the system error of an item whose volume refused a link before

// At most so many UTF-16 units, whole characters.
std::string shownPath(const std::filesystem::path& path)
{
    constexpr std::size_t longest = 250;
    std::u16string text = displayFromNative(path.native());
    if (text.size() > longest)
        text.resize(text[longest - 1] >= 0xD800 && text[longest - 1] < 0xDC00 ? longest - 1 : longest);
    return toUtf8(text);
}

CleanupFailure volumeRefuses()
{
    return {CleanupFault::volumeRefuses,
            {ErrorKind::notSupported, invalidFunction, filledText(TextId::faultSystemCode, {"1"})}};
}

class LinkPass {
public:
    LinkPass(const CleanupPlan& plan, const ResultsModel& model, const PassPorts& ports, const PassOptions& options,
             CleanupMemory& memory, CleanupQuestions& questions, JournalWriter& journal, PassObserver& observer,
             const CancelFlag& cancel)
        : plan_(plan),
          model_(model),
          ports_(ports),
          options_(options),
          questions_(questions),
          journal_(journal),
          observer_(observer),
          cancel_(cancel),
          commands_(commandsOf(plan, true)),
          report_(plan, observer),
          volumes_(ports, memory),
          elevated_(ports, options, memory, questions),
          linker_(ports, volumes_, elevated_),
          guards_(ports, options, model, plan, cancel)
    {
    }

    PassOutcome run()
    {
        while (next_ < commands_.size() && !stopped_) {
            PassBatch batch = gather();
            if (const Status written = writeAhead(batch, plan_, journal_); !written)
                report_.outcome.journalError = written.error();
            act(batch);
            batch.clear();
            guards_.release();
        }
        return settled();
    }

private:
    [[nodiscard]] const CleanupCommand& command(std::size_t number) const { return plan_.commands[number]; }
    [[nodiscard]] const ShellItem& shellItem(ItemId id) const { return model_.item(id).file.item(); }

    void stopAsCancelled()
    {
        stopped_ = true;
        report_.outcome.cancel = CancelState::requested;
    }

    // Asks the person when a cancel was requested: true ends the run.
    [[nodiscard]] bool mustStop()
    {
        if (cancel_.cancelled() && questions_.confirmStop(text(TextId::stopCleanupQuestion)))
            stopAsCancelled();
        return stopped_;
    }

    [[nodiscard]] ItemId keptFor(const CleanupCommand& command) const
    {
        return standIn_ && standIn_->group == command.group ? standIn_->item : command.kept;
    }

    // The next batch; shorter when the handles run out, empty when the run was stopped.
    [[nodiscard]] PassBatch gather()
    {
        PassBatch batch;
        std::size_t at = next_;
        while (at < commands_.size() && batch.size() < options_.batch) {
            if (mustStop())
                return {};
            BatchItem item = prepare(commands_[at]);
            if (item.failure && item.failure->error.kind == ErrorKind::cancelled && cancel_.cancelled())
                continue;  // asks, and holds the item anew when the run goes on
            if (ranOutOfHandles(item) && !batch.empty()) {
                leaveHandles(batch);
                break;
            }
            batch.push_back(std::move(item));
            ++at;
        }
        return batch;
    }

    [[nodiscard]] BatchItem prepare(std::size_t number)
    {
        BatchItem item;
        item.command = number;
        item.kept = keptFor(command(number));
        if (volumes_.refuses(shellItem(command(number).item)))
            item.failure = volumeRefuses();
        else
            hold(item);
        return item;
    }

    void hold(BatchItem& item)
    {
        auto held = guards_.hold(command(item.command), item.kept);
        if (auto* failure = std::get_if<CleanupFailure>(&held)) {
            item.failure = std::move(*failure);
            return;
        }
        item.pair = std::move(std::get<HeldPair>(held));
        auto metadata = item.pair.item->metadata();
        auto name = freeTemporaryName(*item.pair.folder, item.pair.name, ports_.clock.ticks());
        if (!metadata || !name) {
            item.failure = CleanupFailure{CleanupFault::system, metadata ? name.error() : metadata.error()};
            return;
        }
        item.metadata = std::move(*metadata);
        item.temporary = std::move(*name);
    }

    void act(PassBatch& batch)
    {
        std::size_t at = 0;
        while (at < batch.size() && !stopped_ && !mustStop()) {
            BatchItem& item = batch[at];
            beginGroup(item);
            if (!actOn(item))
                break;
            ++at;
            ++next_;
            if (startsAnew_)
                break;
        }
        startsAnew_ = false;
        keepJournal(withdraw(std::span(batch).subspan(at), journal_));
    }

    void beginGroup(const BatchItem& item)
    {
        const Original original{command(item.command).group, item.kept};
        if (told_ == original)
            return;
        told_ = original;
        observer_.groupBegins(item.kept);
    }

    // False when the run was stopped before the item.
    [[nodiscard]] bool actOn(BatchItem& item)
    {
        if (report_.outcome.journalError)
            return failForJournal(item);
        if (item.failure)
            return fail(item, *item.failure);
        if (volumes_.refuses(shellItem(command(item.command).item)))
            return fail(item, volumeRefuses());
        const std::uint8_t ways = possibleWays(item);
        switch (mayLeadOut(item, ways)) {
        case ExternalLink::cancel:
            stopAsCancelled();
            return false;
        case ExternalLink::no:
            end(item, ItemResult::declined);
            return true;
        case ExternalLink::yes:
            break;
        }
        if (auto failure = guards_.recheck(item.pair, command(item.command)))
            return fail(item, std::move(*failure));
        return link(item, ways);
    }

    [[nodiscard]] bool onOneVolume(const BatchItem& item) const
    {
        return onSameVolume(shellItem(command(item.command).item), shellItem(item.kept), ports_.paths).value_or(true);
    }

    [[nodiscard]] std::uint8_t possibleWays(const BatchItem& item) const
    {
        const CleanupCommand& wanted = command(item.command);
        return onOneVolume(item) && !wanted.sameFile ? waysOf(wanted) : waysOf(wanted) & link_way::symbolic;
    }

    // One answer holds for the whole run.
    [[nodiscard]] ExternalLink mayLeadOut(const BatchItem& item, std::uint8_t ways)
    {
        const ShellItem& kept = shellItem(item.kept);
        if (ways != link_way::symbolic || onOneVolume(item) ||
            !volumes_.leadsToExternal(shellItem(command(item.command).item), kept))
            return ExternalLink::yes;
        if (!leadOut_)
            leadOut_ = questions_.linkToExternal(
                toUtf16(filledText(TextId::externalLinkQuestion, {toUtf8(displayFromNative(kept.fullName()))})));
        return *leadOut_;
    }

    [[nodiscard]] bool link(BatchItem& item, std::uint8_t ways)
    {
        const ShellItem& file = shellItem(command(item.command).item);
        LinkAttempt attempt = linker_.link(item.pair, item.temporary, ways, file, shellItem(item.kept));
        if (attempt.placement.state == Placed::done) {
            end(item, ItemResult::done, attempt.kind);
            return true;
        }
        if (attempt.placement.state == Placed::undecided) {
            // Stays open in the journal, for settling to look at.
            item.entry.reset();
            ++report_.outcome.undecided;
        }
        if (attempt.tooManyNames && attempt.placement.state == Placed::notDone)
            return standsIn(item);
        if (attempt.linkFailed && attempt.placement.failure->fault == CleanupFault::system)
            volumes_.failed(file, attempt.placement.failure->error);
        return fail(item, std::move(*attempt.placement.failure));
    }

    // The kept file has as many names as it can: this item stays, and the rest of its group is linked to it.
    [[nodiscard]] bool standsIn(BatchItem& item)
    {
        const CleanupCommand& staying = command(item.command);
        standIn_ = Original{staying.group, staying.item};
        guards_.keep(staying.item);
        startsAnew_ = true;
        end(item, ItemResult::newOriginal);
        return true;
    }

    bool failForJournal(BatchItem& item)
    {
        item.failure = item.failure.value_or(CleanupFailure{CleanupFault::journal, *report_.outcome.journalError});
        item.entry.reset();
        report(item, ItemResult::failed, LinkKind::none);
        stopped_ = stopped_ || item.failure->fault == CleanupFault::journal;
        return true;
    }

    bool fail(BatchItem& item, CleanupFailure failure)
    {
        item.failure = std::move(failure);
        end(item, ItemResult::failed);
        if (item.failure->fault == CleanupFault::system && !stopped_ && questions_.quitAfterProblem(problem(item)))
            stopAsCancelled();
        return true;
    }

    [[nodiscard]] std::u16string problem(const BatchItem& item) const
    {
        const std::string path = shownPath(shellItem(command(item.command).item).path());
        return toUtf16(filledText(TextId::linkProblemQuestion, {path, textOf(*item.failure)}));
    }

    void end(BatchItem& item, ItemResult result, LinkKind kind = LinkKind::none)
    {
        if (item.entry) {
            const EntryState state = result == ItemResult::done ? EntryState::done : EntryState::notDone;
            keepJournal(journal_.finish(*item.entry, state, kind));
            item.entry.reset();
        }
        report(item, result, kind);
    }

    void report(const BatchItem& item, ItemResult result, LinkKind kind)
    {
        ItemOutcome ended;
        ended.command = item.command;
        ended.result = result;
        ended.link = kind;
        ended.kept = item.kept;
        ended.failure = item.failure;
        report_.end(ended);
    }

    void keepJournal(const Status& written)
    {
        if (written)
            return;
        if (!report_.outcome.journalError)
            report_.outcome.journalError = written.error();
        stopped_ = true;
    }

    [[nodiscard]] PassOutcome settled()
    {
        for (std::size_t at = next_; at < commands_.size(); ++at)
            report_.leave(commands_[at], keptFor(command(commands_[at])));
        PassOutcome& outcome = report_.outcome;
        outcome.noticesOff = elevated_.noticesOff();
        if (outcome.cancel == CancelState::requested)
            outcome.cancel = CancelState::linkRunSettled;
        else if (outcome.succeeded == 0 && !commands_.empty() && !outcome.journalError)
            questions_.showStatus(text(TextId::linkingNotPossible));
        return outcome;
    }

    struct Original {
        std::uint32_t group = 0;
        ItemId item{};
        friend bool operator==(const Original&, const Original&) = default;
    };

    const CleanupPlan& plan_;
    const ResultsModel& model_;
    const PassPorts& ports_;
    const PassOptions& options_;
    CleanupQuestions& questions_;
    JournalWriter& journal_;
    PassObserver& observer_;
    const CancelFlag& cancel_;
    const std::vector<std::size_t> commands_;
    PassReport report_;
    LinkVolumes volumes_;
    ElevatedLinks elevated_;
    ItemLinker linker_;
    Guards guards_;
    std::size_t next_ = 0;  // in commands_: everything before it has ended
    bool stopped_ = false;
    bool startsAnew_ = false;              // the rest of the batch was held for another original
    std::optional<Original> told_;         // of the group that the observer heard of last
    std::optional<Original> standIn_;      // in the place of the plan's kept file
    std::optional<ExternalLink> leadOut_;  // the person's answer
};

}  // namespace

PassOutcome runLinkPass(const CleanupPlan& plan, const ResultsModel& model, const PassPorts& ports,
                        const PassOptions& options, CleanupMemory& memory, CleanupQuestions& questions,
                        JournalWriter& journal, PassObserver& observer, const CancelFlag& cancel)
{
    return LinkPass(plan, model, ports, options, memory, questions, journal, observer, cancel).run();
}

}  // namespace kelvane
