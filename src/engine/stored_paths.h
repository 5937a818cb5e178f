// Paths as a results file holds them: bytes that are cut in pieces, joined again, and looked at before they are used.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

namespace kelvane {

// Bytes of paths as nameBytes() gives them; "/" separates everywhere, "\" as well where it is the system's separator.
inline constexpr char nativeSeparator = static_cast<char>(std::filesystem::path::preferred_separator);

[[nodiscard]] constexpr bool separates(char c, char separator = nativeSeparator)
{
    return c == '/' || c == separator;
}

// Length of what an absolute path begins with and no folder lies above: "/", "C:\", "\\server\share\", the same two
// behind "\\?\"; with the separator at its end if there is one. 0 for a path that is not absolute.
[[nodiscard]] std::size_t rootLength(std::string_view path, char separator = nativeSeparator);

// Whether a path, relative or what stands behind the root of an absolute one, is made of names only: not empty, nor
// "." nor "..", no empty name between separators, no zero. Where drives have letters, no colon.
enum class Detours { refused, allowed };  // ".."
[[nodiscard]] bool isSoundPath(std::string_view path, Detours detours = Detours::refused,
                               char separator = nativeSeparator);
[[nodiscard]] bool isSoundAbsolutePath(std::string_view path, Detours detours = Detours::refused,
                                       char separator = nativeSeparator);

// Where the last ".." of the path ends; 0 when it has none.
[[nodiscard]] std::size_t detourEnd(std::string_view path, char separator = nativeSeparator);

// The folder with the separator at its end; the root of a path that is nothing else is in no folder: "".
[[nodiscard]] std::string_view folderPart(std::string_view path, char separator = nativeSeparator);

// The longest folder that both paths begin with, its separator included; folder is one already. "" when not even
// their roots are the same.
[[nodiscard]] std::string_view commonFolder(std::string_view folder, std::string_view path,
                                            char separator = nativeSeparator);

// A folder without the separator at its end, unless it is a root.
[[nodiscard]] std::string_view withoutEndSeparator(std::string_view folder, char separator = nativeSeparator);

}  // namespace kelvane
