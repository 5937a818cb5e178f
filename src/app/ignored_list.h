// The declarations that files are no duplicates of one another, as they are kept.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "app/settings_node.h"
#include "engine/ignored_pairs.h"

namespace kelvane {

inline constexpr std::size_t mostIgnoredGroups = 10'000;

// The block that stands for a declaration; docs/formats/settings.md says what it holds. Empty for one that would be
// too long for some of the places (a few hundred files), or that has fewer than two files.
[[nodiscard]] std::vector<std::byte> blockOfIgnored(const IgnoredGroup& group);

// Without the time; nothing for a block that is damaged.
[[nodiscard]] std::optional<IgnoredGroup> ignoredOfBlock(std::span<const std::byte> block);

// How many declarations lie there, those that cannot be read included.
[[nodiscard]] std::size_t storedDeclarations(const SettingsRoot& root);

}  // namespace kelvane
