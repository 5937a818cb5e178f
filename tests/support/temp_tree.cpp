#include "support/temp_tree.h"

#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>

#include "support/paths.h"
#include "support/real_files.h"

namespace kelvane::testing {
namespace fs = std::filesystem;
namespace {

fs::path makeUniqueFolder(const fs::path& parent)
{
    std::random_device random;
    for (int attempt = 0; attempt < 100; ++attempt) {
        fs::path candidate = parent / ("kelvane-test-" + std::to_string(random()) + std::to_string(random()));
        if (fs::create_directory(candidate))
            return candidate;
    }
    throw std::runtime_error("no temporary folder could be made");
}

}  // namespace

TempTree::TempTree() : TempTree(fs::temp_directory_path()) {}

TempTree::TempTree(const fs::path& parent) : path_(makeUniqueFolder(fs::canonical(parent))) {}

TempTree::~TempTree()
{
    std::error_code ignored;
    // Windows would drop the blank at the end of a name, and the removal would look for the file for ever.
    fs::remove_all(openable(path_), ignored);
}

fs::path TempTree::path(std::string_view relative) const
{
    return (path_ / native(relative)).make_preferred();
}

bool TempTree::canLink()
{
    const TempTree tree;
    return makeSymbolicLink(tree.path("link"), tree.write("file", ""));
}

fs::path TempTree::placeFor(std::string_view relative) const
{
    fs::create_directories(openable(path(relative).parent_path()));
    return path(relative);
}

fs::path TempTree::write(std::string_view relative, std::string_view contents) const
{
    const fs::path full = placeFor(relative);
    std::ofstream file(openable(full), std::ios::binary | std::ios::trunc);
    file.write(contents.data(), static_cast<std::streamsize>(contents.size()));
    file.close();
    if (!file)
        throw std::runtime_error("cannot write " + posix(full));
    return full;
}

fs::path TempTree::folder(std::string_view relative) const
{
    fs::path full = path(relative);
    fs::create_directories(openable(full));
    return full;
}

fs::path TempTree::hardLink(std::string_view relative, std::string_view existing) const
{
    fs::path full = placeFor(relative);
    fs::create_hard_link(path(existing), full);
    return full;
}

fs::path TempTree::symlink(std::string_view relative, const fs::path& target) const
{
    fs::path full = placeFor(relative);
    if (!makeSymbolicLink(full, target))
        throw std::runtime_error("cannot make the link " + posix(full));
    return full;
}

void TempTree::remove(std::string_view relative) const
{
    fs::remove_all(openable(path(relative)));
}

std::string TempTree::read(std::string_view relative) const
{
    std::ifstream file(openable(path(relative)), std::ios::binary);
    if (!file)
        throw std::runtime_error("cannot read " + posix(path(relative)));
    return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace kelvane::testing
