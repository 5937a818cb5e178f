#include <gtest/gtest.h>

#include <set>

#include "platform/format_id.h"
#include "platform/linux/adapters.h"

namespace kelvane {
namespace {

std::string described(const PropertyInfo& row)
{
    return std::string(row.name);
}

TEST(FormatId, readsThePublishedForm)
{
    constexpr FormatId id = formatId("{F29F85E0-4FF9-1068-AB91-08002B27B3D9}");
    EXPECT_EQ(id, (FormatId{0xF29F85E0, 0x4FF9, 0x1068, {0xAB, 0x91, 0x08, 0x00, 0x2B, 0x27, 0xB3, 0xD9}}));
}

TEST(PropertyTable, keysAndNamesAreUnique)
{
    const auto table = makePropertyTable();
    std::set<std::array<std::byte, 20>> keys;
    std::set<std::uint32_t> identifiers;
    std::set<std::string_view> names;
    for (const PropertyInfo& row : table->all()) {
        EXPECT_TRUE(keys.insert(row.key.bytes()).second) << described(row);
        EXPECT_TRUE(identifiers.insert(propertyIdentifier(row.key)).second) << described(row);
        EXPECT_TRUE(names.insert(row.name).second) << described(row);
    }
    EXPECT_GE(names.size(), 200u);
}

TEST(PropertyTable, everyRowIsCompleteAndFoundByItsName)
{
    const auto table = makePropertyTable();
    for (const PropertyInfo& row : table->all()) {
        EXPECT_TRUE(row.name.starts_with("System.")) << described(row);
        EXPECT_FALSE(row.displayName.empty()) << described(row);
        EXPECT_NE(row.type, VarType::empty) << described(row);
        EXPECT_NE(row.type, VarType::blob) << described(row);
        EXPECT_EQ(table->byName(row.name), &row);
    }
    EXPECT_EQ(table->byName("System.Nothing"), nullptr);
    EXPECT_EQ(table->byName("Stock.GroupID"), nullptr);
}

// Published values: a table of what must not change, since other programs and saved definitions rely on it.
TEST(PropertyTable, holdsThePublishedKeysAndTypes)
{
    const auto table = makePropertyTable();
    const struct {
        std::string_view name;
        FormatId set;
        std::uint32_t number;
        VarType type;
    } known[] = {
        {"System.Title", formatId("{F29F85E0-4FF9-1068-AB91-08002B27B3D9}"), 2, VarType::wideText},
        {"System.Size", formatId("{B725F130-47EF-101A-A5F1-02608C9EEBAC}"), 12, VarType::uint64},
        {"System.DateModified", formatId("{B725F130-47EF-101A-A5F1-02608C9EEBAC}"), 14, VarType::fileTime},
        {"System.Document.PageCount", formatId("{F29F85E0-4FF9-1068-AB91-08002B27B3D9}"), 14, VarType::int32},
        {"System.Music.AlbumTitle", formatId("{56A3372E-CE9C-11D2-9F0E-006097C686F6}"), 4, VarType::wideText},
        {"System.Media.Duration", formatId("{64440490-4C8B-11D1-8B70-080036B11A03}"), 3, VarType::uint64},
        {"System.Video.FrameWidth", formatId("{64440491-4C8B-11D1-8B70-080036B11A03}"), 3, VarType::uint32},
        {"System.Video.Director", formatId("{64440492-4C8B-11D1-8B70-080036B11A03}"), 20, VarType::wideText},
        {"System.Image.HorizontalSize", formatId("{6444048F-4C8B-11D1-8B70-080036B11A03}"), 3, VarType::uint32},
        {"System.Photo.DateTaken", formatId("{14B81DA1-0135-4D31-96D9-6CBFC9671A99}"), 36867, VarType::fileTime},
        {"System.GPS.LatitudeRef", formatId("{029C0252-5B86-46C7-ACA0-2769FFC8E3D4}"), 100, VarType::wideText},
        {"System.ItemAuthors", formatId("{D0A04F0A-462A-48A4-BB2F-3706E88DBD7D}"), 100, VarType::wideText},
    };
    for (const auto& row : known) {
        const PropertyInfo* found = table->byName(row.name);
        ASSERT_NE(found, nullptr) << row.name;
        EXPECT_EQ(found->key, (PropertyKey{row.set, row.number})) << row.name;
        EXPECT_EQ(found->type, row.type) << row.name;
    }
}

TEST(PropertyTable, flagsSayHowValuesAreRead)
{
    const auto table = makePropertyTable();
    const auto has = [&table](std::string_view name, std::uint16_t flag) {
        return (table->byName(name)->flags & flag) != 0;
    };
    EXPECT_TRUE(has("System.Size", property_flag::fromFileRecord));
    EXPECT_TRUE(has("System.Size", property_flag::numeric));
    EXPECT_TRUE(has("System.ItemTypeText", property_flag::fromFileRecord));
    EXPECT_FALSE(has("System.Title", property_flag::fromFileRecord));
    EXPECT_TRUE(has("System.GPS.Longitude", property_flag::sexagesimal));
    EXPECT_FALSE(has("System.GPS.LongitudeDecimal", property_flag::sexagesimal));
    EXPECT_TRUE(table->byName("System.Author")->multiple);
    EXPECT_TRUE(table->byName("System.Photo.Orientation")->enumerated);
}

}  // namespace
}  // namespace kelvane
