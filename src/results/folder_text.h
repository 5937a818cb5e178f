// Where an item lies: paths against the text of a folder, without looking at the disk.
#pragma once

#include <string>
#include <string_view>

#include "platform/path_rules.h"
#include "platform/shell_item.h"

namespace kelvane {

// The full path without the prefix of extended-length paths, so that both ways of writing one path are alike; a share
// begins with two backslashes again.
[[nodiscard]] std::string withoutLongPrefix(std::string_view path, const PathRules& rules);

// The form in which paths of items are held against folders: lower-cased where case does not matter, byte for byte
// where it does.
[[nodiscard]] std::string comparablePath(const ShellItem& item, const PathRules& rules);

// Immutable. Paths given to it are comparablePath()s of the same rules.
class FolderText {
public:
    FolderText(std::string_view folder, const PathRules& rules);

    // What the location rule keeps: the path contains the folder's text, and is as long as it, or goes on with a
    // separator after the text's length, or the text ends with one.
    [[nodiscard]] bool keeps(std::string_view path) const;
    // The path is the folder's own or lies below it.
    [[nodiscard]] bool holds(std::string_view path) const;

private:
    std::string text_;    // comparable, as it was written
    std::string folder_;  // without separators at its end
    char separator_;
};

}  // namespace kelvane
