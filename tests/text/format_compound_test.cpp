#include "text/format_compound.h"

#include <gtest/gtest.h>

#include "support/compound_maker.h"
#include "support/document_world.h"
#include "support/fake_filters.h"

namespace kelvane {
namespace {

using testing::DocumentWorld;
using testing::FakeFilters;
using testing::littleEndianBytes;
using testing::makeCompound;
using testing::valueText;

ExtractedDocument extract(const std::string& content, FakeFilters filters = {}, std::string_view name = "a.doc")
{
    DocumentWorld world;
    world.filters = std::make_unique<FakeFilters>(std::move(filters));
    return world.extract(name, content);
}

// A property set: numbers and values, each value with its type in front.
std::string makeSet(const std::vector<std::pair<std::uint32_t, std::string>>& values)
{
    std::string table, contents;
    for (const auto& [number, value] : values) {
        table += littleEndianBytes(number) +
                 littleEndianBytes(static_cast<std::uint32_t>(8 + 8 * values.size() + contents.size()));
        contents += value;
    }
    const std::string set = littleEndianBytes(static_cast<std::uint32_t>(8 + table.size() + contents.size())) +
                            littleEndianBytes(static_cast<std::uint32_t>(values.size())) + table + contents;
    return std::string("\xFE\xFF\0\0", 4) + std::string(20, '\0') + littleEndianBytes(1u) + std::string(16, '\0') +
           littleEndianBytes(48u) + set;
}

std::string narrowText(const std::string& text)
{
    return littleEndianBytes(30u) + littleEndianBytes(static_cast<std::uint32_t>(text.size() + 1)) + text + '\0';
}

TEST(FormatCompoundTest, ChoosesTheProgramByTheStreamsAndNotByTheName)
{
    FakeFilters filters;
    filters.outputs = {{"catdoc", "One\n\n two \n"}, {"xls2csv", "1 2\n\f3 \n"}, {"catppt", "slide\n"}};
    EXPECT_EQ(extract(makeCompound({{"WordDocument", "x"}}), filters, "a.xls").text, u"One\ntwo");
    EXPECT_EQ(extract(makeCompound({{"Other", "x"}, {"Workbook", "x"}}), filters, "a.txt").text, u"1 2\n3");
    EXPECT_EQ(extract(makeCompound({{"Book", "x"}}), filters).text, u"1 2\n3");
    EXPECT_EQ(extract(makeCompound({{"PowerPoint Document", "x"}}), filters).text, u"slide");
    EXPECT_EQ(extract(makeCompound({{"Other", "x"}}), filters).outcome, TextOutcome::unknownFormat);
}

TEST(FormatCompoundTest, ReadsProperties)
{
    const std::string moment = littleEndianBytes(64u) + littleEndianBytes(std::uint64_t{116'444'736'000'000'000});
    const auto document = extract(makeCompound(
        {{"\x05SummaryInformation", makeSet({{1, littleEndianBytes(2u) + littleEndianBytes(1251u)},
                                             {2, narrowText("\xd2\xe5\xea\xf1\xf2")},
                                             {4, narrowText("Ann; Bob")},
                                             {12, moment},
                                             {14, littleEndianBytes(3u) + littleEndianBytes(7u)},
                                             {15, littleEndianBytes(3u) + littleEndianBytes(-1)},
                                             {8, littleEndianBytes(30u) + littleEndianBytes(0xFFFFFFFFu)}})},
         {"\x05"
          "DocumentSummaryInformation",
          makeSet({{15, littleEndianBytes(31u) + littleEndianBytes(2u) + std::string("F\0\0\0", 4)}})},
         {"WordDocument", "x"}}));
    EXPECT_EQ(document.outcome, TextOutcome::extracted);
    EXPECT_EQ(valueText(document, "System.Title"), "\u0422\u0435\u043a\u0441\u0442");
    EXPECT_EQ(valueText(document, "System.Author"), "Ann|Bob");
    EXPECT_EQ(valueText(document, "System.Document.DateCreated"), "116444736000000000");
    EXPECT_EQ(valueText(document, "System.Document.PageCount"), "7");
    EXPECT_EQ(valueText(document, "System.Document.WordCount"), "");
    EXPECT_EQ(valueText(document, "System.Company"), "F");
}

TEST(FormatCompoundTest, SaysWhyThereIsNoText)
{
    EXPECT_EQ(extract(makeCompound({{"EncryptedPackage", "x"}}), {}, "a.docx").outcome, TextOutcome::encrypted);
    EXPECT_EQ(extract(makeCompound({{"WordDocument", std::string(10, '\0') + std::string("\0\1", 2)}})).outcome,
              TextOutcome::encrypted);
    EXPECT_EQ(extract(makeCompound({{"Workbook", std::string("\x09\x08\2\0xx\x2F\0\0\0", 10)}})).outcome,
              TextOutcome::encrypted);
    EXPECT_EQ(extract(makeCompound(
                          {{"PowerPoint Document", "x"}, {"Current User", std::string(12, '\0') + "\xDF\xC4\xD1\xF3"}}))
                  .outcome,
              TextOutcome::encrypted);
    FakeFilters fails, missing;
    fails.fails = true;
    missing.missing = true;
    const std::string document = makeCompound({{"WordDocument", "x"}});
    EXPECT_EQ(extract(document, fails).outcome, TextOutcome::damaged);
    EXPECT_EQ(extract(document, missing).outcome, TextOutcome::toolMissing);
    EXPECT_EQ(extract(document, missing).missingTool, "catdoc");
    EXPECT_EQ(extract(document.substr(0, 100)).outcome, TextOutcome::damaged);
}

}  // namespace
}  // namespace kelvane
