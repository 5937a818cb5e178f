#include "cleanup/settle_place.h"

#include "cleanup/guards.h"

namespace kelvane {
namespace {

// A file that is not there holds nothing; one that cannot be looked at may.
Result<bool> unlessMissing(const Error& error)
{
    return error.kind == ErrorKind::notFound || error.kind == ErrorKind::wrongType ? Result<bool>(false) : error;
}

}  // namespace

bool isThatFile(const FileInfo& now, const FileStamp& was)
{
    const bool sameLooks = now.size == was.size && now.modified == was.modified;
    if (now.kind != was.kind)
        return false;
    if (!was.identity.known() || !now.identity.known())
        return sameLooks;
    return now.identity == was.identity || (now.identity.index == was.identity.index && sameLooks);
}

bool folderIsGone(const std::filesystem::path& item, const FileStamp& was, FileSystem& files)
{
    for (std::filesystem::path folder = item.parent_path();; folder = folder.parent_path()) {
        const auto there = files.details(folder, Links::followed);
        if (there)
            return folder != item.parent_path() && there->identity.volume == was.identity.volume;
        if (there.error().kind != ErrorKind::notFound || folder == folder.parent_path())
            return false;
    }
}

EntryPlace::EntryPlace(const JournalEntry& entry, const PassPorts& ports)
    : entry_(entry), ports_(ports), name_(entry.intent.item.filename().native())
{
}

Status EntryPlace::open()
{
    auto folder = ports_.held.openFolder(entry_.intent.item.parent_path());
    if (!folder)
        return folder.error();
    folder_ = std::move(*folder);
    return {};
}

std::filesystem::path EntryPlace::pathOf(const NativeString& name) const
{
    return name.empty() ? std::filesystem::path() : entry_.intent.item.parent_path() / name;
}

Result<Found> EntryPlace::at(const NativeString& name) const
{
    if (name.empty())
        return Found::nothing;
    const auto now = folder_->look(name);
    if (!now)
        return now.error().kind == ErrorKind::notFound ? Result<Found>(Found::nothing) : now.error();
    const JournalIntent& intent = entry_.intent;
    if (isThatFile(*now, intent.itemWas))
        return Found::old;
    if (now->kind == FileKind::link)
        return leadsToKept(name) ? Found::symbolicLink : Found::other;
    const bool oneVolume = intent.itemWas.identity.volume == intent.keptWas.identity.volume;
    return oneVolume && intent.keptWas.identity.known() && isThatFile(*now, intent.keptWas) ? Found::hardLink
                                                                                            : Found::other;
}

bool EntryPlace::leadsToKept(const NativeString& name) const
{
    const auto target = folder_->readLink(name);
    if (target && *target == entry_.intent.kept)
        return true;
    const auto leadsTo = ports_.files.details(pathOf(name), Links::followed);
    return leadsTo && entry_.intent.keptWas.identity.known() && isThatFile(*leadsTo, entry_.intent.keptWas);
}

Result<std::unique_ptr<HeldFile>> EntryPlace::openKept() const
{
    const std::filesystem::path& kept = entry_.intent.kept;
    const auto folder = ports_.held.openFolder(kept.parent_path());
    return folder ? folder.value()->open(kept.filename().native()) : folder.error();
}

Result<std::unique_ptr<HeldFile>> EntryPlace::contentOf(const NativeString& name)
{
    auto own = folder_->open(name);
    return own || own.error().kind != ErrorKind::wrongType ? std::move(own) : openKept();
}

Result<bool> EntryPlace::sameContent(const NativeString& a, const NativeString& b)
{
    const auto fileA = contentOf(a);
    const auto fileB = contentOf(b);
    if (!fileA || !fileB)
        return unlessMissing(fileA ? fileB.error() : fileA.error());
    if ((*fileA)->isBeingWritten() || (*fileB)->isBeingWritten())
        return false;
    return sameContents(**fileA, **fileB, CancelFlag());
}

Result<bool> EntryPlace::hasAnotherName(const NativeString& name) const
{
    const auto now = folder_->look(name);
    if (!now)
        return now.error();
    if (now->links > 1)
        return true;
    // Some systems do not count names.
    const auto kept = openKept();
    if (!kept)
        return unlessMissing(kept.error());
    const auto keptNow = (*kept)->details();
    if (!keptNow)
        return keptNow.error();
    return now->identity.known() && keptNow->identity == now->identity && pathOf(name) != entry_.intent.kept;
}

Status EntryPlace::drop(const NativeString& name)
{
    const Status removed = folder_->remove(name);
    return removed || removed.error().kind == ErrorKind::notFound ? Status() : removed;
}

Verdict EntryPlace::undecided(CleanupFault fault, const Error& error, const NativeString& left) const
{
    return {std::nullopt, LinkKind::none, Unsettled{entry_.intent.item, pathOf(left), {fault, error}}};
}

Verdict EntryPlace::decidedBut(EntryState state, CleanupFault fault, const NativeString& left) const
{
    return {state, LinkKind::none, Unsettled{entry_.intent.item, pathOf(left), {fault, {}}}};
}

}  // namespace kelvane
