#include "base/file_masks.h"

#include <gtest/gtest.h>

namespace kelvane {
namespace {

TEST(FileMasks, HoldMasksWithoutADotAgainstTheExtension)
{
    const FileMasks masks("mp3, AIF*,doc?");
    for (const char* name : {"song.mp3", "SONG.MP3", "a.b.aiff", "letter.docx"})
        EXPECT_TRUE(masks.admits(name)) << name;
    for (const char* name : {"letter.doc", "mp3", ".mp3", "song.mp3.part", "song."})
        EXPECT_FALSE(masks.admits(name)) << name;
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
