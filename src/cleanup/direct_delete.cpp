#include <algorithm>
#include <unordered_map>

#include "base/filled_text.h"
#include "base/utf.h"
#include "cleanup/cleanup_run.h"
#include "cleanup/delete_pass.h"
#include "cleanup/plan_check.h"
#include "cleanup/touched_volumes.h"

namespace kelvane {
namespace {

// One selected item on its way into the trash.
struct Leaving {
    ItemId row{};
    RemovalItem removal;
    FileStamp stamp;
    EntryNumber entry{};
    bool decided = false;  // in the journal
    bool open = false;     // there, for settling to decide
    bool gone = false;
    std::optional<CleanupFailure> failure{};
};

using Reasons = std::unordered_map<ItemId, std::string>;

std::optional<FileStamp> stampAt(const std::filesystem::path& path, FileSystem& files)
{
    const auto now = files.details(path, Links::asThemselves);
    return now ? std::optional(stampOf(*now)) : std::nullopt;
}

bool isGone(const std::filesystem::path& path, FileSystem& files)
{
    const auto now = files.details(path, Links::asThemselves);
    return !now && now.error().kind == ErrorKind::notFound;
}

class Sink final : public RemovalSink {
public:
    Sink(std::vector<Leaving>& items, JournalWriter& journal, FileSystem& files, PassObserver* watcher)
        : items_(items), journal_(journal), files_(files), watcher_(watcher)
    {
    }
    bool before(std::size_t item) override
    {
        if (!journalWorks_)
            items_[item].failure = because(CleanupFault::journal);
        else if (stampAt(items_[item].removal.path, files_) != items_[item].stamp)
            items_[item].failure = because(CleanupFault::changed);
        return !items_[item].failure;
    }
    Status placing(std::size_t item, const std::filesystem::path& trashed) override
    {
        return journal_.placing(items_[item].entry, trashed);
    }
    void after(std::size_t item, const RemovalOutcome& outcome) override
    {
        note(items_[item], outcome);
        if (watcher_ != nullptr)
            watcher_->progress(++ended_, 0);
    }
    // What had no turn was left alone. Whether the run may come to its end: nothing is open.
    [[nodiscard]] bool settle()
    {
        bool anyOpen = false;
        for (const Leaving& leaving : items_) {
            anyOpen = anyOpen || leaving.open;
            if (!leaving.decided && !leaving.open && journalWorks_)
                journalWorks_ = journal_.finish(leaving.entry, EntryState::notDone).ok();
        }
        return journalWorks_ && !anyOpen;
    }

private:
    void note(Leaving& leaving, const RemovalOutcome& outcome)
    {
        const bool failed = isFailedRemoval(outcome.code) || isIgnoredRemoval(outcome.code);
        leaving.gone = !failed || isGone(leaving.removal.path, files_);
        // Gone although the system reports a failure: settling looks for it.
        leaving.open = failed && leaving.gone;
        if (!leaving.gone && !leaving.failure)
            leaving.failure = failureOf(outcome, leaving.removal.removal);
        if (leaving.open)
            return;
        const EntryState state = leaving.gone ? EntryState::done : EntryState::notDone;
        journalWorks_ =
            journal_.finish(leaving.entry, state, LinkKind::none, outcome.trashed.value_or(std::filesystem::path{}))
                .ok();
        leaving.decided = journalWorks_;
    }

