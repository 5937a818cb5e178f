// The whole way: real files, the real worker, its real walls.
#include "platform/platform.h"
#include "support/compound_maker.h"
#include "support/linux_archive_maker.h"
#include "support/temp_tree.h"
#include "text/extraction_service.h"

namespace kelvane {
namespace {

class LinuxWorkerExtractionTest : public ::testing::Test {
protected:
    ExtractedDocument extract(const std::filesystem::path& path, ExtractionOptions options = {})
    {
        const auto service = makeTextExtraction({platform_->shell(), platform_->workers(), platform_->decoding(),
                                                 platform_->xml(), platform_->packages(), platform_->filters()},
                                                std::move(options));
        const auto item = platform_->shell().parse(path.native());
        EXPECT_TRUE(item.ok()) << path;
        const CancelFlag never;
        return service->extract(**item, never);
    }

    testing::TempTree tree_;
    std::unique_ptr<Platform> platform_ = makePlatform();
};

constexpr const char* page = "<!DOCTYPE html><html><head><title>A title</title></head><body><p>Words</p></body></html>";

TEST_F(LinuxWorkerExtractionTest, AWorkerGivesWhatThisProcessWouldGive)
{
    const auto file = tree_.write("page.html", page);
    testing::makeArchive(tree_.path("packed.zip"), {{"page.html", page}});
    ExtractionOptions here;
    here.worker = false;
    const ExtractedDocument expected = extract(file, here);
    EXPECT_EQ(expected.text, u"Words");
    for (const auto& path : {file, tree_.path("packed.zip/page.html")}) {
        const ExtractedDocument document = extract(path);
        EXPECT_EQ(document.outcome, TextOutcome::extracted) << document.detail;
        EXPECT_EQ(document.text, expected.text);
        EXPECT_EQ(document.weight, expected.weight);
        EXPECT_EQ(document.properties.size(), expected.properties.size());
    }
}

// A record of a workbook ([MS-XLS], section 2.1.4).
std::string record(std::uint16_t type, const std::string& data)
{
    return testing::littleEndianBytes(type) + testing::littleEndianBytes(static_cast<std::uint16_t>(data.size())) +
           data;
}

// One of a presentation ([MS-PPT], section 2.3.1).
std::string atom(std::uint16_t kind, std::uint16_t type, const std::string& data)
{
    return testing::littleEndianBytes(kind) + testing::littleEndianBytes(type) +
           testing::littleEndianBytes(static_cast<std::uint32_t>(data.size())) + data;
}

std::string workbook()
{
    using namespace std::string_literals;
    const std::string begin = record(0x809, "\0\6\x10\0\xBB\x0D\xCC\7\0\0\0\0\6\0\0\0"s);
    std::string stream = begin + record(0x204, "\0\0\0\0\0\0\5\0\0sheet"s) + record(0x0A, "");
    stream.resize(8192);
    return testing::makeCompound({{"Workbook", stream}});
}

std::string presentation()
{
    std::string stream = atom(0xF, 0x3E8, atom(0xF, 0xFF0, atom(0, 4008, "slide")));
    stream.resize(8192);
    return testing::makeCompound({{"PowerPoint Document", stream}});
}

// Their tools want a file by its name, and the worker may not open any.
TEST_F(LinuxWorkerExtractionTest, SheetsAndSlidesAreReadByToolsWithinTheWalls)
{
    if (!platform_->filters().installed("xls2csv") || !platform_->filters().installed("catppt"))
        GTEST_SKIP() << "catdoc is not installed";
    EXPECT_EQ(extract(tree_.write("a.xls", workbook())).text, u"sheet");
    EXPECT_EQ(extract(tree_.write("a.ppt", presentation())).text, u"slide");
    ExtractionOptions here;
    here.worker = false;
    EXPECT_EQ(extract(tree_.path("a.xls"), here).text, u"sheet");
}

}  // namespace
}  // namespace kelvane
