// Makes compiled catalogues of GNU gettext.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace kelvane::testing {

// Key ("130\4English") and translation, in the order of the file.
using MoRows = std::vector<std::pair<std::string, std::string>>;

inline std::string moNumber(std::size_t value, bool bigEndian)
{
    std::string bytes;
    for (unsigned byte = 0; byte < 4; ++byte)
        bytes += static_cast<char>(value >> (bigEndian ? 24 - 8 * byte : 8 * byte) & 0xFF);
    return bytes;
}

inline std::string makeMo(const MoRows& rows, bool bigEndian = false)
{
    const std::size_t originals = 28;
    const std::size_t translations = originals + 8 * rows.size();
    std::size_t at = translations + 8 * rows.size();
    std::string file;
    for (const std::size_t value :
         {std::size_t{0x950412DE}, std::size_t{0}, rows.size(), originals, translations, std::size_t{0}, at})
        file += moNumber(value, bigEndian);
    std::string texts;
    for (const auto column : {&MoRows::value_type::first, &MoRows::value_type::second}) {
        for (const auto& row : rows) {
            file += moNumber((row.*column).size(), bigEndian) + moNumber(at + texts.size(), bigEndian);
            texts += row.*column + '\0';
        }
    }
    return file + texts;
}

}  // namespace kelvane::testing
