// Whether this computer knows a way to everywhere.
#pragma once

#include <string_view>

namespace kelvane::linux_os {

// From the kernel's tables of routes: the texts of /proc/net/route, and of /proc/net/ipv6_route (proc_net(5)).
[[nodiscard]] bool hasDefaultRoute(std::string_view ipv4Routes, std::string_view ipv6Routes);

}  // namespace kelvane::linux_os
