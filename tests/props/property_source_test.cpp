#include "props/property_source.h"

#include <gtest/gtest.h>

#include "props/property_world.h"

namespace kelvane {
namespace {

using testing::PropertyWorld;

TEST(PropertySource, recordValuesCostNoNodeAndNoLook)
{
    PropertyWorld world;
    world.files.addFile("/home/a.txt", "12345");
    world.files.setModified("/home/a.txt", {777});
    world.files.setAttributes("/home/a.txt", 0x80000021);
    ItemContext file = world.context("/home/a.txt");
    const auto before = world.files.accesses().size();
    EXPECT_EQ(world.value(file, "System.Size").number(), 5);
    EXPECT_EQ(world.value(file, "System.DateModified").number(), 777);
    EXPECT_EQ(world.value(file, "System.FileAttributes").number(), -0x7FFFFFDFLL) << "32 bits, sign-extended";
    EXPECT_EQ(world.value(file, "Stock.IsFolder").number(), 0);
    EXPECT_EQ(file.cachedValues(), 0u);
    EXPECT_EQ(world.files.accesses().size(), before);
    EXPECT_EQ(world.readers.reads, 0);
}

TEST(PropertySource, groupNumberFollowsTheFile)
{
    PropertyWorld world;
    ItemContext file = world.newFile();
    const PropRef group = world.ref("Stock.GroupID");
    EXPECT_TRUE(world.source.cached(file, group).missing()) << "in no group";
    file.group.value = 12;
    world.source.groupChanged(file);
    EXPECT_EQ(world.source.cached(file, group).number(), 12);
    file.group.value = GroupField::excluded;
    EXPECT_TRUE(world.source.value(file, group).missing());
}

TEST(PropertySource, propertiesThatShareAKeyKeepTheirOwnNodes)
{
    PropertyWorld world;
    world.files.addFile("/home/a.txt", "");
    world.files.setAttributes("/home/a.txt", attribute::readOnly | attribute::archive);
    ItemContext file = world.context("/home/a.txt");
    EXPECT_EQ(world.source.cached(file, world.ref("System.FileAttributes")).number(), 0x21);
    EXPECT_EQ(world.text(file, "Stock.FileAttributes"), u"R--A--------");
}

TEST(PropertySource, prefilledValuesAreReadWhenTheyAreNeeded)
{
    PropertyWorld world;
    ItemContext file = world.newFile();
    world.readers.set("/home/a.jpg", "System.Title", RawValue::text(u"One"));
    for (const auto* name : {"System.Title", "System.Music.AlbumTitle", "System.Size", "Stock.FileCount"})
        world.source.prefill(file, world.ref(name));
    world.source.prefill(file, world.ref("System.Title"));
    EXPECT_EQ(file.cachedValues(), 2u) << "not from the record, not the contents of what is no folder, not twice";
    EXPECT_EQ(world.readers.reads, 0);
    const PROPCACHE* title = file.find(world.ref("System.Title").identifier, PropKind::text);
    EXPECT_TRUE(title->pending() && title->missing());

    EXPECT_EQ(world.text(file, "Stock.BookList"), u"one");
    EXPECT_FALSE(title->pending());
    EXPECT_EQ(world.text(file, "System.Title"), u"One");
    EXPECT_TRUE(world.value(file, "System.Music.AlbumTitle").missing());
    const int reads = world.readers.reads;
    EXPECT_TRUE(world.value(file, "System.Music.AlbumTitle").missing());
    EXPECT_EQ(world.readers.reads, reads) << "a failed read is not tried again";
}

class CombinedList : public ::testing::Test {
protected:
    PropertyWorld world;
    ItemContext file = world.newFile();
    void set(const char* name, std::u16string value)
    {
        world.readers.set("/home/a.jpg", name, RawValue::text(std::move(value)));
    }
};

TEST_F(CombinedList, foldsEveryPartAndJoinsThemFromTheLastToTheFirst)
{
    set("System.Title", u"Caf\u00E9 (live)");
    set("System.Music.AlbumTitle", u"CAFE");
    set("System.Video.Director", u"Nobody");
    EXPECT_EQ(world.text(file, "Stock.AudioList"), u"cafe live");
    EXPECT_EQ(world.text(file, "Stock.VideoList"), u"nobody cafe live");
}

TEST_F(CombinedList, nothingToCombineIsMissing)
{
    EXPECT_TRUE(world.value(file, "Stock.AudioList").missing());
    ItemContext other = world.newFile("/home/b.jpg");
    world.readers.set("/home/b.jpg", "System.Title", RawValue::text(u"?!"));
    EXPECT_TRUE(world.value(other, "Stock.AudioList").missing()) << "punctuation alone is no word";
}

TEST_F(CombinedList, authorsComeFromTheTagThatTheFileHas)
{
    world.readers.set("/home/a.jpg", "System.Music.Artist", RawValue::texts({u"Ann", u"Bob"}));
    EXPECT_EQ(world.text(file, "System.ItemAuthors"), u"Ann; Bob");
    EXPECT_EQ(world.text(file, "Stock.BookList"), u"ann bob");
}

TEST(PropertySource, itemDateFallsBackToTheLastChange)
{
    PropertyWorld world;
    ItemContext file = world.newFile();
    EXPECT_EQ(world.value(file, "System.ItemDate").number(), world.value(file, "System.DateModified").number());
    ItemContext photo = world.newFile("/home/b.jpg");
    world.readers.set("/home/b.jpg", "System.Photo.DateTaken", RawValue::number(VarType::fileTime, 99));
    EXPECT_EQ(world.value(photo, "System.ItemDate").number(), 99);
}

TEST(PropertySource, southAndWestAreNegative)
{
    for (const auto& [axis, hemisphere, degrees] : {std::tuple{"System.GPS.Latitude", u"S", -51.5},
                                                    {"System.GPS.Latitude", u"N", 51.5},
                                                    {"System.GPS.Longitude", u"West", -51.5},
                                                    {"System.GPS.Longitude", u"", 51.5}}) {
        PropertyWorld world;
        ItemContext file = world.newFile();
        world.readers.set("/home/a.jpg", axis, {VarType::float64, true, std::vector<double>{51, 30, 0}});
        world.readers.set("/home/a.jpg", axis + std::string("Ref"), RawValue::text(hemisphere));
        EXPECT_EQ(world.value(file, axis).real(), degrees) << axis;
        EXPECT_EQ(world.value(file, axis + std::string("Decimal")).real(), degrees) << axis;
    }
}

TEST(PropertySource, foldedTextIsMadeOnceAndKept)
{
    PropertyWorld world;
    ItemContext file = world.newFile();
    world.readers.set("/home/a.jpg", "System.Title", RawValue::text(u"R\u00C9SUM\u00C9.Final"));
    const std::u16string_view folded = world.source.foldedText(file, world.ref("System.Title"));
    EXPECT_EQ(folded, u"resume final");
    EXPECT_EQ(world.source.foldedText(file, world.ref("System.Title")).data(), folded.data());
    EXPECT_TRUE(world.source.foldedText(file, world.ref("System.Size")).empty());
    EXPECT_TRUE(world.source.foldedText(file, world.ref("System.Subject")).empty());
}

}  // namespace
}  // namespace kelvane
