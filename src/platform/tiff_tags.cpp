#include "platform/tiff_tags.h"

#include <algorithm>
#include <array>
#include <bit>
#include <set>

namespace kelvane {
namespace {

constexpr std::size_t mostDirectories = 40;
constexpr std::size_t mostFields = 1'000;
constexpr std::size_t longestValue = 64 * 1024;
constexpr std::size_t longestBlock = 8 * 1024 * 1024;

// Bytes of one value by its type; 0 for numbers that are no type.
constexpr std::array<std::size_t, 14> sizes = {0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8, 4};

enum Type : std::uint16_t {
    byteType = 1,
    asciiType = 2,
    shortType = 3,
    longType = 4,
    rationalType = 5,
    signedByteType = 6,
    undefinedType = 7,
    signedShortType = 8,
    signedLongType = 9,
    signedRationalType = 10,
    floatType = 11,
    doubleType = 12,
    directoryType = 13,
};

enum Tag : std::uint16_t {
    subDirectories = 0x014A,
    xmpBlock = 0x02BC,
    iptcBlock = 0x83BB,
    exifDirectory = 0x8769,
    gpsDirectory = 0x8825,
};

constexpr std::size_t sizeOf(std::uint16_t type)
{
    return type < sizes.size() ? sizes[type] : 0;
}

std::uint64_t number(std::span<const std::byte> bytes, bool bigEndian)
{
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i)
        value = value << 8 | std::to_integer<std::uint64_t>(bytes[bigEndian ? i : bytes.size() - 1 - i]);
    return value;
}

constexpr std::size_t mostBytesOf(std::uint16_t tag)
{
    return tag == xmpBlock || tag == iptcBlock ? longestBlock : longestValue;
}

class Walk {
public:
    Walk(RandomAccessFile& file, bool bigEndian) : file_(file), bigEndian_(bigEndian) {}

    TiffTags run(std::uint64_t first)
    {
        TiffTags tags;
        chain_ = first;
        while (chain_ != 0 && seen_.size() < mostDirectories) {
            if (auto directory = readDirectory(chain_))
                addPicture(std::move(*directory), tags);
            else
                break;
        }
        return tags;
    }

private:
    std::vector<std::byte> read(std::uint64_t position, std::size_t size)
    {
        if (position >= file_.size() || file_.size() - position < size)
            return {};
        std::vector<std::byte> bytes(size);
        const auto count = file_.readAt(position, bytes);
        return count && *count == size ? std::move(bytes) : std::vector<std::byte>();
    }

    std::uint64_t numberIn(std::span<const std::byte> bytes, std::size_t position, std::size_t size) const
    {
        return number(bytes.subspan(position, size), bigEndian_);
    }

    // A cut-off directory gives those of its fields that are there. Leaves the place of the next one in chain_.
    std::optional<TiffDirectory> readDirectory(std::uint64_t position)
    {
        chain_ = 0;
        const auto head = read(position, 2);
        if (head.empty() || !seen_.insert(position).second)
            return std::nullopt;
        const auto claimed = static_cast<std::size_t>(numberIn(head, 0, 2));
        const auto there =
            static_cast<std::size_t>(std::min<std::uint64_t>(claimed, (file_.size() - position - 2) / 12));
        const auto entries = read(position + 2, std::min(there, mostFields) * 12);
        TiffDirectory directory;
        for (std::size_t at = 0; at + 12 <= entries.size(); at += 12)
            readField(std::span(entries).subspan(at, 12), directory);
        if (const auto next = read(position + 2 + claimed * 12, 4); !next.empty())
            chain_ = numberIn(next, 0, 4);
        return directory;
    }

    void readField(std::span<const std::byte> entry, TiffDirectory& directory)
    {
        const auto tag = static_cast<std::uint16_t>(numberIn(entry, 0, 2));
        const auto type = static_cast<std::uint16_t>(numberIn(entry, 2, 2));
        const std::uint64_t size = numberIn(entry, 4, 4) * sizeOf(type);
        if (size == 0 || size > mostBytesOf(tag) || directory.contains(tag) || !reserve(size))
            return;
        const auto inside = entry.subspan(8, 4);
        std::vector<std::byte> value =
            size <= 4 ? std::vector<std::byte>(inside.begin(), inside.begin() + static_cast<std::ptrdiff_t>(size))
                      : read(number(inside, bigEndian_), static_cast<std::size_t>(size));
        if (!value.empty())
            directory.emplace(tag, TiffField(type, bigEndian_, std::move(value)));
    }

    // Fields may all point to the same bytes.
    bool reserve(std::uint64_t size)
    {
        if (size > room_)
            return false;
        room_ -= size;
        return true;
    }

