#include "props/short_gestalt.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

namespace kelvane {
namespace {

constexpr std::size_t wordBits = 64;

// Places of y, a bit each.
using Places = std::array<std::uint64_t, longestShortRun / wordBits>;

// Where a character stands in y; and that moved by one and two, so that a block is found by "and" alone.
struct Character {
    Places here, oneEarlier, twoEarlier, oneLater;
};

// A part of x and a part of y, by their ends.
struct Runs {
    std::int16_t xBegin, xEnd, yBegin, yEnd;

    [[nodiscard]] bool empty() const { return xBegin == xEnd || yBegin == yEnd; }
    [[nodiscard]] bool countNothing() const { return empty() || (xEnd - xBegin == 1 && yEnd - yBegin == 1); }
};

struct Block {
    std::int16_t x, y, length;
};

constexpr std::int16_t narrowed(std::size_t number)
{
    return static_cast<std::int16_t>(number);
}

// The two runs with their characters numbered anew: those of y from 1 on, 0 for all that do not stand in y.
class NumberedRuns {
public:
    static constexpr std::size_t mostCharacters = 254;
    static constexpr std::uint8_t behindY = 255;  // unlike anything in x

    // False when y has too many different characters.
    [[nodiscard]] bool read(std::u16string_view x, std::u16string_view y);

    [[nodiscard]] std::size_t lengthX() const { return lengthX_; }
    [[nodiscard]] std::size_t lengthY() const { return lengthY_; }
    // From one before the run to beyond its end, where there is nothing.
    [[nodiscard]] const Character& inX(std::ptrdiff_t place) const
    {
        return characters_[x_[static_cast<std::size_t>(place + 1)]];
    }
    // How far both agree from these places on.
    [[nodiscard]] std::size_t agreement(std::size_t x, std::size_t y) const;

private:
    template <class NumberOf>
    bool readBy(NumberOf numberOf, std::u16string_view x, std::u16string_view y);
    void makeMovedCopies();

    static constexpr std::size_t chunk = sizeof(std::uint64_t);
    std::size_t lengthX_ = 0, lengthY_ = 0;
    std::size_t count_ = 0;
    std::array<std::uint8_t, 1 + longestShortRun + chunk> x_;
    std::array<std::uint8_t, longestShortRun + chunk> y_;
    std::array<Character, mostCharacters + 1> characters_;
};

// Numbers by character, 0 where there is none yet.
class NarrowNumbers {
public:
    std::uint8_t& operator[](char16_t unit) { return numbers_[unit]; }

private:
    std::array<std::uint8_t, 256> numbers_{};
};

// The same for any characters: a hash table with room for many more than it ever holds.
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
    std::array<char16_t, slots> units_;
};

bool allNarrow(std::u16string_view text)
{
    unsigned all = 0;
    for (const char16_t unit : text)
        all |= unit;
    return all < 256;
}

bool NumberedRuns::read(std::u16string_view x, std::u16string_view y)
{
    lengthX_ = x.size();
    lengthY_ = y.size();
    return allNarrow(x) && allNarrow(y) ? readBy(NarrowNumbers(), x, y) : readBy(WideNumbers(), x, y);
}

template <class Numbers>
bool NumberedRuns::readBy(Numbers numbers, std::u16string_view x, std::u16string_view y)
{
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
        characters_[number].here[place / wordBits] |= std::uint64_t{1} << place % wordBits;
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
    for (std::size_t number = 1; number <= count_; ++number) {
        Character& character = characters_[number];
        const Places& here = character.here;
        for (std::size_t i = 0; i < here.size(); ++i) {
            const std::uint64_t before = i > 0 ? here[i - 1] : 0, after = i + 1 < here.size() ? here[i + 1] : 0;
            character.oneEarlier[i] = here[i] >> 1 | after << (wordBits - 1);
            character.twoEarlier[i] = here[i] >> 2 | after << (wordBits - 2);
            character.oneLater[i] = here[i] << 1 | before >> (wordBits - 1);
        }
    }
}

std::size_t NumberedRuns::agreement(std::size_t x, std::size_t y) const
{
    std::size_t length = 0;
    while (true) {
        std::uint64_t inX = 0, inY = 0;
        std::memcpy(&inX, x_.data() + 1 + x + length, chunk);
        std::memcpy(&inY, y_.data() + y + length, chunk);
        if (inX != inY)
            return length + static_cast<std::size_t>(std::countr_zero(inX ^ inY)) / 8;
        length += chunk;
    }
}

// All stretches of at least three characters that stand in both runs and go on in neither direction, in the order in
// which they begin in x. The longest block of any sub-runs is the longest of them, as far as they lie inside.
class Stretches {
public:
    explicit Stretches(const NumberedRuns& runs);
    // The first of the longest blocks; of length 0 when there is none of three characters or more.
    [[nodiscard]] Block longest(const Runs& runs) const;

private:
    void add(std::size_t x, std::size_t y, std::size_t length);
    [[nodiscard]] std::int16_t longestLength(const Runs& runs, std::size_t first, std::size_t last) const;

