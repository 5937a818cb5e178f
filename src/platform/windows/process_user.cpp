#include "platform/windows/process_user.h"

#include <cstddef>
#include <vector>

#include "platform/windows/handle.h"

namespace kelvane::windows_os {
namespace {

// The TOKEN_USER of a process, with the identity that it points to; empty when the system does not tell.
std::vector<std::byte> userOf(HANDLE process)
{
    HANDLE opened = nullptr;
    if (::OpenProcessToken(process, TOKEN_QUERY, &opened) == FALSE)
        return {};
    const Handle token(opened);
    DWORD size = 0;
    ::GetTokenInformation(token.get(), TokenUser, nullptr, 0, &size);
    std::vector<std::byte> user(size);
    if (size == 0 || ::GetTokenInformation(token.get(), TokenUser, user.data(), size, &size) == FALSE)
        return {};
    return user;
}

PSID identityIn(const std::vector<std::byte>& user)
{
    return reinterpret_cast<const TOKEN_USER*>(user.data())->User.Sid;
}

bool mayOpenMachineSettings()
{
    HKEY key = nullptr;
    if (::RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"software", 0, KEY_ALL_ACCESS, &key) != ERROR_SUCCESS)
        return false;
    ::RegCloseKey(key);
    return true;
}

}  // namespace

bool runsAsSameUser(DWORD process)
{
    const Handle other(::OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, process));
    if (!other.valid())
        return false;
    const auto theirs = userOf(other.get());
    const auto ours = userOf(::GetCurrentProcess());
    return !theirs.empty() && !ours.empty() && ::EqualSid(identityIn(theirs), identityIn(ours)) != FALSE;
}

bool hasAdministratorsRights()
{
    static const bool rights = mayOpenMachineSettings();
    return rights;
}

}  // namespace kelvane::windows_os
