#include "platform/text_folding.h"

#include <algorithm>
#include <limits>
#include <unicode/uchar.h>
#include <unicode/unorm2.h>
#include <unicode/utf16.h>

namespace kelvane {
namespace {

// The library counts in 32 bits and may need several times the room.
constexpr std::size_t longestText = std::numeric_limits<std::int32_t>::max() / 32;

bool isAscii(std::u16string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char16_t unit) { return unit < 0x80; });
}

void append(std::u16string& text, UChar32 character)
{
    if (U_IS_BMP(character)) {
        text += static_cast<char16_t>(character);
    } else {
        text += static_cast<char16_t>(U16_LEAD(character));
        text += static_cast<char16_t>(U16_TRAIL(character));
    }
}

// Calls each with every character of the text; a lone surrogate counts as a character.
template <class Each>
void forEachCharacter(std::u16string_view text, Each each)
{
    for (std::size_t at = 0; at < text.size();) {
        UChar32 character = 0;
        U16_NEXT(text.data(), at, text.size(), character);
        each(character);
    }
}

std::u16string decomposed(std::u16string_view text)
{
    UErrorCode error = U_ZERO_ERROR;
    const UNormalizer2* normalizer = unorm2_getNFDInstance(&error);
    std::u16string result(text.size() * 2, u'\0');
    const auto length = static_cast<std::int32_t>(text.size());
    std::int32_t needed = unorm2_normalize(normalizer, text.data(), length, result.data(),
                                           static_cast<std::int32_t>(result.size()), &error);
    if (error == U_BUFFER_OVERFLOW_ERROR) {
        error = U_ZERO_ERROR;
        result.resize(static_cast<std::size_t>(needed));
        needed = unorm2_normalize(normalizer, text.data(), length, result.data(), needed, &error);
    }
    if (U_FAILURE(error))
        return std::u16string(text);
    result.resize(static_cast<std::size_t>(needed));
    return result;
}

class IcuFolding final : public TextFolding {
public:
    std::u16string lower(std::u16string_view text) const override
    {
        std::u16string lowered;
        lowered.reserve(text.size());
        forEachCharacter(text, [&](UChar32 character) { append(lowered, u_tolower(character)); });
        return lowered;
    }

    std::u16string withoutAccents(std::u16string_view text) const override
    {
        if (isAscii(text) || text.size() > longestText)
            return std::u16string(text);
        std::u16string plain;
        plain.reserve(text.size());
        forEachCharacter(decomposed(text), [&](UChar32 character) {
            if (u_charType(character) != U_NON_SPACING_MARK)
                append(plain, character);
        });
        return plain;
    }
};

}  // namespace

std::unique_ptr<TextFolding> makeTextFolding()
{
    return std::make_unique<IcuFolding>();
}

}  // namespace kelvane
