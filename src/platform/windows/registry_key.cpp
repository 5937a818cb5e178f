#include "platform/windows/registry_key.h"

namespace kelvane::windows_os {
namespace {

// The longest names that the registry's documentation allows, and a zero.
constexpr DWORD longestValueName = 16'384;
constexpr DWORD longestKeyName = 256;

}  // namespace

RegistryKey RegistryKey::open(HKEY parent, const std::wstring& path, REGSAM rights)
{
    HKEY key = nullptr;
    return ::RegOpenKeyExW(parent, path.c_str(), 0, rights, &key) == ERROR_SUCCESS ? RegistryKey(key) : RegistryKey();
}

RegistryKey RegistryKey::create(HKEY parent, const std::wstring& path, REGSAM rights)
{
    HKEY key = nullptr;
    const auto code =
        ::RegCreateKeyExW(parent, path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, rights, nullptr, &key, nullptr);
    return code == ERROR_SUCCESS ? RegistryKey(key) : RegistryKey();
}

LSTATUS RegistryKey::read(const std::wstring& name, RegistryValue& value) const
{
    // Another process may lengthen the value between the two calls.
    for (;;) {
        DWORD size = static_cast<DWORD>(value.bytes.size());
        const auto code = ::RegQueryValueExW(key_, name.c_str(), nullptr, &value.type,
                                             reinterpret_cast<BYTE*>(value.bytes.data()), &size);
        const bool tooSmall = code == ERROR_MORE_DATA || (code == ERROR_SUCCESS && size > value.bytes.size());
        value.bytes.resize(size);
        if (!tooSmall)
            return code;
    }
}

LSTATUS RegistryKey::write(const std::wstring& name, DWORD type, const void* bytes, std::size_t count) const
{
    return ::RegSetValueExW(key_, name.c_str(), 0, type, static_cast<const BYTE*>(bytes), static_cast<DWORD>(count));
}

std::vector<std::wstring> RegistryKey::valueNames() const
{
    std::vector<std::wstring> names;
    std::wstring name(longestValueName, L'\0');
    for (DWORD index = 0;; ++index) {
        DWORD length = longestValueName;
        if (::RegEnumValueW(key_, index, name.data(), &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS)
            return names;
        names.emplace_back(name.data(), length);
    }
}

std::vector<std::wstring> RegistryKey::subkeyNames() const
{
    std::vector<std::wstring> names;
    std::wstring name(longestKeyName, L'\0');
    for (DWORD index = 0;; ++index) {
        DWORD length = longestKeyName;
        if (::RegEnumKeyExW(key_, index, name.data(), &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS)
            return names;
        names.emplace_back(name.data(), length);
    }
}

}  // namespace kelvane::windows_os
