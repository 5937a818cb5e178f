#include "text/format_subtitles.h"

#include <gtest/gtest.h>

#include "support/document_world.h"

namespace kelvane {
namespace {

using testing::DocumentWorld;

// One dialogue in the formats of several programs: all of them give the same text.
TEST(Subtitles, OneFilmGivesOneTextInAnyFormat)
{
    struct Case {
        const char* fileName;
        std::string content;
    };
    const std::vector<Case> files = {
        {"a.srt",
         "1\r\n00:00:01,000 --> 00:00:04,000\r\n<i>Who's</i>\r\nthere?\r\n\r\n2\r\n00:00:05,000 --> 00:00:06,5\r\n"
         "{\\an8}42\r\n"},
        {"crowded.srt", "1\n00:00:01,000 --> 00:00:04,000\nWho's there?\n2\n00:00:05,000 --> 00:00:06,500\n42\n"},
        {"a.vtt", "WEBVTT - a film\nKind: captions\n\nNOTE\nby nobody\n\nSTYLE\n::cue {}\n\nfirst\n"
                  "00:01.000 --> 00:04.000 align:start\n<v Ada>Who&#39;s there?</v>\n\n00:05.000 --> 00:06.000\n42"},
        {"a.ass", "[Script Info]\nTitle: x\n\n[Events]\nFormat: Layer, Start, End, Style, Name, MarginL, MarginR, "
                  "MarginV, Effect, Text\nComment: 0,0:00:00.00,0:00:00.00,D,,0,0,0,,no\n"
                  "Dialogue: 0,0:00:01.00,0:00:04.00,D,,0,0,0,,{\\pos(1,2)}Who's\\Nthere?\n"
                  "Dialogue: 0,0:00:05.00,0:00:06.00,D,,0,0,0,,42\nDialogue: 0"},
        {"a.sub", "{10}{50}{y:i}Who's|there?\n{60}{90}42\n"},
        {"b.sub", "00:00:01.00,00:00:04.00\nWho's there?\n\n00:00:05.00,00:00:06.00\n42\n"},
        {"a.mpl", "[10][50]Who's|there?\n[60][90]42\n"},
        {"a.lrc", "[ar:Somebody]\n[00:01.00]Who's there?\n[00:05.00][00:09.00]42\n"},
        {"mislabelled.txt", "1\n00:00:01,000 --> 00:00:04,000\nWho's there?\n\n2\n00:00:05,000 --> 00:00:06,500\n42\n"},
    };
    for (const Case& each : files) {
        const ExtractedDocument document = DocumentWorld().extract(each.fileName, each.content);
        EXPECT_EQ(toUtf8(document.text), "Who's there?\n42") << each.fileName;
        EXPECT_FALSE(document.plain) << each.fileName;
    }
}

TEST(Subtitles, WhatIsSaidStays)
{
    const std::string cue = "1\n00:00:01,000 --> 00:00:04,000\n";
    EXPECT_EQ(toUtf8(DocumentWorld().extract("a.srt", cue + "[door slams]\n- 3 < 4, {they} say: 10:20\n").text),
              "[door slams] - 3 < 4, {they} say: 10:20");
    EXPECT_EQ(DocumentWorld().extract("a.sub", std::string("\0\0\x01\xBA", 4)).outcome, TextOutcome::damaged);
}

}  // namespace
}  // namespace kelvane
