#include "cleanup/link_pass.h"

#include "base/filled_text.h"
#include "cleanup/guards.h"
#include "cleanup/item_linker.h"
#include "cleanup/item_links.h"
#include "cleanup/link_questions.h"
#include "cleanup/pass_run.h"
#include "cleanup/temporary_name.h"

namespace kelvane {
namespace {

CleanupFailure volumeRefuses()
{
    constexpr int invalidFunction = 1;
    return {CleanupFault::volumeRefuses,
            {ErrorKind::notSupported, invalidFunction, filledText(TextId::faultSystemCode, {"1"})}};
}

// Of one group, what its items are linked to.
struct Original {
    std::uint32_t group = 0;
    ItemId item{};
    friend bool operator==(const Original&, const Original&) = default;
};

class LinkPass {
public:
    LinkPass(const CleanupPlan& plan, const ResultsModel& model, const PassPorts& ports, const PassOptions& options,
             CleanupMemory& memory, CleanupQuestions& questions, JournalWriter& journal, PassObserver& observer,
             const CancelFlag& cancel)
        : plan_(plan),
          model_(model),
          ports_(ports),
          person_(questions),
          observer_(observer),
          commands_(commandsOf(plan, true)),
          run_(plan, options, questions, journal, observer, cancel),
          questions_(questions),
          volumes_(ports, memory),
          elevated_(ports, options, memory, questions),
          linker_(ports, volumes_, elevated_),
          guards_(ports, options, model, plan, cancel)
    {
    }

    PassOutcome run()
    {
        while (next_ < commands_.size() && !run_.isStopped()) {
            PassBatch batch = run_.gather(std::span(commands_).subspan(next_),
                                          [this](std::size_t number) { return prepare(number); });
            act(batch);
            batch.clear();
            guards_.release();
        }
        return settled();
    }

private:
    [[nodiscard]] const CleanupCommand& command(std::size_t number) const { return plan_.commands[number]; }
    [[nodiscard]] const CleanupCommand& command(const BatchItem& item) const { return command(item.command); }
    [[nodiscard]] const ShellItem& shellItem(ItemId id) const { return model_.item(id).file.item(); }
    [[nodiscard]] const ShellItem& shellItem(const BatchItem& item) const { return shellItem(command(item).item); }

    [[nodiscard]] ItemId keptFor(const CleanupCommand& command) const
    {
        return standIn_ && standIn_->group == command.group ? standIn_->item : command.kept;
    }

    [[nodiscard]] BatchItem prepare(std::size_t number)
    {
        BatchItem item;
        item.command = number;
        item.kept = keptFor(command(number));
        if (volumes_.refuses(shellItem(item)))
            item.failure = volumeRefuses();
        else
            hold(item);
        return item;
    }

    void hold(BatchItem& item)
    {
        auto held = guards_.hold(command(item), item.kept);
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
        for (bool goesOn = true; goesOn && at < batch.size() && !run_.mustStop(); goesOn = goesOn && !startsAnew_) {
            beginGroup(batch[at]);
            goesOn = actOn(batch[at]);
            if (goesOn) {
                ++at;
                ++next_;
            }
        }
        startsAnew_ = false;
        run_.withdraw(std::span(batch).subspan(at));
    }

    void beginGroup(const BatchItem& item)
    {
        const Original original{command(item).group, item.kept};
        if (told_ != original)
            observer_.groupBegins(item.kept);
        told_ = original;
    }

    // False when the run was stopped before the item.
    [[nodiscard]] bool actOn(BatchItem& item)
    {
        if (!item.failure && volumes_.refuses(shellItem(item)))
            item.failure = volumeRefuses();
        if (item.failure)
            return fail(item);
        const std::uint8_t ways = possibleWays(item);
        const ExternalLink answer = leadsOut(item, ways) ? person_.mayLeadOut(shellItem(item.kept)) : ExternalLink::yes;
        if (answer == ExternalLink::cancel)
            run_.stopAsCancelled();
        if (answer == ExternalLink::no)
            end(item, ItemResult::declined);
        return answer == ExternalLink::yes ? link(item, ways) : answer == ExternalLink::no;
    }

