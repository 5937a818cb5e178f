#include "text/worker_task.h"

#include <limits>

namespace kelvane {
namespace {

ExtractedDocument fullDocument()
{
    ExtractedDocument document;
    document.outcome = TextOutcome::damaged;
    document.text = u"caf\u00E9 \xD800";
    document.cut = true;
    document.weight = 0x1'2345'6789;
    document.missingTool = "a tool";
    document.detail = "why";
    document.properties = {
        {"System.Title", RawValue::text(u"title")},
        {"System.Author", RawValue::texts({u"one", u"", u"three"})},
        {"System.Document.PageCount", RawValue::number(VarType::int32, 7)},
        {"System.Document.DateCreated", RawValue::number(VarType::fileTime, 132'000'000'000'000'000)},
        {"System.Flag", RawValue::number(VarType::boolean, 1)},
        {"System.Width", RawValue::float64(-0.5)},
        {"System.Height", {VarType::float32, false, 2.5F}},
        {"System.GPS.Latitude", {VarType::float64, true, std::vector<double>{1, 2.25}}},
        {"System.Empty", {}},
    };
    return document;
}

bool same(const RawValue& a, const RawValue& b)
{
    return a.type == b.type && a.isVector == b.isVector && a.data == b.data;
}

TEST(WorkerTask, ADocumentComesBackWhole)
{
    const ExtractedDocument sent = fullDocument();
    const auto got = decodeDocument(encodeDocument(sent));
    ASSERT_TRUE(got);
    EXPECT_EQ(got->outcome, sent.outcome);
    EXPECT_EQ(got->text, sent.text);
    EXPECT_TRUE(got->cut);
    EXPECT_FALSE(got->plain);
    EXPECT_EQ(got->weight, sent.weight);
    EXPECT_EQ(got->missingTool, sent.missingTool);
    EXPECT_EQ(got->detail, sent.detail);
    ASSERT_EQ(got->properties.size(), sent.properties.size());
    for (std::size_t i = 0; i < sent.properties.size(); ++i) {
        EXPECT_EQ(got->properties[i].name, sent.properties[i].name);
        EXPECT_TRUE(same(got->properties[i].value, sent.properties[i].value)) << sent.properties[i].name;
    }
}

TEST(WorkerTask, ARequestComesBackWhole)
{
    const auto bytes = encodeRequest({"r\xC3\xA9port.pdf", 65'536, std::numeric_limits<std::uint64_t>::max()});
    EXPECT_EQ(taskOf(bytes), WorkerTask::extractDocument);
    const auto got = decodeExtractionRequest(bytes);
    ASSERT_TRUE(got);
    EXPECT_EQ(got->fileName, "r\xC3\xA9port.pdf");
    EXPECT_EQ(got->textSample, 65'536u);
    EXPECT_EQ(got->largestStream, std::numeric_limits<std::uint64_t>::max());
}

// Objects mean nothing in another process, and data that does not fit its type would trip whoever reads it.
TEST(WorkerTask, OnlyValuesThatAreWhatTheySayTravel)
{
    ExtractedDocument document;
    document.properties = {{"object", {VarType::object, false, Ref<RawObject>()}},
                           {"liar", {VarType::wideText, false, std::uint64_t{1}}},
                           {"good", RawValue::text(u"x")}};
    const auto got = decodeDocument(encodeDocument(document));
    ASSERT_TRUE(got);
    ASSERT_EQ(got->properties.size(), 1u);
    EXPECT_EQ(got->properties[0].name, "good");
}

TEST(WorkerTask, BytesThatAreCutOffOrGoOnAreRefused)
{
    const auto document = encodeDocument(fullDocument());
    const auto request = encodeRequest({"name", 1, 2});
    for (std::size_t size = 0; size < document.size(); ++size)
        EXPECT_FALSE(decodeDocument(std::span(document).first(size))) << size;
    for (std::size_t size = 0; size < request.size(); ++size)
        EXPECT_FALSE(decodeExtractionRequest(std::span(request).first(size))) << size;
    auto longer = document;
    longer.push_back({});
    EXPECT_FALSE(decodeDocument(longer));
}

TEST(WorkerTask, LengthsThatPromiseTooMuchTakeNoMemory)
{
    // Outcome, two flags, the weight; then a text of 4 G characters.
    std::vector<std::byte> bytes(3 + 8);
    bytes.insert(bytes.end(), 4, std::byte{0xFF});
    bytes.resize(bytes.size() + 100);
    EXPECT_FALSE(decodeDocument(bytes));
    // An outcome that there is none of.
    auto odd = encodeDocument(fullDocument());
    odd[0] = std::byte{200};
    EXPECT_FALSE(decodeDocument(odd));
}

}  // namespace
}  // namespace kelvane
