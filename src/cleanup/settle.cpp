#include "cleanup/settle.h"

#include <map>

#include "cleanup/settle_steps.h"

namespace kelvane {
namespace {

Verdict settled(const JournalEntry& entry, const PassPorts& ports)
{
    const bool isLink = entry.intent.action == CleanupAction::link;
    if (entry.state == EntryState::undoIntended)
        return isLink ? settleSplit(entry, ports) : settleReturn(entry, ports);
    return isLink ? settleReplacement(entry, ports) : settleRemoval(entry, ports);
}

bool isOpen(const JournalEntry& entry, const PassPorts& ports)
{
    const EntryState state = entry.state;
    return state == EntryState::intended || state == EntryState::undoIntended ||
           (state == EntryState::done && isBehind(entry, ports));
}

class RunSettler {
public:
    RunSettler(Journals::Opened& opened, const PassPorts& ports) : opened_(opened), ports_(ports)
    {
        run_.number = opened.run.number;
        run_.damaged = opened.run.damaged;
    }

    // Nothing when there was nothing to tell.
    std::optional<SettledRun> settle()
    {
        bool anyUndecided = false;
        for (std::uint32_t i = 0; i < opened_.run.entries.size() && !journalFailed_; ++i) {
            const JournalEntry& entry = opened_.run.entries[i];
            if (!isOpen(entry, ports_))
                continue;
            anyUndecided = true;
            settle(static_cast<EntryNumber>(i), entry);
        }
        finishAll();
        if (!journalFailed_)
            keep(leftOpen_ ? opened_.writer->flush() : opened_.writer->end());
        const bool worthTelling = anyUndecided || journalFailed_ || (run_.damaged && !opened_.run.entries.empty());
        return worthTelling ? std::optional(std::move(run_)) : std::nullopt;
    }

private:
    struct Decided {
        EntryNumber number{};
        const JournalEntry* entry = nullptr;
        Verdict verdict;
    };

    void settle(EntryNumber number, const JournalEntry& entry)
    {
        Verdict verdict = settled(entry, ports_);
        if (verdict.told)
            run_.unsettled.push_back(*verdict.told);
        leftOpen_ = leftOpen_ || !verdict.state;
        if (verdict.state)
            decided_.push_back({number, &entry, std::move(verdict)});
    }

    // Only when the device has the names, lest the journal know of what a loss of power takes back.
    void finishAll()
    {
        std::map<std::filesystem::path, Status> flushed;
        for (const Decided& one : decided_) {
            const std::filesystem::path folder = one.entry->intent.item.parent_path();
            const auto [at, isNew] = flushed.try_emplace(folder);
            if (isNew)
                at->second = flush(folder);
            if (at->second && !journalFailed_)
                finish(one);
            else if (!at->second)
                leaveOpen(one, at->second.error());
        }
    }

    void leaveOpen(const Decided& one, const Error& error)
    {
        leftOpen_ = true;
        run_.unsettled.push_back({one.entry->intent.item, {}, {CleanupFault::system, error}});
    }

    Status flush(const std::filesystem::path& path)
    {
        const auto folder = ports_.held.openFolder(path);
        if (folder)
            return folder.value()->flush();
        return folder.error().kind == ErrorKind::notFound ? Status() : folder.error();
    }

    void finish(const Decided& one)
    {
        const EntryState state = *one.verdict.state;
        const bool wasUndo = one.entry->state == EntryState::undoIntended;
        if (wasUndo)
            keep(opened_.writer->finishUndo(one.number, state));
        else if (one.entry->state != state)
            keep(opened_.writer->finish(one.number, state, one.verdict.link, one.entry->trashed));
        const bool completed = wasUndo ? state == EntryState::undone : state == EntryState::done;
        // What is told of is counted there.
        if (!journalFailed_ && !one.verdict.told)
            ++(completed ? run_.completed : run_.takenBack);
    }

    void keep(const Status& written)
    {
        if (written)
            return;
        journalFailed_ = true;
        run_.unsettled.push_back({{}, {}, {CleanupFault::journal, written.error()}});
    }

    Journals::Opened& opened_;
    const PassPorts& ports_;
    SettledRun run_;
    std::vector<Decided> decided_;
    bool journalFailed_ = false;
    bool leftOpen_ = false;  // something is to be looked at again
};

}  // namespace

Result<std::vector<SettledRun>> settleUnfinished(Journals& journals, const PassPorts& ports)
{
    const auto numbers = journals.unfinished();
    if (!numbers)
        return numbers.error();
    std::vector<SettledRun> told;
    for (const RunNumber number : *numbers) {
        auto opened = journals.reopen(number);
        // Going on, over meanwhile, or of a later version.
        if (!opened && opened.error().kind != ErrorKind::accessDenied && opened.error().kind != ErrorKind::io)
            continue;
        if (!opened) {
            told.push_back({number, 0, 0, {{{}, {}, {CleanupFault::journal, opened.error()}}}, false});
            continue;
        }
        if (auto run = RunSettler(*opened, ports).settle())
            told.push_back(std::move(*run));
    }
    return told;
}

}  // namespace kelvane
