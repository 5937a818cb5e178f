#include "props/property_catalogue.h"

#include <gmock/gmock.h>

#include "platform/property_table.h"

namespace kelvane {
namespace {

using ::testing::ElementsAre;

class PropertyCatalogueTest : public ::testing::Test {
protected:
    std::unique_ptr<PropertySystem> system = makePropertyTable();
    PropertyCatalogue catalogue{*system};

    static std::vector<std::string_view> namesOf(std::span<const PropRef> properties)
    {
        std::vector<std::string_view> names;
        for (const PropRef& property : properties)
            names.push_back(property.info->name);
        return names;
    }
};

TEST_F(PropertyCatalogueTest, namesLeadToTheirPublishedIdentifiers)
{
    const std::pair<std::string_view, std::uint32_t> known[] = {
        {"Stock.GroupID", 0x548909DB},
        {"Stock.FileCount", 0x950B6FAD},
        {"Stock.IsFolder", property_id::isFolder},
        {"System.GPS.Latitude", 0x1FCC7FD5},
        {"System.GPS.Longitude", 0xFD6343F1},
        {"System.Comment", 0xC9E40EA6},
        {"System.Size", 0xA8C3FECA},
        {"System.FileAttributes", property_id::fileAttributes},
        {"System.DateModified", property_id::dateModified},
        {"System.DateCreated", property_id::dateCreated},
        {"System.DateAccessed", property_id::dateAccessed},
        {"System.FileAllocationSize", property_id::fileAllocationSize},
        {"System.FileOwner", property_id::fileOwner},
        {"System.FileName", property_id::fileName},
        {"System.ItemName", property_id::itemName},
        {"System.ItemNameDisplay", property_id::itemNameDisplay},
        {"System.ItemNameDisplayWithoutExtension", property_id::itemNameDisplayWithoutExtension},
        {"System.FileExtension", property_id::fileExtension},
        {"System.ParsingName", property_id::parsingName},
        {"System.ParsingPath", property_id::parsingPath},
        {"System.ItemPathDisplay", property_id::itemPathDisplay},
        {"System.ItemFolderPathDisplay", property_id::itemFolderPathDisplay},
        {"System.ItemFolderNameDisplay", property_id::itemFolderNameDisplay},
        {"System.ItemUrl", property_id::itemUrl},
        {"System.ItemType", property_id::itemType},
        {"System.ItemTypeText", property_id::itemTypeText},
        {"System.Kind", property_id::kind},
        {"System.KindText", property_id::kindText},
    };
    for (const auto& [name, identifier] : known) {
        const PropRef property = catalogue.byName(name);
        ASSERT_TRUE(property) << name;
        EXPECT_EQ(property.identifier, identifier) << name;
    }
}

TEST_F(PropertyCatalogueTest, stockRowsAreFoundInBothWays)
{
    ASSERT_EQ(stockTable().size(), stockPropertyCount);
    for (unsigned number = 0; number < stockPropertyCount; ++number) {
        const PropRef property = catalogue.byNumber(number);
        EXPECT_EQ(catalogue.stockIndex(property), number + 1);
        EXPECT_EQ(catalogue.byName(property.info->name).info, property.info) << property.info->name;
    }
    EXPECT_EQ(catalogue.byName("*").info, catalogue.stock(StockProperty::find).info);
    EXPECT_EQ(catalogue.stock(StockProperty::bookList).info->name, "Stock.BookList");
}

TEST_F(PropertyCatalogueTest, stockTypeWordsAreThePublishedOnes)
{
    constexpr std::uint32_t words[] = {0x0000001F, 0x0410001F, 0x0800001F, 0x0400000B, 0x0C06001F,
                                       0x0A04001F, 0x0A00001F, 0x00800015, 0x00800013, 0x0000001F,
                                       0x00800013, 0x0200000D, 0x06800013, 0x00800013, 0x0200000D,
                                       0x0200000D, 0x1001001F, 0x1001001F, 0x1001001F};
    for (unsigned number = 0; number < stockPropertyCount; ++number)
        EXPECT_EQ(stockTable()[number].typeWord(), words[number]) << stockTable()[number].name;
}

TEST_F(PropertyCatalogueTest, combinedListsHaveComponents)
{
    EXPECT_THAT(namesOf(catalogue.components(catalogue.byName("Stock.AudioList"))),
                ElementsAre("System.Title", "System.Music.AlbumTitle", "System.ItemAuthors"));
    EXPECT_THAT(namesOf(catalogue.components(catalogue.byName("Stock.VideoList"))),
                ElementsAre("System.Title", "System.ItemAuthors", "System.Video.Director"));
    EXPECT_THAT(namesOf(catalogue.components(catalogue.byName("Stock.BookList"))),
                ElementsAre("System.Title", "System.ItemAuthors"));
    EXPECT_TRUE(catalogue.components(catalogue.byName("System.Title")).empty());
}

TEST_F(PropertyCatalogueTest, listsAreParsedAndUnknownNamesToldInOrder)
{
    std::vector<std::string> unknown;
    const auto properties = catalogue.parseList(" System.Size ,Nope,,Stock.GroupID,nix", &unknown);
    EXPECT_THAT(namesOf(properties), ElementsAre("System.Size", "Stock.GroupID"));
    EXPECT_THAT(unknown, ElementsAre("Nope", "nix"));
    EXPECT_TRUE(catalogue.parseList(",System.Siz,system.size").empty());
    EXPECT_FALSE(catalogue.byNumber(stockPropertyCount));
    EXPECT_EQ(catalogue.names().size(), system->all().size() + stockPropertyCount);
}

}  // namespace
}  // namespace kelvane
