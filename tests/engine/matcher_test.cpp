#include "engine/matcher.h"

#include <gtest/gtest.h>

#include "engine/grouping_world.h"
#include "support/paths.h"

namespace kelvane {
namespace {

using testing::GroupingWorld;

// Answers with one score for every pair.
class FixedScore final : public SimilarContent {
public:
    bool supports(Category) const override { return true; }
    bool admits(const ScanCriteria&, ItemContext&) override { return true; }
    std::optional<NoDescriptorCause> describe(const ScanCriteria&, Candidate&, const CancelFlag&) override
    {
        return std::nullopt;
    }
    ContentScore compare(const ScanCriteria&, ItemContext&, ItemContext&, const CancelFlag&) override { return score; }
    ContentScore score;
};

class MatcherTest : public ::testing::Test {
protected:
    // Two files of 1000 bytes, unless said otherwise.
    MatcherTest() { write("/a.x", std::string(1000, 'x')), write("/b.x", std::string(1000, 'x')); }

    void write(const std::string& path, const std::string& contents) { world.files.addFile(path, contents); }
    void set(const std::string& property, RawValue a, RawValue b)
    {
        world.readers.set("/a.x", property, std::move(a));
        world.readers.set("/b.x", property, std::move(b));
    }
    void setNumbers(const std::string& property, std::uint64_t a, std::uint64_t b)
    {
        set(property, RawValue::number(VarType::uint64, a), RawValue::number(VarType::uint64, b));
    }

    MatchResult compare(const ScanCriteria& criteria, std::optional<bool> keysEqual = std::nullopt)
    {
        report.clear();
        Candidate a(*world.shell->parse(testing::native("/a.x"))), b(*world.shell->parse(testing::native(other)));
        ContentComparer contents(*world.shell, criteria.options, world.cancel);
        Matcher matcher(criteria, world.properties, *world.shell, contents, world.similar);
        matcher.reportTo(&report);
        return matcher.compare(a, b, keysEqual);
    }
    std::int32_t stage(const ScanCriteria& criteria) { return compare(criteria).stage; }

    ScanCriteria fuzzy(std::int32_t similarity, const std::string& properties, std::uint32_t flags = 0,
                       Category category = Category::custom)
    {
        ScanCriteria criteria = world.criteria(flags | scan_flag::fuzzy, properties, category);
        criteria.similarity = similarity;
        return criteria;
    }