    // On a diagonal of so many places there is room for a fourth, each being parted from the next one.
    static constexpr std::size_t most = (longestShortRun + 2) * (longestShortRun + 2) / 4;

    std::size_t count_ = 0;
    std::int16_t longest_ = 0;
    std::array<std::int16_t, longestShortRun + 1> firstFrom_;  // the first that begins at this place of x or later
    std::array<std::int16_t, most> begin_, end_;               // in x
    std::array<std::int16_t, most> ahead_;                     // how much further on in x than in y
};

Stretches::Stretches(const NumberedRuns& runs)
{
    for (std::size_t x = 0; x < runs.lengthX(); ++x) {
        firstFrom_[x] = narrowed(count_);
        const auto place = static_cast<std::ptrdiff_t>(x);
        const Character &before = runs.inX(place - 1), &first = runs.inX(place), &second = runs.inX(place + 1),
                        &third = runs.inX(place + 2);
        Places starts;
        std::uint64_t any = 0;
        for (std::size_t i = 0; i < starts.size(); ++i) {
            starts[i] = first.here[i] & second.oneEarlier[i] & third.twoEarlier[i] & ~before.oneLater[i];
            any |= starts[i];
        }
        if (any == 0)
            continue;
        for (std::size_t i = 0; i < starts.size(); ++i) {
            for (std::uint64_t bits = starts[i]; bits != 0; bits &= bits - 1) {
                const std::size_t y = i * wordBits + static_cast<std::size_t>(std::countr_zero(bits));
                add(x, y, 3 + runs.agreement(x + 3, y + 3));
            }
        }
    }
    for (std::size_t x = runs.lengthX(); x < firstFrom_.size(); ++x)
        firstFrom_[x] = narrowed(count_);
}

void Stretches::add(std::size_t x, std::size_t y, std::size_t length)
{
    begin_[count_] = narrowed(x);
    end_[count_] = narrowed(x + length);
    ahead_[count_] = static_cast<std::int16_t>(narrowed(x) - narrowed(y));
    longest_ = std::max(longest_, narrowed(length));
    ++count_;
}

// The loops are written for the compiler to make vectors of: 16 bits all through, no branches.
std::int16_t Stretches::longestLength(const Runs& runs, std::size_t first, std::size_t last) const
{
    std::int16_t best = 0;
    for (std::size_t i = first; i < last; ++i) {
        const auto yBegin = static_cast<std::int16_t>(runs.yBegin + ahead_[i]);
        const auto yEnd = static_cast<std::int16_t>(runs.yEnd + ahead_[i]);
        const std::int16_t begin = std::max(std::max(begin_[i], runs.xBegin), yBegin);
        const std::int16_t end = std::min(std::min(end_[i], runs.xEnd), yEnd);
        best = std::max(best, static_cast<std::int16_t>(end - begin));
    }
    return best;
}

Block Stretches::longest(const Runs& runs) const
{
    const int earliest = std::max(0, runs.xBegin + 3 - longest_), latest = std::max(0, runs.xEnd - 2);
    const auto first = static_cast<std::size_t>(firstFrom_[static_cast<std::size_t>(earliest)]);
    const auto last = static_cast<std::size_t>(firstFrom_[static_cast<std::size_t>(latest)]);
    const std::int16_t length = first < last ? longestLength(runs, first, last) : std::int16_t{0};
    if (length < 3)
        return {0, 0, 0};
    // The least pair of places, one in each byte, among those of this length; moved into the signed range.
    constexpr std::int16_t none = 0x7FFF;
    std::int16_t least = none;
    for (std::size_t i = first; i < last; ++i) {
        const auto yBegin = static_cast<std::int16_t>(runs.yBegin + ahead_[i]);
        const auto yEnd = static_cast<std::int16_t>(runs.yEnd + ahead_[i]);
        const std::int16_t begin = std::max(std::max(begin_[i], runs.xBegin), yBegin);
        const std::int16_t end = std::min(std::min(end_[i], runs.xEnd), yEnd);
        const auto places = static_cast<std::int16_t>((begin << 8 | (begin - ahead_[i])) ^ 0x8000);
        least = std::min(least, static_cast<std::int16_t>(end - begin) == length ? places : none);
    }
    const unsigned places = static_cast<std::uint16_t>(least) ^ 0x8000u;
    return {narrowed(places >> 8), narrowed(places & 0xFF), length};
}

// The bits of one word that stand for places from begin up to, not including, end.
std::uint64_t bitsBetween(std::size_t word, std::size_t begin, std::size_t end)
{
    const std::size_t base = word * wordBits;
    std::uint64_t bits = ~std::uint64_t{0};
    if (begin > base)
        bits &= ~std::uint64_t{0} << (begin - base);
    if (end < base + wordBits)
        bits &= (std::uint64_t{1} << (end - base)) - 1;
    return bits;
}

// Counts what matches in sub-runs that have no block of three characters in common.
class ShortBlocks {
public:
    explicit ShortBlocks(const NumberedRuns& runs) : runs_(runs) {}

