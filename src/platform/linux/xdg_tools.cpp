#include "platform/linux/xdg_tools.h"

#include <algorithm>
#include <cctype>

#include "base/utf.h"

namespace kelvane::linux_os {
namespace {

bool isControl(char c)
{
    const auto code = static_cast<unsigned char>(c);
    return code < 0x20 || code == 0x7F;
}

bool isSchemeCharacter(unsigned char c)
{
    return c < 0x80 && (std::isalnum(c) || c == '+' || c == '-' || c == '.');
}

// The tool makes a line's end of its own of every "\n".
std::string withPlainLines(std::string text)
{
    std::erase(text, '\r');
    return text;
}

void addOption(std::vector<std::string>& words, const char* option, std::string value)
{
    if (!value.empty()) {
        words.emplace_back(option);
        words.push_back(std::move(value));
    }
}

}  // namespace

bool isLink(const std::string& text)
{
    const std::string scheme = text.substr(0, text.find(':'));
    return scheme.size() < text.size() && !scheme.empty() && std::isalpha(static_cast<unsigned char>(scheme[0])) &&
           std::all_of(scheme.begin(), scheme.end(), isSchemeCharacter) &&
           std::none_of(text.begin(), text.end(), isControl);
}

std::string fileLink(const std::filesystem::path& absolute)
{
    return "file://" + percentEncode(absolute.native());
}

// The numbers are those of xdg-open(1).
Status openingOutcome(std::optional<int> exitCode)
{
    switch (exitCode.value_or(0)) {
    case 0:
        return {};
    case 2:
        return Error{ErrorKind::notFound, 0, "there is no such file"};
    case 3:
        return Error{ErrorKind::notSupported, 0, "there is no program to open it with"};
    default:
        return Error{ErrorKind::io, 0, "the desktop could not open it"};
    }
}

std::optional<std::vector<std::string>> mailArguments(const MailDraft& draft)
{
    std::vector<std::string> words{"--utf8"};
    addOption(words, "--subject", toUtf8(draft.subject));
    addOption(words, "--body", withPlainLines(toUtf8(draft.body)));
    addOption(words, "--attach", draft.attachment.native());
    std::string to = toUtf8(draft.to);
    if (to.starts_with('-') || std::any_of(to.begin(), to.end(), isControl))
        return std::nullopt;
    words.push_back(std::move(to));
    return words;
}

}  // namespace kelvane::linux_os