    FixedScore scores;
    GroupingWorld world;
    std::string other = "/b.x";
    std::vector<StageReport> report;
};

TEST_F(MatcherTest, StagesAreNumberedInOrder)
{
    const ScanCriteria all = world.criteria(testing::exactContents | scan_flag::sameType, "System.Size,System.Title");
    set("System.Title", RawValue::text(u"One"), RawValue::text(u"One"));
    EXPECT_EQ(stage(all), 0);
    ASSERT_EQ(report.size(), 4u);
    EXPECT_EQ(report[0].name, "System.Size");
    EXPECT_EQ(report[0].textA, u"1000");
    EXPECT_EQ(report[2].name, "type");
    EXPECT_EQ(report[3].name, "content");

    write("/b.x", std::string(1000, 'y'));
    EXPECT_EQ(stage(all), 4);
    EXPECT_FALSE(report.back().equal);
    set("System.Title", RawValue::text(u"One"), RawValue::text(u"one"));
    EXPECT_EQ(stage(all), 2) << "texts are equal in every letter or not at all";
    write("/b.x", "shorter");
    EXPECT_EQ(stage(all), 1);
    EXPECT_EQ(report.size(), 1u);
}

TEST_F(MatcherTest, TypesAreComparedWithoutCase)
{
    const ScanCriteria sameType = world.criteria(scan_flag::sameType, "System.Size");
    write("/b.X", std::string(1000, 'x'));
    write("/b", std::string(1000, 'x'));
    other = "/b.X";
    EXPECT_EQ(stage(sameType), 0);
    other = "/b";
    EXPECT_EQ(stage(sameType), 2);
    EXPECT_EQ(stage(world.criteria(scan_flag::sameType, "System.Size", Category::folders)), 0);
}

TEST_F(MatcherTest, AMissingValueEqualsNothing)
{
    for (const std::uint32_t flags : {0u, scan_flag::fuzzy}) {
        const ScanCriteria byTitle = world.criteria(flags, "System.Size,System.Title");
        set("System.Title", RawValue::text(u"One"), RawValue());
        EXPECT_EQ(stage(byTitle), 2);
        set("System.Title", RawValue(), RawValue());
        EXPECT_EQ(stage(byTitle), 2);
    }
}

TEST_F(MatcherTest, KeysDecideThePrimaryPropertyOfExactSearches)
{
    const ScanCriteria bySize = world.criteria(0, "System.Size");
    EXPECT_TRUE(compare(bySize, true).match());
    const MatchResult parted = compare(bySize, false);
    EXPECT_EQ(parted.stage, 1);
    EXPECT_TRUE(parted.endsWalk);
    EXPECT_TRUE(compare(fuzzy(90, "System.Size"), false).match()) << "fuzzy searches look at the values";

    world.files.setModified("/a.x", {5'000'000'000});
    world.files.setModified("/b.x", {5'000'000'000 + world.options.dateTolerance});
    EXPECT_TRUE(compare(world.criteria(0, "System.DateModified"), false).match()) << "dates have a tolerance";
}

TEST_F(MatcherTest, OnlyTheSortKeyEndsTheWalk)
{
    setNumbers("System.Media.Year", 1000, 3000);
    EXPECT_TRUE(compare(fuzzy(90, "System.Media.Year")).endsWalk);
    EXPECT_FALSE(compare(fuzzy(90, "System.Size,System.Media.Year")).endsWalk);
    ScanCriteria sortedByOther = fuzzy(90, "System.Media.Year");
    sortedByOther.primaryIsFirst = false;
    const MatchResult parted = compare(sortedByOther);
    EXPECT_EQ(parted.stage, 1);
    EXPECT_FALSE(parted.endsWalk);
}

TEST_F(MatcherTest, FirstPropertyIsHeldToNinetyFiveBesideOthers)
{
    setNumbers("System.Media.Duration", 1000, 1105);  // 9 percent apart
    setNumbers("System.Media.Year", 1000, 1105);
    EXPECT_EQ(stage(fuzzy(91, "System.Media.Duration")), 0);
    EXPECT_EQ(stage(fuzzy(92, "System.Media.Duration")), 1);
    EXPECT_EQ(stage(fuzzy(80, "System.Media.Duration,System.Media.Year")), 1);
    EXPECT_EQ(report[0].difference, 9.0);
    EXPECT_EQ(report[0].allowed, 5.0);
    setNumbers("System.Media.Duration", 1000, 1050);
    EXPECT_EQ(stage(fuzzy(80, "System.Media.Duration,System.Media.Year")), 0);
}

TEST_F(MatcherTest, DatesAndTextsHaveTolerancesOfTheirOwn)
{
    constexpr std::int64_t hour = 36'000'000'000;
    world.files.setModified("/a.x", {1'000 * hour});
    world.files.setModified("/b.x", {1'240 * hour});
    EXPECT_EQ(stage(fuzzy(99, "System.DateModified")), 0);
    world.files.setModified("/b.x", {1'480 * hour});
    EXPECT_EQ(stage(fuzzy(99, "System.DateModified")), 1);

    set("System.Title", RawValue::text(u"The Café"), RawValue::text(u"the cafe"));
    EXPECT_EQ(stage(fuzzy(100, "System.Title")), 0) << "case and accents are folded away";
    set("System.Title", RawValue::text(u"abcdefghij"), RawValue::text(u"abcdefghxy"));
    EXPECT_EQ(stage(fuzzy(80, "System.Title")), 0);
    EXPECT_EQ(stage(fuzzy(81, "System.Title")), 1);
}

TEST_F(MatcherTest, SimilarContentsNeedTheScore)
{
    world.similar = &scores;
    const ScanCriteria images = fuzzy(90, "", scan_flag::contents, Category::images);
    scores.score = {true, 90, false};
    EXPECT_EQ(stage(images), 0);
    EXPECT_EQ(report.back().score, 90);
    scores.score = {.score = 89, .endsWalk = true};
    EXPECT_TRUE(compare(images).endsWalk);
    scores.score = {.comparable = false, .score = 100};
    EXPECT_FALSE(compare(images).match());
    EXPECT_FALSE(compare(images).endsWalk);
    scores.score = {.score = 250, .vetoed = true, .look = PreviewLook{90.5, -0.2, false}};
    EXPECT_FALSE(compare(images).match());
    EXPECT_TRUE(report.back().vetoed);
    EXPECT_EQ(report.back().score, 250);
    EXPECT_DOUBLE_EQ(report.back().look->colourDifference, 90.5);
}

// Where the files of a category stand in the order of durations, a score that is too low says nothing of the next ones.
TEST_F(MatcherTest, PicturesPartAtTheFirstStageAndSoundsAndFilmsAtThatOfContents)
{
    world.similar = &scores;
    scores.score = {.score = 10};
    for (const auto& [category, expected] :
         {std::pair{Category::images, 1}, {Category::video, 2}, {Category::audio, 2}, {Category::documents, 2}}) {
        const auto result = compare(fuzzy(90, "System.Size", scan_flag::contents, category));
        EXPECT_EQ(result.stage, expected);
        EXPECT_FALSE(result.endsWalk);
        EXPECT_EQ(report.back().stage, expected);
    }
}

TEST_F(MatcherTest, FilesOfOneSeriesArePartedByTheirFolder)
{
    set("System.Title", RawValue::text(u"One"), RawValue::text(u"One"));
    world.files.addFile("/Other/c.x", "");
    world.readers.set("/Other/c.x", "System.Title", RawValue::text(u"One"));
    world.options.seriesProperties = "System.Title";
    EXPECT_EQ(stage(fuzzy(90, "System.Title", 0, Category::audio)), 2);
    EXPECT_EQ(stage(fuzzy(90, "System.Title", 0, Category::documents)), 0);
    EXPECT_EQ(stage(fuzzy(90, "System.Title,System.Size", 0, Category::audio)), 0) << "another list";
    EXPECT_EQ(stage(world.criteria(0, "System.Title", Category::audio)), 0) << "an exact search";
    other = "/Other/c.x";
    EXPECT_EQ(stage(fuzzy(90, "System.Title", 0, Category::audio)), 0);
    other = "/b.x";
    world.options.flags |= option_flag::keepSameSeries;
    EXPECT_EQ(stage(fuzzy(90, "System.Title", 0, Category::audio)), 0);
}

}  // namespace
}  // namespace kelvane
