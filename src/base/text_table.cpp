#include "base/text_table.h"

#include <array>

namespace kelvane {
namespace {

struct Row {
    TextId id;
    std::u16string_view english;
};

constexpr Row rows[] = {
    {TextId::phaseGathering, u"phase 1: gathering files"},
    {TextId::phaseSorting, u"phase 2: sorting files"},
    {TextId::phaseComparing, u"phase 3: discovering duplicates"},
    {TextId::searchingIn, u"searching in %s ..."},
    {TextId::duplicatesFound, u"%d duplicates found in %d:%02d minutes"},
    {TextId::nothingFound, u"Nothing found; try searching in another folder or use different criteria"},
    {TextId::firstScanNotice,
     u"The scan only reads your files. Nothing is removed before you mark copies and start a clean-up."},
    {TextId::kindNumber, u"Number"},
    {TextId::kindDate, u"Date"},
    {TextId::kindFloat, u"Float"},
    {TextId::kindText, u"Text"},
    {TextId::kindEnumerated, u"Enumerated"},
    {TextId::wordTrue, u"True"},
    {TextId::wordFalse, u"False"},
    {TextId::categoryMusic, u"Music"},
    {TextId::categoryMovies, u"Movies"},
    {TextId::categoryDocuments, u"Documents"},
    {TextId::categoryPhotos, u"Photos"},
    {TextId::categoryEbooks, u"e-Books"},
    {TextId::categoryAll, u"All file types"},
    {TextId::categoryFolders, u"Folders"},
    {TextId::reviseParameters,
     u"No duplicate files could be found...\nDo you want to revise your comparison parameters?\n\n"
     u"Or try a new scan with a different set of folders"},
};

// By number; a number without a row stays empty.
constexpr auto english = [] {
    std::array<std::u16string_view, textNumberLimit> table{};
    for (const Row& row : rows)
        table[static_cast<std::size_t>(row.id)] = row.english;
    return table;
}();

}  // namespace

std::u16string_view text(TextId id) noexcept
{
    const auto number = static_cast<std::size_t>(id);
    return number < english.size() ? english[number] : std::u16string_view{};
}

}  // namespace kelvane
