#include "support/compound_maker.h"

#include <cstdint>

namespace kelvane::testing {
namespace {

constexpr std::uint32_t endOfChain = 0xFFFFFFFE, noStream = 0xFFFFFFFF, tableSector = 0xFFFFFFFD;

std::string padded(std::string bytes, std::size_t unit, char filling = '\0')
{
    bytes.resize((bytes.size() + unit - 1) / unit * unit, filling);
    return bytes;
}

// Sectors of one size, and the table that chains them.
struct Sectors {
    std::size_t size;
    std::string bytes;
    std::string table;

    std::uint32_t add(const std::string& content)
    {
        const auto first = static_cast<std::uint32_t>(bytes.size() / size);
        bytes += padded(content, size);
        const auto end = static_cast<std::uint32_t>(bytes.size() / size);
        for (std::uint32_t next = first + 1; next <= end; ++next)
            table += littleEndianBytes(next < end ? next : endOfChain);
        return end > first ? first : endOfChain;
    }
};

std::string entry(const std::string& name, int type, bool last, std::uint32_t number, std::uint32_t start,
                  std::size_t size)
{
    std::string units;
    for (const char c : name)
        units += std::string{c, '\0'};
    const std::uint32_t right = type == 2 && !last ? number + 1 : noStream;
    units.resize(64, '\0');
    return units + littleEndianBytes(static_cast<std::uint16_t>(name.size() * 2 + 2)) + static_cast<char>(type) + '\1' +
           littleEndianBytes(noStream) + littleEndianBytes(right) + littleEndianBytes(type == 5 ? 1u : noStream) +
           std::string(36, '\0') + littleEndianBytes(start) + littleEndianBytes(static_cast<std::uint64_t>(size));
}

}  // namespace

std::string makeCompound(const std::vector<std::pair<std::string, std::string>>& streams)
{
    Sectors large{512, {}, {}}, small{64, {}, {}};
    std::string entries;
    for (std::uint32_t i = 0; i < streams.size(); ++i) {
        const auto& [name, content] = streams[i];
        Sectors& sectors = content.size() < 4096 ? small : large;
        entries += entry(name, 2, i + 1 == streams.size(), i + 1, sectors.add(content), content.size());
    }
    const std::uint32_t smallStart = large.add(small.bytes);
    const std::uint32_t smallTable = large.add(padded(small.table, 512, '\xFF'));
    const std::string root = entry("Root Entry", 5, true, 0, smallStart, small.bytes.size());
    const std::uint32_t directory = large.add(root + entries);
    const auto table = static_cast<std::uint32_t>(large.bytes.size() / large.size);
    const std::string header =
        "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1" + std::string(16, '\0') + std::string("\x3E\0\3\0\xFE\xFF\x09\0\6\0", 10) +
        std::string(6, '\0') + littleEndianBytes(0u) + littleEndianBytes(1u) + littleEndianBytes(directory) +
        littleEndianBytes(0u) + littleEndianBytes(4096u) + littleEndianBytes(smallTable) + littleEndianBytes(1u) +
        littleEndianBytes(endOfChain) + littleEndianBytes(0u) + littleEndianBytes(table);
    return padded(header, 512, '\xFF') + large.bytes +
           padded(large.table + littleEndianBytes(tableSector), 512, '\xFF');
}

}  // namespace kelvane::testing
