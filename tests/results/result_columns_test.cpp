#include "results/result_columns.h"

#include <gtest/gtest.h>

#include "props/property_world.h"

namespace kelvane {
namespace {

TEST(ResultColumns, ReadWell)
{
    testing::PropertyWorld world;
    world.files.addFile("/home/A \xC3\xA4.jpg", std::string(20'480, 'x'));
    world.files.setModified("/home/A \xC3\xA4.jpg", fileTimeFromUnix(1'795'228'260, 500));
    world.readers.set("/home/A \xC3\xA4.jpg", "System.Media.DateEncoded",
                      RawValue::number(VarType::fileTime, 116'444'736'000'000'000));
    world.readers.set("/home/A \xC3\xA4.jpg", "System.Media.Duration",
                      RawValue::number(VarType::uint64, 36'059'996'000));
    ItemContext file = world.context("/home/A \xC3\xA4.jpg");
    const auto cell = [&](std::string_view name) { return cellText(file, world.ref(name), world.source); };
    EXPECT_EQ(cell("Stock.GroupID"), u"") << "in no group";
    file.group.value = 12;
    EXPECT_EQ(cell("Stock.GroupID"), u"12");
    EXPECT_EQ(cell("System.ItemNameDisplay"), u"A \u00E4.jpg");
    EXPECT_EQ(cell("System.ItemFolderPathDisplay"), u"/home");
    EXPECT_EQ(cell("System.ItemTypeText"), u"JPG file");
    EXPECT_EQ(cell("System.Size"), u"20.0 KB");
    EXPECT_EQ(cell("System.DateModified"), u"2026-11-21 02:31");
    EXPECT_EQ(file.cachedValues(), 0u) << "looking at a list keeps nothing of what is known anyway";
    EXPECT_EQ(cell("System.Media.DateEncoded"), u"1970-01-01 00:00");
    EXPECT_EQ(cell("System.Title"), u"");
    EXPECT_EQ(cell("System.Media.Duration"), u"1:00:06");
    EXPECT_EQ(cellText(file, {}, world.source), u"");
    EXPECT_EQ(columnTitle(world.ref("System.Size")), u"Size");
}

TEST(ResultColumns, HaveNames)
{
    const testing::PropertyWorld world;
    const auto columns = parseColumns("System.ItemNameDisplay,System.Size,Stock.GroupID", world.catalogue);
    ASSERT_TRUE(columns);
    EXPECT_EQ(joinColumns(*columns), "System.ItemNameDisplay,System.Size,Stock.GroupID");
    EXPECT_EQ(parseColumns("System.Size,System.Sise", world.catalogue).error().detail, "System.Sise");
    EXPECT_FALSE(parseColumns("", world.catalogue));
}

}  // namespace
}  // namespace kelvane
