#include "cleanup/undo.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <set>
#include <span>

#include "cleanup/undo_steps.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

constexpr std::size_t batchSize = 128;    // entries whose intents are flushed together
constexpr std::size_t longestStart = 96;  // of a temporary name; some file systems take 143 bytes in all
constexpr unsigned mostFreeNames = 16;    // for a free name

template <class Char>
bool continuesCharacter(Char unit)
{
    if constexpr (sizeof(Char) == 1)
        return (static_cast<unsigned char>(unit) & 0xC0) == 0x80;
    else
        return unit >= 0xDC00 && unit <= 0xDFFF;
}

std::string hexadecimal(std::uint64_t number)
{
    std::array<char, 16> digits{};
    return {digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), number, 16).ptr};
}

NativeString temporaryName(const NativeString& name, std::uint64_t ticks)
{
    std::size_t length = std::min(name.size(), longestStart);
    while (length > 0 && length < name.size() && continuesCharacter(name[length]))
        --length;
    return name.substr(0, length) + nativeFromBytes("~undo" + hexadecimal(ticks));
}

Result<NativeString> freeName(const std::filesystem::path& item, const PassPorts& ports)
{
    const auto folder = ports.held.openFolder(item.parent_path());
    if (!folder)
        return folder.error();
    const std::uint64_t ticks = ports.clock.ticks();
    for (unsigned attempt = 0; attempt < mostFreeNames; ++attempt) {
        NativeString name = temporaryName(item.filename().native(), ticks + attempt);
        const auto there = folder.value()->look(name);
        if (!there && there.error().kind == ErrorKind::notFound)
            return name;
        if (!there)
            return there.error();
    }
    return Error{ErrorKind::exists, 0, {}};
}

bool isUndecided(const JournalEntry& entry)
{
    return entry.state == EntryState::intended || entry.state == EntryState::undoIntended;
}

class Undo {
public:
    Undo(Journals::Opened& opened, const PassPorts& ports, const std::function<void(const UndoneItem&)>& told,
         const CancelFlag& cancel)
        : entries_(opened.run.entries),
          run_(opened.run),
          writer_(*opened.writer),
          ports_(ports),
          told_(told),
          cancel_(cancel)
    {
    }

    UndoOutcome run(const UndoFilter& filter)
    {
        std::vector<std::size_t> chosen;
        for (std::size_t at = entries_.size(); at-- > 0;) {
            if (entries_[at].state == EntryState::done && (!filter || filter(entries_[at])))
                chosen.push_back(at);
        }
        for (std::span<const std::size_t> rest = chosen; !rest.empty() && !stopped();) {
            const auto batch = rest.first(std::min(batchSize, rest.size()));
            rest = rest.subspan(batch.size());
            takeBack(batch);
        }
        end();
        return std::move(outcome_);
    }

private:
    struct Turn {
        std::size_t at = 0;
        std::optional<CleanupFailure> obstacle;
    };

    bool stopped()
    {
        outcome_.cancelled = outcome_.cancelled || cancel_.cancelled();
        return outcome_.cancelled || outcome_.journalError.has_value();
    }

    bool journalled(const Status& status)
    {
        if (!status && !outcome_.journalError)
            outcome_.journalError = status.error();
        return status.ok();
    }

    void takeBack(std::span<const std::size_t> batch)
    {
        turns_.clear();
        restored_.clear();
        for (const std::size_t at : batch) {
            if (stopped())
                break;
            turns_.push_back({at, intend(at)});
        }
        if (outcome_.journalError || (wrote_ && !journalled(writer_.flush())))
            return;
        for (const Turn& turn : turns_)
            act(turn);
        finishRestored();
    }

    // Why there is nothing to do for it; nothing once the journal has it.
    std::optional<CleanupFailure> intend(std::size_t at)
    {
        JournalEntry& entry = entries_[at];
        if (auto obstacle = undoObstacle(entry, ports_))
            return obstacle;
        NativeString temporary;
        if (entry.intent.action == CleanupAction::link) {
            auto name = freeName(entry.intent.item, ports_);
            if (!name)
                return CleanupFailure{CleanupFault::system, name.error()};
            temporary = std::move(*name);
        }
        if (const Status written = writer_.intendUndo(EntryNumber(at), temporary); !journalled(written))
            return CleanupFailure{CleanupFault::journal, written.error()};
        entry.undoTemporary = std::move(temporary);
        entry.state = EntryState::undoIntended;
        wrote_ = true;
        return {};
    }

    void act(const Turn& turn)
    {
        if (outcome_.journalError)
            return;
        if (turn.obstacle)
            return tell(turn.at, {turn.obstacle, {}, true});
        if (stopped())
            return finish(turn.at, EntryState::done);
        const JournalEntry& entry = entries_[turn.at];
        const StepOutcome step = entry.intent.action == CleanupAction::link ? splitLink(entry, ports_, cancel_)
                                                                            : bringFromTrash(entry, ports_);
        if (!step.failure)
            restored_.push_back(turn.at);
        else if (step.decided)
            finish(turn.at, EntryState::done);
        tell(turn.at, step);
    }

    // Only when the device has the names, lest the journal know of files that a loss of power took back.
    void finishRestored()
    {
        std::set<std::filesystem::path> folders;
        for (const std::size_t at : restored_)
            folders.insert(entries_[at].intent.item.parent_path());
        std::set<std::filesystem::path> unsure;
        for (const std::filesystem::path& path : folders) {
            const auto folder = ports_.held.openFolder(path);
            if (!folder || !folder.value()->flush())
                unsure.insert(path);
        }
        for (const std::size_t at : restored_) {
            if (!unsure.contains(entries_[at].intent.item.parent_path()))
                finish(at, EntryState::undone);
        }
    }

    void finish(std::size_t at, EntryState state)
    {
        if (!outcome_.journalError && journalled(writer_.finishUndo(EntryNumber(at), state)))
            entries_[at].state = state;
    }

    void tell(std::size_t at, const StepOutcome& step)
    {
        if (step.failure && step.failure->error.kind == ErrorKind::cancelled) {
            outcome_.cancelled = true;
            return;
        }
        const JournalEntry& entry = entries_[at];
        outcome_.failed += step.failure ? 1 : 0;
        outcome_.restored += step.failure ? 0 : 1;
        if (!step.failure && entry.intent.itemWas.kind == FileKind::regular)
            outcome_.bytes += entry.intent.itemWas.size.bytes;
        if (told_)
            told_({EntryNumber(at), entry.intent.item, entry.intent.action, entry.link, step.failure,
                   step.metadataNotKept});
    }

    void end()
    {
        if (wrote_ && !outcome_.journalError && std::none_of(entries_.begin(), entries_.end(), isUndecided))
            run_.ended = journalled(writer_.end());
    }

    std::vector<JournalEntry>& entries_;
    JournalRun& run_;
    JournalWriter& writer_;
    const PassPorts& ports_;
    const std::function<void(const UndoneItem&)>& told_;
    const CancelFlag& cancel_;
    bool wrote_ = false;
    std::vector<Turn> turns_;
    std::vector<std::size_t> restored_;
    UndoOutcome outcome_;
};

}  // namespace

UndoOutcome undoRun(Journals::Opened& opened, const PassPorts& ports, const UndoFilter& filter,
                    const std::function<void(const UndoneItem&)>& told, const CancelFlag& cancel)
{
    return Undo(opened, ports, told, cancel).run(filter);
}

}  // namespace kelvane
