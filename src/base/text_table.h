// The one table of the texts that the program shows: every text has one number.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace kelvane {

// Numbers are for ever: a text that is no longer used leaves its number empty.
enum class TextId : std::uint16_t {
    phaseGathering = 1,
    phaseSorting = 2,
    phaseComparing = 3,
    searchingIn = 4,      // %s: the folder
    duplicatesFound = 5,  // %d duplicates, %d minutes, %02d seconds
    nothingFound = 6,
    firstScanNotice = 7,
    kindNumber = 8,
    kindDate = 9,
    kindFloat = 10,
    kindText = 11,
    kindEnumerated = 12,
    wordTrue = 13,
    wordFalse = 14,
    categoryMusic = 15,
    categoryMovies = 16,
    categoryDocuments = 17,
    categoryPhotos = 18,
    categoryEbooks = 19,
    categoryAll = 20,
    categoryFolders = 21,
    reviseParameters = 22,
};

// Numbers are below this.
inline constexpr std::size_t textNumberLimit = 512;

// The text in the language in force; never fails (an unknown number gives an empty text). Safe on every thread.
[[nodiscard]] std::u16string_view text(TextId id) noexcept;

}  // namespace kelvane
