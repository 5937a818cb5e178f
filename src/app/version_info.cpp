#include "app/version_info.h"

#include "base/utf.h"

namespace kelvane {

std::u16string CAppVersionInfo::versionText()
{
    const std::string number = std::to_string(KELVANE_VERSION_MAJOR) + '.' + std::to_string(KELVANE_VERSION_MINOR) +
                               '.' + std::to_string(KELVANE_VERSION_PATCH);
    return toUtf16(number + " [U] x64");
}

std::uint32_t CAppVersionInfo::versionNumber() noexcept
{
    return KELVANE_VERSION_MAJOR << 24 | KELVANE_VERSION_MINOR << 16 | KELVANE_VERSION_PATCH;
}

}  // namespace kelvane
