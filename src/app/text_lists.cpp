#include "app/text_lists.h"

#include <algorithm>

#include "platform/native_text.h"

namespace kelvane {
namespace {

std::u16string_view withoutBlanksAround(std::u16string_view text)
{
    const auto first = text.find_first_not_of(u" \t");
    if (first == std::u16string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(u" \t") - first + 1);
}

}  // namespace

std::vector<std::u16string> splitTexts(std::u16string_view text)
{
    std::vector<std::u16string> texts;
    while (!text.empty()) {
        const std::size_t length = std::min(text.find(u','), text.size());
        if (const auto entry = withoutBlanksAround(text.substr(0, length)); !entry.empty())
            texts.emplace_back(entry);
        text.remove_prefix(std::min(length + 1, text.size()));
    }
    return texts;
}

std::u16string joinTexts(const std::vector<std::u16string>& texts)
{
    std::u16string joined;
    for (const auto& text : texts) {
        if (!joined.empty())
            joined += u',';
        joined += text;
    }
    return joined;
}

std::u16string lowerKey(std::u16string_view name)
{
    std::u16string lower(name);
    for (char16_t& unit : lower)
        unit = unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + (u'a' - u'A')) : unit;
    return lower;
}

std::u16string textOfPath(const std::filesystem::path& path)
{
    return unitsFromWtf8(bytesFromNative(path.native()));
}

std::filesystem::path pathOfText(std::u16string_view text)
{
    return nativeFromBytes(wtf8FromUnits(text));
}

}  // namespace kelvane
