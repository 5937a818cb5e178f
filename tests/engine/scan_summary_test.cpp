#include "engine/scan_summary.h"

#include <gtest/gtest.h>

#include <map>

#include "base/utf.h"
#include "engine/message_text.h"
#include "platform/file_namespace.h"
#include "support/fakes.h"
#include "support/memory_file_system.h"

namespace kelvane {
namespace {

class ScanSummary : public ::testing::Test {
protected:
    std::map<std::string, std::string> summary()
    {
        std::map<std::string, std::string> texts;
        for (const auto& [tag, text] : scanSummary(node, options, *rules, *shell))
            texts[tag] = toUtf8(text);
        return texts;
    }

    CScanNode node;
    EngineOptions options;
    testing::MemoryFileSystem files;
    testing::SimpleFolding folding;
    std::unique_ptr<PathRules> rules = makePosixPathRules();
    std::unique_ptr<ShellNamespace> shell = makeFileNamespace(files, nullptr, folding);
};

TEST_F(ScanSummary, DescribesTheOptionsInWords)
{
    node.similarity = 70;
    node.properties = "System.Size,System.Music.Artist,Stock.Kind";
    auto texts = summary();
    EXPECT_EQ(texts["<%MODE%>"], "Music");
    EXPECT_TRUE(texts["<%WILD%>"].starts_with("mp2,wav,")) << texts["<%WILD%>"];
    EXPECT_EQ(texts["<%FUZZY%>"] + texts["<%OPTSYS%>"] + texts["<%GREP%>"], "100 %TrueFalse");
    EXPECT_EQ(texts["<%PROPS%>"], "Size,Music.Artist,Stock.Kind");
    node.flags = scan_flag::fuzzy | scan_flag::contents | 15;  // no such category
    texts = summary();
    EXPECT_EQ(texts["<%MODE%>"], "");
    EXPECT_EQ(texts["<%FUZZY%>"] + texts["<%OPTSYS%>"] + texts["<%GREP%>"], "70 %FalseTrue");
}

TEST_F(ScanSummary, ListsTheRootsOneALine)
{
    if (std::filesystem::path::preferred_separator != '/')
        GTEST_SKIP() << "these rules are for systems whose paths are POSIX paths";
    const std::string path = "/home/somebody/pictures/2024/summer";
    const std::string root(1, static_cast<char>(std::filesystem::path::preferred_separator));
    node.roots = rules->joinRoots({"/", path});
    EXPECT_EQ(summary()["<%PATHS%>"], "[+] " + root + "<br>[+] " + path.substr(0, 30));
    node.set(scan_flag::subfolders, false);
    node.extraRootsLine = "Pictures library";
    EXPECT_EQ(summary()["<%PATHS%>"], "Pictures library<br>" + root + "<br>" + path.substr(0, 30));
}

TEST(MessageText, IsCutBetweenCharacters)
{
    EXPECT_EQ(cutTo(u"abc", 3), u"abc");
    EXPECT_EQ(cutTo(u"abc", 2), u"ab");
    EXPECT_EQ(cutTo(u"a\U0001F600b", 2), u"a");
    EXPECT_EQ(cutTo(u"a\U0001F600b", 3), u"a\U0001F600");
    EXPECT_EQ(withText(u"searching in %s ...", u"/x%s"), u"searching in /x%s ...");
}

}  // namespace
}  // namespace kelvane
