#include "engine/stored_paths.h"

#include <gtest/gtest.h>

namespace kelvane {
namespace {

struct Root {
    std::string_view path;
    std::string_view posix, windows;
};

TEST(StoredPaths, RootsAreWhatNoFolderLiesAbove)
{
    const Root roots[] = {
        {"/a/b", "/", ""},
        {"/", "/", ""},
        {"", "", ""},
        {"C:\\a\\b", "", "C:\\"},
        {"C:", "", ""},
        {"C:a", "", ""},
        {"\\\\server\\share\\a", "", "\\\\server\\share\\"},
        {"\\\\server", "", ""},
        {"\\\\?\\C:\\a\\b", "", "\\\\?\\C:\\"},
        {"\\\\?\\UNC\\server\\share\\a", "", "\\\\?\\UNC\\server\\share\\"},
        {"\\\\?\\", "", ""},
    };
    for (const Root& root : roots) {
        EXPECT_EQ(root.path.substr(0, rootLength(root.path, '/')), root.posix) << root.path;
        EXPECT_EQ(root.path.substr(0, rootLength(root.path, '\\')), root.windows) << root.path;
    }
}

TEST(StoredPaths, NamesThatNoFileHasAreUnsound)
{
    for (const char separator : {'/', '\\'}) {
        for (const std::string_view sound : {"a", "a/b", "...", ".hidden/..a", " ", "caf\xE9/line\nbreak"})
            EXPECT_TRUE(isSoundPath(sound, Detours::refused, separator)) << sound;
        for (const std::string_view unsound : {"", ".", "..", "/", "/a", "a/", "a//b", "a/./b", "a/../b"})
            EXPECT_FALSE(isSoundPath(unsound, Detours::refused, separator)) << unsound;
        EXPECT_FALSE(isSoundPath(std::string_view("a\0b", 3), Detours::refused, separator));
        EXPECT_TRUE(isSoundPath("a/../b", Detours::allowed, separator));
    }
    EXPECT_TRUE(isSoundPath("a\\\\..:\\.", Detours::refused, '/'));
    for (const std::string_view unsound : {"a\\\\b", "a\\..\\b", "C:\\a", "file:stream", "..\\"})
        EXPECT_FALSE(isSoundPath(unsound, Detours::refused, '\\')) << unsound;

    EXPECT_TRUE(isSoundAbsolutePath("/", Detours::refused, '/'));
    EXPECT_TRUE(isSoundAbsolutePath("\\\\?\\C:\\a\\b", Detours::refused, '\\'));
    for (const std::string_view unsound : {"", "a", "//a", "/a/", "/a/../b"})
        EXPECT_FALSE(isSoundAbsolutePath(unsound, Detours::refused, '/')) << unsound;
}

TEST(StoredPaths, AFolderIsCommonToPathsThatLieInIt)
{
    struct Pair {
        std::string_view a, b, common;
        char separator;
    };
    const Pair pairs[] = {
        {"/a/b/f", "/a/b/g", "/a/b/", '/'},
        {"/a/b/f", "/a/bc/f", "/a/", '/'},
        {"/", "/a", "", '/'},
        {"C:\\a\\b", "C:\\a\\c", "C:\\a\\", '\\'},
        {"C:\\a", "D:\\a", "", '\\'},
        {"\\\\?\\C:\\a", "\\\\?\\D:\\a", "", '\\'},
        {"\\\\server\\one\\a", "\\\\server\\two\\a", "", '\\'},
    };
    for (const Pair& pair : pairs) {
        const std::string_view folder = folderPart(pair.a, pair.separator);
        EXPECT_EQ(commonFolder(folder, folderPart(pair.b, pair.separator), pair.separator), pair.common) << pair.a;
    }
    EXPECT_EQ(withoutEndSeparator("/a/", '/'), "/a");
    EXPECT_EQ(withoutEndSeparator("/", '/'), "/");
    EXPECT_EQ(withoutEndSeparator("C:\\", '\\'), "C:\\");
    EXPECT_EQ(detourEnd("a/../b/..", '/'), 9u);
    EXPECT_EQ(detourEnd("a/..b/...", '/'), 0u);
}

}  // namespace
}  // namespace kelvane