    [[nodiscard]] bool onOneVolume(const BatchItem& item) const
    {
        return onSameVolume(shellItem(item), shellItem(item.kept), ports_.paths).value_or(true);
    }

    [[nodiscard]] std::uint8_t possibleWays(const BatchItem& item) const
    {
        const std::uint8_t ways = waysOf(command(item));
        return onOneVolume(item) && !command(item).sameFile ? ways : ways & link_way::symbolic;
    }

    [[nodiscard]] bool leadsOut(const BatchItem& item, std::uint8_t ways)
    {
        return ways == link_way::symbolic && !onOneVolume(item) &&
               volumes_.leadsToExternal(shellItem(item), shellItem(item.kept));
    }

    bool link(BatchItem& item, std::uint8_t ways)
    {
        item.failure = guards_.recheck(item.pair);
        if (item.failure)
            return fail(item);
        LinkAttempt attempt = linker_.link(item.pair, item.temporary, ways, shellItem(item), shellItem(item.kept));
        if (attempt.placement.state == Placed::done) {
            end(item, ItemResult::done, attempt.kind);
            return true;
        }
        if (attempt.placement.state == Placed::undecided)
            run_.leaveUndecided(item);
        else if (attempt.tooManyNames)
            return standsIn(item);
        item.failure = std::move(attempt.placement.failure);
        if (attempt.linkFailed && item.failure->fault == CleanupFault::system)
            volumes_.failed(shellItem(item), item.failure->error);
        return fail(item);
    }

    // The kept file has as many names as it can: this item stays, and the rest of its group is linked to it.
    bool standsIn(BatchItem& item)
    {
        standIn_ = Original{command(item).group, command(item).item};
        guards_.keep(standIn_->item);
        startsAnew_ = true;
        end(item, ItemResult::newOriginal);
        return true;
    }

    bool fail(BatchItem& item)
    {
        end(item, ItemResult::failed);
        if (item.failure->fault == CleanupFault::journal)
            run_.stop();
        const bool isProblem = item.failure->fault == CleanupFault::system && !run_.report.outcome.journalError;
        if (isProblem && person_.quits(shellItem(item), *item.failure))
            run_.stopAsCancelled();
        return true;
    }

    void end(BatchItem& item, ItemResult result, LinkKind kind = LinkKind::none)
    {
        ItemOutcome ended;
        ended.command = item.command;
        ended.result = result;
        ended.link = kind;
        ended.kept = item.kept;
        ended.failure = item.failure;
        run_.finish(item, ended);
        run_.report.end(ended);
    }

    [[nodiscard]] PassOutcome settled()
    {
        for (std::size_t at = next_; at < commands_.size(); ++at)
            run_.report.leave(commands_[at], keptFor(command(commands_[at])));
        PassOutcome& outcome = run_.report.outcome;
        outcome.noticesOff = elevated_.noticesOff();
        if (outcome.cancel == CancelState::requested)
            outcome.cancel = CancelState::linkRunSettled;
        else if (outcome.succeeded == 0 && !commands_.empty() && !outcome.journalError)
            questions_.showStatus(text(TextId::linkingNotPossible));
        return outcome;
    }

    const CleanupPlan& plan_;
    const ResultsModel& model_;
    const PassPorts& ports_;
    LinkQuestions person_;
    PassObserver& observer_;
    const std::vector<std::size_t> commands_;
    PassRun run_;
    CleanupQuestions& questions_;
    LinkVolumes volumes_;
    ElevatedLinks elevated_;
    ItemLinker linker_;
    Guards guards_;
    std::size_t next_ = 0;             // in commands_: everything before it has ended
    bool startsAnew_ = false;          // the rest of the batch was held for another original
    std::optional<Original> told_;     // that the observer heard of last
    std::optional<Original> standIn_;  // in the place of the plan's kept file
};

}  // namespace

PassOutcome runLinkPass(const CleanupPlan& plan, const ResultsModel& model, const PassPorts& ports,
                        const PassOptions& options, CleanupMemory& memory, CleanupQuestions& questions,
                        JournalWriter& journal, PassObserver& observer, const CancelFlag& cancel)
{
    return LinkPass(plan, model, ports, options, memory, questions, journal, observer, cancel).run();
}

}  // namespace kelvane
