#include "platform/settings_store_contract.h"

#include "platform/ini_store.h"
#include "platform/platform.h"
#include "support/temp_tree.h"

namespace kelvane::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;
using Block = std::vector<std::byte>;
using Names = std::vector<std::u16string>;

constexpr auto done = SettingsCode::done;
constexpr auto notFound = SettingsCode::notFound;
constexpr auto invalidData = SettingsCode::invalidData;

Block blockOf(std::initializer_list<int> values)
{
    Block block;
    for (const int value : values)
        block.push_back(static_cast<std::byte>(value));
    return block;
}

std::uint32_t numberIn(const SettingsSection& section, std::u16string_view name)
{
    std::uint32_t value = 0xABAD1DEA;
    EXPECT_EQ(section.readNumber(name, value), done);
    return value;
}

std::u16string textIn(const SettingsSection& section, std::u16string_view name)
{
    std::u16string text = u"untouched";
    EXPECT_EQ(section.readText(name, text), done);
    return text;
}

TEST_P(SettingsStoreContract, KeepsValuesOfEachKind)
{
    const std::uint32_t numbers[] = {0, 1, 32000, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};
    const std::u16string texts[] = {u"",
                                    u"a",
                                    u"  spaces around\t ",
                                    u"\"quoted\"",
                                    u"50% ; # [x]\\",
                                    u"日本 \xD83D\xDE00",
                                    std::u16string(90'000, u'x')};
    Block longBlock(30'000);
    for (std::size_t at = 0; at < longBlock.size(); ++at)
        longBlock[at] = static_cast<std::byte>(at * 7);
    const Block blocks[] = {{}, blockOf({0}), blockOf({255, 0, 1, 128}), longBlock};
    const auto nameOf = [](const char16_t* kind, std::size_t i) {
        return kind + std::u16string(1, char16_t(u'a' + i));
    };
    {
        const auto section = write(u"general");
        for (std::size_t i = 0; i < std::size(numbers); ++i)
            EXPECT_EQ(section->writeNumber(nameOf(u"n", i), numbers[i]), done);
        for (std::size_t i = 0; i < std::size(texts); ++i)
            EXPECT_EQ(section->writeText(nameOf(u"sz", i), texts[i]), done);
        for (std::size_t i = 0; i < std::size(blocks); ++i)
            EXPECT_EQ(section->writeBlock(nameOf(u"bin", i), blocks[i]), done);
    }
    reopen();
    const auto section = read(u"general");
    ASSERT_NE(section, nullptr);
    for (std::size_t i = 0; i < std::size(numbers); ++i)
        EXPECT_EQ(numberIn(*section, nameOf(u"n", i)), numbers[i]);
    for (std::size_t i = 0; i < std::size(texts); ++i)
        EXPECT_EQ(textIn(*section, nameOf(u"sz", i)), texts[i]);
    for (std::size_t i = 0; i < std::size(blocks); ++i) {
        Block block = blockOf({9});
        EXPECT_EQ(section->readBlock(nameOf(u"bin", i), block), done);
        EXPECT_EQ(block, blocks[i]);
    }
}

TEST_P(SettingsStoreContract, AMissingValueIsToldAndLeavesTheOutputUsable)
{
    const auto section = write(u"general");
    ASSERT_EQ(section->writeNumber(u"nOther", 1), done);
    std::uint32_t number = 0;
    std::u16string text;
    Block block;
    EXPECT_EQ(section->readNumber(u"nMissing", number), invalidData);
    EXPECT_EQ(section->readText(u"szMissing", text), notFound);
    EXPECT_EQ(section->readBlock(u"binMissing", block), notFound);
    EXPECT_EQ(section->deleteValue(u"nMissing"), notFound);
}

TEST_P(SettingsStoreContract, AValueOfAnotherTypeIsInvalid)
{
    const auto section = write(u"general");
    ASSERT_EQ(section->writeText(u"szText", u"words"), done);
    ASSERT_EQ(section->writeBlock(u"binBlock", blockOf({1, 2})), done);
    ASSERT_EQ(section->writeNumber(u"nNumber", 12), done);
    std::uint32_t number = 0;
    std::u16string text;
    Block block;
    EXPECT_EQ(section->readBlock(u"szText", block), invalidData);
    if (!GetParam().knowsTypes)
        return;
    EXPECT_EQ(section->readNumber(u"szText", number), invalidData);
    EXPECT_EQ(section->readNumber(u"binBlock", number), invalidData);
    EXPECT_EQ(section->readText(u"nNumber", text), invalidData);
    EXPECT_EQ(section->readText(u"binBlock", text), invalidData);
    EXPECT_EQ(section->readBlock(u"nNumber", block), invalidData);
}

TEST_P(SettingsStoreContract, AValueReplacesOneOfAnyTypeAndKeepsItsPlace)
{
    const auto section = write(u"general");
    ASSERT_EQ(section->writeNumber(u"first", 1), done);
    ASSERT_EQ(section->writeText(u"second", u"two"), done);
    ASSERT_EQ(section->writeNumber(u"third", 3), done);
    EXPECT_EQ(section->writeText(u"FIRST", u"one"), done);
    EXPECT_EQ(section->writeNumber(u"second", 2), done);
    EXPECT_EQ(textIn(*section, u"first"), u"one");
    EXPECT_EQ(numberIn(*section, u"Second"), 2u);
    EXPECT_THAT(section->valueNames(), ElementsAre(u"first", u"second", u"third"));
    EXPECT_EQ(section->deleteValue(u"SECOND"), done);
    EXPECT_THAT(section->valueNames(), ElementsAre(u"first", u"third"));
}

TEST_P(SettingsStoreContract, TheSectionHasAValueOfItsOwn)
{
    const auto section = write(u"list");
    EXPECT_EQ(section->writeText(u"", u"own"), done);
    EXPECT_EQ(textIn(*section, u""), u"own");
}

TEST_P(SettingsStoreContract, SectionsLieInSections)
{
    ASSERT_EQ(write(u"general")->writeNumber(u"n", 1), done);
    ASSERT_EQ(write(u"general\\Recent")->writeNumber(u"n", 2), done);
    ASSERT_EQ(write(u"general\\Recent\\Deep")->writeNumber(u"n", 3), done);
    ASSERT_EQ(write(u"generally")->writeNumber(u"n", 4), done);
    ASSERT_EQ(write(u"general\\Other")->writeNumber(u"n", 5), done);
    reopen();
    const auto general = read(u"GENERAL");
    ASSERT_NE(general, nullptr);
    EXPECT_EQ(numberIn(*general, u"n"), 1u);
    const Names below = general->subsectionNames();
    EXPECT_THAT(below, UnorderedElementsAre(u"Recent", u"Other"));
    if (GetParam().keepsSectionOrder) {
        EXPECT_EQ(below.front(), u"Recent");
    }

    EXPECT_EQ(store_->deleteSection(u"General\\recent"), done);
    EXPECT_EQ(read(u"general\\Recent\\Deep"), nullptr);
    EXPECT_EQ(read(u"general\\Recent"), nullptr);
    EXPECT_THAT(read(u"general")->subsectionNames(), ElementsAre(u"Other"));
    EXPECT_EQ(store_->deleteSection(u"general"), done);
    EXPECT_EQ(read(u"general\\Other"), nullptr);
    EXPECT_EQ(numberIn(*read(u"generally"), u"n"), 4u);
}

TEST_P(SettingsStoreContract, ASectionForReadingTakesNoChanges)
{
    ASSERT_EQ(write(u"general")->writeNumber(u"n", 1), done);
    const auto section = read(u"general");
    EXPECT_EQ(section->writeNumber(u"n", 2), SettingsCode::accessDenied);
    EXPECT_EQ(section->writeText(u"n", u""), SettingsCode::accessDenied);
    EXPECT_EQ(section->writeBlock(u"n", {}), SettingsCode::accessDenied);
    EXPECT_EQ(section->deleteValue(u"n"), SettingsCode::accessDenied);
    EXPECT_EQ(numberIn(*section, u"n"), 1u);
    if (GetParam().keepsEmptySections) {
        (void)write(u"empty");
        EXPECT_NE(read(u"empty"), nullptr);
    }
}

TEST_P(SettingsStoreContract, ATransactionIsKeptWholeOrNotAtAll)
{
    if (!GetParam().keepsTransactions)
        GTEST_SKIP() << "writes value by value";
    ASSERT_EQ(write(u"general")->writeNumber(u"n", 1), done);
    ASSERT_EQ(store_->begin(), done);
    ASSERT_EQ(write(u"general")->writeNumber(u"n", 2), done);
    ASSERT_EQ(write(u"new")->writeNumber(u"n", 2), done);
    ASSERT_EQ(store_->deleteSection(u"general"), done);
    store_->discard();
    reopen();
    EXPECT_EQ(numberIn(*read(u"general"), u"n"), 1u);
    EXPECT_EQ(read(u"new"), nullptr);

    ASSERT_EQ(store_->begin(), done);
    ASSERT_EQ(write(u"general")->writeNumber(u"n", 3), done);
    EXPECT_EQ(numberIn(*read(u"general"), u"n"), 3u);  // seen by the one who wrote it
    ASSERT_EQ(store_->commit(), done);
    reopen();
    EXPECT_EQ(numberIn(*read(u"general"), u"n"), 3u);
}

TEST_P(SettingsStoreContract, PeculiaritiesOfTextAndNumbers)
{
    const auto section = write(u"Tag colors");
    ASSERT_EQ(section->writeNumber(u"a=b", 0xDEADBEEB), done);
    const Names names = section->valueNames();
    EXPECT_THAT(names, ElementsAre(GetParam().keepsAnyText ? u"a=b" : u"a_b"));
    std::uint32_t number = 0;
    EXPECT_EQ(section->readNumber(u"a=b", number), GetParam().keepsMissingNumber ? done : invalidData);
    if (!GetParam().keepsAnyText)
        return;
    ASSERT_EQ(section->writeText(u"lines", u"one\r\ntwo\xD800"), done);
    EXPECT_EQ(textIn(*section, u"lines"), u"one\r\ntwo\xD800");
}

class MemoryWorld final : public SettingsWorld {
public:
    std::unique_ptr<SettingsStore> open() override { return std::make_unique<MemorySettingsStore>(); }
};

class IniWorld final : public SettingsWorld {
public:
    std::unique_ptr<SettingsStore> open() override
    {
        return makeIniStore(platform_->files(), platform_->output(), platform_->folding(), tree_.path("kelvane.ini"));
    }

private:
    TempTree tree_;
    std::unique_ptr<Platform> platform_ = makePlatform();
};

// What the profile functions make of the promises: values without types, and lines of text.
SettingsBackEnd iniBackEnd()
{
    SettingsBackEnd ini{.name = "Ini", .make = std::make_unique<IniWorld>};
    ini.knowsTypes = false;
    ini.keepsEmptySections = false;
    ini.keepsAnyText = false;
    ini.keepsMissingNumber = false;
    return ini;
}

SettingsBackEnd memoryBackEnd()
{
    SettingsBackEnd memory{.name = "Memory", .make = std::make_unique<MemoryWorld>};
    memory.reopens = false;
    return memory;
}

INSTANTIATE_TEST_SUITE_P(Memory, SettingsStoreContract, ::testing::Values(memoryBackEnd()));
INSTANTIATE_TEST_SUITE_P(Ini, SettingsStoreContract, ::testing::Values(iniBackEnd()));

}  // namespace
}  // namespace kelvane::testing
