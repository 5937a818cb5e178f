#include "ui/list/list_layout.h"

#include "ui/list/cell_cache.h"

namespace kelvane {
namespace {

// Groups of so many rows each, numbered from 1.
RowMirror mirrorOf(const std::vector<Row>& sizes, bool grouped = true)
{
    RowPatch patch;
    patch.figures.grouped = grouped;
    std::uint32_t group = 0;
    for (const Row size : sizes) {
        ++group;
        for (Row row = 0; row < size; ++row)
            patch.entries.push_back({ItemId{static_cast<std::uint32_t>(patch.entries.size())}, group});
    }
    RowMirror mirror;
    mirror.apply(std::move(patch));
    return mirror;
}

TEST(ListLayout, FindsEveryRowWhereItSaysThatItIs)
{
    ListLayout layout;
    for (const int perLine : {1, 3}) {
        layout.measure({10, 14, perLine});
        layout.rebuild(mirrorOf({2, 1, 7}));
        for (Row row = 0; row < 10; ++row) {
            for (const int offset : {0, 9}) {
                const auto spot = layout.at(layout.lineTop(row) + offset, layout.placeInLine(row));
                ASSERT_TRUE(spot);
                EXPECT_EQ(spot->row, row) << perLine << " in a line";
                EXPECT_EQ(spot->section, layout.sectionOf(row));
            }
        }
    }
    EXPECT_EQ(layout.height(), 3 * 14 + (1 + 1 + 3) * 10);
    EXPECT_FALSE(layout.at(layout.lineTop(1) + 5, 2)) << "a line that is not full";
    EXPECT_FALSE(layout.at(5, 0)->row) << "a heading is no row";
    EXPECT_FALSE(layout.at(layout.height(), 0));
}

TEST(ListLayout, HasOneSectionWithoutHeadingWhereGroupsAreTornApart)
{
    ListLayout layout;
    layout.measure({10, 14, 1});
    layout.rebuild(mirrorOf({2, 3}, false));
    EXPECT_EQ(layout.sectionCount(), 1u);
    EXPECT_EQ(layout.height(), 50);
    layout.rebuild(mirrorOf({}));
    EXPECT_EQ(layout.height(), 0);
    EXPECT_EQ(layout.rowCount(), 0u);
    EXPECT_FALSE(layout.at(0, 0));
}

TEST(ListCells, ShowNamesInOneLineWhateverIsInThem)
{
    EXPECT_EQ(shownInOneLine(QStringLiteral("a\nb\tc")), QStringLiteral("a\u240Ab\u2409c"));
    EXPECT_EQ(shownInOneLine(QStringLiteral("gnp.\u202Eexe")), QStringLiteral("gnp.\uFFFDexe"));
    EXPECT_EQ(shownInOneLine(QString(QChar(0xDC80))), QStringLiteral("\uFFFD")) << "a byte that is no text";
    EXPECT_EQ(shownInOneLine(QStringLiteral("\U0001F600")), QStringLiteral("\U0001F600"));
}

}  // namespace
}  // namespace kelvane
