#include "base/text_table.h"

#include <array>
#include <atomic>
#include <memory>

#include "base/placeholders.h"

namespace kelvane {
namespace {

struct Row {
    std::uint16_t number;
    std::u16string_view english;
};

constexpr Row rows[] = {
#define TEXT_ROW(number, name, english) {number, english},
#include "base/text_rows.inc"
// behind all others
#include "base/desktop_text_rows.inc"
#undef TEXT_ROW
};

constexpr bool isAscending()
{
    for (std::size_t at = 1; at < std::size(rows); ++at)
        if (rows[at].number <= rows[at - 1].number)
            return false;
    return true;
}
static_assert(isAscending(), "rows of text_rows.inc stand in the order of their numbers, each number once");
static_assert(std::rbegin(rows)->number < textNumberLimit);

using Views = std::array<std::u16string_view, textNumberLimit>;

// By number; a number without a row stays empty.
constexpr Views english = [] {
    Views table{};
    for (const Row& row : rows)
        table[row.number] = row.english;
    return table;
}();

struct Translation {
    TextsByNumber texts;
    Views byNumber = english;
};

// The one mutable global of the texts: null while English is in force.
std::atomic<const Translation*> inForce{nullptr};

void replaceBy(const Translation* next) noexcept
{
    const std::unique_ptr<const Translation> last(inForce.exchange(next));
}

std::u16string_view lookUp(const Views& views, TextId id) noexcept
{
    const auto number = static_cast<std::size_t>(id);
    return number < views.size() ? views[number] : std::u16string_view{};
}

}  // namespace

std::u16string_view text(TextId id) noexcept
{
    const Translation* translation = inForce.load();
    return translation ? lookUp(translation->byNumber, id) : lookUp(english, id);
}

std::u16string_view englishText(TextId id) noexcept
{
    return lookUp(english, id);
}

bool installTranslation(const TextsByNumber& texts)
{
    const auto name = texts.find(static_cast<std::uint16_t>(TextId::languageName));
    if (name == texts.end() || name->second.empty())
        return false;
    auto translation = std::make_unique<Translation>(Translation{texts});
    for (const auto& [number, translated] : translation->texts) {
        if (number < textNumberLimit && !translated.empty() && samePlaceholders(english[number], translated))
            translation->byNumber[number] = translated;
    }
    replaceBy(translation.release());
    return true;
}

void releaseTranslation() noexcept
{
    replaceBy(nullptr);
}

bool isTranslated() noexcept
{
    return inForce.load() != nullptr;
}

}  // namespace kelvane
