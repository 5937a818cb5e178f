// Format identifiers in the form in which they are published.
#pragma once

#include <cstddef>
#include <string_view>

#include "platform/property_key.h"

namespace kelvane {
namespace format_id_detail {

constexpr std::uint8_t hexDigit(char digit)
{
    if (digit >= '0' && digit <= '9')
        return static_cast<std::uint8_t>(digit - '0');
    if (digit >= 'A' && digit <= 'F')
        return static_cast<std::uint8_t>(digit - 'A' + 10);
    throw "a format identifier is written in upper-case hexadecimal digits";
}

template <class Number>
constexpr Number hexNumber(std::string_view digits)
{
    std::uint64_t number = 0;
    for (const char digit : digits)
        number = number << 4 | hexDigit(digit);
    return static_cast<Number>(number);
}

}  // namespace format_id_detail

// formatId("{F29F85E0-4FF9-1068-AB91-08002B27B3D9}"); a malformed text does not compile.
consteval FormatId formatId(std::string_view text)
{
    using format_id_detail::hexNumber;
    if (text.size() != 38 || text[0] != '{' || text[9] != '-' || text[14] != '-' || text[19] != '-' ||
        text[24] != '-' || text[37] != '}')
        throw "a format identifier is written as {xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx}";
    FormatId id{hexNumber<std::uint32_t>(text.substr(1, 8)),
                hexNumber<std::uint16_t>(text.substr(10, 4)),
                hexNumber<std::uint16_t>(text.substr(15, 4)),
                {}};
    for (std::size_t i = 0; i < id.data4.size(); ++i)
        id.data4[i] = hexNumber<std::uint8_t>(text.substr(i < 2 ? 20 + 2 * i : 21 + 2 * i, 2));
    return id;
}

}  // namespace kelvane
