// What tests make on the real file system beyond the means of the standard library; each system has its own version.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace kelvane::testing {

// Each gives false where that cannot be made here: links need rights on Windows, and Wine has none of them.
[[nodiscard]] bool makeSymbolicLink(const std::filesystem::path& path, const std::filesystem::path& target);
[[nodiscard]] bool makeNeitherFileNorFolder(const std::filesystem::path& path);
[[nodiscard]] bool makeStream(const std::filesystem::path& path, const std::string& stream,
                              const std::string& contents);

// A name that begins with "." is hidden on Linux, and the attribute is set on Windows.
void hide(const std::filesystem::path& path);

// A folder for temporary files that lies on no disk where the system has one, for tests that do thousands of little
// things to files.
[[nodiscard]] std::filesystem::path quickFolder();

// From now on the trash of what lies on this folder's volume is there, in folders "files" and "info"; nothing where the
// system does not let a program choose.
[[nodiscard]] std::optional<std::filesystem::path> trashBelow(const std::filesystem::path& folder);

// The path in a form in which a file is opened whatever its name and length.
[[nodiscard]] std::filesystem::path openable(const std::filesystem::path& path);

// Whether open files are gone at once when they are removed, and are found under the name that they were given
// meanwhile. Wine can neither.
[[nodiscard]] bool openFilesMove();

// Names that the file system takes and careless programs stumble over.
[[nodiscard]] std::vector<std::string> unusualNames();

}  // namespace kelvane::testing
