#define XXH_INLINE_ALL
#include "engine/chunk_buckets.h"

#include <xxhash.h>

#include <bit>
#include <cstring>

#include "engine/kept_chunks.h"

namespace kelvane {

ChunkHash hashChunk(std::span<const std::byte> chunk)
{
    const XXH128_hash_t hash = XXH3_128bits(chunk.data(), chunk.size());
    return {hash.low64, hash.high64};
}

void ChunkBuckets::begin(std::size_t files)
{
    buckets_.clear();
    files_ = files;
    hashing_ = false;
}

// Files that are mostly equal to the first one (and the second of two files) are told by their bytes alone; hashing
// begins with the second bucket.
std::uint32_t ChunkBuckets::place(std::span<const std::byte> chunk, KeptChunks& kept)
{
    std::uint32_t found = 0;
    if (buckets_.empty())
        found = add(chunk, kept);
    else if (std::memcmp(buckets_[0].bytes, chunk.data(), chunk.size()) != 0)
        found = files_ == 2 ? add(chunk, kept) : findOrAdd(chunk, kept);
    ++buckets_[found].count;
    return found;
}

std::uint32_t ChunkBuckets::add(std::span<const std::byte> chunk, KeptChunks& kept)
{
    buckets_.push_back({{}, kept.keep() ? chunk.data() : nullptr, 0});
    return size() - 1;
}

std::uint32_t ChunkBuckets::findOrAdd(std::span<const std::byte> chunk, KeptChunks& kept)
{
    if (!hashing_)
        startHashing(chunk.size());
    const ChunkHash hash = hasher_(chunk);
    for (std::size_t slot = hash.low;; ++slot) {
        const std::uint32_t entry = slots_[slot & (slots_.size() - 1)];
        if (entry == 0)
            break;
        const Bucket& bucket = buckets_[entry - 1];
        if (bucket.hash == hash &&
            (bucket.bytes == nullptr || std::memcmp(bucket.bytes, chunk.data(), chunk.size()) == 0))
            return entry - 1;
    }
    const std::uint32_t added = add(chunk, kept);
    buckets_[added].hash = hash;
    enter(added);
    return added;
}

void ChunkBuckets::startHashing(std::size_t chunkLength)
{
    hashing_ = true;
    slots_.assign(std::bit_ceil(2 * files_), 0);
    buckets_[0].hash = hasher_({buckets_[0].bytes, chunkLength});
    enter(0);
}

void ChunkBuckets::enter(std::uint32_t bucket)
{
    std::size_t slot = buckets_[bucket].hash.low & (slots_.size() - 1);
    while (slots_[slot] != 0)
        slot = (slot + 1) & (slots_.size() - 1);
    slots_[slot] = bucket + 1;
}

}  // namespace kelvane
