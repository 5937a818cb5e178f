// What a file's name tells about whether it can hold a text.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/shell_item.h"

namespace kelvane {

// The last part of an item's name, as formats know it: UTF-8 as far as it is text.
[[nodiscard]] std::string lastName(const ShellItem& item);

// "pdf" of "Report.PDF"; empty where there is none. Letters of ASCII are made small, others stay.
[[nodiscard]] std::string extensionOf(std::string_view fileName);

[[nodiscard]] bool contains(const std::vector<std::string>& extensions, std::string_view extension);

// Pictures, sounds, films, programs and packed data: whatever is in them, it is no text.
[[nodiscard]] bool neverHoldsText(std::string_view extension);

}  // namespace kelvane
