#include "platform/windows/registry_value.h"

#include <algorithm>

namespace kelvane::windows_os {

std::optional<std::uint32_t> registryNumber(HKEY root, const wchar_t* key, const wchar_t* name)
{
    DWORD number = 0, size = sizeof number;
    if (::RegGetValueW(root, key, name, RRF_RT_REG_DWORD, nullptr, &number, &size) != ERROR_SUCCESS)
        return std::nullopt;
    return number;
}

std::optional<std::wstring> registryText(HKEY root, const wchar_t* key, const wchar_t* name)
{
    std::wstring text(128, L'\0');
    for (int attempt = 0; attempt < 8; ++attempt) {
        auto size = static_cast<DWORD>(text.size() * sizeof(wchar_t));
        const LSTATUS code = ::RegGetValueW(root, key, name, RRF_RT_REG_SZ, nullptr, text.data(), &size);
        if (code == ERROR_SUCCESS)
            return text.c_str();
        if (code != ERROR_MORE_DATA)
            return std::nullopt;
        text.resize(std::max<std::size_t>(text.size(), size / sizeof(wchar_t)) + 1);
    }
    return std::nullopt;
}

}  // namespace kelvane::windows_os
