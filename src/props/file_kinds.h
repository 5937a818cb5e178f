// What sort of thing a file is, by its extension: the published values of System.Kind.
#pragma once

#include <string_view>

namespace kelvane {

struct FileSort {
    std::u16string_view name;   // "picture"; empty when the extension says nothing
    std::u16string_view label;  // "Picture"
};

// itemType as ShellNamespace gives it: ".jpg", lower case.
[[nodiscard]] FileSort fileKind(bool folder, std::u16string_view itemType) noexcept;

}  // namespace kelvane
