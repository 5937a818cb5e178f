#include "base/file_masks.h"

#include <gtest/gtest.h>

namespace kelvane {
namespace {

TEST(FileMasks, HoldMasksWithoutADotAgainstTheExtension)
{
    const FileMasks masks("mp3, AIF*,doc?");
    EXPECT_TRUE(masks.admits("song.mp3"));
    EXPECT_TRUE(masks.admits("SONG.MP3"));
    EXPECT_TRUE(masks.admits("a.b.aiff"));
    EXPECT_TRUE(masks.admits("letter.docx"));
    EXPECT_FALSE(masks.admits("letter.doc"));
    EXPECT_FALSE(masks.admits("mp3"));
    EXPECT_FALSE(masks.admits(".mp3"));
    EXPECT_FALSE(masks.admits("song.mp3.part"));
    EXPECT_FALSE(masks.admits("song."));
}

TEST(FileMasks, HoldMasksWithADotAgainstTheWholeName)
{
    const FileMasks masks("report*.pdf,*.tar.gz,*.txt");
    EXPECT_TRUE(masks.admits("Report 2024.PDF"));
    EXPECT_FALSE(masks.admits("my report.pdf"));
    EXPECT_TRUE(masks.admits("backup.tar.gz"));
    EXPECT_FALSE(masks.admits("backup.gz"));
    EXPECT_TRUE(masks.admits("notes.txt"));
}

TEST(FileMasks, AdmitEverythingWhenAnyMaskDoes)
{
    for (const char* text : {"", "*", "mp3,*", "*.*", " , ,"}) {
        EXPECT_TRUE(FileMasks(text).admitsAll()) << text;
        EXPECT_TRUE(FileMasks(text).admits("Makefile")) << text;
    }
    EXPECT_FALSE(FileMasks("mp3").admitsAll());
}

TEST(FileMasks, CompareNamesThatAreNoTextByteForByte)
{
    const FileMasks masks("\xE9t\xE9");
    EXPECT_TRUE(masks.admits("a.\xE9t\xE9"));
    EXPECT_FALSE(masks.admits("a.\xC9T\xC9"));
    EXPECT_TRUE(FileMasks("jpg").admits("\xFF\xFE\n.jpg"));
}

}  // namespace
}  // namespace kelvane
