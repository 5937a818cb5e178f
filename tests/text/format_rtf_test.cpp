#include "text/format_rtf.h"

#include <gtest/gtest.h>

#include "support/document_world.h"

namespace kelvane {
namespace {

using testing::DocumentWorld;
using testing::valueText;

std::string textOf(const std::string& body)
{
    return toUtf8(DocumentWorld().extract("a.rtf", "{\\rtf1\\ansi " + body + "}").text);
}

TEST(Rtf, GivesTheText)
{
    struct Case {
        std::string body, text;
    };
    const std::vector<Case> cases = {
        {"\\pard One\r\n two{\\b  three}.\\par\\par Four\\line five\\par", "One two three.\nFour\nfive"},
        {"a\\tab b\\cell c\\cell\\row d", "a b c\nd"},
        {"\\{\\}\\\\ \\~\\_\\-x\\emdash y\\'93z\\rdblquote", "{}\\ \u00A0\u2011x—y“z”"},
        {"caf\\'e9 \\u233?\\u-10179?\\u-8704? \\uc0\\u233e\\uc2\\u233\\'81\\'82e", "café é😀 éeée"},
        {"\\uc1\\u8212\\emdash x{\\uc3\\u233abc}\\u233", "—xéé"},
        {"\\u233{?}x", "é?x"},  // a bracket ends what stands in
        {"{\\fonttbl{\\f0\\fcharset0 Arial;}{\\f1\\fcharset204 Arial Cyr;}{\\f2\\fcharset128 Mincho;}}"
         "\\f1\\'cf\\f0\\'e9{\\f2\\'83A\\'94\\'4c}\\'e9\\f9\\'e9",
         "Пéア猫éé"},
        {"\\ansicpg1251{\\fonttbl{\\f0\\fnil Arial;}}\\f0 \\'cf", "П"},
        {"\\deff1{\\fonttbl{\\f1\\fcharset204 x;}}\\'cf", "П"},
        {"a{\\*\\unknown b}{\\pict 0badc0de}{\\header c}{\\stylesheet{\\s1 d;}}{\\field{\\*\\fldinst e}{\\fldrslt f}}",
         "af"},
        {"a{\\pict\\bin5 }}}}}b}c\\bin3 {{{d", "acd"},
        {"{\\shp{\\*\\shpinst{\\sp{\\sn a}{\\sv b}}{\\shptxt in a box}}{\\shprslt again}}", "in a box"},
        {"a{\\v hidden}\\v b\\v0 c{\\deleted d}\\plain e", "ace"},
        {"\\'zz\\'4", "zz4"},
        {"{\\upr{no}{\\*\\ud{yes}}}", "yes"},
        {"one}two", "onetwo"},  // brackets that close nothing
        {"{{{{open", "open"},
        {"\\bin99999999999 gone", ""},
        {"\\u99999999999999 xy", "\uFFFFy"},
    };
    for (const Case& each : cases)
        EXPECT_EQ(textOf(each.body), each.text) << each.body;
}

TEST(Rtf, InfoBecomesProperties)
{
    const ExtractedDocument document = DocumentWorld().extract(
        "a.rtf", "{\\rtf1\\ansi\\ansicpg1252{\\info{\\title Ein Titel f\\'fcr {\\b alle}}{\\author A. Ada; B. Bob}"
                 "{\\upr{\\subject ?}{\\*\\ud{\\subject \\u1046?uk}}}{\\keywords x, y;z}{\\doccomm Wozu}"
                 "{\\creatim\\yr2024\\mo2\\dy29\\hr13\\min5}{\\revtim\\yr2024\\mo13\\dy1}{\\*\\userprops no}"
                 "\\nofpages3\\nofwords1234}Text\\nofpages7}");
    EXPECT_EQ(toUtf8(document.text), "Text");
    EXPECT_EQ(valueText(document, "System.Title"), "Ein Titel für alle");
    EXPECT_EQ(valueText(document, "System.Author"), "A. Ada|B. Bob");
    EXPECT_EQ(valueText(document, "System.Subject"), "Жuk");
    EXPECT_EQ(valueText(document, "System.Keywords"), "x|y|z");
    EXPECT_EQ(valueText(document, "System.Comment"), "Wozu");
    EXPECT_EQ(valueText(document, "System.Document.PageCount"), "3");
    EXPECT_EQ(valueText(document, "System.Document.WordCount"), "1234");
    EXPECT_EQ(valueText(document, "System.Document.DateCreated"),
              std::to_string(fileTimeFromUnix(1'709'211'900, 0).ticks));
    EXPECT_EQ(valueText(document, "System.Document.DateSaved"), "");  // no such month
}

// Quadratic work on any of these would not end within the time that a test is given.
TEST(Rtf, HostileDocumentsTakeNoLongerThanOthers)
{
    const auto repeated = [](std::string_view piece, std::size_t count) {
        std::string body;
        for (std::size_t i = 0; i < count; ++i)
            body += piece;
        return body;
    };
    EXPECT_EQ(textOf(repeated("{\\b", 100'000) + " deep" + repeated("}", 100'000) + " out"), "deep out");
    EXPECT_EQ(textOf(repeated("{", 1'100'000) + "deep" + repeated("}", 1'100'000) + "out"), "deepout");
    EXPECT_EQ(textOf(repeated("\\", 1'000'000)), std::string(65'536, '\\'));
    EXPECT_EQ(textOf("{\\fonttbl{\\f1\\fcharset204 x;}}" + repeated("\\f1\\'cf\\f0\\'e9", 40'000)).substr(0, 8),
              "ПéПé");
    EXPECT_EQ(textOf("\\u1" + std::string(1'000'000, '9')), "\uFFFF");
}

TEST(Rtf, WhatIsNoRtfIsReadAsWhatItIs)
{
    EXPECT_EQ(toUtf8(DocumentWorld().extract("a.rtf", "plain words").text), "plain words");
    EXPECT_EQ(DocumentWorld().extract("a.rtf", std::string("\0\1\2\3", 4)).outcome, TextOutcome::damaged);
    EXPECT_EQ(toUtf8(DocumentWorld().extract("a.doc", "{\\rtf1 words}").text), "words");
}

}  // namespace
}  // namespace kelvane
