#include "app/command_line.h"

#include <gtest/gtest.h>

#include "platform/native_text.h"

namespace kelvane {
namespace {

using Words = std::vector<std::string>;

// What is there, for a parser that asks.
PathExists only(Words paths)
{
    return [paths](const std::filesystem::path& path) {
        return std::find(paths.begin(), paths.end(), bytesFromNative(path.native())) != paths.end();
    };
}

CommandText windowsLine(std::string line)
{
    return {CommandSyntax::windows, std::move(line), {}, {}};
}

CommandText posixWords(Words words)
{
    words.insert(words.begin(), "kelvane");
    return {CommandSyntax::posix, {}, std::move(words), {}};
}

std::string bytesOf(const std::filesystem::path& path)
{
    return bytesFromNative(path.native());
}

std::string targetsOf(const CommandLine& line)
{
    std::string all;
    for (const auto& target : line.targets)
        all += (all.empty() ? "" : "|") + bytesOf(target);
    return all;
}

TEST(WindowsArguments, AreSplitByThePublishedRules)
{
    const struct {
        std::string line;
        Words words;
    } cases[] = {
        {R"(kelvane.exe)", {"kelvane.exe"}},
        {"\"C:\\Program Files\\k.exe\"  a\tb ", {R"(C:\Program Files\k.exe)", "a", "b"}},
        {R"("C:\dir\"x y)", {R"(C:\dir\)", "x", "y"}},  // backslashes mean nothing in the program's name
        {R"("never closed)", {"never closed"}},
        {R"( first blank)", {"", "first", "blank"}},
        {R"(k "a b c" d e)", {"k", "a b c", "d", "e"}},
        {R"(k "ab\"c" "\\" d)", {"k", R"(ab"c)", R"(\)", "d"}},
        {R"(k a\\\b d"e f"g h)", {"k", R"(a\\\b)", "de fg", "h"}},
        {R"(k a\\\"b c d)", {"k", R"(a\"b)", "c", "d"}},
        {R"(k a\\\\"b c" d e)", {"k", R"(a\\b c)", "d", "e"}},
        {R"(k "a""b" c)", {"k", R"(a"b)", "c"}},
        {R"(k "" x)", {"k", "", "x"}},
        {R"(k "C:\dir\\" y)", {"k", R"(C:\dir\)", "y"}},
        {"", {""}},
    };
    for (const auto& [line, words] : cases)
        EXPECT_EQ(splitWindowsArguments(line), words) << line;
}

TEST(WindowsArguments, SurviveBeingJoined)
{
    const Words words{R"(C:\a b\k.exe)", "", R"(\)", R"(a\\)", R"(a b\)", R"(")", R"(a\"b "")", "\t", "/P", "plain"};
    EXPECT_EQ(splitWindowsArguments(joinWindowsArguments(words)), words);
}

TEST(CommandLine, SwitchesSetTheirFlags)
{
    const struct {
        const char* word;
        bool elevated;
        std::uint32_t flags;
    } cases[] = {
        {"-p", false, 0x100}, {"/P", false, 0x100},  {"/privately", false, 0x100},
        {"-m", false, 0x10},  {"/M", false, 0x10},   {"/j", false, 0x800},
        {"-J", false, 0x800}, {"/X", false, 0x2000}, {"-X", false, 0x2000},
        {"/x", false, 0},     {"/S", false, 0},      {"/S", true, 0x400},
        {"/s", true, 0},      {"/q", false, 0},      {"-", false, 0},
        {"/", false, 0},
    };
    for (const auto& [word, elevated, flags] : cases) {
        const auto line = parseCommandLine(windowsLine(std::string("k.exe ") + word), 5, elevated, only({}));
        EXPECT_EQ(line.flags, flags) << word;
        EXPECT_TRUE(line.targets.empty()) << word;
        EXPECT_EQ(line.showCommand, 5u);
    }
}

TEST(CommandLine, ValuesBeginAfterThreeCharacters)
{
    const auto line =
        parseCommandLine(windowsLine(R"(k.exe "/I:D:\my sets.ini" -gXfast /S:make "D:\music")"), 0, true, only({}));
    EXPECT_EQ(bytesOf(line.settingsFile), R"(D:\my sets.ini)");
    EXPECT_EQ(line.gValue, "fast");
    EXPECT_EQ(line.helperRequest, "make");
    EXPECT_EQ(targetsOf(line), R"(D:\music)");

    const auto shortOnes = parseCommandLine(windowsLine("k.exe /i /g: /Sx"), 0, false, only({}));
    EXPECT_TRUE(shortOnes.settingsFile.empty() && shortOnes.gValue.empty() && shortOnes.helperRequest.empty());
}

TEST(CommandLine, UnquotedPathWithBlanksIsOneTarget)
{
    const std::string whole = R"(D:\my music\new  ones)";
    const auto target = [](const std::string& line, const PathExists& exists) {
        return targetsOf(parseCommandLine(windowsLine(line), 0, false, exists));
    };
    EXPECT_EQ(target("k.exe " + whole + " ", only({})), whole);
    EXPECT_EQ(target("k.exe a b", only({"b"})), "a|b") << "the last argument exists";
    EXPECT_EQ(target("k.exe a b", only({"a"})), "a|b") << "another one does, and both together do not";
    EXPECT_EQ(target("k.exe a b", only({"a", "a b"})), "a b");
    EXPECT_EQ(target("k.exe a b /M", only({})), "a|b") << "a switch among them";
    EXPECT_EQ(target("k.exe missing", only({})), "missing");
    EXPECT_EQ(targetsOf(parseCommandLine(posixWords({"my", "music"}), 0, false, only({}))), "my music");
}

TEST(CommandLine, OnPosixASlashMostlyBeginsAPath)
{
    const struct {
        const char* word;
        Words existing;
        std::uint32_t flags;
        const char* target;
    } cases[] = {
        {"/home/x", {}, 0, "/home/x"}, {"/Pictures", {}, 0, "/Pictures"},
        {"/p", {}, 0x100, ""},         {"/P", {"/P"}, 0, "/P"},
        {"/x", {}, 0, "/x"},           {"/P:x", {}, 0, "/P:x"},
        {"/I:a.ini", {}, 0, ""},       {"/", {}, 0, "/"},
        {"/I:a", {"/I:a"}, 0, "/I:a"}, {"-private", {}, 0x100, ""},
    };
    for (const auto& [word, existing, flags, target] : cases) {
        const auto line = parseCommandLine(posixWords({word}), 0, false, only(existing));
        EXPECT_EQ(line.flags, flags) << word;
        EXPECT_EQ(targetsOf(line), target) << word;
    }
}

TEST(CommandLine, KnowsWhenAProcessOfItsOwnIsWanted)
{
    for (const char* line : {"k.exe /P", "k.exe x /p", R"(k.exe "a /P b")", "k.exe /Pictures"})
        EXPECT_TRUE(forbidsHandOver(windowsLine(line), only({}))) << line;
    for (const char* line : {"k.exe -p", "k.exe a/P", "k.exe"})
        EXPECT_FALSE(forbidsHandOver(windowsLine(line), only({}))) << line;
    EXPECT_TRUE(forbidsHandOver(posixWords({"x", "/p"}), only({})));
    EXPECT_FALSE(forbidsHandOver(posixWords({"/Pictures", "-p"}), only({})));
    EXPECT_FALSE(forbidsHandOver(posixWords({"/P"}), only({"/P"})));
}

TEST(HandOver, ArrivesAsItWasSent)
{
    const CommandText texts[] = {
        {CommandSyntax::posix, {}, {"kelvane", "", "b\xFF c", "-p"}, "/tmp/here"},
        {CommandSyntax::windows, "k.exe \"D:\\Fotos \xC3\xBC\" \xED\xA0\x80", {}, "here"},
        {CommandSyntax::windows, "", {}, {}},
    };
    for (const auto& text : texts) {
        const auto arrived = decodeHandOver(encodeHandOver(text), text.syntax);
        ASSERT_TRUE(arrived.ok());
        EXPECT_EQ(*arrived, text);
    }
}

TEST(HandOver, OfGarbageIsRefused)
{
    const auto refused = [](std::string bytes, CommandSyntax syntax) {
        return !decodeHandOver(std::as_bytes(std::span(bytes)), syntax).ok();
    };
    EXPECT_TRUE(refused("", CommandSyntax::posix));
    EXPECT_TRUE(refused(std::string("folder\0", 7), CommandSyntax::posix));   // no program name
    EXPECT_TRUE(refused(std::string("folder\0k", 8), CommandSyntax::posix));  // no end
    EXPECT_TRUE(refused("", CommandSyntax::windows));
    EXPECT_TRUE(refused(std::string("k\0\0", 3), CommandSyntax::windows));         // half a unit
    EXPECT_TRUE(refused(std::string("k\0x\0", 4), CommandSyntax::windows));        // no end
    EXPECT_TRUE(refused(std::string("\0\0\0\0\0\0", 6), CommandSyntax::windows));  // three texts
    // A sender that knows no folder.
    EXPECT_FALSE(refused(std::string("k\0\0\0", 4), CommandSyntax::windows));
}

}  // namespace
}  // namespace kelvane
