// Which version of the program this is.
#pragma once

#include <cstdint>
#include <string>

namespace kelvane {

class CAppVersionInfo {
public:
    // "0.1.0 [U] x64": the version, that texts are Unicode, and the processor. Part of file names: plain ASCII.
    [[nodiscard]] static std::u16string versionText();

    // Grows with every release: a byte each for major and minor version, two for the patch.
    [[nodiscard]] static std::uint32_t versionNumber() noexcept;
};

}  // namespace kelvane
