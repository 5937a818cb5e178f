// The gestalt count as the rule tells it, without any short cut: what the fast one is held against.
#pragma once

#include <cstdint>
#include <string_view>

namespace kelvane::testing {

inline std::uint32_t plainMatch(std::u16string_view x, std::u16string_view y)
{
    if (x.empty() || y.empty() || (x.size() == 1 && y.size() == 1))
        return 0;
    std::size_t bestX = 0, bestY = 0, best = 0;
    for (std::size_t i = 0; i < x.size(); ++i) {
        for (std::size_t j = 0; j < y.size(); ++j) {
            std::size_t length = 0;
            while (i + length < x.size() && j + length < y.size() && x[i + length] == y[j + length])
                ++length;
            if (length > best) {
                bestX = i;
                bestY = j;
                best = length;
            }
        }
    }
    if (best < 2)
        return static_cast<std::uint32_t>(best);
    return static_cast<std::uint32_t>(best) + plainMatch(x.substr(0, bestX), y.substr(0, bestY)) +
           plainMatch(x.substr(bestX + best), y.substr(bestY + best));
}

}  // namespace kelvane::testing
