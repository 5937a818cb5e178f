// From what the kernel says of a file to what the port says of it.
#pragma once

#include <string_view>

#include "platform/file_info.h"
#include "platform/linux/volumes.h"

struct stat;
struct statx;

namespace kelvane::linux_os {

// The parts of statx that listing needs, and all that the port knows of.
[[nodiscard]] unsigned listingMask();
[[nodiscard]] unsigned detailsMask();

// Turns answers of the kernel into infos. One object a listing: it remembers the last volume that it asked about.
// Used by one thread at a time.
class FactReader {
public:
    explicit FactReader(Volumes& volumes) : volumes_(volumes) {}

    // name is the last component, by which hidden files are told.
    [[nodiscard]] FileInfo info(const struct statx& facts, std::string_view name);
    [[nodiscard]] FileDetails details(const struct statx& facts, std::string_view name);
    [[nodiscard]] FileInfo info(const struct stat& facts, std::string_view name);
    [[nodiscard]] VolumeFacts volume(const struct statx& facts);

private:
    bool fetchesOnRead(std::uint64_t device, std::uint64_t mount);

    Volumes& volumes_;
    std::uint64_t lastDevice_ = 0;
    bool lastFetchesOnRead_ = false;
};

// Fills facts by statx relative to an open folder; false with errno set when that fails.
[[nodiscard]] bool readFacts(int folder, const char* path, Links links, unsigned mask, struct statx& facts);
// The same of an open file or folder.
[[nodiscard]] bool readOpenFacts(int file, unsigned mask, struct statx& facts);

}  // namespace kelvane::linux_os
