#include "text/loaded_plugins.h"

#include <gtest/gtest.h>

#include "base/file_time.h"
#include "platform/platform.h"
#include "support/temp_tree.h"

namespace kelvane {
namespace {

// Every byte is a character of its own.
class Latin1Decoding final : public TextDecoding {
public:
    Result<std::u16string> decode(std::span<const std::byte> bytes, std::string_view /*charset*/) const override
    {
        std::u16string text;
        for (const std::byte byte : bytes)
            text += static_cast<char16_t>(std::to_integer<unsigned>(byte));
        return text;
    }
    std::optional<std::string> guess(std::span<const std::byte> /*bytes*/) const override { return "latin1"; }
};

class ContentPluginTest : public ::testing::Test {
protected:
    static std::filesystem::path sample() { return std::filesystem::absolute(KELVANE_SAMPLE_PLUGIN); }
    std::filesystem::path sampleAs(std::string_view name) const
    {
        std::filesystem::copy_file(sample(), tree_.path(name));
        return tree_.path(name);
    }

    Result<RawValue> value(std::uint32_t field, const std::filesystem::path& file)
    {
        return plugins_->value({sample(), file, field}, never_);
    }
    std::uint64_t number(std::uint32_t field, VarType type)
    {
        const auto read = value(field, tree_.path("a.txt"));
        EXPECT_TRUE(read && read->type == type) << field;
        const auto* bits = read ? std::get_if<std::uint64_t>(&read->data) : nullptr;
        return bits != nullptr ? *bits : 0;
    }
    std::u16string textOf(std::uint32_t field)
    {
        const auto read = value(field, tree_.path("a.txt"));
        EXPECT_TRUE(read && read->type == VarType::wideText) << field;
        const auto* text = read ? std::get_if<std::u16string>(&read->data) : nullptr;
        return text != nullptr ? *text : u"(none)";
    }
    ExtractedDocument fullText(const std::filesystem::path& file, std::uint32_t characters)
    {
        return plugins_->fullText({sample(), file, 8}, characters, never_);
    }

    const testing::TempTree tree_;
    const std::unique_ptr<Platform> platform_ = makePlatform();
    const Latin1Decoding decoding_;
    const CancelFlag never_;
    std::unique_ptr<PluginAccess> plugins_ = makeLoadedPlugins(platform_->libraries(), decoding_);
};

TEST_F(ContentPluginTest, ListsTheFieldsThatCanBeRead)
{
    const auto description = plugins_->describe(sample(), never_);
    ASSERT_TRUE(description) << description.error().detail;
    EXPECT_EQ(description->detect, "EXT=\"SMP\" | EXT=\"TXT\"");
    ASSERT_EQ(description->fields.size(), 16u);  // all but the one that compares
    EXPECT_EQ(description->fields[0], (PluginField{0, "Number", VarType::int32}));
    EXPECT_EQ(description->fields[4], (PluginField{4, "Clock", VarType::wideText}));
    EXPECT_TRUE(description->fields[8].isFullText());
}

TEST_F(ContentPluginTest, ReadsAValueOfEachType)
{
    EXPECT_EQ(static_cast<std::int64_t>(number(0, VarType::int32)), -7);
    EXPECT_EQ(number(1, VarType::int64), 5'000'000'000u);
    const auto ratio = value(2, tree_.path("a.txt"));
    ASSERT_TRUE(ratio);
    EXPECT_EQ(std::get<double>(ratio->data), 0.25);
    EXPECT_EQ(toIso8601({static_cast<std::int64_t>(number(3, VarType::fileTime))}), "2021-03-04T00:00:00Z");
    EXPECT_EQ(textOf(4), u"05:06:07");
    EXPECT_NE(number(5, VarType::boolean), 0u);
    EXPECT_EQ(textOf(6), u"green");
    EXPECT_EQ(textOf(7), u"caf\u00E9 a.txt");
    EXPECT_EQ(number(9, VarType::fileTime), 132'592'032'000'000'000u);
    EXPECT_EQ(textOf(10), u"weit");
}

TEST_F(ContentPluginTest, GivesNoValueForWhatIsNone)
{
    for (const std::uint32_t field : {13u, 15u, 99u}) {
        const auto read = value(field, tree_.path("a.txt"));
        EXPECT_TRUE(read && read->empty()) << field;
    }
}

TEST_F(ContentPluginTest, EndsATextWithItsRoomAndNoticesWritingBeyondIt)
{
    EXPECT_EQ(textOf(11), std::u16string(4096, u'x'));
    const auto overrun = value(12, tree_.path("a.txt"));
    ASSERT_FALSE(overrun);
    EXPECT_EQ(overrun.error().kind, ErrorKind::invalid);
}

TEST_F(ContentPluginTest, ReadsAFullTextPieceByPieceAsFarAsItIsWanted)
{
    const auto file = tree_.write("long.txt", "The caf\xE9 is open.");
    const ExtractedDocument whole = fullText(file, 1000);
    EXPECT_EQ(whole.outcome, TextOutcome::extracted);
    EXPECT_EQ(whole.text, u"The caf\u00E9 is open.");
    EXPECT_FALSE(whole.cut);
    EXPECT_EQ(whole.weight, 18u);  // the accented letter takes two bytes
    const ExtractedDocument part = fullText(file, 5);
    EXPECT_EQ(part.text, u"The c");
    EXPECT_TRUE(part.cut);
    EXPECT_EQ(fullText(tree_.path("missing.txt"), 10).outcome, TextOutcome::unreadable);
    EXPECT_EQ(fullText(tree_.write("empty.txt", ""), 10).outcome, TextOutcome::unknownFormat);
}

TEST_F(ContentPluginTest, TellsAPluginThatNoMoreOfItsTextIsWanted)
{
    const auto library = sampleAs("own.wdx64");
    const auto file = tree_.write("long.txt", std::string(1000, 'x'));
    EXPECT_TRUE(plugins_->fullText({library, file, 8}, 2, never_).cut);
    EXPECT_EQ(tree_.read("contentplugins.ini"), "enough long.txt\n");
}

TEST_F(ContentPluginTest, UnloadsTheLastLoadedOneFirst)
{
    const auto one = sampleAs("one.wdx64"), two = sampleAs("two.wdx64");
    static_cast<void>(plugins_->value({one, tree_.path("1.txt"), 0}, never_));
    static_cast<void>(plugins_->value({two, tree_.path("2.txt"), 0}, never_));
    plugins_.reset();
    EXPECT_EQ(tree_.read("contentplugins.ini"), "unloading 2.txt\ngone 2.txt\nunloading 1.txt\ngone 1.txt\n");
}

TEST_F(ContentPluginTest, RefusesALibraryThatIsNoPlugin)
{
    EXPECT_EQ(plugins_->describe(tree_.path("missing.wdx64"), never_).error().kind, ErrorKind::notFound);
    EXPECT_EQ(plugins_->describe(tree_.write("text.wdx64", "text"), never_).error().kind, ErrorKind::invalid);
    EXPECT_EQ(plugins_->describe("relative.wdx64", never_).error().kind, ErrorKind::invalid);
    const auto other = plugins_->describe(std::filesystem::absolute(KELVANE_SAMPLE_LIBRARY), never_);
    ASSERT_FALSE(other);
    EXPECT_EQ(other.error().detail, "it lacks the functions of a content plug-in");
}

}  // namespace
}  // namespace kelvane
