#include "platform/windows/owners.h"

#include <memory>
#include <span>
#include <windows.h>

#include <aclapi.h>

#include "base/crc32.h"
#include "platform/windows/os_error.h"
#include "platform/windows/wide_text.h"

namespace kelvane::windows_os {
namespace {

struct FreeLocal {
    void operator()(void* memory) const { ::LocalFree(memory); }
};

}  // namespace

std::uint32_t Owners::ownerOf(const std::wstring& systemPath)
{
    PSID owner = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (::GetNamedSecurityInfoW(systemPath.c_str(), SE_FILE_OBJECT, OWNER_SECURITY_INFORMATION, &owner, nullptr,
                                nullptr, nullptr, &descriptor) != ERROR_SUCCESS)
        return 0;
    const std::unique_ptr<void, FreeLocal> freed(descriptor);
    if (!owner || !::IsValidSid(owner))
        return 0;
    const std::span bytes(static_cast<const std::byte*>(owner), ::GetLengthSid(owner));
    const std::uint32_t number = crc32(bytes);
    const std::lock_guard lock(mutex_);
    identifiers_.try_emplace(number, bytes.begin(), bytes.end());
    return number;
}

Result<std::u16string> Owners::nameOf(std::uint32_t owner)
{
    std::vector<std::byte> identifier;
    {
        const std::lock_guard lock(mutex_);
        const auto found = identifiers_.find(owner);
        if (found == identifiers_.end())
            return osError(ERROR_NOT_FOUND);
        identifier = found->second;
    }
    wchar_t name[256], domain[256];
    DWORD nameSize = 256, domainSize = 256;
    SID_NAME_USE use{};
    if (::LookupAccountSidW(nullptr, identifier.data(), name, &nameSize, domain, &domainSize, &use) == 0)
        return lastError();
    return fromWide(name);
}

}  // namespace kelvane::windows_os
