// An owned key of the registry, and its values by kind.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>
#include <windows.h>

namespace kelvane::windows_os {

struct RegistryValue {
    DWORD type = REG_NONE;
    std::vector<std::byte> bytes;
};

class RegistryKey {
public:
    RegistryKey() = default;
    explicit RegistryKey(HKEY key) : key_(key) {}
    RegistryKey(RegistryKey&& other) noexcept : key_(std::exchange(other.key_, nullptr)) {}
    RegistryKey& operator=(RegistryKey&& other) noexcept
    {
        std::swap(key_, other.key_);
        return *this;
    }
    ~RegistryKey()
    {
        if (valid())
            ::RegCloseKey(key_);
    }

    // Invalid when it is not there or may not be opened.
    [[nodiscard]] static RegistryKey open(HKEY parent, const std::wstring& path, REGSAM rights);
    [[nodiscard]] static RegistryKey create(HKEY parent, const std::wstring& path, REGSAM rights);

    [[nodiscard]] bool valid() const { return key_ != nullptr; }
    [[nodiscard]] HKEY get() const { return key_; }

    // The code is the system's; ERROR_SUCCESS fills the value.
    [[nodiscard]] LSTATUS read(const std::wstring& name, RegistryValue& value) const;
    [[nodiscard]] LSTATUS write(const std::wstring& name, DWORD type, const void* bytes, std::size_t count) const;
    [[nodiscard]] std::vector<std::wstring> valueNames() const;
    [[nodiscard]] std::vector<std::wstring> subkeyNames() const;

private:
    HKEY key_ = nullptr;
};

}  // namespace kelvane::windows_os
