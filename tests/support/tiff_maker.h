// TIFF structures for tests: raw files of cameras, TIFF files without pixels, EXIF blocks.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kelvane::testing {

class TiffMaker {
public:
    enum Directory { picture, exif, gps };
    using Fraction = std::pair<std::int64_t, std::int64_t>;

    explicit TiffMaker(bool bigEndian = false) : bigEndian_(bigEndian) {}

    TiffMaker& text(Directory directory, std::uint16_t tag, std::string_view value);   // with its zero
    TiffMaker& bytes(Directory directory, std::uint16_t tag, std::string_view value);  // of the type for anything
    TiffMaker& wide(std::uint16_t tag, std::u16string_view value);                     // as Windows has them
    TiffMaker& shorts(Directory directory, std::uint16_t tag, std::vector<std::uint16_t> values);
    TiffMaker& longs(Directory directory, std::uint16_t tag, std::vector<std::uint32_t> values);
    TiffMaker& fractions(Directory directory, std::uint16_t tag, std::vector<Fraction> values, bool isSigned = false);
    // A field as it comes: type and count are claims.
    TiffMaker& claim(Directory directory, std::uint16_t tag, std::uint16_t type, std::uint32_t count,
                     std::string_view value);
    // Where the chain of pictures goes on; 0 (its end) unless told.
    TiffMaker& nextPicture(std::uint32_t position);

    [[nodiscard]] std::string made() const;

private:
    struct Field {
        std::uint16_t type;
        std::uint32_t count;
        std::string value;
    };
    using Fields = std::map<std::uint16_t, Field>;

    [[nodiscard]] std::string number(std::uint64_t value, int size) const;
    [[nodiscard]] std::string directoryAt(std::size_t position, const Fields& fields, std::uint32_t next) const;

    bool bigEndian_;
    std::array<Fields, 3> directories_;
    std::uint32_t next_ = 0;
};

// "51 degrees, 30 minutes, 36 seconds" and the like: what a camera of today writes of a picture, and its owner.
[[nodiscard]] TiffMaker usualExif(bool bigEndian = false);

}  // namespace kelvane::testing
