#include "base/text_table.h"

#include <array>

namespace kelvane {
namespace {

// The English table, in the order of the numbers; number 0 is no text.
constexpr std::array<std::u16string_view, 23> english = {
    u"",
    u"phase 1: gathering files",
    u"phase 2: sorting files",
    u"phase 3: discovering duplicates",
    u"searching in %s ...",
    u"%d duplicates found in %d:%02d minutes",
    u"Nothing found; try searching in another folder or use different criteria",
    u"The scan only reads your files. Nothing is removed before you mark copies and start a clean-up.",
    u"Number",
    u"Date",
    u"Float",
    u"Text",
    u"Enumerated",
    u"True",
    u"False",
    u"Music",
    u"Movies",
    u"Documents",
    u"Photos",
    u"e-Books",
    u"All file types",
    u"Folders",
    u"No duplicate files could be found...\nDo you want to revise your comparison parameters?\n\n"
    u"Or try a new scan with a different set of folders",
};

}  // namespace

std::u16string_view text(TextId id) noexcept
{
    const auto number = static_cast<std::size_t>(id);
    return number < english.size() ? english[number] : std::u16string_view{};
}

}  // namespace kelvane
