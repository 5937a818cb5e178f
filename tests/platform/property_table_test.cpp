#include "platform/property_table.h"

#include <set>

#include "platform/format_id.h"

namespace kelvane {
namespace {

TEST(PropertyTable, everyRowIsUniqueCompleteAndFoundByItsName)
{
    const auto table = makePropertyTable();
    std::set<std::uint32_t> identifiers;
    for (const PropertyInfo& row : table->all()) {
        EXPECT_TRUE(identifiers.insert(propertyIdentifier(row.key)).second) << row.name;
        EXPECT_TRUE(row.name.starts_with("System.")) << row.name;
        EXPECT_FALSE(row.displayName.empty()) << row.name;
        EXPECT_TRUE(row.type != VarType::empty && row.type != VarType::blob) << row.name;
        EXPECT_EQ(table->byName(row.name), &row);
    }
    EXPECT_GE(identifiers.size(), 200u);
    EXPECT_EQ(table->byName("System.Nothing"), nullptr);
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

}  // namespace
}  // namespace kelvane
