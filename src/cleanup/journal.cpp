#include "cleanup/journal.h"

#include <algorithm>
#include <limits>

#include "cleanup/journal_writer.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

constexpr std::size_t endedRunsKept = 100;
constexpr std::uint32_t longestWait = 5000;  // ms: choosing a number takes next to no time

Result<std::vector<JournalName>> namesIn(FileSystem& files, const std::filesystem::path& folder)
{
    std::vector<JournalName> names;
    const Status listed = files.enumerate(folder, Links::asThemselves, [&](const DirectoryEntry& entry) {
        if (const auto name = journalNameOf(entry.name); name && entry.info.kind == FileKind::regular)
            names.push_back(*name);
        return true;
    });
    if (!listed && listed.error().kind != ErrorKind::notFound)
        return listed.error();
    std::sort(names.begin(), names.end(), [](const JournalName& a, const JournalName& b) {
        return a.number != b.number ? a.number < b.number : a.ended < b.ended;
    });
    return names;
}

std::vector<RunNumber> numbersOf(const std::vector<JournalName>& names)
{
    std::vector<RunNumber> numbers;
    for (const JournalName& name : names) {
        if (numbers.empty() || numbers.back() != name.number)
            numbers.push_back(name.number);
    }
    return numbers;
}

}  // namespace

FileStamp stampOf(const FileInfo& info)
{
    return {info.identity, info.kind, info.size, info.modified};
}

NativeString asideName(const NativeString& temporary)
{
    return temporary + nativeFromBytes(".old");
}

Journals::Journals(FileSystem& files, FileOutput& output, std::filesystem::path folder)
    : files_(files), output_(output), folder_(std::move(folder))
{
}

Result<std::unique_ptr<FileLock>> Journals::claim()
{
    if (const Status made = output_.createFolders(folder_); !made)
        return made.error();
    auto claimed = output_.lock(folder_ / "clean-up", 0);
    if (!claimed && claimed.error().kind == ErrorKind::tooManyOpen)
        return Error{ErrorKind::tooManyOpen, claimed.error().systemCode, "another clean-up is going on"};
    return claimed;
}

Result<std::unique_ptr<JournalWriter>> Journals::begin(CleanupAction action, FileTime now)
{
    if (const Status made = output_.createFolders(folder_); !made)
        return made.error();
    // One process after the other chooses a number, so that none is given twice, not even that of a run which ends
    // meanwhile and so changes its name.
    const auto turn = output_.lock(folder_ / "runs", longestWait);
    if (!turn)
        return turn.error();
    (void)prune(endedRunsKept - 1);  // old runs that cannot be removed are no reason to refuse a new one
    const auto names = namesIn(files_, folder_);
    if (!names)
        return names.error();
    const std::uint32_t last = names->empty() ? 0 : static_cast<std::uint32_t>(names->back().number);
    if (last == std::numeric_limits<std::uint32_t>::max())
        return Error{ErrorKind::notSupported, 0, "no number is left for another run"};
    const auto number = static_cast<RunNumber>(last + 1);
    JournalFile file(folder_, number);
    auto lock = output_.lock(file.ended(), 0);
    if (!lock)
        return lock.error();
    return beginJournal({files_, output_}, std::move(file), std::move(*lock), number, action, now);
}

Result<Journals::Opened> Journals::reopen(RunNumber number)
{
    JournalFile file(folder_, number);
    auto lock = output_.lock(file.ended(), 0);
    if (!lock)
        return lock.error();
    auto found = findJournal(files_, file, number);
    if (!found)
        return found.error();
    auto writer = continueJournal({files_, output_}, std::move(file), std::move(*lock), *found);
    return Opened{std::move(found->reading.run), std::move(writer)};
}

Result<JournalRun> Journals::read(RunNumber number)
{
    auto found = findJournal(files_, JournalFile(folder_, number), number);
    return found ? Result<JournalRun>(std::move(found->reading.run)) : found.error();
}

Result<std::vector<RunNumber>> Journals::list()
{
    const auto names = namesIn(files_, folder_);
    return names ? Result<std::vector<RunNumber>>(numbersOf(*names)) : names.error();
}

Result<std::vector<RunNumber>> Journals::unfinished()
{
    auto names = namesIn(files_, folder_);
    if (!names)
        return names.error();
    std::erase_if(*names, [](const JournalName& name) { return name.ended; });
    return numbersOf(*names);
}

Status Journals::prune(std::size_t keep)
{
    auto names = namesIn(files_, folder_);
    if (!names)
        return names.error();
    std::erase_if(*names, [](const JournalName& name) { return !name.ended; });
    const std::size_t many = names->size() > keep ? names->size() - keep : 0;
    for (std::size_t i = 0; i < many; ++i) {
        const JournalFile file(folder_, (*names)[i].number);
        const auto lock = output_.lock(file.ended(), 0);
        if (!lock && lock.error().kind == ErrorKind::tooManyOpen)
            continue;
        const Status removed = lock ? output_.remove(file.ended()) : Status(lock.error());
        if (!removed && removed.error().kind != ErrorKind::notFound)
            return removed;
    }
    return {};
}

std::filesystem::path journalFolder(const std::filesystem::path& stateFolder)
{
    return stateFolder / "kelvane" / "cleanups";
}

}  // namespace kelvane
