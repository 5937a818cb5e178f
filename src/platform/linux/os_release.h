// The file in which a Linux distribution says its name.
#pragma once

#include <string>
#include <string_view>

namespace kelvane::linux_os {

// The value of PRETTY_NAME in the text of an os-release file, "Linux" when it has none (os-release(5)).
[[nodiscard]] std::string prettyName(std::string_view osRelease);

}  // namespace kelvane::linux_os
