// Reads the texts of a Windows resource module. They come in bundles of sixteen, bundle 1 holding the numbers 0 to 15;
// each text is a 16-bit count and so many UTF-16 units, little-endian (the STRINGTABLE resource of Windows).
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "base/result.h"
#include "base/text_table.h"

namespace kelvane {

inline constexpr std::uint16_t textsOfBundle = 16;

// Adds the bundle's texts to the others; empty ones stand for none. `invalid` when the bytes end too early. Bytes
// behind the sixteenth text only fill up.
[[nodiscard]] Status readStringBundle(std::span<const std::byte> bytes, std::uint16_t bundle, TextsByNumber& texts);

}  // namespace kelvane
