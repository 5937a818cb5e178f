#include "text/format_html.h"

#include <gtest/gtest.h>

#include "support/document_world.h"

namespace kelvane {
namespace {

using testing::DocumentWorld;
using testing::valueText;

std::string htmlText(std::string page)
{
    return toUtf8(DocumentWorld().extract("page.html", std::move(page)).text);
}

TEST(Html, GivesTheTextAsItIsRead)
{
    struct Case {
        std::string page, text;
    };
    const std::vector<Case> cases = {
        {"<p>One\n   two <b>th</b>ree</p>\n\n<p>four</p>", "One two three\nfour"},
        {"a<br>b<br/><br>c<hr>d", "a\nb\nc\nd"},
        {"<ul><li>one<li>two</ul>", "one\ntwo"},
        {"<table><tr><td>a</td><td>b</td></tr><tr><td>c<td>d</table>", "a b\nc d"},
        {"x<script>if (a < b) document.write('<p>no</p>')</script>y<style>p{}</style>z", "xyz"},
        {"a<!-- <p>no --> b<!---->c<!--> d", "a bc d"},
        {"<pre>\nint  main()\n{\n}\n</pre>after", "int  main()\n{\n}\nafter"},
        {"<textarea><b>&lt;</b></textarea>", "<b><</b>"},
        {"<template><p>no</p></template>yes", "yes"},
        {"<![CDATA[a &amp; <b>]]>", "a &amp; <b>"},
        {"a < b and 3<4 but <> or </> or </ 5>", "a < b and 3<4 but <> or or"},
        {"<P TITLE='a > b' x=\"</p>\">in</P >out", "in\nout"},
        {"<a href=x>one</a><a href='broken>two</a> three", "onetwo three"},
        {"&eacute;&#233;&#xE9;&#128;&amp;lt; &copy 2 &notin; &notit; &unknown; &; &#; &#x110000; &#55357;",
         "ééé€&lt; © 2 ∉ ¬it; &unknown; &; &#; � �"},
        {"a&nbsp;&nbsp;b", "a\u00A0\u00A0b"},
        {"no tags at all", "no tags at all"},
        {"cut <b", "cut"},
    };
    for (const Case& each : cases)
        EXPECT_EQ(htmlText(each.page), each.text) << each.page;
}

TEST(Html, IsDecodedAsItDeclares)
{
    struct Case {
        std::string page, text;
    };
    const std::vector<Case> cases = {
        {"<meta charset=windows-1251><p>\xCF\xF0\xE8", "При"},
        {"<meta http-equiv='Content-Type' content='text/html; charset=\"ISO-8859-1\"'><p>\x93"
         "caf\xE9\x94",
         "“café”"},
        {"<?xml version='1.0' encoding='Shift_JIS'?><html><body>\x94\x4C</body></html>", "猫"},
        {"<meta charset=utf-16><p>caf\xC3\xA9", "café"},  // cannot be, or it would not be readable
        {"<meta charset=no-such-thing><p>caf\xC3\xA9", "café"},
        {"\xEF\xBB\xBF<meta charset=windows-1251><p>caf\xC3\xA9", "café"},  // the mark is right
    };
    for (const Case& each : cases)
        EXPECT_EQ(htmlText(each.page), each.text) << each.page;
}

TEST(Html, HeadBecomesProperties)
{
    const ExtractedDocument document = DocumentWorld().extract(
        "page.html", "<html lang=de-AT><head><title> Die\n <i>Seite</i> &amp; mehr</title><title>another</title>"
                     "<meta name=Author content='Ada Lovelace; Karl &Auml;hnlich'>"
                     "<meta content='worum es geht' name=description><meta name=keywords content='a, b;c,,'>"
                     "<meta name=dcterms.created content=2024-02-29T23:30:00-01:00>"
                     "<meta name=dcterms.modified content=2023-02-29></head><body>text");
    EXPECT_EQ(toUtf8(document.text), "text");
    EXPECT_FALSE(document.plain);
    EXPECT_EQ(document.weight, 4u);
    EXPECT_EQ(valueText(document, "System.Title"), "Die <i>Seite</i> & mehr");
    EXPECT_EQ(valueText(document, "System.Author"), "Ada Lovelace|Karl Ähnlich");
    EXPECT_EQ(valueText(document, "System.Comment"), "worum es geht");
    EXPECT_EQ(valueText(document, "System.Keywords"), "a|b|c");
    EXPECT_EQ(valueText(document, "System.Language"), "de-AT");
    EXPECT_EQ(valueText(document, "System.Document.DateCreated"),
              std::to_string(fileTimeFromUnix(1'709'253'000, 0).ticks));
    EXPECT_EQ(valueText(document, "System.Document.DateSaved"), "");  // no such day
}

// Quadratic work on any of these would not end within the time that a test is given.
TEST(Html, HostilePagesTakeNoLongerThanOthers)
{
    const auto repeated = [](std::string_view piece, std::size_t count) {
        std::string page;
        for (std::size_t i = 0; i < count; ++i)
            page += piece;
        return page;
    };
    const std::vector<std::string> pages = {
        std::string(1'000'000, '<'),
        repeated("<div>", 100'000) + "deep" + repeated("</div>", 100'000),
        repeated("<b", 200'000),
        repeated("<a b=\"<a b='", 100'000) + "'",
        repeated("<title>", 50'000) + "x",
        repeated("<textarea></", 50'000),
        repeated("<script></", 50'000),
        repeated("<!--", 100'000),
        repeated("&", 200'000),
        "&#" + std::string(1'000'000, '9') + ";",
        repeated("<pre><template>", 20'000),
        repeated("<meta name=a content=b>", 20'000),
    };
    for (const std::string& page : pages)
        EXPECT_EQ(DocumentWorld().extract("page.html", page).outcome, TextOutcome::extracted) << page.substr(0, 20);
    EXPECT_EQ(htmlText(pages[1]), "deep");
    EXPECT_EQ(htmlText(pages[0]), std::string(65'536, '<'));
}

}  // namespace
}  // namespace kelvane
