// Texts as they travel through an instance port.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/file_info.h"

namespace kelvane {

// Windows gives a program one text, which it splits for itself, and its texts are UTF-16; POSIX systems give words of
// bytes.
enum class CommandSyntax { windows, posix };

inline constexpr CommandSyntax nativeSyntax =
    sizeof(NativeString::value_type) == 1 ? CommandSyntax::posix : CommandSyntax::windows;

// Texts in the form of PathRules, without zeros; each is followed by one: UTF-16 with the low byte first (windows), or
// the bytes as they are (posix).
[[nodiscard]] std::vector<std::byte> encodePortTexts(const std::vector<std::string>& texts, CommandSyntax syntax);

// Nothing when the bytes are no such texts.
[[nodiscard]] std::optional<std::vector<std::string>> decodePortTexts(std::span<const std::byte> bytes,
                                                                      CommandSyntax syntax);

}  // namespace kelvane
