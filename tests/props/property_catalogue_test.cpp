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
