// Compound files, the containers of office documents before 2007 ([MS-CFB]).
#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/random_access_file.h"

namespace kelvane {

// The streams of the root storage; what lies in further storages belongs to embedded objects. The file must outlive it.
class CompoundFile {
public:
    // `invalid` for what is no compound file, or whose tables are damaged.
    [[nodiscard]] static Result<CompoundFile> open(RandomAccessFile& file);

    [[nodiscard]] bool has(const std::string& stream) const { return streams_.count(stream) != 0; }
    // At most so many bytes from the beginning; notFound without such a stream.
    [[nodiscard]] Result<std::vector<std::byte>> read(const std::string& stream, std::size_t most);

private:
    struct Stream {
        std::uint32_t start = 0;
        std::uint64_t size = 0;
    };

    explicit CompoundFile(RandomAccessFile& file) : file_(&file) {}
    [[nodiscard]] Status readHeader();
    [[nodiscard]] Status readTables(std::span<const std::byte> header);
    [[nodiscard]] Status readDirectory(std::uint32_t start);
    void listRoot(std::span<const std::byte> directory);
    [[nodiscard]] Result<std::vector<std::byte>> bytesAt(std::uint64_t position, std::size_t size);
    [[nodiscard]] Result<std::uint32_t> sectorAfter(std::uint32_t sector);
    [[nodiscard]] Result<std::vector<std::byte>> chain(std::uint32_t start, std::uint64_t most);
    [[nodiscard]] Result<std::vector<std::byte>> smallChain(std::uint32_t start, std::uint64_t most);

    RandomAccessFile* file_;
    std::size_t sectorSize_ = 512;
    std::uint64_t smallLimit_ = 4096;          // streams below it lie in the small-sector stream
    std::vector<std::uint32_t> tableSectors_;  // where the allocation table lies
    std::vector<std::byte> tablePiece_;        // the sector of it that was read last
    std::uint32_t pieceNumber_ = 0;
    std::uint32_t smallTable_ = 0;
    Stream root_;  // the small sectors
    std::map<std::string, Stream> streams_;
};

}  // namespace kelvane
