// The whole way: real files, the real worker, its real walls.
#include "platform/platform.h"
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

}  // namespace
}  // namespace kelvane
