// What a file's name tells about whether it holds sound, a film or a picture.
#pragma once

#include <cstdint>
#include <string_view>

namespace kelvane {

enum class MediaKind : std::uint8_t { none, sound, film, picture };

// By the extension; a decoder goes by the content all the same. fileName: the last part, UTF-8 as far as it is text.
[[nodiscard]] MediaKind mediaKindOf(std::string_view fileName);

}  // namespace kelvane
