#include "app/typed_size.h"

#include <charconv>
#include <string>

#include "base/words.h"

namespace kelvane {
namespace {

std::optional<std::uint64_t> parseDigits(std::string_view text)
{
    std::uint64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc{} || end != text.data() + text.size())
        return std::nullopt;
    return number;
}

}  // namespace

std::optional<std::uint64_t> parseSize(std::string_view text)
{
    const auto digits = text.find_first_not_of("0123456789");
    const auto number = parseDigits(text.substr(0, digits));
    if (!number || digits == std::string_view::npos)
        return number;
    const std::string unit = asciiLower(text.substr(digits));
    const auto power = std::string_view("kmgt").find(unit.front());
    const std::string rest = unit.substr(1);
    if (power == std::string_view::npos || !(rest.empty() || rest == "b" || rest == "ib"))
        return std::nullopt;
    const auto shift = static_cast<unsigned>(power + 1) * 10;
    if (*number > UINT64_MAX >> shift)
        return std::nullopt;
    return *number << shift;
}

}  // namespace kelvane
