#include "engine/similar_pictures.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "engine/picture_world.h"

namespace kelvane {
namespace {

using testing::drawnPreview;
using ::testing::ElementsAre;
using testing::flatPreview;
using testing::PictureWorld;
using testing::RecordingSink;
using testing::Scene;
using ::testing::UnorderedElementsAre;

using Groups = std::set<std::set<std::string>>;

Groups groupsOf(const RecordingSink& sink)
{
    Groups groups;
    for (const auto& group : sink.groups())
        groups.insert({group.begin(), group.end()});
    return groups;
}

TEST(SimilarPictures, GroupsCopiesThatWereEdited)
{
    PictureWorld world;
    world.addFamily("/a/beach", 1);
    world.addFamily("/b/forest", 2);
    world.add("/c/alone.jpg", Scene(3).preview(100, 75));
    world.begin();
    const auto sink = world.search(world.alike());
    EXPECT_EQ(groupsOf(sink), (Groups{{"/a/beach.jpg", "/a/beach bright.jpg", "/a/beach cropped.jpg"},
                                      {"/b/forest.jpg", "/b/forest bright.jpg", "/b/forest cropped.jpg"}}));
    EXPECT_EQ(std::ranges::count_if(sink.rows, [](const auto& row) { return row.score.value_or(0) >= 90; }), 4);
}

// The score takes flat pictures for one another whatever their colours, and for much else.
TEST(SimilarPictures, LooksTwiceUnlessToldNotTo)
{
    PictureWorld world;
    world.add("/blue.png", flatPreview({0, 0, 200}));
    world.add("/red.png", flatPreview({200, 0, 0}));
    world.begin();
    EXPECT_EQ(groupsOf(world.search(world.alike())), Groups{});
    world.options.secondLook = false;
    EXPECT_EQ(groupsOf(world.search(world.alike())), (Groups{{"/blue.png", "/red.png"}}));
}

TEST(SimilarPictures, LeavesOutWhatHasNoPreviewAndSaysWhy)
{
    PictureWorld world;
    world.addFamily("/a", 1);
    world.files.addFile("/broken.jpg", "x");
    world.reading.fail("/broken.jpg", MediaOutcome::damaged);
    world.begin();
    const ScanCriteria by = world.alike();
    Candidate broken = world.file("/broken.jpg"), whole = world.file("/a.jpg");
    EXPECT_TRUE(world.pictures->describe(by, broken, world.cancel));
    EXPECT_FALSE(world.pictures->admits(by, broken));
    EXPECT_FALSE(world.pictures->describe(by, whole, world.cancel));
    EXPECT_TRUE(world.pictures->admits(by, whole));
    const int reads = world.reading.reads;
    static_cast<void>(world.pictures->describe(by, whole, world.cancel));
    static_cast<void>(world.pictures->describe(by, broken, world.cancel));
    EXPECT_EQ(world.reading.reads, reads) << "each file is tried once";
    EXPECT_FALSE(world.pictures->compare(by, whole, broken, world.cancel).comparable);
}

TEST(SimilarPictures, TellsWhatBothLooksSay)
{
    PictureWorld world;
    world.addFamily("/a", 1);
    world.add("/other.jpg", Scene(2).preview(100, 75));
    world.add("/upright.jpg", Scene(1).preview(75, 100));
    world.begin(ProbeNumbers::shared);
    const ScanCriteria by = world.alike();
    Candidate a = world.file("/a.jpg"), bright = world.file("/a bright.jpg"), other = world.file("/other.jpg"),
              upright = world.file("/upright.jpg");
    const ContentScore same = world.pictures->compare(by, a, bright, world.cancel);
    EXPECT_GE(same.score, 100);
    EXPECT_FALSE(same.vetoed);
    EXPECT_FALSE(same.endsWalk);
    ASSERT_TRUE(same.look);
    EXPECT_GT(same.look->correlation, 0.9);
    const ContentScore different = world.pictures->compare(by, a, other, world.cancel);
    EXPECT_TRUE(different.vetoed);
    EXPECT_TRUE(different.comparable);
    EXPECT_FALSE(different.endsWalk) << "there may be later ones of this size";
    const ContentScore turned = world.pictures->compare(by, a, upright, world.cancel);
    EXPECT_EQ(turned.score, 0);
    EXPECT_TRUE(turned.endsWalk) << "sizes are what previews are ordered by first";
}

// Names in an order that has nothing to do with looks: 15 families among each other and 30 other pictures, two sizes.
void addMany(PictureWorld& world)
{
    for (unsigned i = 0; i < 15; ++i) {
        const Scene scene(i);
        const std::uint32_t height = i % 2 == 0 ? 60 : 53;
        for (const auto& [name, light, cropped] :
             {std::tuple{"/x", 1.0, 0.0}, {"/m", 1.15, 0.0}, {"/c", 1.0, 0.02}, {"/t", 0.9, 0.01}})
            world.add(name + std::to_string(i * 7919 % 1000) + ".jpg", scene.preview(80, height, light, cropped));
        world.add("/k" + std::to_string(i) + ".jpg", Scene(1000 + i).preview(80, height));
        world.add("/p" + std::to_string(i) + ".jpg", Scene(2000 + i).preview(80, height));
    }
}

TEST(SimilarPictures, FindsByTheIndexWhatThePlainWalkFindsWhateverTheThreads)
{
    PictureWorld world;
    addMany(world);
    world.options.threads = 1;
    world.begin();
    ScanCriteria by = world.alike();
    const auto rows = world.search(by).rows;
    EXPECT_GE(rows.size(), 50u);
    for (const unsigned threads : {2u, 5u}) {
        world.options.threads = threads;
        world.begin();
        EXPECT_EQ(world.search(by).rows, rows) << threads;
    }
    by.options.exhaustive = true;
    EXPECT_EQ(world.search(by).rows, rows) << "exhaustive";
    by.options.classifyAhead = false;
    EXPECT_EQ(world.search(by).rows, rows) << "the plain walk";
}

// Hundreds of the same: more than are linked to each ahead.
TEST(SimilarPictures, KeepsManyCopiesInOneGroup)
{
    PictureWorld world;
    const Scene scene(1), other(2);
    for (int i = 0; i < 80; ++i) {
        world.add("/a" + std::to_string(i) + ".jpg", scene.preview(40, 30, 1 + (i % 5) * 0.002));
        world.add("/b" + std::to_string(i) + ".jpg", other.preview(40, 30));
    }
    world.begin();
    const auto groups = groupsOf(world.search(world.alike()));
    ASSERT_EQ(groups.size(), 2u);
    for (const auto& group : groups)
        EXPECT_EQ(group.size(), 80u);
}

TEST(SimilarPictures, TakesPreviewsOutOfTheCacheBetweenRuns)
{
    PictureWorld world;
    auto opened = world.caches.open(1 << 20);
    world.cache = std::move(*opened);
    addMany(world);
    world.begin();
    const auto rows = world.search(world.alike()).rows;
    const int reads = world.reading.reads;
    world.begin();
    EXPECT_EQ(world.search(world.alike()).rows, rows);
    EXPECT_EQ(world.reading.reads, reads) << "nothing is decoded twice";
}

TEST(SimilarPictures, OrdersFilmsByTheirDurations)
{
    PictureWorld world;
    const Scene scene(1);
    for (const auto& [name, minutes] : {std::pair{"/a.mp4", 50}, {"/b.mp4", 10}, {"/c.mp4", 11}}) {
        world.add(name, scene.preview());
        world.reading.setDuration(name, minutes * 60'000);
    }
    world.begin();
    const ScanCriteria by = world.alike(90, Category::video);
    CandidateList list;
    world.gather(list);
    EXPECT_FALSE(world.pictures->order(by, list, world.cancel));
    Candidate a = world.file("/a.mp4"), b = world.file("/b.mp4");
    EXPECT_GE(world.pictures->compare(by, a, b, world.cancel).score, 100);
}

}  // namespace
}  // namespace kelvane
