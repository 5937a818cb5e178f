#include <gtest/gtest.h>

#include "support/compound_maker.h"
#include "support/linux_office_documents.h"

namespace kelvane {
namespace {

using testing::littleEndianBytes;
using testing::makeCompound;

ExtractedDocument extract(std::string_view name, const std::string& bytes)
{
    testing::DocumentWorld world = testing::officeWorld();
    world.filters = makeLinuxFilterPrograms(std::chrono::milliseconds(0));
    return world.extract(name, bytes);
}

// The least that makes a document ([MS-DOC], section 2.5): the header of its stream, and text in one piece.
TEST(LinuxFormatCompoundTest, ReadsADocumentByTheInstalledProgram)
{
    const std::string text = "A paragraph.\rCaf\xe9.\r";
    std::string stream = littleEndianBytes(std::uint16_t{0xA5EC}) + littleEndianBytes(std::uint16_t{193});
    stream.resize(0x18, '\0');
    stream += littleEndianBytes(1024u) + littleEndianBytes(static_cast<std::uint32_t>(1024 + text.size()));
    stream.resize(1024, '\0');
    stream += text;
    stream.resize(4096, '\0');
    const auto document = extract("a.doc", makeCompound({{"WordDocument", stream}}));
    EXPECT_EQ(document.outcome, TextOutcome::extracted) << document.detail;
    EXPECT_EQ(document.text, u"A paragraph.\nCaf\u00e9.");
}

// One record of a presentation ([MS-PPT], section 2.3.1).
std::string record(std::uint16_t version, std::uint16_t type, const std::string& content)
{
    return littleEndianBytes(version) + littleEndianBytes(type) +
           littleEndianBytes(static_cast<std::uint32_t>(content.size())) + content;
}

TEST(LinuxFormatCompoundTest, ReadsAPresentationThatItsProgramTakesByNameOnly)
{
    std::string stream =
        record(15, 1000, record(15, 0x0FF0, record(0, 0x0FA8, "A slide") + record(0, 0x0FA8, "Another line")));
    stream.resize(4096, '\0');
    const std::string user = std::string(8, '\0') + littleEndianBytes(0x14u) + littleEndianBytes(0xE391C05Fu);
    const auto document = extract("a.ppt", makeCompound({{"PowerPoint Document", stream}, {"Current User", user}}));
    EXPECT_EQ(document.outcome, TextOutcome::extracted) << document.detail;
    EXPECT_EQ(document.text, u"A slide\nAnother line");
}

}  // namespace
}  // namespace kelvane
