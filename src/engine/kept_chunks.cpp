#include "engine/kept_chunks.h"

#include <algorithm>

namespace kelvane {

KeptChunks::KeptChunks(std::size_t largestChunk, std::size_t budget)
    : blockSize_(largestChunk), mostBlocks_(std::max<std::size_t>(budget / largestChunk, 1))
{
}

std::span<std::byte> KeptChunks::room(std::size_t length)
{
    if (offset_ + length > blockSize_ && block_ < mostBlocks_) {
        ++block_;
        offset_ = 0;
    }
    if (block_ == blocks_.size())
        blocks_.push_back(std::make_unique_for_overwrite<std::byte[]>(blockSize_));
    given_ = length;
    return {blocks_[block_].get() + offset_, length};
}

bool KeptChunks::keep()
{
    if (block_ == mostBlocks_)
        return false;
    offset_ += given_;
    return true;
}

void KeptChunks::clear()
{
    block_ = 0;
    offset_ = 0;
}

}  // namespace kelvane
