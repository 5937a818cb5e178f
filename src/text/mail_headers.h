// The header of a message, or of a part of one (RFC 5322 and RFC 2045 to 2047, 2231).
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/file_time.h"
#include "platform/text_decoding.h"

namespace kelvane {

struct MailField {
    std::string name;   // in lower case
    std::string value;  // unfolded, otherwise as written
};

class MailHeader {
public:
    // Takes the header off the front of the text, the empty line included. It ends early where a line is no field.
    [[nodiscard]] static MailHeader take(std::string_view& text);

    // The first field of this name (in lower case); empty for none.
    [[nodiscard]] std::string_view value(std::string_view name) const;
    [[nodiscard]] bool empty() const { return fields_.empty(); }
    [[nodiscard]] const std::vector<MailField>& fields() const { return fields_; }

private:
    // A line of the header; false for what is no part of one.
    bool add(std::string_view line);

    std::vector<MailField> fields_;
};

// "text/plain; charset=utf-8; name*=utf-8''a%20b": the value in lower case, and its parameters.
struct MailValue {
    std::string value;
    std::vector<MailField> parameters;  // names without the marks of RFC 2231, values decoded as far as bytes go

    [[nodiscard]] std::string_view parameter(std::string_view name) const;
};
[[nodiscard]] MailValue parseMailValue(std::string_view written);

// A field's text, with encoded words resolved; bytes beyond ASCII are taken for what they look like.
[[nodiscard]] std::u16string mailText(std::string_view value, const TextDecoding& decoding);

struct MailAddress {
    std::u16string name;  // the address where there is no name
    std::u16string address;
};
[[nodiscard]] std::vector<MailAddress> mailAddresses(std::string_view value, const TextDecoding& decoding);

// "Fri, 21 Nov 1997 09:55:06 -0600 (CST)", in the obsolete forms too.
[[nodiscard]] std::optional<FileTime> mailDate(std::string_view value);

}  // namespace kelvane
