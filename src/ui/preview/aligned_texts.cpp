#include "ui/preview/aligned_texts.h"

#include <algorithm>
#include <optional>

namespace kelvane {
namespace {

constexpr std::size_t mostLineDifferences = 1'500;
using Lines = std::vector<std::u16string_view>;

Lines linesOf(std::u16string_view text)
{
    Lines lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(u'\n'), text.size());
        std::u16string_view line = text.substr(0, end);
        if (line.ends_with(u'\r'))
            line.remove_suffix(1);
        lines.push_back(line);
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

// How the lines of one text stand to those of the first.
struct Against {
    std::vector<std::optional<std::size_t>> partner;  // by line of the first: the one that stands in its row
    std::vector<std::vector<std::size_t>> extra;      // by line of the first, and its end: lines that come before it
};

// Between two common places, lines are paired in their order; those left over come after them.
void pairUp(Against& against, CommonPlace from, CommonPlace to)
{
    for (; from.a < to.a && from.b < to.b; ++from.a, ++from.b)
        against.partner[from.a] = from.b;
    for (; from.b < to.b; ++from.b)
        against.extra[to.a].push_back(from.b);
}

Against hold(const Lines& first, const Lines& other, bool& tooDifferent)
{
    std::vector<std::uint32_t> numbersA, numbersB;
    numberAlike(first, other, numbersA, numbersB);
    const CommonSequence common = commonSequence(numbersA, numbersB, mostLineDifferences);
    tooDifferent = tooDifferent || common.tooDifferent;
    Against against{std::vector<std::optional<std::size_t>>(first.size()),
                    std::vector<std::vector<std::size_t>>(first.size() + 1)};
    CommonPlace at;
    for (const CommonPlace& place : common.places) {
        pairUp(against, at, place);
        against.partner[place.a] = place.b;
        at = {place.a + 1, place.b + 1};
    }
    pairUp(against, at, {first.size(), other.size()});
    return against;
}

class Aligner {
public:
    explicit Aligner(const std::vector<std::u16string>& texts)
    {
        for (const std::u16string& text : texts)
            lines_.push_back(linesOf(text));
        for (std::size_t i = 1; i < lines_.size(); ++i)
            against_.push_back(hold(lines_.front(), lines_[i], made_.tooDifferent));
        made_.columns.resize(lines_.size());
    }

    AlignedTexts align()
    {
        for (std::size_t line = 0; line <= lines_.front().size(); ++line) {
            addExtra(line);
            if (line < lines_.front().size())
                addLine(line);
        }
        findPlaces();
        return std::move(made_);
    }

private:
    void addExtra(std::size_t line)
    {
        std::size_t rows = 0;
        for (const Against& against : against_)
            rows = std::max(rows, against.extra[line].size());
        for (std::size_t row = 0; row < rows; ++row) {
            made_.columns.front().push_back({{}, false, true, {}});
            for (std::size_t i = 0; i < against_.size(); ++i) {
                const auto& extra = against_[i].extra[line];
                made_.columns[i + 1].push_back(
                    row < extra.size() ? AlignedLine{std::u16string(lines_[i + 1][extra[row]]), true, true, {}}
                                       : AlignedLine{});
            }
        }
    }

    void addLine(std::size_t line)
    {
        AlignedLine first{std::u16string(lines_.front()[line]), true, false, {}};
        for (std::size_t i = 0; i < against_.size(); ++i) {
            AlignedLine other;
            if (const auto partner = against_[i].partner[line]) {
                other = {std::u16string(lines_[i + 1][*partner]), true, false, {}};
                mark(first, other);
            } else {
                first.differs = other.differs = true;
            }
            made_.columns[i + 1].push_back(std::move(other));
        }
        made_.columns.front().push_back(std::move(first));
    }

    static void mark(AlignedLine& first, AlignedLine& other)
    {
        if (first.text == other.text)
            return;
        WordChanges changes = changedWords(first.text, other.text);
        first.differs = other.differs = true;
        if (first.marks.empty())
            first.marks = std::move(changes.a);
        other.marks = std::move(changes.b);
    }

    void findPlaces()
    {
        bool before = false;
        for (std::size_t row = 0; row < made_.columns.front().size(); ++row) {
            const bool differs = std::any_of(made_.columns.begin(), made_.columns.end(),
                                             [row](const auto& column) { return column[row].differs; });
            if (differs && !before)
                made_.places.push_back(row);
            before = differs;
        }
    }

    std::vector<Lines> lines_;
    std::vector<Against> against_;  // of all but the first
    AlignedTexts made_;
};

}  // namespace

AlignedTexts alignTexts(const std::vector<std::u16string>& texts)
{
    return Aligner(texts).align();
}

}  // namespace kelvane
