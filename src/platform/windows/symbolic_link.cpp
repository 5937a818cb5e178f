#include "platform/windows/symbolic_link.h"

#include <cstring>
#include <memory>
#include <windows.h>

#include <winioctl.h>

#include "platform/windows/file_facts.h"
#include "platform/windows/handle.h"
#include "platform/windows/os_error.h"

namespace kelvane::windows_os {
namespace {

// Lets a person in developer mode make links without an administrator's rights; known since Windows 10 1703.
constexpr DWORD allowUnprivileged = 0x2;

constexpr std::size_t headerBytes = 8;  // tag, length, reserved
constexpr std::wstring_view systemForm = LR"(\??\)";

bool make(const std::wstring& link, const std::filesystem::path& target, DWORD flags)
{
    return ::CreateSymbolicLinkW(link.c_str(), target.c_str(), flags) != 0;
}

template <class Number>
std::optional<Number> numberAt(std::span<const std::byte> bytes, std::size_t offset)
{
    Number number = 0;
    if (offset + sizeof number > bytes.size())
        return std::nullopt;
    std::memcpy(&number, bytes.data() + offset, sizeof number);
    return number;
}

// Offset and length in bytes, standing at `field`; the offset counts from `names`.
std::optional<std::wstring> nameAt(std::span<const std::byte> bytes, std::size_t field, std::size_t names)
{
    const auto offset = numberAt<std::uint16_t>(bytes, field);
    const auto length = numberAt<std::uint16_t>(bytes, field + 2);
    if (!offset || !length || *length % sizeof(wchar_t) != 0 || names + *offset + *length > bytes.size())
        return std::nullopt;
    std::wstring text(*length / sizeof(wchar_t), L'\0');
    std::memcpy(text.data(), bytes.data() + names + *offset, *length);
    return text;
}

}  // namespace

Status createSymbolicLink(const std::wstring& name, const std::filesystem::path& target, bool toFolder)
{
    const DWORD kind = toFolder ? SYMBOLIC_LINK_FLAG_DIRECTORY : 0;
    if (make(name, target, kind | allowUnprivileged))
        return {};
    // Older systems refuse a flag that they do not know.
    if (::GetLastError() == ERROR_INVALID_PARAMETER && make(name, target, kind))
        return {};
    return lastError();
}

std::optional<std::filesystem::path> linkTarget(std::span<const std::byte> reparseData)
{
    const auto tag = numberAt<DWORD>(reparseData, 0);
    if (tag != IO_REPARSE_TAG_SYMLINK && tag != IO_REPARSE_TAG_MOUNT_POINT)
        return std::nullopt;
    // Two names, the system's and the one to show, and for symbolic links their flags; then the text of both.
    const std::size_t names = headerBytes + 8 + (tag == IO_REPARSE_TAG_SYMLINK ? 4 : 0);
    const auto shown = nameAt(reparseData, headerBytes + 4, names);
    if (shown && !shown->empty())
        return *shown;
    auto used = nameAt(reparseData, headerBytes, names);
    if (!used || used->empty())
        return std::nullopt;
    if (used->starts_with(systemForm))
        used->erase(0, systemForm.size());
    return *used;
}

Result<std::filesystem::path> readSymbolicLink(const std::wstring& name)
{
    const Handle link(openToLook(name, false));
    if (!link.valid())
        return lastError();
    const auto buffer = std::make_unique<std::byte[]>(MAXIMUM_REPARSE_DATA_BUFFER_SIZE);
    DWORD got = 0;
    if (::DeviceIoControl(link.get(), FSCTL_GET_REPARSE_POINT, nullptr, 0, buffer.get(),
                          MAXIMUM_REPARSE_DATA_BUFFER_SIZE, &got, nullptr) == 0) {
        if (::GetLastError() != ERROR_NOT_A_REPARSE_POINT)
            return lastError();
        return Error{ErrorKind::wrongType, ERROR_NOT_A_REPARSE_POINT, "not a link"};
    }
    const auto target = linkTarget({buffer.get(), got});
    return target ? Result<std::filesystem::path>(*target)
                  : Error{ErrorKind::wrongType, ERROR_REPARSE_TAG_MISMATCH, "not a link"};
}

}  // namespace kelvane::windows_os
