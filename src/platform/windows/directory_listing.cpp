#include "platform/windows/directory_listing.h"

#include <memory>
#include <windows.h>

#include "platform/windows/file_facts.h"
#include "platform/windows/handle.h"
#include "platform/windows/os_error.h"
#include "platform/windows/system_path.h"

namespace kelvane::windows_os {
namespace {

bool isDots(std::wstring_view name)
{
    return name == L"." || name == L"..";
}

// Gives entries to the sink, links followed where that is asked for.
class EntryGiver {
public:
    EntryGiver(std::wstring folder, Links links, const FileSystem::EntrySink& sink)
        : folder_(std::move(folder)), links_(links), sink_(sink)
    {
        if (!folder_.ends_with(L'\\'))
            folder_ += L'\\';
    }

    // False when the sink has had enough.
    [[nodiscard]] bool give(std::wstring_view name, FileInfo info)
    {
        if (isDots(name))
            return true;
        if (info.kind == FileKind::folder)
            info.size = {};
        if (info.kind == FileKind::link && links_ == Links::followed) {
            const auto target = lookUp(folder_ + std::wstring(name), true);
            if (target)
                info = static_cast<const FileInfo&>(*target);
        }
        return sink_({name, info});
    }

private:
    std::wstring folder_;
    Links links_;
    const FileSystem::EntrySink& sink_;
};

std::uint64_t indexOf(const FILE_ID_BOTH_DIR_INFO& entry)
{
    return static_cast<std::uint64_t>(entry.FileId.QuadPart);
}

std::uint64_t indexOf(const FILE_ID_EXTD_DIR_INFO& entry)
{
    return foldedIndex(entry.FileId);
}

// Of an entry with a reparse point the size of its attributes is the reparse point's tag.
DWORD tagOf(const FILE_ID_BOTH_DIR_INFO& entry)
{
    return (entry.FileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 ? entry.EaSize : 0;
}

DWORD tagOf(const FILE_ID_EXTD_DIR_INFO& entry)
{
    return entry.ReparsePointTag;
}

// Whole batches from the open folder, identities included. Entry is one of the system's two records.
template <class Entry>
class Listing {
public:
    Listing(HANDLE folder, FILE_INFO_BY_HANDLE_CLASS first, FILE_INFO_BY_HANDLE_CLASS next, EntryGiver& giver)
        : folder_(folder), class_(first), next_(next), volume_(identityOf(folder).volume), giver_(giver)
    {
    }

    [[nodiscard]] Status run()
    {
        constexpr DWORD size = 64 * 1024;
        const auto buffer = std::make_unique<std::uint64_t[]>(size / sizeof(std::uint64_t));
        for (;; class_ = next_) {
            if (::GetFileInformationByHandleEx(folder_, class_, buffer.get(), size) == 0)
                return ::GetLastError() == ERROR_NO_MORE_FILES ? Status() : Status(lastError());
            if (!giveAll(reinterpret_cast<const std::byte*>(buffer.get())))
                return {};
        }
    }

private:
    [[nodiscard]] bool giveAll(const std::byte* at)
    {
        for (;;) {
            const auto& entry = *reinterpret_cast<const Entry*>(at);
            if (!giver_.give({entry.FileName, entry.FileNameLength / sizeof(wchar_t)}, infoOf(entry)))
                return false;
            if (entry.NextEntryOffset == 0)
                return true;
            at += entry.NextEntryOffset;
        }
    }

    [[nodiscard]] FileInfo infoOf(const Entry& entry) const
    {
        FileInfo info;
        info.kind = kindOf(entry.FileAttributes, tagOf(entry));
        info.attributes = entry.FileAttributes;
        info.size = {static_cast<std::uint64_t>(entry.EndOfFile.QuadPart)};
        info.modified = timeOf(entry.LastWriteTime);
        if (const std::uint64_t index = indexOf(entry); index != 0)
            info.identity = {volume_, index};
        return info;
    }

    HANDLE folder_;
    FILE_INFO_BY_HANDLE_CLASS class_;
    FILE_INFO_BY_HANDLE_CLASS next_;
    std::uint64_t volume_;
    EntryGiver& giver_;
};

FileInfo infoOf(const WIN32_FIND_DATAW& entry)
{
    FileInfo info;
    const bool isReparsePoint = (entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
    info.kind = kindOf(entry.dwFileAttributes, isReparsePoint ? entry.dwReserved0 : 0);
    info.attributes = entry.dwFileAttributes;
    info.size = {std::uint64_t{entry.nFileSizeHigh} << 32 | entry.nFileSizeLow};
    info.modified = timeOf(entry.ftLastWriteTime);
    return info;
}

// What a server answers that does not know the question.
bool isUnknownQuestion(const Error& error)
{
    return error.systemCode == ERROR_INVALID_PARAMETER || error.systemCode == ERROR_NOT_SUPPORTED ||
           error.systemCode == ERROR_INVALID_FUNCTION || error.systemCode == ERROR_INVALID_LEVEL;
}

Status listOpen(HANDLE folder, EntryGiver& giver)
{
    if (hasWideIdentities(folder))
        return Listing<FILE_ID_EXTD_DIR_INFO>(folder, FileIdExtdDirectoryRestartInfo, FileIdExtdDirectoryInfo, giver)
            .run();
    return Listing<FILE_ID_BOTH_DIR_INFO>(folder, FileIdBothDirectoryRestartInfo, FileIdBothDirectoryInfo, giver).run();
}

}  // namespace

Status listWithoutIdentities(const std::filesystem::path& folder, Links links, const FileSystem::EntrySink& sink)
{
    const std::wstring path = systemPath(folder);
    EntryGiver giver(path, links, sink);
    WIN32_FIND_DATAW entry{};
    const std::wstring pattern = path + (path.ends_with(L'\\') ? L"*" : L"\\*");
    const FindHandle search(::FindFirstFileExW(pattern.c_str(), FindExInfoBasic, &entry, FindExSearchNameMatch, nullptr,
                                               FIND_FIRST_EX_LARGE_FETCH));
    if (!search.valid())
        return ::GetLastError() == ERROR_FILE_NOT_FOUND ? Status() : Status(lastError());
    do {
        if (!giver.give(entry.cFileName, infoOf(entry)))
            return {};
    } while (::FindNextFileW(search.get(), &entry) != 0);
    return ::GetLastError() == ERROR_NO_MORE_FILES ? Status() : Status(lastError());
}

Status listFolder(const std::filesystem::path& folder, Links links, const FileSystem::EntrySink& sink)
{
    const std::wstring path = systemPath(folder);
    const Handle handle(openToLook(path, true, FILE_LIST_DIRECTORY | FILE_READ_ATTRIBUTES));
    if (!handle.valid())
        return lastError();
    const auto info = infoOf(handle.get());
    if (!info)
        return info.error();
    if (info->kind != FileKind::folder)
        return Error{ErrorKind::wrongType, ERROR_DIRECTORY, "not a folder"};
    bool begun = false;
    const FileSystem::EntrySink noting = [&](const DirectoryEntry& entry) {
        begun = true;
        return sink(entry);
    };
    EntryGiver giver(path, links, noting);
    Status status = listOpen(handle.get(), giver);
    if (!status.ok() && !begun && isUnknownQuestion(status.error()))
        return listWithoutIdentities(folder, links, sink);
    return status;
}

}  // namespace kelvane::windows_os
