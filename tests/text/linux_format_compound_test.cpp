#include <gtest/gtest.h>

#include "support/compound_maker.h"
#include "support/linux_office_documents.h"

namespace kelvane {
namespace {

// The least that makes a document ([MS-DOC], section 2.5): the header of its stream, and text in one piece.
TEST(LinuxFormatCompoundTest, ReadsADocumentByTheInstalledProgram)
{
    using testing::littleEndianBytes;
    const std::string text = "A paragraph.\rCaf\xe9.\r";
    std::string stream = littleEndianBytes(std::uint16_t{0xA5EC}) + littleEndianBytes(std::uint16_t{193});
    stream.resize(0x18, '\0');
    stream += littleEndianBytes(1024u) + littleEndianBytes(static_cast<std::uint32_t>(1024 + text.size()));
    stream.resize(1024, '\0');
    stream += text;
    stream.resize(4096, '\0');
    testing::DocumentWorld world = testing::officeWorld();
    world.filters = makeLinuxFilterPrograms(std::chrono::milliseconds(0));
    const auto document = world.extract("a.doc", testing::makeCompound({{"WordDocument", stream}}));
    EXPECT_EQ(document.outcome, TextOutcome::extracted) << document.detail;
    EXPECT_EQ(document.text, u"A paragraph.\nCaf\u00e9.");
}

}  // namespace
}  // namespace kelvane