    std::vector<Leaving>& items_;
    JournalWriter& journal_;
    FileSystem& files_;
    PassObserver* watcher_;
    std::uint64_t ended_ = 0;
    bool journalWorks_ = true;
};

std::vector<ItemId> selectedOf(const ResultsModel& results)
{
    std::vector<ItemId> selected;
    results.forEachRow([&](ItemId id) {
        if (results.item(id).isSelected())
            selected.push_back(id);
    });
    return selected;
}

// Those that may go; the others have their reasons in `refused`.
std::vector<Leaving> checked(const ResultsModel& results, std::span<const ItemId> selected, FileSystem& files,
                             Reasons& refused)
{
    std::vector<Leaving> items;
    for (const ItemId row : selected) {
        const ShellItem& item = results.item(row).file.item();
        if (!item.inFileSystem()) {
            refused[row] = filledText(textOf(CleanupObstacle::inArchive));
            continue;
        }
        const auto stamp = isAsListed(item, files) ? stampAt(item.path(), files) : std::nullopt;
        if (stamp)
            items.push_back({row, {item.path(), stamp->identity, Removal::toTrash}, *stamp});
        else
            refused[row] = filledText(textOf(CleanupObstacle::changed));
    }
    return items;
}

std::vector<FailedDeletion> inOrder(std::span<const ItemId> selected, const Reasons& stay)
{
    std::vector<FailedDeletion> failed;
    for (const ItemId row : selected)
        if (const auto found = stay.find(row); found != stay.end())
            failed.push_back({row, found->second});
    return failed;
}

Status writeAhead(std::vector<Leaving>& items, JournalWriter& journal)
{
    for (Leaving& leaving : items) {
        JournalIntent intent;
        intent.action = CleanupAction::recycle;
        intent.item = leaving.removal.path;
        intent.itemWas = leaving.stamp;
        const auto entry = journal.intend(intent);
        if (!entry)
            return entry.error();
        leaving.entry = *entry;
    }
    return journal.flush();
}

void refuse(DirectDeletion& deletion, CleanupQuestions& questions, Error error)
{
    questions.showStatus(toUtf16(error.detail));
    deletion.refused = std::move(error);
}

void takeAway(std::vector<Leaving>& items, const CleanupContext& context, JournalWriter& journal,
              const CancelFlag& cancel)
{
    std::vector<RemovalItem> removals;
    for (const Leaving& leaving : items)
        removals.push_back(leaving.removal);
    Sink sink(items, journal, context.ports.files, context.watcher);
    (void)context.ports.operations.remove(removals, sink, cancel);
    TouchedVolumes touched;
    for (const Leaving& leaving : items) {
        if (leaving.gone)
            touched.add(context.results.item(leaving.row).file.item());
    }
    if (sink.settle() && touched.flush(context.ports.held))
        (void)journal.end();
}

}  // namespace

DirectDeletion directDelete(const CleanupContext& context, bool expert, const CancelFlag& cancel)
{
    DirectDeletion deletion;
    if (!expert) {
        refuse(deletion, context.questions, {ErrorKind::notSupported, 0, filledText(TextId::expertOnly)});
        return deletion;
    }
    ResultsModel& results = context.results;
    const std::vector<ItemId> selected = selectedOf(results);
    Reasons stay;
    std::vector<Leaving> items = checked(results, selected, context.ports.files, stay);
    if (items.empty()) {
        deletion.failed = inOrder(selected, stay);
        return deletion;
    }
    const auto claimed = context.journals.claim();
    auto journal = claimed ? context.journals.begin(CleanupAction::recycle, context.ports.clock.now())
                           : Result<std::unique_ptr<JournalWriter>>(claimed.error());
    const Status ahead = journal ? writeAhead(items, **journal) : Status(journal.error());
    if (!ahead) {
        const std::string words = textOf({CleanupFault::journal, ahead.error()});
        refuse(deletion, context.questions, {ahead.error().kind, ahead.error().systemCode, words});
        return deletion;
    }
    deletion.run = (*journal)->number();
    takeAway(items, context, **journal, cancel);
    std::vector<ItemId> gone;
    for (const Leaving& leaving : items) {
        if (leaving.gone)
            gone.push_back(leaving.row);
        else
            stay[leaving.row] = leaving.failure ? textOf(*leaving.failure) : std::string();
    }
    deletion.failed = inOrder(selected, stay);
    (void)results.remove(gone, Undoable::no);
    deletion.removed = gone.size();
    return deletion;
}

}  // namespace kelvane
