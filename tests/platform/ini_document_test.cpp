// What an INI file says, and what becomes of its bytes.
#include "platform/ini_document.h"

#include "platform/ini_values.h"
#include "platform/platform.h"

namespace kelvane::testing {
namespace {

using ::testing::ElementsAre;

std::span<const std::byte> bytesOf(std::string_view text)
{
    return std::as_bytes(std::span(text));
}

std::string stringOf(const std::vector<std::byte>& bytes)
{
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

// UTF-16 of plain characters, with the mark.
std::string wide(std::string_view text)
{
    std::string bytes = "\xFF\xFE";
    for (const char each : text)
        bytes += {each, '\0'};
    return bytes;
}

class IniDocumentTest : public ::testing::Test {
protected:
    std::unique_ptr<Platform> platform_ = makePlatform();

    [[nodiscard]] IniDocument parsed(std::string_view bytes) const
    {
        Result<IniDocument> document = IniDocument::parse(bytesOf(bytes), platform_->folding());
        EXPECT_TRUE(document.ok()) << bytes;
        return document ? *document : IniDocument(platform_->folding());
    }
    [[nodiscard]] bool isDamaged(std::string_view bytes) const
    {
        return !IniDocument::parse(bytesOf(bytes), platform_->folding()).ok();
    }
};

// The answers of the profile functions to the same lines.
TEST_F(IniDocumentTest, ReadsValuesAsTheProfileFunctionsDo)
{
    const struct {
        std::string line;
        std::optional<std::u16string> value;
    } cases[] = {
        {"k=a", u"a"},
        {"K=a", u"a"},
        {"k= a b ", u"a b"},
        {" \tk\t=\ta\x1A", u"a"},
        {"k=a=b", u"a=b"},
        {"k=a ; no comment", u"a ; no comment"},
        {"k=", u""},
        {"k=\"a\"", u"a"},
        {"k=' a '", u" a "},
        {"k=\"a'", u"\"a'"},
        {"k=\"", u"\""},
        {"k=\"\"", u""},
        {"k=\"\"a\"\"", u"\"a\""},
        {"k=\"a\" x", u"\"a\" x"},
        {"k", std::nullopt},
        {";k=a", std::nullopt},
        {" ;k=a", std::nullopt},
        {"#k=a", std::nullopt},
        {"=a", std::nullopt},
        {"[k=a", std::nullopt},
        {"k=a\r\nk=b", u"a"},
        {"[s]\r\nk=b", std::nullopt},
        {"[t]\r\nk=b", std::nullopt},
        {"k=\xE9\x80", u"\u00E9\u20AC"},
        {"k=\xC3\xA9", u"\u00E9"},
        {"k=<escaped>a%0D%0a%25%zz%", u"a\r\n%%zz%"},
        {"k=x<escaped>%0D", u"x<escaped>%0D"},
    };
    for (const auto& each : cases)
        EXPECT_EQ(parsed("[s]\r\n" + each.line + "\r\n").text(u"s", u"k"), each.value) << each.line;
}

TEST_F(IniDocumentTest, FindsSectionsAsTheProfileFunctionsDo)
{
    for (const char* header :
         {"[s]", "[S]", "  [ s ]", "[s] x", "[s];]", "; c\n\n[x]\n[s]", "k=0\n[s]", "[]\nk=0\n[s]"})
        EXPECT_EQ(parsed(header + std::string("\nk=1")).text(u"s", u"k"), u"1") << header;
    EXPECT_EQ(parsed("[s]\rk=1\rj=2\r").text(u"s", u"j"), u"2");
    EXPECT_EQ(parsed("\xEF\xBB\xBF[s]\nk=1").text(u"s", u"k"), u"1");
    EXPECT_EQ(parsed("k=1\n[s]\nk=2").text(u"", u"k"), u"1");
    EXPECT_EQ(parsed("[s\nk=1").text(u"s", u"k"), std::nullopt);

    const IniDocument document = parsed("[Gr\xC3\x9Cn]\nB=1\nb=2\na\n[x]\n[gr\xC3\xBCn]\nc=3\n");
    EXPECT_THAT(document.sectionNames(), ElementsAre(u"Gr\u00DCn", u"x"));
    EXPECT_THAT(document.keyNames(u"GR\u00DCN"), ElementsAre(u"B"));
    EXPECT_FALSE(document.hasSection(u"y"));
}

TEST_F(IniDocumentTest, RefusesWhatIsNoSettingsFile)
{
    EXPECT_TRUE(isDamaged(std::string_view("[s]\nk=1\0", 8)));
    EXPECT_TRUE(isDamaged(wide("[s]") + "x"));
    EXPECT_TRUE(isDamaged(wide(std::string_view("[s]\0", 4))));
    EXPECT_TRUE(isDamaged(std::string(IniDocument::mostBytes + 1, 'x')));
    EXPECT_TRUE(isDamaged(std::string(IniDocument::mostLines + 1, '\n')));
    EXPECT_FALSE(isDamaged(std::string(IniDocument::mostLines, '\n')));
}

// Sets x of section a, a new key of it and a key of a new section; then takes x and the section c away again.
TEST_F(IniDocumentTest, ChangesNothingButItsOwnLines)
{
    const struct {
        std::string before, after, removed;
    } cases[] = {
        {"", wide("[a]\r\nx=2\r\nn=3\r\n[c]\r\nn=4\r\n"), wide("[a]\r\nn=3\r\n")},
        {"; c\n", "; c\n[a]\nx=2\nn=3\n[c]\nn=4\n", "; c\n[a]\nn=3\n"},
        {"[A]\r\n  X = \"1\" \r\n\r\n; c\r\n\r\n[b]\r\ny = 1",
         "[A]\r\n  X =2\r\n\r\n; c\r\nn=3\r\n\r\n[b]\r\ny = 1\r\n[c]\r\nn=4\r\n",
         "[A]\r\n\r\n; c\r\nn=3\r\n\r\n[b]\r\ny = 1\r\n"},
        {"[a]\nx=\"2\"\nX=5", "[a]\nx=\"2\"\nX=5\nn=3\n[c]\nn=4\n", "[a]\nn=3\n"},
        {"[C]\rx=1\r[c]\rz=1\r", "[C]\rx=1\rn=4\r[c]\rz=1\r[a]\rx=2\rn=3\r", "[a]\rn=3\r"},
        {"\xEF\xBB\xBF[a]\n; \xC3\xA9", "\xEF\xBB\xBF[a]\n; \xC3\xA9\nx=2\nn=3\n[c]\nn=4\n",
         "\xEF\xBB\xBF[a]\n; \xC3\xA9\nn=3\n"},
        {"[a]\n; \xE9\x81\xFF\n", "[a]\n; \xE9\x81\xFF\nx=2\nn=3\n[c]\nn=4\n", "[a]\n; \xE9\x81\xFF\nn=3\n"},
        {wide("[a]"), wide("[a]\r\nx=2\r\nn=3\r\n[c]\r\nn=4\r\n"), wide("[a]\r\nn=3\r\n")},
    };
    for (const auto& each : cases) {
        IniDocument document = parsed(each.before);
        EXPECT_EQ(stringOf(document.serialise()), each.before.empty() ? wide("") : each.before);
        document.setText(u"a", u"x", u"2");
        document.setText(u"a", u"n", u"3");
        document.setText(u"c", u"n", u"4");
        EXPECT_EQ(stringOf(document.serialise()), each.after);
        EXPECT_TRUE(document.remove(u"A", u"X"));
        EXPECT_FALSE(document.remove(u"a", u"x"));
        EXPECT_TRUE(document.removeSection(u"C"));
        EXPECT_FALSE(document.removeSection(u"c"));
        EXPECT_EQ(stringOf(document.serialise()), each.removed);
    }
}

// Every text comes back, whatever the file could hold until then.
TEST_F(IniDocumentTest, KeepsEveryTextInEveryEncoding)
{
    const std::u16string texts[] = {
        u"",           u" a ",          u"\ta\t",         u"'a'",          u"\"a\"",
        u"\"",         u"\"a' ",        u"a\r\n[b]\nk=1", u"<escaped>%41", u"\"<escaped>%41\"",
        u"\x1A\x0C a", u"\u00E9\u20AC", u"\u00C3\u00A9",  u"\u65E5\u672C", std::u16string(u"a\0b", 3),
        u"\xD800 a",   u"\u00A0\u3000", u"50% ; [x] = 1", u"\uFEFF",       std::u16string(70'000, u'x'),
    };
    for (const char* before : {"", "[s]\n", "[s]\nj=\xC3\xA9\n", "\xEF\xBB\xBF[s]\n", "[s]\nj=\xE9\n"}) {
        for (const std::u16string& text : texts) {
            IniDocument document = parsed(before);
            const std::optional<std::u16string> other = document.text(u"s", u"j");
            document.setText(u"s", u"k", text);
            const IniDocument again = parsed(stringOf(document.serialise()));
            EXPECT_EQ(again.text(u"s", u"k"), text) << before;
            EXPECT_EQ(again.text(u"s", u"j"), other) << before;
            EXPECT_EQ(again.sectionNames().size(), 1u) << before;
        }
    }
    // A file stays as others expect it as long as it can.
    IniDocument document = parsed("[s]\n");
    document.setText(u"s", u"k", u"\u00E9");
    EXPECT_EQ(stringOf(document.serialise()), "[s]\nk=\xE9\n");
    // Without its other line this one would be taken for UTF-8.
    document = parsed("[s]\nj=\xE9\nk=\xC3\xA9\n");
    ASSERT_TRUE(document.remove(u"s", u"j"));
    EXPECT_EQ(parsed(stringOf(document.serialise())).text(u"s", u"k"), u"\u00C3\u00A9");
}

TEST(IniValuesTest, NumbersAsTheProfileFunctionsReadThem)
{
    const struct {
        std::u16string text;
        std::int64_t number;
    } cases[] = {
        {u"12", 12},
        {u"-5", -5},
        {u"+7", 7},
        {u" 8", 8},
        {u"0x10", 16},
        {u"0X1f", 0},
        {u"0o17", 15},
        {u"0b11", 3},
        {u"x10", 0},
        {u"abc", 0},
        {u"12abc", 12},
        {u"1.9", 1},
        {u"4294967297", 1},
        {u"-4294967297", -1},
        {u"- 5", 0},
        {u"--5", 0},
        {u"", 0},
        {u"0xFFFFFFFF", -1},
        {u"99999999999999999999", 1661992959},
        {u"-559038741", -559038741},
        {u"3000000000", 3000000000},
    };
    for (const auto& each : cases)
        EXPECT_EQ(numberFromIniText(each.text), static_cast<std::uint32_t>(each.number))
            << std::string(each.text.begin(), each.text.end());
    EXPECT_EQ(iniNumberText(0xFFFFFFFF), u"-1");
    EXPECT_EQ(iniNumberText(0x7FFFFFFF), u"2147483647");
}

TEST(IniValuesTest, BlocksCarryTheirChecksum)
{
    const std::vector<std::byte> block = {std::byte{0xAB}, std::byte{1}, std::byte{0xFF}};
    EXPECT_EQ(iniBlockText(block), u"AB01FFAB");
    EXPECT_EQ(iniBlockText({}), u"00");
    EXPECT_EQ(blockFromIniText(u"ab01FFaB"), block);
    for (const char16_t* empty : {u"00", u"5A"})
        EXPECT_EQ(blockFromIniText(empty), std::vector<std::byte>());
    for (const char16_t* wrong : {u"", u"0", u"AB01FFAC", u"AB01FFA", u"AB01FFAB00", u"AG01FFAB"})
        EXPECT_EQ(blockFromIniText(wrong), std::nullopt);
}

TEST(IniValuesTest, NamesNeverBecomeAnythingElse)
{
    const struct {
        std::u16string name, value, section;
    } cases[] = {
        {u"", u"@", u""},
        {u"a=b", u"a_b", u"a=b"},
        {u"[a]", u"_a]", u"[a_"},
        {u";a", u"_a", u";a"},
        {u" a ", u"_a_", u"_a_"},
        {u"a\r\n=b", u"a___b", u"a__=b"},
        {std::u16string(u"a\0b", 3), u"a_b", u"a_b"},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(iniValueName(each.name), each.value);
        EXPECT_EQ(iniSectionName(each.name), each.section);
    }
}

}  // namespace
}  // namespace kelvane::testing
