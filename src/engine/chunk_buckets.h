// The chunks of one round, told apart by their bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace kelvane {

class KeptChunks;

// 128 bits of hash, by which a chunk finds the buckets that it may belong to. Equality never rests on it.
struct ChunkHash {
    std::uint64_t low = 0, high = 0;
    friend bool operator==(const ChunkHash&, const ChunkHash&) = default;
};
using ChunkHasher = ChunkHash (*)(std::span<const std::byte> chunk);

// XXH3 (xxHash 0.8).
[[nodiscard]] ChunkHash hashChunk(std::span<const std::byte> chunk);

// One bucket for each different chunk. All chunks of a round have one length.
class ChunkBuckets {
public:
    struct Bucket {
        ChunkHash hash;
        const std::byte* bytes = nullptr;  // of the representative; null when there was no room: made by hash only
        std::uint32_t count = 0;
    };

    explicit ChunkBuckets(ChunkHasher hasher = hashChunk) : hasher_(hasher) {}

    // For a round over so many files.
    void begin(std::size_t files);
    // The index of the bucket that the chunk belongs to; the chunk is what `kept` gave room for last.
    [[nodiscard]] std::uint32_t place(std::span<const std::byte> chunk, KeptChunks& kept);
    [[nodiscard]] const Bucket& operator[](std::uint32_t index) const { return buckets_[index]; }
    [[nodiscard]] std::uint32_t size() const { return static_cast<std::uint32_t>(buckets_.size()); }

private:
    [[nodiscard]] std::uint32_t add(std::span<const std::byte> chunk, KeptChunks& kept);
    [[nodiscard]] std::uint32_t findOrAdd(std::span<const std::byte> chunk, KeptChunks& kept);
    void startHashing(std::size_t chunkLength);
    void enter(std::uint32_t bucket);

    ChunkHasher hasher_;
    std::vector<Bucket> buckets_;
    std::vector<std::uint32_t> slots_;  // open addressing by hash: bucket index + 1, 0 when free
    std::size_t files_ = 0;
    bool hashing_ = false;
};

}  // namespace kelvane
