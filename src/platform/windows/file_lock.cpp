#include "platform/windows/file_lock.h"

#include <algorithm>
#include <windows.h>

#include "platform/windows/handle.h"
#include "platform/windows/os_error.h"
#include "platform/windows/system_path.h"

namespace kelvane::windows_os {
namespace {

constexpr DWORD longestNap = 20;
// A lock that is just going away denies access for a moment, as a folder without the right to write does for good.
constexpr ULONGLONG longestGoing = 200;

class HeldLock final : public FileLock {
public:
    explicit HeldLock(Handle file) : file_(std::move(file)) {}

private:
    Handle file_;
};

// Being the only one who has the file open is the lock; the system removes the file with its holder, however that ends.
Handle tryLock(const std::wstring& name)
{
    return Handle(::CreateFileW(name.c_str(), GENERIC_WRITE | DELETE, 0, nullptr, OPEN_ALWAYS,
                                FILE_ATTRIBUTE_HIDDEN | FILE_FLAG_DELETE_ON_CLOSE | FILE_FLAG_OPEN_REPARSE_POINT,
                                nullptr));
}

}  // namespace

Result<std::unique_ptr<FileLock>> lockBeside(const std::filesystem::path& path, std::uint32_t milliseconds)
{
    const std::wstring name = systemPath(path) + L".kvlock";
    const ULONGLONG begin = ::GetTickCount64();
    for (DWORD nap = 1;; nap = std::min(nap * 2, longestNap)) {
        Handle file = tryLock(name);
        if (file.valid())
            return std::unique_ptr<FileLock>(std::make_unique<HeldLock>(std::move(file)));
        const Error error = lastError();
        const ULONGLONG waited = ::GetTickCount64() - begin;
        const bool isGoing = error.systemCode == ERROR_ACCESS_DENIED && waited < longestGoing;
        if (error.systemCode != ERROR_SHARING_VIOLATION && error.systemCode != ERROR_DELETE_PENDING && !isGoing)
            return error;
        if (waited >= milliseconds && !isGoing)
            return Error{ErrorKind::tooManyOpen, error.systemCode, "another process holds the lock"};
        ::Sleep(nap);
    }
}

}  // namespace kelvane::windows_os
