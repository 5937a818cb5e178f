// The parts of a message (RFC 2046, section 5.1).
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "text/mail_headers.h"

namespace kelvane {

enum class MailKind { plain, html, other, alternatives, container };

struct MailPart {
    std::size_t parent = 0;  // its place in the list; the message itself is its own
    MailKind kind = MailKind::other;
    std::string charset;
    std::string encoding;  // in lower case
    std::string fileName;
    bool attachment = false;
    bool flowed = false;    // lines that end with a blank go on in the next one (RFC 3676)
    std::string_view body;  // of a part without parts, as written
};

// All parts in their order, each behind the one that holds it; the first is the message. A part whose end is missing
// goes as far as there is anything. Linear time; nesting and number of parts have a bound, beyond which parts are left
// out.
[[nodiscard]] std::vector<MailPart> mailParts(const MailHeader& header, std::string_view body);

// Which parts a person reads: no attachments, and of alternatives one, plain text rather than HTML. In the order of the
// list, true where it is read.
[[nodiscard]] std::vector<bool> readParts(const std::vector<MailPart>& parts);

}  // namespace kelvane
