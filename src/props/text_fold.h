// One normal form of property texts for combined lists and similarity: lower case, no accents, no punctuation.
#pragma once

#include <string>
#include <string_view>

#include "platform/text_folding.h"

namespace kelvane {

// Lower-cases, removes accents, and writes each of /\-.,'":()[]{}!<>?*$%&+@#~|;_ as a space.
[[nodiscard]] std::u16string foldText(std::u16string_view text, const TextFolding& folding);

// Words split at white space, each kept once at its first place, joined by single spaces.
[[nodiscard]] std::u16string uniqueWords(std::u16string_view text);

}  // namespace kelvane