    // Blocks of two one after the other; what is left of each has no further one.
    [[nodiscard]] std::uint32_t count(Runs runs) const
    {
        std::uint32_t matched = 0;
        while (!runs.countNothing()) {
            const auto block = firstPair(runs);
            if (!block)
                return matched + single(runs);
            matched += 2 + single({runs.xBegin, block->x, runs.yBegin, block->y});
            runs.xBegin = static_cast<std::int16_t>(block->x + 2);
            runs.yBegin = static_cast<std::int16_t>(block->y + 2);
        }
        return matched;
    }

private:
    [[nodiscard]] std::optional<Block> firstPair(const Runs& runs) const;
    [[nodiscard]] std::uint32_t single(const Runs& runs) const;

    const NumberedRuns& runs_;
};

std::optional<Block> ShortBlocks::firstPair(const Runs& runs) const
{
    const auto begin = static_cast<std::size_t>(runs.yBegin), end = static_cast<std::size_t>(runs.yEnd) - 1;
    for (std::int16_t x = runs.xBegin; x + 1 < runs.xEnd; ++x) {
        const Character &first = runs_.inX(x), &second = runs_.inX(x + 1);
        for (std::size_t word = begin / wordBits; word * wordBits < end; ++word) {
            const std::uint64_t pairs = first.here[word] & second.oneEarlier[word] & bitsBetween(word, begin, end);
            if (pairs != 0)
                return Block{x, narrowed(word * wordBits + static_cast<std::size_t>(std::countr_zero(pairs))), 2};
        }
    }
    return std::nullopt;
}

// 1 when any character stands in both, 0 otherwise.
std::uint32_t ShortBlocks::single(const Runs& runs) const
{
    if (runs.countNothing())
        return 0;
    const auto begin = static_cast<std::size_t>(runs.yBegin), end = static_cast<std::size_t>(runs.yEnd);
    for (std::size_t word = begin / wordBits; word * wordBits < end; ++word) {
        const std::uint64_t inside = bitsBetween(word, begin, end);
        for (std::int16_t x = runs.xBegin; x < runs.xEnd; ++x)
            if ((runs_.inX(x).here[word] & inside) != 0)
                return 1;
    }
    return 0;
}

std::uint32_t countAll(const NumberedRuns& numbered)
{
    const Stretches stretches(numbered);
    const ShortBlocks shortBlocks(numbered);
    // Open sub-runs lie beside one another and each has at least a character of its own, so there is room for all.
    std::array<Runs, longestShortRun + 2> open;
    std::size_t depth = 0;
    open[depth++] = {0, narrowed(numbered.lengthX()), 0, narrowed(numbered.lengthY())};
    std::uint32_t matched = 0;
    while (depth > 0) {
        const Runs runs = open[--depth];
        if (runs.empty())
            continue;
        const Block block = stretches.longest(runs);
        if (block.length == 0) {
            matched += shortBlocks.count(runs);
            continue;
        }
        matched += static_cast<std::uint32_t>(block.length);
        open[depth++] = {runs.xBegin, block.x, runs.yBegin, block.y};
        open[depth++] = {static_cast<std::int16_t>(block.x + block.length), runs.xEnd,
                         static_cast<std::int16_t>(block.y + block.length), runs.yEnd};
    }
    return matched;
}

}  // namespace

std::optional<std::uint32_t> shortGestaltMatch(std::u16string_view x, std::u16string_view y)
{
    if (x.size() > longestShortRun || y.size() > longestShortRun)
        return std::nullopt;
    if (x == y)
        return x.size() > 1 ? static_cast<std::uint32_t>(x.size()) : 0u;
    NumberedRuns runs;
    if (!runs.read(x, y))
        return std::nullopt;
    return countAll(runs);
}

}  // namespace kelvane
