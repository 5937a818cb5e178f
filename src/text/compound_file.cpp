#include "text/compound_file.h"

#include <algorithm>
#include <array>

#include "base/utf.h"
#include "text/little_endian.h"

namespace kelvane {
namespace {

constexpr std::size_t headerSize = 512;
constexpr std::uint64_t signature = 0xE11AB1A1E011CFD0;
constexpr std::uint32_t firstSpecial = 0xFFFFFFFA;  // from here on no number of a sector
constexpr std::size_t smallSectorSize = 64;
constexpr std::size_t entrySize = 128;
// Nobody keeps that many streams in one document; a document this long has no longer table either.
constexpr std::size_t mostDirectory = 1024 * 1024;
constexpr std::size_t mostTableSectors = 1024 * 1024;

Error damaged(const char* what)
{
    return {ErrorKind::invalid, 0, what};
}

bool isSector(std::uint32_t number)
{
    return number < firstSpecial;
}

std::string entryName(std::span<const std::byte> entry)
{
    const std::size_t units = std::min<std::size_t>(littleEndian<std::uint16_t>(entry, 64), 64) / 2;
    std::u16string name;
    for (std::size_t i = 0; i + 1 < units; ++i)
        name += static_cast<char16_t>(littleEndian<std::uint16_t>(entry, i * 2));
    return toUtf8(name);
}

}  // namespace

Result<CompoundFile> CompoundFile::open(RandomAccessFile& file)
{
    CompoundFile opened(file);
    if (const Status status = opened.readHeader(); !status)
        return status.error();
    return opened;
}

Result<std::vector<std::byte>> CompoundFile::bytesAt(std::uint64_t position, std::size_t size)
{
    std::vector<std::byte> bytes(size);
    const auto got = file_->readAt(position, bytes);
    if (!got)
        return got.error();
    if (*got == 0)
        return damaged("a sector lies beyond the end");
    bytes.resize(*got);  // the last sector may be cut
    return bytes;
}

Status CompoundFile::readHeader()
{
    const auto header = bytesAt(0, headerSize);
    if (!header)
        return header.error();
    const auto shift = littleEndian<std::uint16_t>(*header, 30);
    if (littleEndian<std::uint64_t>(*header, 0) != signature || (shift != 9 && shift != 12))
        return damaged("no compound file");
    sectorSize_ = std::size_t{1} << shift;
    smallLimit_ = littleEndian<std::uint32_t>(*header, 56);
    smallTable_ = littleEndian<std::uint32_t>(*header, 60);
    if (const Status status = readTables(*header); !status)
        return status;
    return readDirectory(littleEndian<std::uint32_t>(*header, 48));
}

// The header has the numbers of the table's first sectors, a chain of sectors has the rest.
Status CompoundFile::readTables(std::span<const std::byte> header)
{
    for (std::size_t at = 76; at + 4 <= headerSize; at += 4)
        if (const auto sector = littleEndian<std::uint32_t>(header, at); isSector(sector))
            tableSectors_.push_back(sector);
    const std::uint64_t sectorsInFile = file_->size() / sectorSize_;
    std::uint32_t next = littleEndian<std::uint32_t>(header, 68);
    for (std::uint64_t steps = 0; isSector(next) && steps < sectorsInFile; ++steps) {
        const auto piece = bytesAt((std::uint64_t{next} + 1) * sectorSize_, sectorSize_);
        if (!piece)
            return piece.error();
        for (std::size_t at = 0; at + 8 <= piece->size() && tableSectors_.size() < mostTableSectors; at += 4)
            if (const auto sector = littleEndian<std::uint32_t>(*piece, at); isSector(sector))
                tableSectors_.push_back(sector);
        next = littleEndian<std::uint32_t>(*piece, sectorSize_ - 4);
    }
    return {};
}

Result<std::uint32_t> CompoundFile::sectorAfter(std::uint32_t sector)
{
    const auto entries = static_cast<std::uint32_t>(sectorSize_ / 4);
    const std::uint32_t number = sector / entries;
    if (number >= tableSectors_.size())
        return damaged("a sector is not in the table");
    if (tablePiece_.empty() || pieceNumber_ != number) {
        auto piece = bytesAt((std::uint64_t{tableSectors_[number]} + 1) * sectorSize_, sectorSize_);
        if (!piece)
            return piece.error();
        tablePiece_ = std::move(*piece);
        pieceNumber_ = number;
    }
    return littleEndian<std::uint32_t>(tablePiece_, sector % entries * 4);
}

// A chain that turns back on itself ends where the wanted bytes do.
Result<std::vector<std::byte>> CompoundFile::chain(std::uint32_t start, std::uint64_t most)
{
    std::vector<std::byte> bytes;
    std::uint32_t sector = start;
    while (isSector(sector) && bytes.size() < most) {
        const auto piece = bytesAt((std::uint64_t{sector} + 1) * sectorSize_, sectorSize_);
        if (!piece)
            return piece.error();
        bytes.insert(bytes.end(), piece->begin(), piece->end());
        const auto next = sectorAfter(sector);
        if (!next)
            return next.error();
        sector = *next;
    }
    bytes.resize(static_cast<std::size_t>(std::min<std::uint64_t>(bytes.size(), most)));
    return bytes;
}

Result<std::vector<std::byte>> CompoundFile::smallChain(std::uint32_t start, std::uint64_t most)
{
    const auto table = chain(smallTable_, mostDirectory);
    const auto sectors = chain(root_.start, std::min<std::uint64_t>(root_.size, mostDirectory));
    if (!table || !sectors)
        return table ? sectors.error() : table.error();
    std::vector<std::byte> bytes;
    std::uint32_t sector = start;
    while (isSector(sector) && bytes.size() < most) {
        const std::uint64_t at = std::uint64_t{sector} * smallSectorSize;
        if (at >= sectors->size())
            return damaged("a small sector lies beyond the end");
        const auto piece = std::span(*sectors).subspan(static_cast<std::size_t>(at));
        const auto end = piece.begin() + static_cast<std::ptrdiff_t>(std::min(piece.size(), smallSectorSize));
        bytes.insert(bytes.end(), piece.begin(), end);
        sector = std::size_t{sector} * 4 < table->size() ? littleEndian<std::uint32_t>(*table, std::size_t{sector} * 4)
                                                         : firstSpecial;
    }
    bytes.resize(static_cast<std::size_t>(std::min<std::uint64_t>(bytes.size(), most)));
    return bytes;
}

Status CompoundFile::readDirectory(std::uint32_t start)
{
    const auto directory = chain(start, std::min<std::uint64_t>(mostDirectory, file_->size()));
    if (!directory)
        return directory.error();
    if (directory->size() < entrySize)
        return damaged("no directory");
    listRoot(*directory);
    return {};
}

// The root's entries form a tree of which damage may have made anything, so each is visited once at most.
void CompoundFile::listRoot(std::span<const std::byte> directory)
{
    const std::size_t count = directory.size() / entrySize;
    const auto entry = [directory](std::size_t number) { return directory.subspan(number * entrySize, entrySize); };
    const auto stream = [&entry](std::size_t number) {
        return Stream{littleEndian<std::uint32_t>(entry(number), 116), littleEndian<std::uint32_t>(entry(number), 120)};
    };
    root_ = stream(0);
    std::vector<bool> seen(count);
    std::vector<std::uint32_t> open{littleEndian<std::uint32_t>(entry(0), 76)};
    while (!open.empty()) {
        const std::uint32_t number = open.back();
        open.pop_back();
        if (number >= count || seen[number])
            continue;
        seen[number] = true;
        open.push_back(littleEndian<std::uint32_t>(entry(number), 68));
        open.push_back(littleEndian<std::uint32_t>(entry(number), 72));
        constexpr auto isStream = std::byte{2};
        if (entry(number)[66] == isStream)
            streams_.emplace(entryName(entry(number)), stream(number));
    }
}

Result<std::vector<std::byte>> CompoundFile::read(const std::string& name, std::size_t most)
{
    const auto found = streams_.find(name);
    if (found == streams_.end())
        return Error{ErrorKind::notFound, 0, "no such stream"};
    const Stream& stream = found->second;
    const std::uint64_t size = std::min<std::uint64_t>(stream.size, most);
    return stream.size < smallLimit_ ? smallChain(stream.start, size) : chain(stream.start, size);
}

}  // namespace kelvane
