// Where the makers of the program are reached; the addresses are set when it is built.
#pragma once

#include <string_view>

namespace kelvane::makers {

// Plain ASCII. KELVANE_SUPPORT_MAIL of the build.
[[nodiscard]] std::u16string_view supportMail() noexcept;

// A web address in UTF-8 that takes the parameter "v". KELVANE_UPDATE_PAGE of the build.
[[nodiscard]] std::string_view updatePage() noexcept;

// A web address in UTF-8: where somebody who erases the settings in December is sent. KELVANE_FAREWELL_PAGE of the
// build.
[[nodiscard]] std::string_view farewellPage() noexcept;

}  // namespace kelvane::makers
