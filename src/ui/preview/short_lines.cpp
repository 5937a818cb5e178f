#include "ui/preview/short_lines.h"

#include <algorithm>

namespace kelvane {
namespace {

bool isSecondHalf(char16_t unit)
{
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

}  // namespace

ShortLines shortLines(std::u16string_view text, std::size_t mostCharacters, std::size_t mostLines)
{
    ShortLines made;
    made.text.reserve(text.size() + text.size() / mostCharacters);
    for (std::size_t lines = 0; !text.empty(); ++lines) {
        if (lines == mostLines) {
            made.cut = true;
            break;
        }
        std::size_t end = std::min(text.find(u'\n'), text.size());
        const bool tooLong = end > mostCharacters;
        if (tooLong)
            end = isSecondHalf(text[mostCharacters]) ? mostCharacters - 1 : mostCharacters;
        else
            end = std::min(end + 1, text.size());
        made.text += text.substr(0, end);
        if (tooLong)
            made.text += u'\n';
        made.broken = made.broken || tooLong;
        text.remove_prefix(end);
    }
    return made;
}

}  // namespace kelvane
