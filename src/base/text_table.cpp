#include "base/text_table.h"

#include <array>

namespace kelvane {
namespace {

struct Row {
    std::uint16_t number;
    std::u16string_view english;
};

constexpr Row rows[] = {
#define TEXT_ROW(number, name, english) {number, english},
#include "base/text_rows.inc"
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

// By number; a number without a row stays empty.
constexpr auto english = [] {
    std::array<std::u16string_view, textNumberLimit> table{};
    for (const Row& row : rows)
        table[row.number] = row.english;
    return table;
}();

}  // namespace

std::u16string_view text(TextId id) noexcept
{
    const auto number = static_cast<std::size_t>(id);
    return number < english.size() ? english[number] : std::u16string_view{};
}

}  // namespace kelvane
