#include "engine/criteria.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/small_catalogue.h"

namespace kelvane {
namespace {

using testing::SmallPropertySystem;

class Criteria : public ::testing::Test {
protected:
    CScanNode definition(std::uint32_t flags, const std::string& properties, Category category = Category::custom)
    {
        CScanNode node;
        node.flags = flags;
        node.properties = properties;
        node.setCategory(category);
        return node;
    }
    ScanCriteria make(const CScanNode& node)
    {
        auto made = makeCriteria(node, options, catalogue);
        EXPECT_TRUE(made.ok()) << (made.ok() ? "" : made.error().detail);
        return made.ok() ? *made : ScanCriteria{};
    }
    std::string failure(const CScanNode& node)
    {
        const auto made = makeCriteria(node, options, catalogue);
        if (made.ok())
            return "made";
        EXPECT_EQ(made.error().kind, ErrorKind::invalid);
        return made.error().detail;
    }
    static std::vector<std::string> names(const ScanCriteria& criteria)
    {
        std::vector<std::string> found;
        for (const auto& property : criteria.properties)
            found.emplace_back(property.info->name);
        return found;
    }

    SmallPropertySystem system;
    PropertyCatalogue catalogue{system};
    EngineOptions options;
};

using Names = std::vector<std::string>;

TEST_F(Criteria, TheSimilarityIsAPercentageOfFuzzySearches)
{
    auto node = definition(scan_flag::fuzzy, "System.Size");
    for (const int similarity : {0, -5, 101}) {
        node.similarity = similarity;
        EXPECT_THAT(failure(node), ::testing::HasSubstr("between 1 and 100")) << similarity;
    }
    node.similarity = 70;
    EXPECT_EQ(make(node).similarity, 70);
    node.flags = 0;
    EXPECT_EQ(make(node).similarity, 100);
}

TEST_F(Criteria, ContentsOfAnExactSearchAddTheSizeOnce)
{
    EXPECT_EQ(names(make(definition(scan_flag::contents, ""))), Names({"System.Size"}));
    EXPECT_EQ(names(make(definition(scan_flag::contents, "System.Title"))), Names({"System.Title", "System.Size"}));
    EXPECT_EQ(names(make(definition(scan_flag::contents, "System.Size,System.Title"))),
              Names({"System.Size", "System.Title"}));
    EXPECT_EQ(names(make(definition(scan_flag::contents | scan_flag::fuzzy, "System.Title"))), Names({"System.Title"}));
}

TEST_F(Criteria, TheTypeRuleReplacesTheItemTypeProperty)
{
    const auto typed = "System.ItemType,System.Size,System.ItemTypeText";
    EXPECT_EQ(names(make(definition(scan_flag::sameType, typed))), Names({"System.Size"}));
    EXPECT_EQ(names(make(definition(0, typed))).size(), 3u);
    EXPECT_EQ(names(make(definition(scan_flag::sameType, "System.ItemType"))), Names({"System.ItemType"}));
    EXPECT_EQ(names(make(definition(scan_flag::sameType, "System.ItemType,System.ItemTypeText"))).size(), 1u);
}

TEST_F(Criteria, SimilarContentsSortByThePropertyOfTheCategory)
{
    const auto primary = [&](Category category, const std::string& properties) {
        const auto criteria = make(definition(scan_flag::fuzzy | scan_flag::contents, properties, category));
        return std::string(criteria.primary ? criteria.primary.info->name : "") + (criteria.primaryIsFirst ? "!" : "");
    };
    EXPECT_EQ(primary(Category::audio, ""), "System.Media.Duration");
    EXPECT_EQ(primary(Category::video, "System.Size"), "System.Media.Duration");
    EXPECT_EQ(primary(Category::video, "System.Media.Duration,System.Size"), "System.Media.Duration!");
    EXPECT_EQ(primary(Category::documents, "System.Title"), "Stock.SimDocDescriptor");
    EXPECT_EQ(primary(Category::images, "System.Size"), "Stock.Thumbnail");
    EXPECT_EQ(primary(Category::custom, "System.Size"), "System.Size!");
}

TEST_F(Criteria, AFuzzySearchByPropertiesSortsByWhatWasAskedFor)
{
    const auto byYear = make(definition(scan_flag::fuzzy, "System.Media.Year,System.Title", Category::audio));
    EXPECT_EQ(byYear.primary.info->name, "System.Media.Year");
    EXPECT_TRUE(byYear.primaryIsFirst);
    // A blob has no order and no equality, so there the category decides.
    const auto byBlob = make(definition(scan_flag::fuzzy, "System.ThumbnailStream,System.Title", Category::audio));
    EXPECT_EQ(byBlob.primary.info->name, "System.Media.Duration");
    EXPECT_FALSE(byBlob.primaryIsFirst);
}

TEST_F(Criteria, RefuseToCompareNothing)
{
    EXPECT_THAT(failure(definition(0, "")), ::testing::HasSubstr("nothing to compare"));
    EXPECT_THAT(failure(definition(scan_flag::sameType | scan_flag::fuzzy | scan_flag::contents, "")),
                ::testing::HasSubstr("nothing to compare"));
}

TEST_F(Criteria, NameEveryUnknownPropertyWithItsNeighbours)
{
    const auto message = failure(definition(0, "System.Sise,System.Title,system.title,Nonsense.With.No.Neighbour"));
    EXPECT_THAT(message, ::testing::HasSubstr("\"System.Sise\" (did you mean System.Size"));
    EXPECT_THAT(message, ::testing::HasSubstr("\"system.title\" (did you mean System.Title"));
    EXPECT_THAT(message, ::testing::EndsWith("unknown property \"Nonsense.With.No.Neighbour\""));
}

TEST_F(Criteria, OfflineFilesAreLeftOutWhenTheyWouldBeOpened)
{
    EXPECT_FALSE(make(definition(0, "System.Size,System.DateModified")).skipOffline);
    EXPECT_TRUE(make(definition(0, "System.Size,System.Title")).skipOffline);
    EXPECT_TRUE(make(definition(scan_flag::contents, "System.Size")).skipOffline);
}

TEST_F(Criteria, MasksComeFromTheDefinitionOrTheCategory)
{
    const auto admits = [&](Category category, const char* masks, const char* name) {
        auto node = definition(0, "System.Size", category);
        node.masks = masks;
        return make(node).masks.admits(name);
    };
    EXPECT_TRUE(admits(Category::images, "", "a.heic"));
    EXPECT_FALSE(admits(Category::images, "", "a.mp3"));
    EXPECT_TRUE(admits(Category::images, "mp3", "a.mp3"));
    EXPECT_FALSE(admits(Category::images, "mp3", "a.heic"));
    options.categories[0].masks = "voc";
    options.categories[1].masks.clear();  // falls back to the default
    options.categories[5].masks = "iso,vmdk";
    EXPECT_TRUE(admits(Category::audio, "", "a.voc"));
    EXPECT_FALSE(admits(Category::audio, "", "a.mp3"));
    EXPECT_TRUE(admits(Category::video, "", "a.mkv"));
    EXPECT_FALSE(admits(Category::custom, "", "a.txt"));
    EXPECT_TRUE(admits(Category::custom, "*", "a.iso"));  // one character is no list of masks
    EXPECT_FALSE(admits(Category::custom, "*", "a.txt"));
    options.categories.clear();
    EXPECT_TRUE(admits(Category::custom, "", "a.txt"));
}

TEST_F(Criteria, ReadsTheSizeRangeStrictly)
{
    auto node = definition(0, "System.Size");
    const auto range = [&](const std::string& text) {
        node.sizeRange = text;
        const auto sizes = make(node).sizes;
        return std::pair{sizes.smallest, sizes.largest};
    };
    EXPECT_EQ(range(""), std::pair(std::uint64_t{0}, UINT64_MAX));
    EXPECT_EQ(range("4096-"), std::pair(std::uint64_t{4096}, UINT64_MAX));
    EXPECT_EQ(range("1-18446744073709551615"), std::pair(std::uint64_t{1}, UINT64_MAX));
    node.set(scan_flag::skipEmpty, true);
    EXPECT_EQ(range("0-9").first, 1u);
    EXPECT_EQ(range("5-9").first, 5u);
    for (const char* text :
         {"4096", "-", "-5", "9-5", " 1-2", "1-2 ", "1-2-3", "+1-", "1k-", "18446744073709551616-"}) {
        node.sizeRange = text;
        EXPECT_THAT(failure(node), ::testing::HasSubstr("size range")) << text;
    }
}

}  // namespace
}  // namespace kelvane
