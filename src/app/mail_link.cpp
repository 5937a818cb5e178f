#include "app/mail_link.h"

#include "base/text_table.h"
#include "base/utf.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

bool needsEscape(char c)
{
    const auto code = static_cast<unsigned char>(c);
    return code <= ' ' || code >= 0x7F || std::string_view("<>\"{}|\\^[]`&%?#").find(c) != std::string_view::npos;
}

std::string escaped(std::string_view bytes)
{
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    for (const char c : bytes) {
        const auto code = static_cast<unsigned char>(c);
        if (needsEscape(c))
            text.append({'%', digits[code >> 4], digits[code & 15]});
        else
            text += c;
    }
    return text;
}

// One or two units: a character outside the basic plane is never cut in half.
std::size_t unitsOfCharacter(std::u16string_view text)
{
    const bool pair = text.size() > 1 && (text[0] & 0xFC00) == 0xD800 && (text[1] & 0xFC00) == 0xDC00;
    return pair ? 2 : 1;
}

}  // namespace

std::string escapeForLink(std::u16string_view text)
{
    std::string part;
    while (!text.empty()) {
        const std::size_t units = unitsOfCharacter(text);
        const std::string character = escaped(toUtf8(text.substr(0, units)));
        if (part.size() + character.size() > longestLinkPart)
            break;
        part += character;
        text.remove_prefix(units);
    }
    return part;
}

std::string mailLink(const MailDraft& draft)
{
    std::string link = "mailto:" + escapeForLink(draft.to) + "?subject=" + escapeForLink(draft.subject) +
                       "&body=" + escapeForLink(draft.body);
    if (!draft.attachment.empty())
        link += escapeForLink(u"\r\n" + std::u16string(text(TextId::attachByHand))) +
                escapeForLink(displayFromNative(draft.attachment.native()));
    return link;
}

}  // namespace kelvane
