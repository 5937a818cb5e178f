#include "props/sim_doc_descriptor.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numeric>

#include "base/byte_stream.h"
#include "base/crc32.h"
#include "props/held_object.h"
#include "props/made_up_texts.h"
#include "props/property_world.h"
#include "props/sim_doc_cache.h"

namespace kelvane {
namespace {

using testing::MadeUpTexts;
using testing::PropertyWorld;

struct Moments {
    double mean, deviation;
};

// In two passes, as the textbook has it.
Moments momentsOf(const std::vector<double>& series)
{
    const double count = static_cast<double>(series.size());
    const double mean = std::accumulate(series.begin(), series.end(), 0.0) / count;
    double squares = 0;
    for (const double x : series)
        squares += (x - mean) * (x - mean);
    return {mean, std::sqrt(squares / count)};
}

TEST(SimDocDescriptor, isOnlyMadeOfTextsThatAreLongEnough)
{
    EXPECT_FALSE(SimDocDescriptor::make(std::u16string(1535, u'a'), 1535));
    EXPECT_TRUE(SimDocDescriptor::make(std::u16string(1536, u'a'), 1536));
}

TEST(SimDocDescriptor, tellsMeansAndDeviationsOfCharactersAndPairs)
{
    std::u16string text = MadeUpTexts(1).text(5000);
    text[0] = u'\u4E2D';
    text[2000] = u'\0';
    text.back() = u'\uFFFD';
    std::vector<double> characters(text.begin(), text.end()), pairs;
    for (std::size_t i = 0; i < text.size(); ++i)
        pairs.push_back(text[i] % 256 + 256 * (i + 1 < text.size() ? text[i + 1] % 256 : 0));
    const Moments single = momentsOf(characters), paired = momentsOf(pairs);
    const auto descriptor = SimDocDescriptor::make(text, 77);
    const auto& statistics = descriptor->statistics();
    EXPECT_NEAR(statistics[0], single.mean / 255, 1e-9);
    EXPECT_NEAR(statistics[1], single.deviation / 400, 1e-9);
    EXPECT_NEAR(statistics[2], paired.mean / 25000, 1e-9);
    EXPECT_NEAR(statistics[3], paired.deviation / 12000, 1e-9);
    EXPECT_EQ(descriptor->size(), 77u);
    EXPECT_EQ(descriptor->text(), text);
}

TEST(SimDocDescriptor, digestsFollowTheTextAlone)
{
    MadeUpTexts texts(2);
    const std::u16string text = texts.text(2000);
    EXPECT_EQ(SimDocDescriptor::make(text, 1)->textDigest(), SimDocDescriptor::make(text, 2)->textDigest());
    EXPECT_NE(SimDocDescriptor::make(text, 1)->textDigest(),
              SimDocDescriptor::make(texts.edited(text, 50), 1)->textDigest());
}

TEST(SimDocDescriptor, comesBackFromItsBytes)
{
    std::u16string text = MadeUpTexts(3).text(3000) + u"\u00FF";
    const auto narrow = SimDocDescriptor::make(text, 1ull << 40);
    EXPECT_LT(narrow->packed().size(), text.size() + 64) << "one byte a character";
    text[5] = u'\u2019';
    for (const auto& descriptor : {narrow, SimDocDescriptor::make(text, 5)}) {
        const auto again = SimDocDescriptor::unpacked(descriptor->packed());
        ASSERT_TRUE(again);
        EXPECT_EQ(again->text(), descriptor->text());
        EXPECT_EQ(again->size(), descriptor->size());
        EXPECT_EQ(again->statistics(), descriptor->statistics());
        EXPECT_EQ(again->textDigest(), descriptor->textDigest());
    }
}

TEST(SimDocDescriptor, damagedBytesGiveNothing)
{
    const std::vector<std::byte> whole = SimDocDescriptor::make(MadeUpTexts(4).text(1600), 9)->packed();
    for (std::size_t i = 0; i < whole.size(); i += i < 32 ? 1 : 19) {
        std::vector<std::byte> damaged = whole;
        damaged[i] ^= std::byte{0x10};
        ASSERT_FALSE(SimDocDescriptor::unpacked(damaged)) << "byte " << i;
        ASSERT_FALSE(SimDocDescriptor::unpacked(std::span(whole).first(i))) << "cut to " << i;
    }
}

// The check at the end says that bytes are what was written, not that they were written by this program.
TEST(SimDocDescriptor, lengthsAreNotTrusted)
{
    const auto madeUp = [](std::uint32_t length, std::size_t present, std::uint8_t planes) {
        ByteWriter writer;
        writer.number(std::uint8_t{1});
        writer.number(planes);
        writer.number(std::uint64_t{10});
        writer.number(length);
        writer.bytes(std::vector<std::byte>(present, std::byte{'a'}));
        writer.number(crc32(writer.written()));
        return SimDocDescriptor::unpacked(writer.written());
    };
    EXPECT_TRUE(madeUp(1536, 1536, 1));
    EXPECT_FALSE(madeUp(1535, 1535, 1));
    EXPECT_FALSE(madeUp(1536, 1537, 1));
    EXPECT_FALSE(madeUp(0xFFFFFFFF, 1536, 1));
    EXPECT_FALSE(madeUp(1536, 1536, 2));
    EXPECT_FALSE(madeUp(1536, 3 * 1536, 3));
}

TEST(SimDocCache, buildsEachDescriptorOnce)
{
    PropertyWorld world;
    ItemContext file = world.newFile("/home/a.txt");
    const PropRef property = world.ref("Stock.SimDocDescriptor");
    int built = 0;
    const DescriptorBuilder build = [&](const ShellItem&) {
        ++built;
        return SimDocDescriptor::make(std::u16string(2000, u'a'), 2000);
    };
    EXPECT_FALSE(documentDescriptor(file, property, {})) << "nobody to build it";
    EXPECT_EQ(file.cachedValues(), 0u);
    const auto first = documentDescriptor(file, property, build);
    ASSERT_TRUE(first);
    EXPECT_EQ(documentDescriptor(file, property, build), first);
    EXPECT_EQ(documentDescriptor(file, property, {}), first);
    EXPECT_EQ(built, 1);
    const PROPCACHE& node = *file.find(property.identifier, property.kind());
    EXPECT_EQ(node.raw.type, VarType::object);
    EXPECT_FALSE(node.missing());
    EXPECT_EQ(&world.source.cached(file, property), &node) << "the property source finds the same value";
}

TEST(SimDocCache, aFailedBuildIsNotTriedAgain)
{
    PropertyWorld world;
    ItemContext file = world.newFile("/home/a.txt");
    const PropRef property = world.ref("Stock.SimDocDescriptor");
    world.source.prefill(file, property);
    int tried = 0;
    const DescriptorBuilder build = [&](const ShellItem&) {
        ++tried;
        return Ref<SimDocDescriptor>();
    };
    EXPECT_FALSE(documentDescriptor(file, property, build));
    EXPECT_FALSE(documentDescriptor(file, property, build));
    EXPECT_EQ(tried, 1) << "a value that is only announced is built, a missing one is not";
    EXPECT_EQ(file.cachedValues(), 1u);
    EXPECT_TRUE(file.find(property.identifier, property.kind())->missing());
}

TEST(SimDocCache, aDescriptorLivesAsLongAsTheFilesValues)
{
    PropertyWorld world;
    const PropRef property = world.ref("Stock.SimDocDescriptor");
    Ref<const SimDocDescriptor> taken;
    {
        ItemContext file = world.newFile("/home/a.txt");
        keepObject(file, property, SimDocDescriptor::make(std::u16string(2000, u'b'), 1));
        taken = documentDescriptor(file, property, {});
        ASSERT_TRUE(taken);
        EXPECT_FALSE(taken->dropReference()) << "the node holds one as well";
        taken->addRef();
    }
    EXPECT_EQ(taken->text().front(), u'b');
    EXPECT_TRUE(taken->dropReference()) << "nobody else is left";
    taken->addRef();
}

}  // namespace
}  // namespace kelvane
