#include "props/comment_reader.h"

#include <gmock/gmock.h>

#include "props/comment_files.h"
#include "props/marked_text.h"
#include "props/property_world.h"

namespace kelvane {
namespace {

using testing::PropertyWorld;

std::string utf16(std::u16string_view text)
{
    std::string bytes;
    for (const char16_t unit : text) {
        bytes += static_cast<char>(unit & 0xFF);
        bytes += static_cast<char>(unit >> 8);
    }
    return bytes;
}

class Comment : public ::testing::Test {
protected:
    PropertyWorld world;
    std::u16string comment(const std::string& path = "/home/dir/a.txt") { return world.textOf(path, "System.Comment"); }
    void SetUp() override { world.files.addFile("/home/dir/a.txt", ""); }
};

TEST_F(Comment, fileItselfComesBeforeTheStreamAndThatBeforeTheDescriptions)
{
    world.files.addFile("/home/dir/descript.ion", "a.txt from the list\n");
    EXPECT_EQ(comment(), u"from the list");
    world.files.addStream("/home/dir/a.txt", "nv_AFScomment", utf16(u"stream \u00E9"));
    EXPECT_EQ(comment(), u"stream \u00E9");
    world.files.addStream("/home/dir/a.txt", "nv_AFScomment", "");
    EXPECT_EQ(comment(), u"") << "a stream that opens ends the search";
    world.readers.set("/home/dir/a.txt", "System.Comment", RawValue::text(u"inside"));
    EXPECT_EQ(comment(), u"inside");
    world.readers.set("/home/dir/a.txt", "System.Comment", {});
    world.files.setHook([](const std::string& operation, const std::string&) {
        return operation == "readStream" ? std::optional(Error{ErrorKind::notSupported, 0, {}}) : std::nullopt;
    });
    EXPECT_EQ(comment(), u"from the list");
}

TEST_F(Comment, streamCountsUpToItsLimit)
{
    world.files.addStream("/home/dir/a.txt", "nv_AFScomment", utf16(std::u16string(5000, u'c')));
    EXPECT_EQ(comment(), std::u16string(4096, u'c'));
    ItemContext file = world.newFile("/home/dir/b.txt");
    world.files.addStream("/home/dir/b.txt", "nv_AFScomment", utf16(std::u16string(600'000, u'c')));
    EXPECT_EQ(world.text(file, "System.Comment"), u"") << "no comment is that long";
}

TEST_F(Comment, descriptionsServeFilesWithoutAStream)
{
    world.files.addFile("/home/dir/descript.ion",
                        "\xEF\xBB\xBF"
                        "a.txt  plain\r\n\"my file.txt\" quoted\n'x y' single\rTAB.txt\ttabbed \x04\xC2 more\n");
    EXPECT_EQ(comment(), u"plain");
    for (const auto& [name, wanted] : {std::pair{"my file.txt", u"quoted"},
                                       {"x y", u"single"},
                                       {"TAB.txt", u"tabbed"},
                                       {"tab.TXT", u"tabbed"},
                                       {"my", u""},
                                       {"other", u""}}) {
        world.files.addFile(std::string("/home/dir/") + name, "");
        EXPECT_EQ(comment(std::string("/home/dir/") + name), wanted) << name;
    }
}

TEST_F(Comment, folderMustBeReadOnlyForItsInfoTip)
{
    world.files.addFile("/home/dir/desktop.ini",
                        "[Other]\r\nInfoTip=wrong\r\n[.shellclassinfo]\r\n;x\r\ninfotip = \"my tip\" \r\n");
    world.files.addFile("/home/descript.ion", "dir from the list\n");
    world.files.addStream("/home/dir", "nv_AFScomment", utf16(u"stream"));
    EXPECT_EQ(comment("/home/dir"), u"");
    EXPECT_THAT(world.files.accesses(), ::testing::Not(::testing::Contains("open /home/dir/desktop.ini")));
    world.files.setAttributes("/home/dir", attribute::readOnly | attribute::directory);
    EXPECT_EQ(comment("/home/dir"), u"my tip");
}

TEST(CommentFiles, iniKeyMustLieInTheSection)
{
    const testing::SimpleFolding folding;
    EXPECT_EQ(iniValue(u"[a]\nk=1\n[b]\nk=2", u"b", u"K", folding), u"2");
    EXPECT_EQ(iniValue(u"k=1\n[a]\nkk=2", u"a", u"k", folding), u"");
    EXPECT_EQ(iniValue(u"[a]\nk=", u"a", u"k", folding), u"");
    EXPECT_EQ(iniValue(u"", u"a", u"k", folding), u"");
    EXPECT_EQ(iniValue(u"[a]\nk='it''s'", u"a", u"k", folding), u"it''s");
}

TEST(CommentFiles, veryNameIsPreferred)
{
    const testing::SimpleFolding folding;
    EXPECT_EQ(describedComment(u"A.TXT upper\na.txt lower", u"a.txt", folding), u"lower");
    EXPECT_EQ(describedComment(u"A.TXT upper\nb.txt lower", u"a.txt", folding), u"upper");
    EXPECT_EQ(describedComment(u"\"a.txt unclosed", u"a.txt", folding), u"");
    EXPECT_EQ(describedComment(u"\n\n \n", u"", folding), u"");
}

TEST(MarkedText, encodingFollowsTheMark)
{
    const auto bytes = [](std::string_view text) { return std::as_bytes(std::span(text)); };
    using std::string_view_literals::operator""sv;
    EXPECT_EQ(decodeMarkedText(bytes("\xFF\xFEh\0i\0"sv)), u"hi");
    EXPECT_EQ(decodeMarkedText(bytes("\xFE\xFF\0h\0i"sv)), u"hi");
    EXPECT_EQ(decodeMarkedText(bytes("\xEF\xBB\xBFh\xC3\xA9"sv)), u"h\u00E9");
    EXPECT_EQ(decodeMarkedText(bytes("h\xE9"sv)), u"h\uFFFD");
    EXPECT_EQ(decodeMarkedText({}), u"");
    EXPECT_EQ(decodeUtf16(bytes("h\0i\0\0\0x\0"sv)), u"hi");
    EXPECT_EQ(decodeUtf16(bytes("h\0i"sv)), u"h") << "an odd last byte";
}

}  // namespace
}  // namespace kelvane
