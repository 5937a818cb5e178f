// Two short runs of characters made ready for finding common blocks by operations on bits.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace kelvane {

// Two words at a time, for processors that calculate with several numbers at once (every 64-bit PC does).
using WordPair [[gnu::vector_size(16)]] = std::uint64_t;

// Places of a run, a bit each.
struct alignas(16) Places {
    static constexpr std::size_t wordBits = 64, words = 4;
    std::array<std::uint64_t, words> bits;

    [[nodiscard]] WordPair pair(std::size_t i) const
    {
        WordPair pair;
        std::memcpy(&pair, bits.data() + 2 * i, sizeof pair);
        return pair;
    }
};

// Where a character stands in y; and that moved by one and two, so that a block is found by "and" alone.
struct CharacterPlaces {
    Places here, oneEarlier, twoEarlier, oneLater;
};

// The characters are numbered anew: those of y from 1 on, 0 for all that do not stand in y.
class NumberedRuns {
public:
    static constexpr std::size_t longest = Places::words * Places::wordBits;
    static constexpr std::size_t mostCharacters = 254;

    NumberedRuns() {}  // nothing is cleared that is not used

    // False when y has too many different characters. The runs are not longer than the longest.
    [[nodiscard]] bool read(std::u16string_view x, std::u16string_view y);

    [[nodiscard]] std::size_t lengthX() const { return lengthX_; }
    [[nodiscard]] std::size_t lengthY() const { return lengthY_; }

    // Of the character at a place of x; from one before the run to beyond its end, where there is nothing.
    [[nodiscard]] const CharacterPlaces& inX(std::ptrdiff_t place) const
    {
        return characters_[x_[static_cast<std::size_t>(place + 1)]];
    }

    // How far both agree from these places on.
    [[nodiscard]] std::size_t agreement(std::size_t x, std::size_t y) const
    {
        for (std::size_t length = 0;; length += chunk) {
            std::uint64_t inX = 0, inY = 0;
            std::memcpy(&inX, x_.data() + 1 + x + length, chunk);
            std::memcpy(&inY, y_.data() + y + length, chunk);
            if (inX != inY)
                return length + firstByte(inX ^ inY);
        }
    }

private:
    static constexpr std::size_t chunk = sizeof(std::uint64_t);
    static constexpr std::uint8_t behindY = 255;  // unlike anything in x

    static std::size_t firstByte(std::uint64_t difference)
    {
        const int bits =
            std::endian::native == std::endian::little ? std::countr_zero(difference) : std::countl_zero(difference);
        return static_cast<std::size_t>(bits) / 8;
    }

    template <class Numbers>
    bool readBy(Numbers numbers, std::u16string_view x, std::u16string_view y);
    void makeMovedCopies();

    std::size_t lengthX_ = 0, lengthY_ = 0, count_ = 0;
    std::array<std::uint8_t, 1 + longest + chunk> x_;
    std::array<std::uint8_t, longest + chunk> y_;
    std::array<CharacterPlaces, mostCharacters + 1> characters_;
};

}  // namespace kelvane
