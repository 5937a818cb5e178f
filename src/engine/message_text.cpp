#include "engine/message_text.h"

#include "base/utf.h"

namespace kelvane {

std::u16string withText(std::u16string_view pattern, std::u16string_view text)
{
    std::u16string filled(pattern);
    if (const auto at = filled.find(u"%s"); at != std::u16string::npos)
        filled.replace(at, 2, text);
    return filled;
}

std::u16string decimal(std::int64_t number)
{
    return toUtf16(std::to_string(number));
}

std::u16string_view cutTo(std::u16string_view text, std::size_t most) noexcept
{
    if (text.size() <= most)
        return text;
    const bool splitsPair = most > 0 && text[most - 1] >= 0xD800 && text[most - 1] <= 0xDBFF;
    return text.substr(0, splitsPair ? most - 1 : most);
}

}  // namespace kelvane
