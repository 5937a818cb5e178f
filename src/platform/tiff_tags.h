// The tags of TIFF 6.0: of TIFF files, of most cameras' raw files, and of EXIF blocks, which are built alike.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/random_access_file.h"

namespace kelvane {

// One value or several of one type, as bytes in the order of the file.
class TiffField {
public:
    TiffField(std::uint16_t type, bool bigEndian, std::vector<std::byte> bytes)
        : type_(type), bigEndian_(bigEndian), bytes_(std::move(bytes))
    {
    }

    [[nodiscard]] std::size_t count() const;
    // Of whole numbers; nothing for other types and places behind the last one.
    [[nodiscard]] std::optional<std::int64_t> whole(std::size_t index = 0) const;
    // Of any numbers; nothing for a fraction of nought.
    [[nodiscard]] std::optional<double> real(std::size_t index = 0) const;
    // All of them; empty where one is none.
    [[nodiscard]] std::vector<double> reals() const;
    [[nodiscard]] std::string_view bytes() const;
    [[nodiscard]] bool bigEndian() const { return bigEndian_; }

private:
    [[nodiscard]] std::optional<std::uint64_t> bits(std::size_t position, std::size_t size) const;

    std::uint16_t type_;
    bool bigEndian_;
    std::vector<std::byte> bytes_;
};

using TiffDirectory = std::map<std::uint16_t, TiffField>;

struct TiffTags {
    std::vector<TiffDirectory> pictures;  // the main chain in its order, each with its sub-pictures behind it
    TiffDirectory exif;
    TiffDirectory gps;

    [[nodiscard]] static const TiffField* find(const TiffDirectory& directory, std::uint16_t tag);
    // Of the first picture.
    [[nodiscard]] const TiffField* first(std::uint16_t tag) const;
};

// Whether the beginning of a file (8 bytes at least) is that of such a structure. Cameras' own variants included.
[[nodiscard]] bool beginsLikeTiff(std::string_view beginning);

// What can be read, nothing for other files. Values of more than 64 KiB are left out, but for those that hold XMP and
// IPTC. Whatever the file claims, a directory is read once, a bounded number of them, and memory stays within what the
// values really take.
[[nodiscard]] TiffTags readTiffTags(RandomAccessFile& file);

}  // namespace kelvane
