// A mail draft as a link ("mailto:", RFC 6068), for computers whose mail program takes no drafts.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/processes.h"

namespace kelvane {

// No part of a link may be longer; it is cut between two characters.
inline constexpr std::size_t longestLinkPart = 30'000;

// Escapes what may not stand in a part of a link: blanks, control characters, "%", "&", "#", "?", quotation marks,
// brackets of all kinds, "\", "^", "`", "|", and everything outside ASCII as UTF-8. ASCII only.
[[nodiscard]] std::string escapeForLink(std::u16string_view text);

// A link carries no attachment, so the body ends with a request to attach it by hand, and its path.
[[nodiscard]] std::string mailLink(const MailDraft& draft);

}  // namespace kelvane
