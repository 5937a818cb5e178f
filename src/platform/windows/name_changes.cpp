#include "platform/windows/name_changes.h"

#include <cstddef>
#include <cstring>
#include <memory>

#include "platform/windows/file_facts.h"
#include "platform/windows/os_error.h"

namespace kelvane::windows_os {
namespace {

// Published values that the headers of the tool chain keep to themselves: since Windows 10 1607, the read-only bits
// since 1809.
constexpr auto dispositionEx = static_cast<FILE_INFO_BY_HANDLE_CLASS>(21);
constexpr auto renameEx = static_cast<FILE_INFO_BY_HANDLE_CLASS>(22);
constexpr DWORD removing = 0x1, atOnce = 0x2, alsoReadOnlyFile = 0x10;
constexpr DWORD replacing = 0x1, alsoOpenOnes = 0x2, alsoReadOnlyTarget = 0x40;

constexpr DWORD toRename = DELETE | SYNCHRONIZE;

struct RenameRequest {
    DWORD flags;
    HANDLE root;
    DWORD nameBytes;
    wchar_t name[1];
};
static_assert(offsetof(RenameRequest, name) == offsetof(FILE_RENAME_INFO, FileName));

// The system or the file system does not know what it was asked for.
bool isUnknown(DWORD code)
{
    return code == ERROR_INVALID_PARAMETER || code == ERROR_NOT_SUPPORTED || code == ERROR_INVALID_FUNCTION ||
           code == ERROR_INVALID_LEVEL;
}

DWORD codeOf(BOOL done)
{
    return done != 0 ? ERROR_SUCCESS : ::GetLastError();
}

Status statusOf(DWORD code)
{
    return code == ERROR_SUCCESS ? Status() : Status(osError(code));
}

DWORD renameByHandle(HANDLE file, const std::wstring& to, DWORD flags)
{
    const std::size_t nameBytes = to.size() * sizeof(wchar_t);
    const std::size_t size = sizeof(RenameRequest) + nameBytes;
    const auto buffer = std::make_unique<std::uint64_t[]>(size / sizeof(std::uint64_t) + 1);
    const auto request = reinterpret_cast<RenameRequest*>(buffer.get());
    request->flags = flags;
    request->nameBytes = static_cast<DWORD>(nameBytes);
    std::memcpy(request->name, to.data(), nameBytes);
    return codeOf(::SetFileInformationByHandle(file, renameEx, request, static_cast<DWORD>(size)));
}

// The attributes of a file without the read-only bit while it lives; they belong to the file and so to all its names.
class WritableMeanwhile {
public:
    explicit WritableMeanwhile(HANDLE file) : file_(file)
    {
        if (::GetFileInformationByHandleEx(file, FileBasicInfo, &before_, sizeof before_) == 0 ||
            (before_.FileAttributes & FILE_ATTRIBUTE_READONLY) == 0)
            return;
        changed_ = set(before_.FileAttributes & ~DWORD{FILE_ATTRIBUTE_READONLY});
    }
    WritableMeanwhile(const WritableMeanwhile&) = delete;
    WritableMeanwhile& operator=(const WritableMeanwhile&) = delete;
    // Also when the name is gone: the file may have others.
    ~WritableMeanwhile()
    {
        if (changed_)
            set(before_.FileAttributes);
    }

    [[nodiscard]] bool changed() const { return changed_; }

private:
    bool set(DWORD attributes)
    {
        FILE_BASIC_INFO info{};  // times of 0 stay as they are
        info.FileAttributes = attributes != 0 ? attributes : DWORD{FILE_ATTRIBUTE_NORMAL};
        return ::SetFileInformationByHandle(file_, FileBasicInfo, &info, sizeof info) != 0;
    }

    HANDLE file_;
    FILE_BASIC_INFO before_{};
    bool changed_ = false;
};

Handle openItself(const std::wstring& name, DWORD access)
{
    return Handle(openToLook(name, false, access));
}

DWORD replaceByPath(const std::wstring& from, const std::wstring& to)
{
    return codeOf(::MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH));
}

// An older system that knows this rename but not the bit for read-only targets.
DWORD replaceOpenWritable(HANDLE file, const std::wstring& to)
{
    const Handle target = openItself(to, FILE_READ_ATTRIBUTES | FILE_WRITE_ATTRIBUTES);
    if (!target.valid())
        return renameByHandle(file, to, replacing | alsoOpenOnes);
    const WritableMeanwhile writable(target.get());
    return renameByHandle(file, to, replacing | alsoOpenOnes);
}

DWORD removeByDisposition(HANDLE file)
{
    const WritableMeanwhile writable(file);
    FILE_DISPOSITION_INFO request{TRUE};
    return codeOf(::SetFileInformationByHandle(file, FileDispositionInfo, &request, sizeof request));
}

}  // namespace

Status renameFile(const std::wstring& from, const std::wstring& to)
{
    return statusOf(codeOf(::MoveFileExW(from.c_str(), to.c_str(), 0)));
}

Status replaceOpenFile(const std::wstring& from, const std::wstring& to)
{
    const Handle file = openItself(from, toRename | FILE_READ_ATTRIBUTES);
    if (!file.valid())
        return lastError();
    if (leadsTo(to, file.get()))
        return {};
    DWORD code = renameByHandle(file.get(), to, replacing | alsoOpenOnes | alsoReadOnlyTarget);
    if (isUnknown(code))
        code = replaceOpenWritable(file.get(), to);
    return statusOf(isUnknown(code) ? DWORD{ERROR_NOT_SUPPORTED} : code);
}

// This call refuses read-only targets, and open ones, so that the attribute goes by the name; what failed puts it back.
Status replaceClosedFile(const std::wstring& from, const std::wstring& to)
{
    const DWORD attributes = ::GetFileAttributesW(to.c_str());
    const bool isReadOnly = attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0;
    if (!isReadOnly)
        return statusOf(replaceByPath(from, to));
    if (::SetFileAttributesW(to.c_str(), attributes & ~DWORD{FILE_ATTRIBUTE_READONLY}) == 0)
        return lastError();
    const DWORD code = replaceByPath(from, to);
    if (code != ERROR_SUCCESS)
        ::SetFileAttributesW(to.c_str(), attributes);
    return statusOf(code);
}

Handle openToRemove(const std::wstring& name)
{
    constexpr DWORD looking = DELETE | FILE_READ_ATTRIBUTES;
    Handle file = openItself(name, looking | FILE_WRITE_ATTRIBUTES);
    // The right to change attributes is only needed where the system cannot remove a read-only file as it is.
    return file.valid() || ::GetLastError() != ERROR_ACCESS_DENIED ? std::move(file) : openItself(name, looking);
}

Status removeOpen(HANDLE file)
{
    DWORD request = removing | atOnce | alsoReadOnlyFile;
    const DWORD code = codeOf(::SetFileInformationByHandle(file, dispositionEx, &request, sizeof request));
    return statusOf(isUnknown(code) ? removeByDisposition(file) : code);
}

}  // namespace kelvane::windows_os