    void addPicture(TiffDirectory directory, TiffTags& tags)
    {
        const std::uint64_t next = chain_;
        if (tags.exif.empty())
            tags.exif = directoryAt(directory, exifDirectory);
        if (tags.gps.empty())
            tags.gps = directoryAt(directory, gpsDirectory);
        std::vector<std::uint64_t> below;
        if (const TiffField* places = TiffTags::find(directory, subDirectories))
            for (std::size_t i = 0; i < std::min(places->count(), mostDirectories); ++i)
                below.push_back(static_cast<std::uint64_t>(places->whole(i).value_or(0)));
        tags.pictures.push_back(std::move(directory));
        for (const std::uint64_t place : below)
            if (auto picture = seen_.size() < mostDirectories ? readDirectory(place) : std::nullopt)
                tags.pictures.push_back(std::move(*picture));
        chain_ = next;
    }

    TiffDirectory directoryAt(const TiffDirectory& directory, std::uint16_t tag)
    {
        const TiffField* place = TiffTags::find(directory, tag);
        const std::int64_t position = place != nullptr ? place->whole().value_or(0) : 0;
        return position > 0 ? readDirectory(static_cast<std::uint64_t>(position)).value_or(TiffDirectory())
                            : TiffDirectory();
    }

    RandomAccessFile& file_;
    bool bigEndian_;
    std::set<std::uint64_t> seen_;
    std::uint64_t chain_ = 0;
    std::size_t room_ = 2 * longestBlock;
};

}  // namespace

std::size_t TiffField::count() const
{
    return sizeOf(type_) == 0 ? 0 : bytes_.size() / sizeOf(type_);
}

std::optional<std::uint64_t> TiffField::bits(std::size_t position, std::size_t size) const
{
    if (position > bytes_.size() || bytes_.size() - position < size)
        return std::nullopt;
    return number(std::span(bytes_).subspan(position, size), bigEndian_);
}

std::optional<std::int64_t> TiffField::whole(std::size_t index) const
{
    const auto value = bits(index * sizeOf(type_), sizeOf(type_));
    if (!value)
        return std::nullopt;
    switch (type_) {
    case byteType:
    case undefinedType:
    case shortType:
    case longType:
    case directoryType:
        return static_cast<std::int64_t>(*value);
    case signedByteType:
        return static_cast<std::int8_t>(*value);
    case signedShortType:
        return static_cast<std::int16_t>(*value);
    case signedLongType:
        return static_cast<std::int32_t>(*value);
    default:
        return std::nullopt;
    }
}

std::optional<double> TiffField::real(std::size_t index) const
{
    const std::size_t size = sizeOf(type_);
    if (const auto value = bits(index * size, size); value && type_ == floatType)
        return std::bit_cast<float>(static_cast<std::uint32_t>(*value));
    else if (value && type_ == doubleType)
        return std::bit_cast<double>(*value);
    if (type_ != rationalType && type_ != signedRationalType) {
        const auto value = whole(index);
        return value ? std::optional(static_cast<double>(*value)) : std::nullopt;
    }
    const auto above = bits(index * 8, 4);
    const auto below = bits(index * 8 + 4, 4);
    if (!above || !below || *below == 0)
        return std::nullopt;
    if (type_ == rationalType)
        return static_cast<double>(*above) / static_cast<double>(*below);
    return static_cast<double>(static_cast<std::int32_t>(*above)) /
           static_cast<double>(static_cast<std::int32_t>(*below));
}

std::vector<double> TiffField::reals() const
{
    std::vector<double> values;
    for (std::size_t i = 0; i < count(); ++i) {
        const auto value = real(i);
        if (!value)
            return {};
        values.push_back(*value);
    }
    return values;
}

std::string_view TiffField::bytes() const
{
    return {reinterpret_cast<const char*>(bytes_.data()), bytes_.size()};
}

const TiffField* TiffTags::find(const TiffDirectory& directory, std::uint16_t tag)
{
    const auto found = directory.find(tag);
    return found != directory.end() ? &found->second : nullptr;
}

const TiffField* TiffTags::first(std::uint16_t tag) const
{
    return pictures.empty() ? nullptr : find(pictures.front(), tag);
}

bool beginsLikeTiff(std::string_view beginning)
{
    constexpr std::array<std::string_view, 6> marks = {
        std::string_view("II*\0", 4), std::string_view("MM\0*", 4), "IIRO", "IIRS", "MMOR",
        std::string_view("IIU\0", 4)};
    return beginning.size() >= 8 && std::any_of(marks.begin(), marks.end(), [beginning](std::string_view mark) {
               return beginning.starts_with(mark);
           });
}

TiffTags readTiffTags(RandomAccessFile& file)
{
    std::array<std::byte, 8> head{};
    const auto count = file.readAt(0, head);
    if (!count || !beginsLikeTiff({reinterpret_cast<const char*>(head.data()), *count}))
        return {};
    const bool bigEndian = head[0] == std::byte{'M'};
    return Walk(file, bigEndian).run(number(std::span(head).subspan(4), bigEndian));
}

}  // namespace kelvane
