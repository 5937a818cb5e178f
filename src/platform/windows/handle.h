// Owned handles of the system.
#pragma once

#include <utility>
#include <windows.h>

namespace kelvane::windows_os {

// A handle that CloseHandle ends; both null and INVALID_HANDLE_VALUE stand for none.
class Handle {
public:
    Handle() = default;
    explicit Handle(HANDLE handle) : handle_(handle == INVALID_HANDLE_VALUE ? nullptr : handle) {}
    Handle(Handle&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
    Handle& operator=(Handle&& other) noexcept
    {
        std::swap(handle_, other.handle_);
        return *this;
    }
    ~Handle()
    {
        if (valid())
            ::CloseHandle(handle_);
    }

    [[nodiscard]] bool valid() const { return handle_ != nullptr; }
    [[nodiscard]] HANDLE get() const { return handle_; }
    [[nodiscard]] HANDLE release() { return std::exchange(handle_, nullptr); }

private:
    HANDLE handle_ = nullptr;
};

// A search that FindClose ends.
class FindHandle {
public:
    explicit FindHandle(HANDLE handle) : handle_(handle) {}
    FindHandle(const FindHandle&) = delete;
    FindHandle& operator=(const FindHandle&) = delete;
    ~FindHandle()
    {
        if (valid())
            ::FindClose(handle_);
    }

    [[nodiscard]] bool valid() const { return handle_ != INVALID_HANDLE_VALUE; }
    [[nodiscard]] HANDLE get() const { return handle_; }

private:
    HANDLE handle_;
};

}  // namespace kelvane::windows_os
