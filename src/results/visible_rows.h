// Which positions of a long list are in view, and how positions and rows translate into one another.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kelvane {

// A bit a position, with running counts over blocks of 512 that are brought up to date on the next question. So hiding
// costs a bit an item, whatever stands behind it. Used by one thread at a time, questions included.
class VisibleRows {
public:
    // New positions are in view.
    void resize(std::size_t positions);
    void set(std::size_t position, bool visible);
    [[nodiscard]] bool test(std::size_t position) const
    {
        return (words_[position / bitsPerWord] >> (position % bitsPerWord) & 1) != 0;
    }
    [[nodiscard]] std::uint32_t count() const { return rank(size_); }
    // How many are in view before the position, which may be the end.
    [[nodiscard]] std::uint32_t rank(std::size_t position) const;
    // The position of the row; there must be such a row.
    [[nodiscard]] std::size_t select(std::uint32_t row) const;

private:
    static constexpr std::size_t bitsPerWord = 64;
    static constexpr std::size_t wordsPerBlock = 8;

    void count(std::size_t blocks) const;

    std::vector<std::uint64_t> words_;
    std::size_t size_ = 0;
    mutable std::vector<std::uint32_t> before_;  // in view before each block
    mutable std::size_t counted_ = 0;            // blocks whose counts hold
};

}  // namespace kelvane
