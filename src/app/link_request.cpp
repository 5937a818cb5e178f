#include "app/link_request.h"

#include <algorithm>
#include <cctype>
#include <optional>

#include "base/words.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

constexpr char separator = '|';

Error unacceptable()
{
    return {ErrorKind::invalid, 0, "a request for a link that is not plain"};
}

bool isSlash(char c, CommandSyntax syntax)
{
    return c == '/' || (c == '\\' && syntax == CommandSyntax::windows);
}

bool beginsWithDrive(std::string_view path)
{
    const char letter = path.empty() ? '\0' : asciiLower(path.substr(0, 1))[0];
    return letter >= 'a' && letter <= 'z' && path.substr(1, 1) == ":";
}

bool hasStepUpwards(std::string_view path, CommandSyntax syntax)
{
    for (std::size_t at = 0; at <= path.size(); ++at) {
        const auto end = std::find_if(path.begin() + static_cast<std::ptrdiff_t>(at), path.end(),
                                      [syntax](char c) { return isSlash(c, syntax); });
        const auto length = static_cast<std::size_t>(end - path.begin()) - at;
        if (path.substr(at, length) == "..")
            return true;
        at += length;
    }
    return false;
}

bool isPlain(std::string_view path, CommandSyntax syntax)
{
    const bool control =
        std::any_of(path.begin(), path.end(), [](char c) { return static_cast<unsigned char>(c) < 32; });
    return !path.empty() && !control && path.find(separator) == std::string_view::npos && !hasStepUpwards(path, syntax);
}

// A Windows path that begins with one backslash is absolute on whatever drive is the current one.
bool isRooted(std::string_view path, CommandSyntax syntax)
{
    return !path.empty() && isSlash(path.front(), syntax);
}

bool isAbsolute(std::string_view path, CommandSyntax syntax)
{
    if (syntax == CommandSyntax::posix)
        return isRooted(path, syntax);
    return path.starts_with(R"(\\)") || (beginsWithDrive(path) && isRooted(path.substr(2), syntax));
}

bool mayBeAsked(std::string_view link, std::string_view target, CommandSyntax syntax)
{
    return isPlain(link, syntax) && isPlain(target, syntax) && isAbsolute(link, syntax) &&
           (isAbsolute(target, syntax) || isRooted(target, syntax));
}

}  // namespace

Result<std::vector<std::byte>> encodeLinkRequest(std::string_view link, std::string_view target, CommandSyntax syntax)
{
    if (!mayBeAsked(link, target, syntax))
        return unacceptable();
    return encodePortTexts({std::string(link) + separator + std::string(target)}, syntax);
}

Status LinkRequests::serve(std::span<const std::byte> request) const
{
    const auto texts = decodePortTexts(request, syntax_);
    if (!texts || texts->size() != 1)
        return unacceptable();
    const std::string_view text = texts->front();
    const auto middle = text.find(separator);
    if (middle == std::string_view::npos)
        return unacceptable();
    const std::string_view link = text.substr(0, middle);
    std::string target(text.substr(middle + 1));
    if (!mayBeAsked(link, target, syntax_))
        return unacceptable();
    auto found = kindOf_(nativeFromBytes(target));
    if (!found.ok() && syntax_ == CommandSyntax::windows && beginsWithDrive(link)) {
        target.insert(0, link.substr(0, 2));
        found = kindOf_(nativeFromBytes(target));
    }
    if (!found.ok())
        return found.error();
    return links_.makeSymbolicLink(nativeFromBytes(link), nativeFromBytes(target), *found == FileKind::folder);
}

}  // namespace kelvane
