#include "engine/root_list.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/file_namespace.h"
#include "support/fakes.h"
#include "support/memory_file_system.h"

namespace kelvane {
namespace {

using ::testing::ElementsAre;

// Knows any name as a folder.
class NamesOnlyShell final : public ShellNamespace {
public:
    Result<Ref<ShellItem>> parse(NativeView name) override
    {
        FileInfo info;
        info.kind = FileKind::folder;
        return ShellItem::make(nullptr, name, info, ShellItem::Place::fileSystem);
    }
    Status enumerate(const Ref<const ShellItem>&, const ListingOptions&, const ItemSink&) override { return {}; }
    Result<std::unique_ptr<ContentReader>> open(const ShellItem&, ReadPattern) override { return Error{}; }
    Result<FileDetails> details(const ShellItem&) override { return Error{}; }
    FileSystem& files() override { return files_; }
    std::uint32_t typeCode(const ShellItem&) const override { return type_code::fileSystem; }
    std::u16string displayName(const ShellItem&) const override { return {}; }
    std::u16string itemType(const ShellItem&) const override { return {}; }
    std::u16string typeText(const ShellItem&) const override { return {}; }

private:
    testing::MemoryFileSystem files_;
};

class WindowsRoots : public ::testing::Test {
protected:
    RootList clean(const std::string& list, bool subfolders = true, bool protect = true, bool fromContainer = false)
    {
        return normaliseRoots({list, protect, subfolders, fromContainer}, *rules, shell);
    }

    testing::SimpleFolding folding;
    std::unique_ptr<PathRules> rules = makeWindowsPathRules(folding);
    NamesOnlyShell shell;
};

TEST_F(WindowsRoots, NestedRootsAreFoldedOnlyWithSubfolders)
{
    EXPECT_EQ(clean(R"(c:\|c:\temp)").joined, R"(c:\)");
    EXPECT_EQ(clean(R"(c:\temp|c:\)").joined, R"(c:\)");
    EXPECT_EQ(clean(R"(c:\a|c:\ab)").joined, R"(c:\a|c:\ab)");
    EXPECT_EQ(clean(R"(c:\a\b|c:\ab|c:\a)").joined, R"(c:\a|c:\ab)");
    EXPECT_EQ(clean(R"(C:\Temp|c:\TEMP)").joined, R"(c:\temp)");
    EXPECT_EQ(clean(R"(C:\Temp|c:\TEMP)", false).joined, R"(c:\temp)");
    EXPECT_EQ(clean(R"(c:\|c:\temp)", false).joined, R"(c:\|c:\temp)");
    EXPECT_EQ(clean(R"(c:\a|c:\ab)", false).joined, R"(c:\a|c:\ab)");
}

TEST_F(WindowsRoots, ProtectionDropsSystemFoldersAndNamesThem)
{
    const auto list = clean(R"(c:\windows\system32|d:\x)");
    EXPECT_EQ(list.joined, R"(d:\x)");
    EXPECT_EQ(list.dropped.at(0).root, R"(c:\windows\system32)");
    EXPECT_EQ(list.dropped.at(0).problem, RootProblem::isProtected);
    EXPECT_EQ(clean(R"(c:\windows\system32)", true, false).joined, R"(c:\windows\system32)");
    EXPECT_EQ(clean(R"(C:\Program Files)").joined, "");
}

TEST_F(WindowsRoots, TheComputersRootGoesWhenAContainerWasExpanded)
{
    const std::string computer = "::{20D04FE0-3AEA-1069-A2D8-08002B30309D}";
    const auto list = clean(computer + R"(|c:\a)", true, true, true);
    EXPECT_EQ(list.joined, R"(c:\a)");
    EXPECT_EQ(list.dropped.at(0).problem, RootProblem::containerRoot);
    EXPECT_EQ(clean(computer + R"(|c:\a)").roots.size(), 2u);
    EXPECT_EQ(clean(computer, true, true, true).roots.size(), 1u);  // a single root stays
}

TEST_F(WindowsRoots, LongRootsAreRewrittenWhenTheListHoldsLongPaths)
{
    const std::string deep = R"(d:\)" + std::string(300, 'x');
    EXPECT_EQ(clean(deep).joined, deep);
    EXPECT_EQ(clean(deep + R"(|\\?\e:\y)").joined, R"(\\?\e:\y|\\?\)" + deep);
}

class PosixRoots : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (std::filesystem::path::preferred_separator != '/')
            GTEST_SKIP() << "these rules are for systems whose paths are POSIX paths";
    }
    RootList clean(const std::vector<std::string>& roots, bool subfolders = true, bool protect = true)
    {
        return normaliseRoots({rules->joinRoots(roots), protect, subfolders, false}, *rules, *shell);
    }

