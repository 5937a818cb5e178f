#include "platform/linux/os_release.h"

#include <algorithm>

namespace kelvane::linux_os {
namespace {

constexpr std::string_view key = "PRETTY_NAME=";

// The file is a piece of shell: quotation marks around a value, and backslashes before what the shell would take.
std::string unquoted(std::string_view value)
{
    if (value.size() >= 2 && value.front() == '\'' && value.back() == '\'')
        return std::string(value.substr(1, value.size() - 2));
    if (value.size() >= 2 && value.front() == '"' && value.back() == '"')
        value = value.substr(1, value.size() - 2);
    std::string plain;
    for (std::size_t at = 0; at < value.size(); ++at) {
        if (value[at] == '\\' && at + 1 < value.size())
            ++at;
        plain += value[at];
    }
    return plain;
}

}  // namespace

std::string prettyName(std::string_view osRelease)
{
    std::string name;
    while (!osRelease.empty()) {
        const std::string_view line = osRelease.substr(0, osRelease.find('\n'));
        osRelease.remove_prefix(std::min(line.size() + 1, osRelease.size()));
        if (line.starts_with(key))
            name = unquoted(line.substr(key.size()));
    }
    return name.empty() ? "Linux" : name;
}

}  // namespace kelvane::linux_os
