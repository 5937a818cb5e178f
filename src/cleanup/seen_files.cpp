#include "cleanup/seen_files.h"

namespace kelvane {

bool isAsSeen(const FileInfo& now, const FileInfo& then)
{
    const bool identified = now.identity.known() && then.identity.known();
    if (now.kind != then.kind || now.modified != then.modified || (identified && now.identity != then.identity))
        return false;
    return then.kind == FileKind::folder || now.size == then.size;
}

bool areOneFile(FileIdentity a, FileIdentity b)
{
    return a.known() && a == b;
}

CleanupFailure lookFailure(const Error& error, CleanupFault changed)
{
    const bool other =
        error.kind == ErrorKind::notFound || error.kind == ErrorKind::wrongType || error.kind == ErrorKind::changed;
    return {other ? changed : CleanupFault::system, error};
}

ItemPlace placeOf(const ShellItem& item)
{
    // A root's name is its whole path.
    if (item.parent() == nullptr)
        return placeOf(item.path());
    return {item.parent()->path(), NativeString(item.name())};
}

ItemPlace placeOf(const std::filesystem::path& path)
{
    return {path.parent_path(), path.filename().native()};
}

bool isSeenThroughLink(const ShellItem& item)
{
    return item.isReparsePoint() && item.info().kind != FileKind::link;
}

}  // namespace kelvane
