#include "cleanup/link_questions.h"

#include "base/filled_text.h"
#include "base/utf.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

// At most so many UTF-16 units, whole characters.
std::u16string firstOf(std::u16string text, std::size_t longest)
{
    if (text.size() <= longest)
        return text;
    const bool cutsPair = text[longest - 1] >= 0xD800 && text[longest - 1] < 0xDC00;
    text.resize(cutsPair ? longest - 1 : longest);
    return text;
}

}  // namespace

ExternalLink LinkQuestions::mayLeadOut(const ShellItem& kept)
{
    if (!leadOut_) {
        const std::string path = toUtf8(displayFromNative(kept.fullName()));
        leadOut_ = questions_.linkToExternal(toUtf16(filledText(TextId::externalLinkQuestion, {path})));
    }
    return *leadOut_;
}

bool LinkQuestions::quits(const ShellItem& item, const CleanupFailure& problem)
{
    constexpr std::size_t longestPath = 250;
    const std::string path = toUtf8(firstOf(displayFromNative(item.fullName()), longestPath));
    return questions_.quitAfterProblem(toUtf16(filledText(TextId::linkProblemQuestion, {path, textOf(problem)})));
}

}  // namespace kelvane
