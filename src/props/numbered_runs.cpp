#include "props/numbered_runs.h"

namespace kelvane {
namespace {

// Numbers by character, 0 where there is none yet.
class NarrowNumbers {
public:
    std::uint8_t& operator[](char16_t unit) { return numbers_[unit]; }

private:
    std::array<std::uint8_t, 256> numbers_{};
};

// The same for any characters: a hash table with room for twice as many as two runs have.
class WideNumbers {
public:
    std::uint8_t& operator[](char16_t unit)
    {
        std::size_t slot = (unit * 0x9E37u >> 6) % slots;
        while (numbers_[slot] != 0 && units_[slot] != unit)
            slot = (slot + 1) % slots;
        units_[slot] = unit;
        return numbers_[slot];
    }

private:
    static constexpr std::size_t slots = 1024;
    std::array<std::uint8_t, slots> numbers_{};
    std::array<char16_t, slots> units_{};
};

bool allNarrow(std::u16string_view text)
{
    unsigned all = 0;
    for (const char16_t unit : text)
        all |= unit;
    return all < 256;
}

}  // namespace

bool NumberedRuns::read(std::u16string_view x, std::u16string_view y)
{
    lengthX_ = x.size();
    lengthY_ = y.size();
    return allNarrow(x) && allNarrow(y) ? readBy(NarrowNumbers(), x, y) : readBy(WideNumbers(), x, y);
}

template <class Numbers>
bool NumberedRuns::readBy(Numbers numbers, std::u16string_view x, std::u16string_view y)
{
    count_ = 0;
    characters_[0] = {};
    for (std::size_t place = 0; place < y.size(); ++place) {
        std::uint8_t& number = numbers[y[place]];
        if (number == 0) {
            if (count_ == mostCharacters)
                return false;
            number = static_cast<std::uint8_t>(++count_);
            characters_[number].here = {};
        }
        y_[place] = number;
        characters_[number].here.bits[place / Places::wordBits] |= std::uint64_t{1} << place % Places::wordBits;
    }
    std::memset(y_.data() + y.size(), behindY, chunk);
    x_[0] = 0;
    for (std::size_t place = 0; place < x.size(); ++place)
        x_[place + 1] = numbers[x[place]];
    std::memset(x_.data() + 1 + x.size(), 0, chunk);
    makeMovedCopies();
    return true;
}

void NumberedRuns::makeMovedCopies()
{
    constexpr std::size_t all = Places::wordBits;
    for (std::size_t number = 1; number <= count_; ++number) {
        CharacterPlaces& character = characters_[number];
        const auto& here = character.here.bits;
        for (std::size_t i = 0; i < here.size(); ++i) {
            const std::uint64_t before = i > 0 ? here[i - 1] : 0, after = i + 1 < here.size() ? here[i + 1] : 0;
            character.oneEarlier.bits[i] = here[i] >> 1 | after << (all - 1);
            character.twoEarlier.bits[i] = here[i] >> 2 | after << (all - 2);
            character.oneLater.bits[i] = here[i] << 1 | before >> (all - 1);
        }
    }
}

}  // namespace kelvane
