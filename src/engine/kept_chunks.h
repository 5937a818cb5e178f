// Where a content worker keeps what it read of one representative a class.
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <vector>

namespace kelvane {

// Room for chunks, handed out in turn and taken back all at once. The memory stays for the next round.
class KeptChunks {
public:
    // largestChunk: no chunk is longer. budget: bytes to keep at most, though at least one chunk.
    KeptChunks(std::size_t largestChunk, std::size_t budget);

    // Room to read the next chunk into; it is given out again by the next call unless it was kept.
    [[nodiscard]] std::span<std::byte> room(std::size_t length);
    // Keeps what room() gave last. False when the budget is spent: the chunk is lost with the next call of room().
    [[nodiscard]] bool keep();
    void clear();

private:
    std::size_t blockSize_;
    std::size_t mostBlocks_;
    std::vector<std::unique_ptr<std::byte[]>> blocks_;  // the one after the budget is scratch
    std::size_t block_ = 0;
    std::size_t offset_ = 0;
    std::size_t given_ = 0;
};

}  // namespace kelvane
