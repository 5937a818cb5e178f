#include "ui/preview/text_diff.h"

#include <algorithm>
#include <unordered_map>

namespace kelvane {
namespace {

using Numbers = std::span<const std::uint32_t>;
constexpr std::size_t mostWordDifferences = 400;

// The furthest place in `a` on each diagonal, after every number of differences.
class Myers {
public:
    Myers(Numbers a, Numbers b) : a_(a), b_(b) {}

    // Empty when they differ in more than so many elements.
    std::vector<CommonPlace> places(std::size_t most, bool& found)
    {
        const auto limit = static_cast<std::ptrdiff_t>(std::min(most, a_.size() + b_.size()));
        found = false;
        for (std::ptrdiff_t d = 0; d <= limit; ++d) {
            steps_.emplace_back(static_cast<std::size_t>(2 * d + 1));
            for (std::ptrdiff_t k = -d; k <= d && !found; k += 2)
                found = advance(d, k);
            if (found)
                return walkBack(d);
        }
        return {};
    }

private:
    [[nodiscard]] std::ptrdiff_t reached(std::ptrdiff_t d, std::ptrdiff_t k) const
    {
        return k < -d || k > d ? -1 : steps_[static_cast<std::size_t>(d)][static_cast<std::size_t>(k + d)];
    }
    // Whether a step to diagonal k inserts (comes from above), rather than removes.
    [[nodiscard]] bool inserts(std::ptrdiff_t d, std::ptrdiff_t k) const
    {
        return k == -d || (k != d && reached(d - 1, k - 1) < reached(d - 1, k + 1));
    }
    [[nodiscard]] std::ptrdiff_t begin(std::ptrdiff_t d, std::ptrdiff_t k) const
    {
        if (d == 0)
            return 0;
        return inserts(d, k) ? reached(d - 1, k + 1) : reached(d - 1, k - 1) + 1;
    }
    bool advance(std::ptrdiff_t d, std::ptrdiff_t k)
    {
        const auto sizeA = static_cast<std::ptrdiff_t>(a_.size()), sizeB = static_cast<std::ptrdiff_t>(b_.size());
        std::ptrdiff_t x = begin(d, k);
        while (x < sizeA && x - k < sizeB && a_[static_cast<std::size_t>(x)] == b_[static_cast<std::size_t>(x - k)])
            ++x;
        steps_[static_cast<std::size_t>(d)][static_cast<std::size_t>(k + d)] = x;
        return x >= sizeA && x - k >= sizeB;
    }
    [[nodiscard]] std::vector<CommonPlace> walkBack(std::ptrdiff_t d) const
    {
        std::vector<CommonPlace> places;
        auto k = static_cast<std::ptrdiff_t>(a_.size()) - static_cast<std::ptrdiff_t>(b_.size());
        for (; d >= 0; --d) {
            const std::ptrdiff_t first = begin(d, k);
            for (std::ptrdiff_t x = reached(d, k); x > first; --x)
                places.push_back({static_cast<std::size_t>(x - 1), static_cast<std::size_t>(x - 1 - k)});
            if (d > 0)
                k += inserts(d, k) ? 1 : -1;
        }
        std::reverse(places.begin(), places.end());
        return places;
    }

    Numbers a_, b_;
    std::vector<std::vector<std::ptrdiff_t>> steps_;
};

bool isWordCharacter(char16_t c)
{
    return c >= 0x80 || (c >= u'0' && c <= u'9') || (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z') || c == u'_';
}

// Words, and every other character by itself.
std::vector<std::u16string_view> wordsOf(std::u16string_view line)
{
    std::vector<std::u16string_view> words;
    for (std::size_t at = 0; at < line.size();) {
        std::size_t end = at + 1;
        while (isWordCharacter(line[at]) && end < line.size() && isWordCharacter(line[end]))
            ++end;
        words.push_back(line.substr(at, end - at));
        at = end;
    }
    return words;
}

// The stretches of a line made of words that are not common.
std::vector<TextRange> stretches(std::u16string_view line, const std::vector<std::u16string_view>& words,
                                 const std::vector<bool>& common)
{
    std::vector<TextRange> ranges;
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (common[i])
            continue;
        const auto first = static_cast<std::size_t>(words[i].data() - line.data());
        if (!ranges.empty() && ranges.back().first + ranges.back().count == first)
            ranges.back().count += words[i].size();
        else
            ranges.push_back({first, words[i].size()});
    }
    return ranges;
}

}  // namespace

CommonSequence commonSequence(std::span<const std::uint32_t> a, std::span<const std::uint32_t> b,
                              std::size_t mostDifferences)
{
    CommonSequence common;
    std::size_t head = 0, tail = 0;
    const std::size_t shorter = std::min(a.size(), b.size());
    while (head < shorter && a[head] == b[head])
        ++head;
    while (tail < shorter - head && a[a.size() - 1 - tail] == b[b.size() - 1 - tail])
        ++tail;
    for (std::size_t i = 0; i < head; ++i)
        common.places.push_back({i, i});
    bool found = false;
    Myers middle(a.subspan(head, a.size() - head - tail), b.subspan(head, b.size() - head - tail));
    for (const CommonPlace& place : middle.places(mostDifferences, found))
        common.places.push_back({place.a + head, place.b + head});
    common.tooDifferent = !found;
    for (std::size_t i = tail; i > 0; --i)
        common.places.push_back({a.size() - i, b.size() - i});
    return common;
}

void numberAlike(std::span<const std::u16string_view> a, std::span<const std::u16string_view> b,
                 std::vector<std::uint32_t>& numbersA, std::vector<std::uint32_t>& numbersB)
{
    std::unordered_map<std::u16string_view, std::uint32_t> known;
    const auto number = [&known](std::u16string_view element) {
        return known.emplace(element, static_cast<std::uint32_t>(known.size())).first->second;
    };
    for (const auto element : a)
        numbersA.push_back(number(element));
    for (const auto element : b)
        numbersB.push_back(number(element));
}

WordChanges changedWords(std::u16string_view a, std::u16string_view b)
{
    const auto wordsA = wordsOf(a), wordsB = wordsOf(b);
    std::vector<std::uint32_t> numbersA, numbersB;
    numberAlike(wordsA, wordsB, numbersA, numbersB);
    std::vector<bool> commonA(wordsA.size()), commonB(wordsB.size());
    for (const CommonPlace& place : commonSequence(numbersA, numbersB, mostWordDifferences).places) {
        commonA[place.a] = true;
        commonB[place.b] = true;
    }
    return {stretches(a, wordsA, commonA), stretches(b, wordsB, commonB)};
}

}  // namespace kelvane
