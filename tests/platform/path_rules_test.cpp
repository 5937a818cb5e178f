#include "platform/path_rules.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/fakes.h"

namespace kelvane {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class WindowsPaths : public ::testing::Test {
protected:
    testing::SimpleFolding folding;
    std::unique_ptr<PathRules> rules = makeWindowsPathRules(folding, {"C:\\Windows\\", "C:\\Program Files"});
};

class PosixPaths : public ::testing::Test {
protected:
    std::unique_ptr<PathRules> rules = makePosixPathRules();
};

TEST_F(WindowsPaths, ListsAreSplitAtBars)
{
    EXPECT_THAT(rules->splitRoots(R"(c:\a|d:\|)"), ElementsAre(R"(c:\a)", R"(d:\)"));
    EXPECT_THAT(rules->splitRoots(""), IsEmpty());
    EXPECT_EQ(rules->joinRoots({R"(c:\a)", R"(d:\)"}), R"(c:\a|d:\)");
    EXPECT_EQ(rules->joinRoots({}), "");
}

TEST_F(WindowsPaths, CaseDoesNotMatter)
{
    EXPECT_EQ(rules->comparable("C:\\\xC3\x84rger\\X"), "c:\\\xC3\xA4rger\\x");
    EXPECT_TRUE(rules->samePath("C:\\\xC3\x84", "c:\\\xC3\xA4"));
    EXPECT_FALSE(rules->samePath("C:\\a", "C:\\b"));
    EXPECT_EQ(rules->compareRoots("C:\\B", "c:\\b"), 0);
    EXPECT_LT(rules->compareRoots("c:\\a", "C:\\B"), 0);
    EXPECT_GT(rules->compareRoots("D:\\", "c:\\z"), 0);
}

// A replacement character in their place would make two files look like one.
TEST_F(WindowsPaths, LoneSurrogatesStayApart)
{
    const std::string high = "c:\\\xC3\x84\xED\xA0\x80", low = "c:\\\xC3\x84\xED\xB0\x81";
    EXPECT_FALSE(rules->samePath(high, low));
    EXPECT_EQ(rules->comparable(high), "c:\\\xC3\xA4\xED\xA0\x80");
    EXPECT_EQ(rules->comparable(low + "X"), "c:\\\xC3\xA4\xED\xB0\x81x");
    const std::string pair = "\xF0\x9F\x98\x80\xED\x95\x9C";  // a pair of surrogates, and a plain letter after 0xED
    EXPECT_EQ(rules->comparable(pair), pair);
}

TEST_F(WindowsPaths, RootsAreProtectedWhereverTheFolderNameOccurs)
{
    for (const char* root :
         {"c:\\windows", "C:\\WINDOWS\\system32", "c:\\windows.old", "\\\\?\\c:\\program files (x86)"})
        EXPECT_TRUE(rules->rootIsProtected(root)) << root;
    for (const char* root : {"d:\\windows", "c:\\"})
        EXPECT_FALSE(rules->rootIsProtected(root)) << root;
}

TEST_F(WindowsPaths, FoldersOnTheWayAreProtectedByEqualityOnly)
{
    const auto bare = makeWindowsPathRules(folding, {"", "\\"});
    EXPECT_FALSE(bare->rootIsProtected("c:\\users")) << "an unknown folder protects nothing";
    EXPECT_FALSE(bare->isProtectedFolder(""));
    EXPECT_TRUE(rules->isProtectedFolder("C:\\Windows"));
    EXPECT_TRUE(rules->isProtectedFolder("c:\\PROGRAM FILES"));
    EXPECT_FALSE(rules->isProtectedFolder("c:\\windows.old"));
    EXPECT_FALSE(rules->isProtectedFolder("c:\\windows\\system32"));
}

TEST_F(WindowsPaths, ARootCoversWhatLiesBelowIt)
{
    // A root shorter than four characters is found anywhere; a longer one wherever a backslash stands where it would
    // end, counted in characters and not in bytes.
    const std::pair<const char*, const char*> covered[] = {
        {"c:\\", "c:\\temp"},  {"c:\\", "\\\\?\\c:\\temp"}, {"c:\\a", "c:\\a"},
        {"c:\\a", "c:\\a\\b"}, {"d:\\x", "\\\\?\\\\d:\\x"}, {"c:\\\xC3\xA4\xC3\xB6x", "c:\\\xC3\xA4\xC3\xB6x\\y"},
    };
    for (const auto& [root, below] : covered)
        EXPECT_TRUE(rules->covers(root, below)) << root << ' ' << below;
    const std::pair<const char*, const char*> apart[] = {
        {"c:\\a", "c:\\ab"}, {"c:\\a", "c:\\b"}, {"c:\\a\\b", "c:\\a"}, {"d:\\x", "\\\\?\\d:\\x"}, {"", "c:\\"}};
    for (const auto& [root, other] : apart)
        EXPECT_FALSE(rules->covers(root, other)) << root << ' ' << other;
}

TEST_F(WindowsPaths, TheComputersRootIsKnownByItsFortyCharacters)
{
    EXPECT_TRUE(rules->isComputerRoot("::{20D04FE0-3AEA-1069-A2D8-08002B30309D}"));
    EXPECT_TRUE(rules->isComputerRoot("::{20d04fe0-3aea-1069-a2d8-08002b30309d}\\c:\\"));
    EXPECT_FALSE(rules->isComputerRoot("::{20d04fe0-3aea-1069-a2d8-08002b30309e}"));
    EXPECT_FALSE(rules->isComputerRoot("::{20d04fe0"));
}

TEST_F(WindowsPaths, ExtendedLengthMeansADriveOrAShareAfterThePrefix)
{
    EXPECT_TRUE(rules->isExtendedLength("\\\\?\\C:\\a"));
    EXPECT_TRUE(rules->isExtendedLength("\\\\?\\unc\\server\\share"));
    EXPECT_FALSE(rules->isExtendedLength("\\\\?\\Volume{1}"));
    EXPECT_FALSE(rules->isExtendedLength("c:\\a"));
}

TEST_F(WindowsPaths, OnlyPathsThatAreTooLongAreRewritten)
{
    const std::string tail(257, 'x');
    EXPECT_EQ(rules->toExtendedLength("c:\\" + tail), "\\\\?\\c:\\" + tail);
    EXPECT_EQ(rules->toExtendedLength("c:\\" + tail.substr(1)), "c:\\" + tail.substr(1));
    EXPECT_EQ(rules->toExtendedLength("\\\\server\\" + tail), "\\\\?\\UNC\\server\\" + tail);
    EXPECT_EQ(rules->toExtendedLength("::{1}" + tail + tail), "::{1}" + tail + tail);
    EXPECT_EQ(rules->toExtendedLength("\\\\?\\c:\\" + tail), "\\\\?\\c:\\" + tail);
}

TEST_F(PosixPaths, NamesWithBarsAndBackslashesSurviveAList)
{
    const std::vector<std::string> roots = {"/a|b", "/c\\", "/d\\|e", "/\xFF\n", " /spaces "};
    EXPECT_EQ(rules->splitRoots(rules->joinRoots(roots)), roots);
    EXPECT_EQ(rules->joinRoots({"/a|b", "/c\\"}), "/a\\|b|/c\\\\");
    EXPECT_THAT(rules->splitRoots("|/a||/b|"), ElementsAre("/a", "/b"));
    EXPECT_THAT(rules->splitRoots("/a\\b\\"), ElementsAre("/a\\b\\"));  // typed by hand, without escapes
}

TEST_F(PosixPaths, AreComparedAsWritten)
{
    EXPECT_EQ(rules->comparable("/Home/X//"), "/Home/X");
    EXPECT_EQ(rules->comparable("//"), "/");
    EXPECT_FALSE(rules->samePath("/a", "/A"));
    EXPECT_LT(rules->compareRoots("/B", "/a"), 0);
    EXPECT_LT(rules->compareRoots("/a", "/\xC3\xA4"), 0);
    EXPECT_TRUE(rules->isDriveRoot("/"));
    EXPECT_FALSE(rules->isDriveRoot("/a"));
    EXPECT_EQ(rules->toExtendedLength(std::string(300, 'x')), std::string(300, 'x'));
}

TEST_F(PosixPaths, NestAtComponentBordersOnly)
{
    EXPECT_TRUE(rules->covers("/a", "/a/b"));
    EXPECT_TRUE(rules->covers("/a", "/a"));
    EXPECT_TRUE(rules->covers("/", "/a"));
    EXPECT_FALSE(rules->covers("/a", "/ab"));
    EXPECT_FALSE(rules->covers("/a", "/home/a"));
    EXPECT_FALSE(rules->covers("/a/b", "/a"));
}

TEST_F(PosixPaths, ProtectSystemFoldersAtComponentBorders)
{
    for (const char* path : {"/usr", "/usr/", "/usr/share/doc", "/lib64", "/libx32/x", "/proc/self", "/snap/x"})
        EXPECT_TRUE(rules->rootIsProtected(path)) << path;
    for (const char* path : {"/", "/usrlocal", "/home/usr", "/home/a/var", "/library", "/tmp", "/optional"})
        EXPECT_FALSE(rules->rootIsProtected(path)) << path;
    EXPECT_TRUE(rules->isProtectedFolder("/etc"));
    EXPECT_FALSE(rules->isProtectedFolder("/etc/ssl"));
    EXPECT_FALSE(rules->isProtectedFolder("/"));
}

TEST_F(PosixPaths, ProtectTrashFolders)
{
    for (const char* path :
         {"/home/a/.local/share/Trash/files", "/mnt/disk/.Trash-1000/files/x", "/mnt/disk/.Trash/1000"})
        EXPECT_TRUE(rules->rootIsProtected(path)) << path;
    for (const char* path : {"/home/a/Trash", "/mnt/.Trash-", "/mnt/.Trash-me", "/mnt/.Trashed",
                             "/a/x.local/share/Trash", "/home/.local/share/Trashy"})
        EXPECT_FALSE(rules->rootIsProtected(path)) << path;
    EXPECT_TRUE(rules->isProtectedFolder("/mnt/disk/.Trash-1000"));
}

}  // namespace
}  // namespace kelvane
