// Characters that HTML and XML write by name or number.
#pragma once

#include <cstddef>
#include <string_view>

namespace kelvane {

struct CharacterReference {
    char32_t character = 0;
    std::size_t length = 0;  // units that it takes, the ampersand included; 0: it is none, but a plain ampersand
};

// At the front of a text that begins with '&'. Looks a few units ahead, for numbers as far as their digits go.
[[nodiscard]] CharacterReference characterReference(std::u16string_view text);

}  // namespace kelvane
