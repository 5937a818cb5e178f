#include "results/visible_rows.h"

#include <algorithm>
#include <bit>

namespace kelvane {

void VisibleRows::resize(std::size_t positions)
{
    const std::size_t old = size_;
    size_ = positions;
    words_.resize((positions + bitsPerWord - 1) / bitsPerWord);
    if (positions < old && positions % bitsPerWord != 0)
        words_.back() &= (std::uint64_t{1} << (positions % bitsPerWord)) - 1;
    counted_ = std::min(counted_, std::min(old, positions) / (bitsPerWord * wordsPerBlock));
    for (std::size_t position = old; position < positions; ++position)
        words_[position / bitsPerWord] |= std::uint64_t{1} << (position % bitsPerWord);
}

void VisibleRows::set(std::size_t position, bool visible)
{
    const std::uint64_t bit = std::uint64_t{1} << (position % bitsPerWord);
    std::uint64_t& word = words_[position / bitsPerWord];
    if (((word & bit) != 0) == visible)
        return;
    word ^= bit;
    counted_ = std::min(counted_, position / (bitsPerWord * wordsPerBlock));
}

// The counts of a block tell what stands before it, so those of block n hold once blocks 0 to n - 1 are counted.
void VisibleRows::count(std::size_t blocks) const
{
    if (before_.size() <= blocks)
        before_.resize(blocks + 1);
    for (std::size_t block = counted_; block < blocks; ++block) {
        std::uint32_t bits = before_[block];
        const std::size_t end = std::min(words_.size(), (block + 1) * wordsPerBlock);
        for (std::size_t word = block * wordsPerBlock; word < end; ++word)
            bits += static_cast<std::uint32_t>(std::popcount(words_[word]));
        before_[block + 1] = bits;
    }
    counted_ = std::max(counted_, blocks);
}

std::uint32_t VisibleRows::rank(std::size_t position) const
{
    const std::size_t word = position / bitsPerWord;
    const std::size_t block = word / wordsPerBlock;
    count(block);
    std::uint32_t bits = before_[block];
    for (std::size_t i = block * wordsPerBlock; i < word; ++i)
        bits += static_cast<std::uint32_t>(std::popcount(words_[i]));
    if (const std::size_t rest = position % bitsPerWord; rest != 0)
        bits += static_cast<std::uint32_t>(std::popcount(words_[word] & ((std::uint64_t{1} << rest) - 1)));
    return bits;
}

std::size_t VisibleRows::select(std::uint32_t row) const
{
    const std::size_t blocks = (words_.size() + wordsPerBlock - 1) / wordsPerBlock;
    count(blocks);
    const auto after = std::upper_bound(before_.begin(), before_.begin() + static_cast<std::ptrdiff_t>(blocks), row);
    const auto block = static_cast<std::size_t>(after - before_.begin()) - 1;
    std::uint32_t rest = row - before_[block];
    std::size_t word = block * wordsPerBlock;
    for (auto bits = static_cast<std::uint32_t>(std::popcount(words_[word])); rest >= bits;
         bits = static_cast<std::uint32_t>(std::popcount(words_[word]))) {
        rest -= bits;
        ++word;
    }
    std::uint64_t left = words_[word];
    for (; rest > 0; --rest)
        left &= left - 1;
    return word * bitsPerWord + static_cast<std::size_t>(std::countr_zero(left));
}

}  // namespace kelvane
