#include "props/common_stretches.h"

#include <algorithm>

namespace kelvane {
namespace {

constexpr std::int16_t narrowed(std::size_t number)
{
    return static_cast<std::int16_t>(number);
}

template <class Lanes>
Lanes load(const std::int16_t* numbers)
{
    Lanes lanes;
    std::memcpy(&lanes, numbers, sizeof lanes);
    return lanes;
}

template <class Lanes>
Lanes greater(Lanes a, Lanes b)
{
    return a > b ? a : b;
}

template <class Lanes>
Lanes smaller(Lanes a, Lanes b)
{
    return a < b ? a : b;
}

using Starts = std::array<WordPair, 2>;

// Three characters agree, and not the ones before them.
Starts startsAt(const NumberedRuns& runs, std::ptrdiff_t x)
{
    const CharacterPlaces &before = runs.inX(x - 1), &first = runs.inX(x), &second = runs.inX(x + 1),
                          &third = runs.inX(x + 2);
    Starts starts;
    for (std::size_t i = 0; i < starts.size(); ++i)
        starts[i] =
            first.here.pair(i) & second.oneEarlier.pair(i) & third.twoEarlier.pair(i) & ~before.oneLater.pair(i);
    return starts;
}

}  // namespace

// Row by row: the places of y where a stretch begins together with a place of x. Rows without any are the most, and
// nothing tells which; so they are left out without a branch, which a processor would guess wrong.
CommonStretches::CommonStretches(const NumberedRuns& runs)
{
    std::array<Starts, NumberedRuns::longest> rows;
    std::array<std::uint8_t, NumberedRuns::longest> kept;
    std::size_t count = 0;
    for (std::size_t x = 0; x < runs.lengthX(); ++x) {
        rows[x] = startsAt(runs, static_cast<std::ptrdiff_t>(x));
        const WordPair any = rows[x][0] | rows[x][1];
        kept[count] = static_cast<std::uint8_t>(x);
        count += (any[0] | any[1]) != 0 ? 1 : 0;
    }
    std::size_t following = 0;
    for (std::size_t i = 0; i < count; ++i) {
        for (; following <= kept[i]; ++following)
            firstFrom_[following] = narrowed(count_);
        addRow(runs, kept[i], rows[kept[i]]);
    }
    for (; following < firstFrom_.size(); ++following)
        firstFrom_[following] = narrowed(count_);
    // Lists are read eight at a time; what is read too much lies nowhere.
    for (auto* list : {&begin_, &end_, &ahead_})
        std::fill_n(list->begin() + static_cast<std::ptrdiff_t>(count_), lanes, std::int16_t{0});
}

void CommonStretches::addRow(const NumberedRuns& runs, std::size_t x, const Starts& starts)
{
    for (std::size_t word = 0; word < Places::words; ++word) {
        for (std::uint64_t bits = starts[word / 2][word % 2]; bits != 0; bits &= bits - 1) {
            const std::size_t y = word * Places::wordBits + static_cast<std::size_t>(std::countr_zero(bits));
            add(x, y, least + runs.agreement(x + least, y + least));
        }
    }
}

void CommonStretches::add(std::size_t x, std::size_t y, std::size_t length)
{
    begin_[count_] = narrowed(x);
    end_[count_] = narrowed(x + length);
    ahead_[count_] = static_cast<std::int16_t>(narrowed(x) - narrowed(y));
    longest_ = std::max(longest_, narrowed(length));
    ++count_;
}

CommonStretches::Inside CommonStretches::inside(std::size_t i, const SubRuns& runs) const
{
    const Lanes ahead = load<Lanes>(ahead_.data() + i);
    const Lanes begin = greater(greater(load<Lanes>(begin_.data() + i), Lanes{} + runs.xBegin), ahead + runs.yBegin);
    const Lanes end = smaller(smaller(load<Lanes>(end_.data() + i), Lanes{} + runs.xEnd), ahead + runs.yEnd);
    return {begin, end - begin, ahead};
}

std::int16_t CommonStretches::longestLength(std::size_t first, std::size_t last, const SubRuns& runs) const
{
    Lanes longest{};
    for (std::size_t i = first; i < last; i += lanes)
        longest = greater(longest, inside(i, runs).length);
    std::int16_t length = 0;
    for (std::size_t lane = 0; lane < lanes; ++lane)
        length = std::max<std::int16_t>(length, longest[lane]);
    return length;
}

CommonBlock CommonStretches::longest(const SubRuns& runs) const
{
    // Where a stretch that reaches into x by at least three characters may begin. What is read beyond, since lists are
    // read eight at a time, reaches in by less, and does not count.
    const int earliest = std::max(0, runs.xBegin + least - longest_), behind = std::max(0, runs.xEnd - (least - 1));
    const auto first = static_cast<std::size_t>(firstFrom_[static_cast<std::size_t>(earliest)]);
    const auto last = static_cast<std::size_t>(firstFrom_[static_cast<std::size_t>(behind)]);
    const std::int16_t length = longestLength(first, last, runs);
    if (length < least)
        return {0, 0, 0};
    // The least of the places, that in x in the upper byte, that in y in the lower one, moved into the signed range.
    constexpr std::int16_t nowhere = 0x7FFF, middle = -0x8000;
    Lanes earliestPlaces = Lanes{} + nowhere;
    for (std::size_t i = first; i < last; i += lanes) {
        const Inside part = inside(i, runs);
        const Lanes places = (part.begin << 8 | (part.begin - part.ahead)) ^ middle;
        earliestPlaces = smaller(earliestPlaces, part.length == length ? places : Lanes{} + nowhere);
    }
    std::int16_t places = nowhere;
    for (std::size_t lane = 0; lane < lanes; ++lane)
        places = std::min<std::int16_t>(places, earliestPlaces[lane]);
    const auto block = static_cast<std::uint16_t>(places ^ middle);
    return {static_cast<std::int16_t>(block >> 8), static_cast<std::int16_t>(block & 0xFF), length};
}

}  // namespace kelvane
