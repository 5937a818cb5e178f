#include "text/format_registry.h"

#include <gtest/gtest.h>

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

}  // namespace
}  // namespace kelvane
