// A temporary folder on the real file system that goes away with its object.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace kelvane::testing {

// Relative paths may have any depth; folders on the way are made. A failure throws std::filesystem::filesystem_error
// or std::runtime_error, which fails the test. Names are used byte for byte.
class TempTree {
public:
    TempTree();  // where this system has its temporary folders
    explicit TempTree(const std::filesystem::path& parent);
    ~TempTree();
    TempTree(const TempTree&) = delete;
    TempTree& operator=(const TempTree&) = delete;

    // Absolute, without links on the way.
    [[nodiscard]] const std::filesystem::path& path() const { return path_; }
    [[nodiscard]] std::filesystem::path path(std::string_view relative) const;

    // Whether this system lets the tests make symbolic links.
    [[nodiscard]] static bool canLink();

    // Each gives the full path of what it made.
    std::filesystem::path write(std::string_view relative, std::string_view contents) const;  // replaces
    std::filesystem::path folder(std::string_view relative) const;
    std::filesystem::path hardLink(std::string_view relative, std::string_view existing) const;
    std::filesystem::path symlink(std::string_view relative, const std::filesystem::path& target) const;
    void remove(std::string_view relative) const;  // with everything below it

    [[nodiscard]] std::string read(std::string_view relative) const;

private:
    [[nodiscard]] std::filesystem::path placeFor(std::string_view relative) const;

    std::filesystem::path path_;
};

}  // namespace kelvane::testing
