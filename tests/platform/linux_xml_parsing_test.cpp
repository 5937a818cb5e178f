#include <gtest/gtest.h>
#include <string>

#include "platform/linux/adapters.h"

namespace kelvane {
namespace {

// Writes down what it hears: "<p a=b>text</p>".
class Record : public XmlHandler {
public:
    explicit Record(std::size_t most = std::string::npos) : most_(most) {}
    bool elementBegins(std::string_view name, std::span<const Attribute> attributes) override
    {
        heard += "<" + std::string(name);
        for (const auto& [key, value] : attributes)
            heard += " " + std::string(key) + "=" + std::string(value);
        heard += ">";
        return --most_ > 0;
    }
    bool elementEnds(std::string_view name) override
    {
        heard += "</" + std::string(name) + ">";
        return true;
    }
    bool characters(std::string_view text) override
    {
        heard += text;
        return true;
    }
    std::string heard;

private:
    std::size_t most_;
};

Status parse(std::string_view document, XmlHandler& handler)
{
    return makePugixmlParsing()->parse(std::as_bytes(std::span(document)), handler);
}

std::string heardOf(std::string_view document)
{
    Record record;
    EXPECT_TRUE(parse(document, record).ok());
    return record.heard;
}

TEST(LinuxXmlParsingTest, TellsElementsAndTextsInTheirOrder)
{
    EXPECT_EQ(heardOf("<?xml version='1.0'?><!-- no --><w:p w:a='1' b=\"&lt;2\">one<r/> <r>t&#252;o</r>"
                      "<![CDATA[<three>]]>&amp;</w:p>"),
              "<w:p w:a=1 b=<2>one<r></r> <r>t\u00fco</r><three>&</w:p>");
    EXPECT_EQ(heardOf(std::string_view("\xff\xfe<\0a\0>\0\xe4\0<\0/\0a\0>\0", 18)), "<a>\u00e4</a>");
    EXPECT_EQ(heardOf("<?xml version='1.0' encoding='ISO-8859-1'?><a>\xe4</a>"), "<a>\u00e4</a>");
}

TEST(LinuxXmlParsingTest, StopsWhenTheHandlerHasHadEnough)
{
    Record record(2);
    EXPECT_TRUE(parse("<a><b>x</b><c/></a>", record).ok());
    EXPECT_EQ(record.heard, "<a><b>");
}

TEST(LinuxXmlParsingTest, NeverExpandsWhatADocumentDeclares)
{
    EXPECT_EQ(heardOf("<!DOCTYPE a [<!ENTITY b 'bb'><!ENTITY c '&b;&b;'><!ENTITY f SYSTEM 'file:///etc/hostname'>]>"
                      "<a>&c;&f;</a>"),
              "<a>&c;&f;</a>");
}

TEST(LinuxXmlParsingTest, TellsWhatStoodBeforeAFault)
{
    Record record;
    const Status status = parse("<a><b>one</b><c>two</a>", record);
    ASSERT_FALSE(status.ok());
    EXPECT_EQ(status.error().kind, ErrorKind::invalid);
    EXPECT_TRUE(record.heard.starts_with("<a><b>one</b><c>two")) << record.heard;
    for (const char* bad : {"", "plain text", "<", "<a", "<a b=>", "<!DOCTYPE [", "<![CDATA["}) {
        Record none;
        EXPECT_FALSE(parse(bad, none).ok()) << bad;
    }
}

TEST(LinuxXmlParsingTest, TakesAnyDepth)
{
    constexpr std::size_t depth = 300'000;
    std::string deep, doctype = "<!DOCTYPE a ";
    for (std::size_t i = 0; i < depth; ++i) {
        deep += "<a>";
        doctype += "<![INCLUDE[<!x ";
    }
    Record record;
    EXPECT_FALSE(parse(deep, record).ok());
    EXPECT_GE(record.heard.size(), depth * 7);
    for (std::size_t i = 0; i < depth; ++i)
        deep += "</a>";
    EXPECT_EQ(heardOf(deep).size(), depth * 7);
    EXPECT_FALSE(parse(doctype, record).ok());
}

}  // namespace
}  // namespace kelvane
