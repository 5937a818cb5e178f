#include "support/tiff_maker.h"

namespace kelvane::testing {
namespace {

constexpr std::uint16_t exifPointer = 0x8769;
constexpr std::uint16_t gpsPointer = 0x8825;

}  // namespace

std::string TiffMaker::number(std::uint64_t value, int size) const
{
    std::string bytes;
    for (int i = 0; i < size; ++i)
        bytes += static_cast<char>(value >> 8 * (bigEndian_ ? size - 1 - i : i) & 0xFF);
    return bytes;
}

TiffMaker& TiffMaker::claim(Directory directory, std::uint16_t tag, std::uint16_t type, std::uint32_t count,
                            std::string_view value)
{
    directories_[directory][tag] = {type, count, std::string(value)};
    return *this;
}

TiffMaker& TiffMaker::text(Directory directory, std::uint16_t tag, std::string_view value)
{
    std::string bytes(value);
    bytes += '\0';
    return claim(directory, tag, 2, static_cast<std::uint32_t>(bytes.size()), bytes);
}

TiffMaker& TiffMaker::bytes(Directory directory, std::uint16_t tag, std::string_view value)
{
    return claim(directory, tag, 7, static_cast<std::uint32_t>(value.size()), value);
}

TiffMaker& TiffMaker::wide(std::uint16_t tag, std::u16string_view value)
{
    std::string bytes;
    for (const char16_t unit : value)
        bytes += {static_cast<char>(unit & 0xFF), static_cast<char>(unit >> 8)};
    bytes.append(2, '\0');
    return claim(picture, tag, 1, static_cast<std::uint32_t>(bytes.size()), bytes);
}

TiffMaker& TiffMaker::shorts(Directory directory, std::uint16_t tag, std::vector<std::uint16_t> values)
{
    std::string bytes;
    for (const std::uint16_t value : values)
        bytes += number(value, 2);
    return claim(directory, tag, 3, static_cast<std::uint32_t>(values.size()), bytes);
}

TiffMaker& TiffMaker::longs(Directory directory, std::uint16_t tag, std::vector<std::uint32_t> values)
{
    std::string bytes;
    for (const std::uint32_t value : values)
        bytes += number(value, 4);
    return claim(directory, tag, 4, static_cast<std::uint32_t>(values.size()), bytes);
}

TiffMaker& TiffMaker::fractions(Directory directory, std::uint16_t tag, std::vector<Fraction> values, bool isSigned)
{
    std::string bytes;
    for (const auto& [above, below] : values)
        bytes += number(static_cast<std::uint64_t>(above), 4) + number(static_cast<std::uint64_t>(below), 4);
    return claim(directory, tag, isSigned ? 10 : 5, static_cast<std::uint32_t>(values.size()), bytes);
}

TiffMaker& TiffMaker::nextPicture(std::uint32_t position)
{
    next_ = position;
    return *this;
}

std::string TiffMaker::directoryAt(std::size_t position, const Fields& fields, std::uint32_t next) const
{
    std::string entries = number(fields.size(), 2);
    std::string values;
    const std::size_t valuesAt = position + 2 + fields.size() * 12 + 4;
    for (const auto& [tag, field] : fields) {
        entries += number(tag, 2) + number(field.type, 2) + number(field.count, 4);
        std::string inside = field.value;
        if (inside.size() > 4) {
            inside = number(valuesAt + values.size(), 4);
            values += field.value;
            values.resize(values.size() + values.size() % 2);
        }
        inside.resize(4);
        entries += inside;
    }
    return entries + number(next, 4) + values;
}

std::string TiffMaker::made() const
{
    std::string bytes = (bigEndian_ ? "MM" : "II") + number(42, 2) + number(8, 4);
    auto directories = directories_;
    const auto point = [&](std::uint16_t tag, std::size_t position) {
        directories[picture][tag] = {4, 1, number(position, 4)};
    };
    // The main directory first, so that one stands where it is looked for; its own length depends on its pointers.
    if (!directories[exif].empty())
        point(exifPointer, 0);
    if (!directories[gps].empty())
        point(gpsPointer, 0);
    const std::size_t exifAt = 8 + directoryAt(8, directories[picture], next_).size();
    const std::string exifBytes = directories[exif].empty() ? "" : directoryAt(exifAt, directories[exif], 0);
    const std::size_t gpsAt = exifAt + exifBytes.size();
    if (!directories[exif].empty())
        point(exifPointer, exifAt);
    if (!directories[gps].empty())
        point(gpsPointer, gpsAt);
    bytes += directoryAt(8, directories[picture], next_) + exifBytes;
    if (!directories[gps].empty())
        bytes += directoryAt(gpsAt, directories[gps], 0);
    return bytes;
}

TiffMaker usualExif(bool bigEndian)
{
    TiffMaker maker(bigEndian);
    maker.text(TiffMaker::picture, 0x010F, "Maker  ")
        .text(TiffMaker::picture, 0x0110, "Model 5")
        .text(TiffMaker::picture, 0x010E, "From the camera")
        .text(TiffMaker::picture, 0x013B, "Anna; Ben")
        .text(TiffMaker::picture, 0x8298, "Anna 2024")
        .shorts(TiffMaker::picture, 0x0112, {6})
        .shorts(TiffMaker::picture, 0x4746, {4})
        .wide(0x9C9B, u"Grüße")
        .wide(0x9C9E, u"Urlaub;Köln")
        .text(TiffMaker::exif, 0x9003, "2024:05:17 10:20:30")
        .text(TiffMaker::exif, 0x9291, "25")
        .text(TiffMaker::exif, 0x9011, "+02:00")
        .text(TiffMaker::exif, 0xA431, "123456")
        .text(TiffMaker::exif, 0xA434, "35mm F2")
        .bytes(TiffMaker::exif, 0x9000, "0232")
        .bytes(TiffMaker::exif, 0x9286, std::string_view("ASCII\0\0\0a comment", 17))
        .shorts(TiffMaker::exif, 0x8827, {400})
        .shorts(TiffMaker::exif, 0x8822, {2})
        .shorts(TiffMaker::exif, 0x9209, {16})
        .shorts(TiffMaker::exif, 0xA405, {52})
        .fractions(TiffMaker::exif, 0x829A, {{1, 250}})
        .fractions(TiffMaker::exif, 0x829D, {{28, 10}})
        .fractions(TiffMaker::exif, 0x9204, {{-2, 3}}, true)
        .fractions(TiffMaker::exif, 0x920A, {{350, 10}})
        .text(TiffMaker::gps, 1, "S")
        .fractions(TiffMaker::gps, 2, {{51, 1}, {30, 1}, {3600, 100}})
        .text(TiffMaker::gps, 3, "W")
        .fractions(TiffMaker::gps, 4, {{7, 1}, {12345, 1000}, {0, 0}})
        .claim(TiffMaker::gps, 5, 1, 1, std::string_view("\1", 1))
        .fractions(TiffMaker::gps, 6, {{123, 10}})
        .fractions(TiffMaker::gps, 7, {{8, 1}, {20, 1}, {30, 1}})
        .text(TiffMaker::gps, 29, "2024:05:17");
    return maker;
}

}  // namespace kelvane::testing
