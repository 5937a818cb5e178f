#include "platform/windows/file_access.h"

#include <memory>
#include <windows.h>

#include <aclapi.h>

#include "platform/windows/os_error.h"
#include "platform/windows/system_path.h"

namespace kelvane::windows_os {
namespace {

struct FreeLocal {
    void operator()(void* memory) const { ::LocalFree(memory); }
};

bool isProtected(PSECURITY_DESCRIPTOR descriptor)
{
    SECURITY_DESCRIPTOR_CONTROL control = 0;
    DWORD revision = 0;
    return ::GetSecurityDescriptorControl(descriptor, &control, &revision) != 0 && (control & SE_DACL_PROTECTED) != 0;
}

// File systems without access rights, and callers who may not change them, leave the file with what it has.
Status answer(DWORD code)
{
    if (code == ERROR_SUCCESS || code == ERROR_ACCESS_DENIED || code == ERROR_NOT_SUPPORTED ||
        code == ERROR_INVALID_FUNCTION)
        return {};
    return osError(code);
}

}  // namespace

Status copyAccessRights(const std::filesystem::path& from, const std::filesystem::path& to)
{
    PACL list = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    const DWORD read = ::GetNamedSecurityInfoW(systemPath(from).c_str(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION,
                                               nullptr, nullptr, &list, nullptr, &descriptor);
    const std::unique_ptr<void, FreeLocal> freed(descriptor);
    if (read != ERROR_SUCCESS)
        return answer(read);
    const SECURITY_INFORMATION parts =
        DACL_SECURITY_INFORMATION |
        (isProtected(descriptor) ? PROTECTED_DACL_SECURITY_INFORMATION : UNPROTECTED_DACL_SECURITY_INFORMATION);
    std::wstring target = systemPath(to);
    return answer(::SetNamedSecurityInfoW(target.data(), SE_FILE_OBJECT, parts, nullptr, nullptr, list, nullptr));
}

}  // namespace kelvane::windows_os