    testing::MemoryFileSystem files;
    testing::SimpleFolding folding;
    std::unique_ptr<PathRules> rules = makePosixPathRules();
    std::unique_ptr<ShellNamespace> shell = makeFileNamespace(files, nullptr, folding);
};

TEST_F(PosixRoots, NestAtComponentBordersAndKeepTheirCase)
{
    for (const char* path : {"/d/A", "/d/a/b", "/d/ab", "/d/a-b", "/home/d/a"})
        files.addFolder(path);
    const auto list = clean({"/d/a/b", "/home/d/a/", "/d/ab", "/d/a", "/d/a-b", "/d/A"});
    EXPECT_THAT(list.roots, ElementsAre("/d/A", "/d/a", "/d/a-b", "/d/ab", "/home/d/a"));
    ASSERT_EQ(list.dropped.size(), 1u);
    EXPECT_EQ(list.dropped[0].root, "/d/a/b");
    EXPECT_EQ(list.dropped[0].detail, "/d/a");
    EXPECT_EQ(clean({"/d/a/b", "/d/a"}, false).roots.size(), 2u);
}

// Dropped as nested, they would be searched by no walk at all.
TEST_F(PosixRoots, RootsThatTheOuterWalkCannotReachStay)
{
    files.addFolder("/d/.config/x");
    files.addFolder("/d/plain/x");
    files.addFolder("/disk/pictures/y");
    files.addSymbolicLink("/d/pictures", "/disk/pictures");
    EXPECT_THAT(clean({"/d", "/d/.config", "/d/.config/x", "/d/plain/x"}).roots, ElementsAre("/d", "/d/.config"));
    EXPECT_THAT(clean({"/d", "/d/.config/x"}).roots, ElementsAre("/d", "/d/.config/x"));
    EXPECT_THAT(clean({"/d", "/d/.config"}, true, false).roots, ElementsAre("/d"));
    EXPECT_THAT(clean({"/d", "/d/pictures", "/d/pictures/y"}).roots, ElementsAre("/d", "/d/pictures"));
}

TEST_F(PosixRoots, DetoursDoNotHideAProtectedFolder)
{
    for (const char* path : {"/usr/share", "/home/a"})
        files.addFolder(path);
    EXPECT_EQ(clean({"/home/../usr/share"}).dropped.at(0).problem, RootProblem::isProtected);
    EXPECT_THAT(clean({"/usr/../home/./a"}).roots, ElementsAre("/home/a"));
    EXPECT_THAT(clean({"/home/a/..", "/home/a"}).roots, ElementsAre("/home"));
}

TEST_F(PosixRoots, ADetourBehindALinkStaysAsWritten)
{
    files.addFolder("/disk/x/y");
    files.addFolder("/disk/x/z");
    files.addFolder("/home/z");
    files.addSymbolicLink("/home/link", "/disk/x/y");
    EXPECT_THAT(clean({"/home/link/../z"}).roots, ElementsAre("/home/link/../z"));
}

TEST_F(PosixRoots, UnreadableAndMissingRootsAreNamed)
{
    files.addFolder("/d/locked");
    files.addFolder("/d/open");
    files.setHook([](const std::string& operation, const std::string& path) -> std::optional<Error> {
        if (operation == "enumerate" && path == "/d/locked")
            return Error{ErrorKind::accessDenied, 13, "Permission denied"};
        return std::nullopt;
    });
    files.addFile("/made-up/self/maps", "x");
    files.setVolume("/made-up", {.serial = 9, .fileSystem = "proc", .pseudo = true, .mountPoint = {}});
    const auto list = clean({"/made-up/self", "/d/none", "/d/locked", "/d/open"});
    EXPECT_THAT(list.roots, ElementsAre("/d/open"));
    ASSERT_EQ(list.dropped.size(), 3u);
    EXPECT_EQ(list.dropped[0].problem, RootProblem::notReadable) << "in the order given";
    EXPECT_EQ(list.dropped[1].problem, RootProblem::notFound);
    EXPECT_EQ(list.dropped[2].detail, "Permission denied");
}

}  // namespace
}  // namespace kelvane
