#include "app/settings_node.h"

#include <gmock/gmock.h>

#include "settings_back_ends.h"

namespace kelvane {
namespace {

using testing::MemorySettingsStore;

constexpr auto reading = SettingsAccess::reading;
constexpr auto writing = SettingsAccess::writing;

TEST(SettingsNode, NestedNodesNameTheirWholePath)
{
    MemorySettingsStore store;
    const SettingsRoot registry{&store, registryLocation()};
    const SettingsNode general(registry, u"general", writing);
    EXPECT_EQ(general.path(), std::u16string(settingsKeyPath) + u"\\general");
    const SettingsRoot ini{&store, {u"", "/x.ini"}};
    EXPECT_EQ(SettingsNode(SettingsNode(ini, u"general", reading), u"Recent Document List", reading).path(),
              u"general\\Recent Document List");
}

// What is missing answers by what holds the settings: only the registry knows that a key is not there.
TEST(SettingsNode, AnswersWithTheCodesOfItsPlace)
{
    MemorySettingsStore store;
    const struct {
        SettingsLocation location;
        SettingsCode absent;
    } places[] = {{registryLocation(), SettingsCode::noKey}, {{u"", "/x.ini"}, SettingsCode::notFound}};
    for (const auto& [location, absent] : places) {
        const SettingsNode node({&store, location}, u"nowhere", reading);
        std::uint32_t number = 0;
        std::u16string text = u"before";
        std::size_t size = 0;
        EXPECT_EQ(node.readNumber(u"n", number), SettingsCode::invalidData);
        EXPECT_EQ(node.readBinary(nullptr, u"bin", size), absent);
        EXPECT_EQ(node.readString(text, u"sz"), absent);
        EXPECT_EQ(text, u"");
    }
    SettingsNode general({&store, registryLocation()}, u"general", writing);
    std::size_t size = 0;
    EXPECT_EQ(general.readBinary(nullptr, u"bin", size), SettingsCode::notFound);
    EXPECT_EQ(general.writeBinary(nullptr, u"bin", 3), SettingsCode::invalidData);
    EXPECT_EQ(SettingsNode({&store, registryLocation()}, u"general", reading).writeNumber(1, u"n"),
              SettingsCode::accessDenied);
}

// The profile functions say that they failed and not why; a registry passes the system's code on.
TEST(SettingsNode, FailedWritesOfAnIniFileHaveFixedCodes)
{
    MemorySettingsStore store;
    const std::byte byte{1};
    SettingsNode ini({&store, {u"", "/x.ini"}}, u"general", writing);
    SettingsNode key({&store, registryLocation()}, u"general", writing);
    store.fault = SettingsCode::accessDenied;
    EXPECT_EQ(ini.writeNumber(1, u"n"), SettingsCode::invalidData);
    EXPECT_EQ(ini.writeString(u"x", u"sz"), SettingsCode::invalidData);
    EXPECT_EQ(ini.writeBinary(&byte, u"bin", 1), SettingsCode::notFound);
    EXPECT_EQ(key.writeNumber(1, u"n"), SettingsCode::accessDenied);
    store.fault = SettingsCode::tooLong;
    EXPECT_EQ(ini.writeBinary(&byte, u"bin", 1), SettingsCode::tooLong);
}

TEST(SettingsNode, ReadsBlocksIntoTheCallersRoom)
{
    MemorySettingsStore store;
    SettingsNode node({&store, registryLocation()}, u"general", writing);
    const std::vector<std::byte> block{std::byte{1}, std::byte{2}, std::byte{3}};
    ASSERT_EQ(node.writeBinary(block.data(), u"bin", block.size()), SettingsCode::done);
    std::size_t size = 0;
    EXPECT_EQ(node.readBinary(nullptr, u"bin", size), SettingsCode::done);
    EXPECT_EQ(size, 3u);
    std::vector<std::byte> room(4);
    size = 2;
    EXPECT_EQ(node.readBinary(room.data(), u"bin", size), SettingsCode::moreData);
    EXPECT_EQ(room[0], std::byte{0}) << "nothing is written into a room that is too small";
    size = room.size();
    EXPECT_EQ(node.readBinary(room.data(), u"bin", size), SettingsCode::done);
    EXPECT_EQ(size, 3u);
    EXPECT_EQ(room[2], std::byte{3});
}

class SettingsNodes : public ::testing::TestWithParam<testing::SettingsBackEnd> {};

TEST_P(SettingsNodes, CutLongTextsAndKeepStrangeNames)
{
    const auto world = GetParam().make();
    const auto store = world->open();
    const bool isIni = !GetParam().knowsTypes;
    const SettingsRoot root{store.get(), isIni ? SettingsLocation{u"", "/x.ini"} : registryLocation()};
    SettingsNode tags(root, u"Tag colors", writing);
    ASSERT_EQ(tags.writeNumber(0xFF, u"1=one"), SettingsCode::done);
    EXPECT_THAT(tags.valueNames(), ::testing::ElementsAre(isIni ? u"1_one" : u"1=one"));
    std::uint32_t number = 0;
    EXPECT_EQ(tags.readNumber(u"1=one", number), SettingsCode::done);
    EXPECT_EQ(number, 0xFFu);
    const SettingsCode written = tags.writeString(std::u16string(100'001, u'x'), u"szLong");
    if (GetParam().name == "LimitedIni") {
        EXPECT_EQ(written, SettingsCode::tooLong);
        return;
    }
    std::u16string text;
    EXPECT_EQ(tags.readString(text, u"szLong"), SettingsCode::done);
    EXPECT_EQ(text.size(), 99'999u);
}

INSTANTIATE_TEST_SUITE_P(BackEnds, SettingsNodes, ::testing::ValuesIn(testing::settingsBackEnds()),
                         [](const auto& place) { return place.param.name; });

}  // namespace
}  // namespace kelvane
