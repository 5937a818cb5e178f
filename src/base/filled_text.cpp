#include "base/filled_text.h"

#include "base/utf.h"

namespace kelvane {

std::string filledText(TextId id, std::initializer_list<std::string_view> parts)
{
    const std::string pattern = toUtf8(text(id));
    std::string filled;
    std::size_t from = 0;
    for (std::size_t at = pattern.find('%'); at != std::string::npos; at = pattern.find('%', at + 1)) {
        const char digit = at + 1 < pattern.size() ? pattern[at + 1] : '0';
        if (digit < '1' || digit > '9' || static_cast<std::size_t>(digit - '0') > parts.size())
            continue;
        filled.append(pattern, from, at - from).append(parts.begin()[digit - '1']);
        from = at + 2;
    }
    return filled.append(pattern, from);
}

std::string countedText(std::uint64_t count, TextId one, TextId many)
{
    return count == 1 ? filledText(one) : filledText(many, {std::to_string(count)});
}

std::string countedFiles(std::uint64_t count)
{
    return countedText(count, TextId::oneFile, TextId::manyFiles);
}

}  // namespace kelvane
