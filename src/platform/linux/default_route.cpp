#include "platform/linux/default_route.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <vector>

namespace kelvane::linux_os {
namespace {

// Of the kernel's <linux/route.h>.
constexpr std::uint32_t routeIsUp = 0x0001;
constexpr std::uint32_t routeRejects = 0x0200;

std::vector<std::string_view> routeFields(std::string_view line)
{
    constexpr std::string_view blanks = " \t";
    std::vector<std::string_view> fields;
    for (;;) {
        line.remove_prefix(std::min(line.find_first_not_of(blanks), line.size()));
        if (line.empty())
            return fields;
        fields.push_back(line.substr(0, line.find_first_of(blanks)));
        line.remove_prefix(fields.back().size());
    }
}

template <class Test>
bool anyLine(std::string_view text, Test test)
{
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        if (test(routeFields(line)))
            return true;
    }
    return false;
}

bool isZero(std::string_view hexadecimal)
{
    return hexadecimal.find_first_not_of('0') == std::string_view::npos;
}

bool leadsOn(std::string_view flags)
{
    std::uint32_t value = 0;
    const auto [end, error] = std::from_chars(flags.data(), flags.data() + flags.size(), value, 16);
    return error == std::errc() && (value & (routeIsUp | routeRejects)) == routeIsUp;
}

// Interface, destination, gateway, flags, references, uses, metric, mask, ...
bool isDefaultIpv4(const std::vector<std::string_view>& fields)
{
    return fields.size() >= 8 && isZero(fields[1]) && isZero(fields[7]) && leadsOn(fields[3]);
}

// Destination and its length, source and its length, next hop, metric, references, uses, flags, interface.
bool isDefaultIpv6(const std::vector<std::string_view>& fields)
{
    return fields.size() >= 10 && isZero(fields[0]) && isZero(fields[1]) && leadsOn(fields[8]) && fields[9] != "lo";
}

}  // namespace

bool hasDefaultRoute(std::string_view ipv4Routes, std::string_view ipv6Routes)
{
    return anyLine(ipv4Routes, isDefaultIpv4) || anyLine(ipv6Routes, isDefaultIpv6);
}

}  // namespace kelvane::linux_os
