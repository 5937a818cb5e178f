#include "base/file_masks.h"

#include <algorithm>

#include "base/words.h"

namespace kelvane {
namespace {

// A name that only begins with a dot is a hidden file, not an extension without a name.
std::string_view extensionOf(std::string_view fileName)
{
    const auto dot = fileName.rfind('.');
    return dot == std::string_view::npos || dot == 0 ? std::string_view{} : fileName.substr(dot + 1);
}

}  // namespace

FileMasks::FileMasks(std::string_view commaSeparated)
{
    for (const auto& word : splitWords(asciiLower(commaSeparated), ',')) {
        std::string_view pattern = word;
        if (pattern.starts_with("*.") && pattern.find('.', 2) == std::string_view::npos)
            pattern.remove_prefix(2);
        // One mask that admits everything makes the others pointless.
        if (pattern == "*") {
            masks_.clear();
            return;
        }
        masks_.push_back({std::string(pattern), pattern.find('.') != std::string_view::npos});
    }
}

bool FileMasks::admits(std::string_view fileName) const
{
    if (admitsAll())
        return true;
    const std::string name = asciiLower(fileName);
    const std::string_view extension = extensionOf(name);
    return std::any_of(masks_.begin(), masks_.end(), [&](const Mask& mask) {
        return wildcardMatch(mask.pattern, mask.wholeName ? std::string_view(name) : extension);
    });
}

}  // namespace kelvane
