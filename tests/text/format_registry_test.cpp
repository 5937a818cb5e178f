#include "text/format_registry.h"

#include <gtest/gtest.h>

#include "platform/property_table.h"
#include "support/document_world.h"
#include "text/text_charset.h"

namespace kelvane {
namespace {

std::string nameOf(const DocumentFormat* format)
{
    return format != nullptr ? std::string(format->name) : "none";
}

TEST(FormatRegistry, BytesWinOverNames)
{
    struct Case {
        std::string fileName, head, format;
    };
    using namespace std::string_literals;
    const std::vector<Case> cases = {
        {"a.txt", "plain words", "text"},
        {"A.TXT", "", "text"},
        {"a.txt", "<!DOCTYPE HTML>\n<p>", "HTML"},
        {"a.txt", "<!-- by hand -->\n <html lang=en>", "HTML"},
        {"a.txt", "\xFF\xFE<\0h\0t\0m\0l\0>\0"s, "HTML"},
        {"a.txt", "<?xml version='1.0'?><data>", "XML"},
        {"a.xml", "<?xml version='1.0'?><!-- x --><!DOCTYPE html><html>", "XML"},
        {"a.html", "<?xml version='1.0'?><html>", "HTML"},
        {"a.html", "words before any tag", "HTML"},
        {"a.php", "<!doctype html><?php", "source code"},
        {"page.tmpl", "<html>{{ body }}", "source code"},
        {"a.txt", "%PDF-1.4\n", "PDF"},
        {"a.txt", "{\\rtf1 words}", "RTF"},
        {"a.txt", "From: a\nTo: b\nSubject: c\n\nwords", "mail"},
        {"a.txt", "Message-ID: <1@a>\nSubject: folded\n over\n\nwords", "mail"},
        {"a.txt", "Subject: notes\nDate: today\n\nwords", "text"},
        {"a.log", "Received: x\nFrom: y\n\n", "source code"},
        {"a.eml", "Subject: alone\n\nwords", "mail"},
        {"a.rtf", "words", "text"},
        {"a.pdf", "words", "text"},
        {"a.docx", "words", "text"},
        {"a.pdf", "\0\1\2"s, "PDF"},
        {"README", "words", "text"},
        {"unheard.of", "words", "text"},
        {"unheard.of", "\0\1\2"s, "none"},
        {"unheard.of", "", "none"},
    };
    for (const Case& each : cases)
        EXPECT_EQ(nameOf(formatOf(each.fileName, asBytes(each.head))), each.format) << each.fileName << each.head;
}

TEST(FormatRegistry, EveryRowCanBeRead)
{
    testing::DocumentWorld world;
    for (const DocumentFormat& format : documentFormats()) {
        EXPECT_FALSE(format.name.empty() || format.masks.empty() || format.read == nullptr) << format.name;
        testing::MemoryDocument empty("");
        DocumentSink sink(world.options);
        (void)format.read(empty, {*world.decoding, *world.xml, *world.packages, *world.filters, world.options}, sink);
        EXPECT_TRUE(std::move(sink).take().text.empty()) << format.name;
    }
}

// A value of another type would be taken for a missing one wherever two files are compared.
TEST(FormatRegistry, PropertiesHaveTheTypesOfTheCatalogue)
{
    const std::vector<std::pair<std::string, std::string>> documents = {
        {"a.html", "<title>t</title><meta name=author content=a><meta name=keywords content=b>"
                   "<meta name=date content=2024><meta name=description content=c><html lang=en>"},
        {"a.rtf", "{\\rtf1{\\info{\\title a}{\\author b}{\\category c}{\\keywords d}{\\operator e}{\\company f}"
                  "{\\manager g}{\\creatim\\yr2024}\\nofpages1\\nofwords2\\nofchars3}}"},
        {"a.eml", "From: A <a@b>\nTo: c@d\nCc: e@f\nSubject: g\nDate: 1 Jan 2024 00:00:00 +0000\nKeywords: h\n"
                  "Received: x; 1 Jan 2024 00:00:00 +0000\n\n"},
    };
    const auto catalogue = makePropertyTable();
    for (const auto& [fileName, content] : documents) {
        const ExtractedDocument document = testing::DocumentWorld().extract(fileName, content);
        EXPECT_GE(document.properties.size(), 6u) << fileName;
        for (const DocumentProperty& property : document.properties) {
            const PropertyInfo* row = catalogue->byName(property.name);
            ASSERT_NE(row, nullptr) << property.name;
            EXPECT_EQ(row->type, property.value.type) << property.name;
            EXPECT_EQ(row->multiple, property.value.isVector) << property.name;
        }
    }
}

}  // namespace
}  // namespace kelvane
