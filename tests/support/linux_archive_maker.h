// Archives made to measure, hostile ones included.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace kelvane::testing {

struct MadeEntry {
    enum class Kind { file, folder, link, hardLink, device };
    std::string path;
    std::string contents;  // of a link: its target
    Kind kind = Kind::file;
};

// The format by the extension: .zip, .7z, .tar, .tar.gz, .tar.xz, .cpio. Entry paths are written as they are. A
// password encrypts a zip. Throws std::runtime_error when the archive cannot be made.
void makeArchive(const std::filesystem::path& path, const std::vector<MadeEntry>& entries,
                 const std::string& password = "");

// The bytes of a zip; `stored` leaves the parts as they are, which packages of documents ask of their first one.
[[nodiscard]] std::string makeZip(const std::vector<MadeEntry>& entries, bool stored = false,
                                  const std::string& password = "");

}  // namespace kelvane::testing
