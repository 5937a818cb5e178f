#include "platform/windows/file_facts.h"

#include <cstring>

#include "platform/windows/handle.h"
#include "platform/windows/os_error.h"

namespace kelvane::windows_os {
namespace {

// Sockets and what the Linux subsystem keeps in files; their published tags.
constexpr DWORD tagSocket = 0x80000023;
constexpr DWORD tagPipe = 0x80000024;
constexpr DWORD tagCharacterDevice = 0x80000025;
constexpr DWORD tagBlockDevice = 0x80000026;

DWORD reparseTagOf(HANDLE file)
{
    FILE_ATTRIBUTE_TAG_INFO tag{};
    return ::GetFileInformationByHandleEx(file, FileAttributeTagInfo, &tag, sizeof tag) != 0 ? tag.ReparseTag : 0;
}

std::uint64_t joined(DWORD high, DWORD low)
{
    return std::uint64_t{high} << 32 | low;
}

bool readFacts(HANDLE file, BY_HANDLE_FILE_INFORMATION& facts)
{
    return ::GetFileInformationByHandle(file, &facts) != 0;
}

std::optional<FILE_ID_128> wideIdOf(HANDLE file)
{
    FILE_ID_INFO id{};
    if (::GetFileInformationByHandleEx(file, FileIdInfo, &id, sizeof id) == 0)
        return std::nullopt;
    std::uint64_t high = 0;
    std::memcpy(&high, id.FileId.Identifier + 8, sizeof high);
    return high != 0 ? std::optional(id.FileId) : std::nullopt;
}

FileIdentity identityOf(HANDLE file, const BY_HANDLE_FILE_INFORMATION& facts)
{
    const auto wide = wideIdOf(file);
    return {facts.dwVolumeSerialNumber, wide ? foldedIndex(*wide) : joined(facts.nFileIndexHigh, facts.nFileIndexLow)};
}

FileInfo infoFrom(HANDLE file, const BY_HANDLE_FILE_INFORMATION& facts)
{
    FileInfo info;
    const bool isReparsePoint = (facts.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
    info.kind = kindOf(facts.dwFileAttributes, isReparsePoint ? reparseTagOf(file) : 0);
    info.attributes = facts.dwFileAttributes;
    if (info.kind != FileKind::folder)
        info.size = {joined(facts.nFileSizeHigh, facts.nFileSizeLow)};
    info.modified = timeOf(facts.ftLastWriteTime);
    info.identity = identityOf(file, facts);
    return info;
}

}  // namespace

FileKind kindOf(DWORD attributes, DWORD reparseTag) noexcept
{
    if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 && IsReparseTagNameSurrogate(reparseTag))
        return FileKind::link;
    if (reparseTag >= tagSocket && reparseTag <= tagBlockDevice)
        return FileKind::other;
    static_assert(tagPipe == tagSocket + 1 && tagCharacterDevice == tagSocket + 2 && tagBlockDevice == tagSocket + 3);
    if ((attributes & FILE_ATTRIBUTE_DEVICE) != 0)
        return FileKind::other;
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? FileKind::folder : FileKind::regular;
}

FileTime timeOf(LARGE_INTEGER time) noexcept
{
    return {time.QuadPart};
}

FileTime timeOf(FILETIME time) noexcept
{
    return {static_cast<std::int64_t>(joined(time.dwHighDateTime, time.dwLowDateTime))};
}

Result<FileInfo> infoOf(HANDLE file)
{
    BY_HANDLE_FILE_INFORMATION facts{};
    if (!readFacts(file, facts))
        return lastError();
    return infoFrom(file, facts);
}

Result<FileDetails> detailsOf(HANDLE file)
{
    BY_HANDLE_FILE_INFORMATION facts{};
    FILE_BASIC_INFO basic{};
    FILE_STANDARD_INFO standard{};
    if (!readFacts(file, facts) || !::GetFileInformationByHandleEx(file, FileBasicInfo, &basic, sizeof basic) ||
        !::GetFileInformationByHandleEx(file, FileStandardInfo, &standard, sizeof standard))
        return lastError();
    FileDetails details;
    static_cast<FileInfo&>(details) = infoFrom(file, facts);
    details.created = timeOf(basic.CreationTime);
    details.accessed = timeOf(basic.LastAccessTime);
    details.changed = timeOf(basic.ChangeTime);
    details.links = facts.nNumberOfLinks;
    details.allocated = {static_cast<std::uint64_t>(standard.AllocationSize.QuadPart)};
    return details;
}

FileIdentity identityOf(HANDLE file)
{
    BY_HANDLE_FILE_INFORMATION facts{};
    return readFacts(file, facts) ? identityOf(file, facts) : FileIdentity{};
}

bool hasWideIdentities(HANDLE file)
{
    return wideIdOf(file).has_value();
}

std::uint64_t foldedIndex(const FILE_ID_128& id) noexcept
{
    std::uint64_t low = 0, high = 0;
    std::memcpy(&low, id.Identifier, sizeof low);
    std::memcpy(&high, id.Identifier + 8, sizeof high);
    return low ^ high * 0x9E3779B97F4A7C15;  // the golden ratio, so that counting up in both halves stays apart
}

HANDLE openToLook(const std::wstring& systemPath, bool followLinks, DWORD access)
{
    const DWORD flags = FILE_FLAG_BACKUP_SEMANTICS | (followLinks ? 0 : FILE_FLAG_OPEN_REPARSE_POINT);
    return ::CreateFileW(systemPath.c_str(), access, shareAll, nullptr, OPEN_EXISTING, flags, nullptr);
}

bool leadsTo(const std::wstring& systemPath, HANDLE file)
{
    const Handle found(openToLook(systemPath, false));
    const FileIdentity identity = identityOf(file);
    return found.valid() && identity.known() && identityOf(found.get()) == identity;
}

Result<FileDetails> lookUp(const std::wstring& systemPath, bool followLinks)
{
    const Handle itself(openToLook(systemPath, false));
    if (!itself.valid())
        return lastError();
    auto details = detailsOf(itself.get());
    if (!details || !followLinks || details->kind != FileKind::link)
        return details;
    const Handle target(openToLook(systemPath, true));
    if (!target.valid())
        return lastError();
    details = detailsOf(target.get());
    if (details)
        details->attributes |= attribute::reparsePoint;
    return details;
}

}  // namespace kelvane::windows_os
