// Which files a content plug-in wants to be asked about.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kelvane {

// The simple form of a detect string: EXT="PDF" | EXT="DOC", joined by | or by &, of which & binds closer. Such a test
// looks at the extension alone, in any case; EXT="" is a file without one. Whatever else stands in a detect string
// (sizes, bytes, negations, parentheses) may be true of any file, so a string with it admits every file, and so does
// an empty one. Immutable.
class DetectString {
public:
    DetectString() = default;  // admits every file
    explicit DetectString(std::string_view text);

    [[nodiscard]] bool admits(std::string_view fileName) const;
    [[nodiscard]] bool admitsAll() const { return choices_.empty(); }

private:
    using Extensions = std::vector<std::string>;  // all of them at once, in lower case
    std::vector<Extensions> choices_;
};

}  // namespace kelvane
