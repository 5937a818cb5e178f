#include "cli/choices.h"

#include "base/filled_text.h"
#include "base/words.h"

namespace kelvane {
namespace {

std::string joined(const std::vector<std::string>& words)
{
    std::string list;
    for (const auto& word : words)
        list += (list.empty() ? "" : ", ") + word;
    return list;
}

}  // namespace

std::string unknownWord(TextId pattern, std::string_view typed, const std::vector<std::string>& known)
{
    return unknownWord(pattern, typed, known, known);
}

std::string unknownWord(TextId pattern, std::string_view typed, const std::vector<std::string>& known,
                        const std::vector<std::string>& listed)
{
    std::string message = filledText(pattern, {typed});
    if (const auto near = nearestWords(typed, known); !near.empty())
        message += ' ' + filledText(TextId::didYouMean, {joined(near)});
    return listed.empty() ? message : message + filledText(TextId::knownWords, {joined(listed)});
}

}  // namespace kelvane
