#include "text/document_readers.h"

#include <atomic>
#include <gtest/gtest.h>
#include <thread>

#include "platform/property_table.h"
#include "support/fakes.h"

namespace kelvane {
namespace {

// Every file is a document with its name as its title; names that end with '-' are hopeless.
class FakeExtraction final : public TextExtraction {
public:
    ExtractedDocument extract(const ShellItem& item, const CancelFlag&) override
    {
        ++extractions;
        ExtractedDocument document;
        document.outcome = TextOutcome::extracted;
        document.text = u"the text";
        document.properties.push_back(
            {"System.Title", RawValue::text(std::u16string(item.name().begin(), item.name().end()))});
        return document;
    }
    bool hopeless(const ShellItem& item) const override { return item.name().back() == '-'; }
    std::vector<std::string> missingTools() const override { return {}; }
    const ExtractionOptions& options() const override { return options_; }

    std::atomic<int> extractions = 0;

private:
    ExtractionOptions options_;
};

Ref<ShellItem> makeFile(const std::filesystem::path& name, std::int64_t modified = 1)
{
    FileInfo info;
    info.kind = FileKind::regular;
    info.modified = {modified};
    return ShellItem::make({}, name.native(), info, ShellItem::Place::fileSystem);
}

class DocumentReadersTest : public ::testing::Test {
protected:
    std::u16string read(const char* property, const ShellItem& item)
    {
        const RawValue value = readers_->read(*table_->byName(property), item);
        const auto* text = std::get_if<std::u16string>(&value.data);
        return text ? *text : u"";
    }

    std::unique_ptr<PropertySystem> table_ = makePropertyTable();
    FakeExtraction extraction_;
    testing::FakeReaders next_;
    std::unique_ptr<PropertyReaders> readers_ = makeDocumentReaders(extraction_, next_);
};

TEST_F(DocumentReadersTest, ExtractsAFileOnceForAllItsProperties)
{
    const auto file = makeFile("a.docx");
    EXPECT_EQ(read("System.Title", *file), u"a.docx");
    EXPECT_EQ(read("System.Search.Contents", *file), u"the text");
    EXPECT_EQ(extraction_.extractions, 1);
    EXPECT_EQ(read("System.Title", *makeFile("a.docx", 2)), u"a.docx");
    EXPECT_EQ(extraction_.extractions, 2);
}

TEST_F(DocumentReadersTest, AsksTheNextOneForEverythingElse)
{
    next_.set("a.docx", "System.Subject", RawValue::text(u"subject"));
    next_.set("a.docx", "System.Music.AlbumTitle", RawValue::text(u"album"));
    next_.set("song-", "System.Title", RawValue::text(u"song"));
    EXPECT_EQ(read("System.Music.AlbumTitle", *makeFile("a.docx")), u"album");
    EXPECT_EQ(read("System.Title", *makeFile("song-")), u"song");
    EXPECT_EQ(extraction_.extractions, 0);
    EXPECT_EQ(read("System.Subject", *makeFile("a.docx")), u"subject");
}

TEST_F(DocumentReadersTest, KeepsTheLatestFilesOnly)
{
    for (int i = 0; i < 1000; ++i)
        EXPECT_EQ(read("System.Search.Contents", *makeFile(std::to_string(i))), u"the text");
    EXPECT_EQ(read("System.Title", *makeFile("999")), u"999");
    EXPECT_EQ(extraction_.extractions, 1000);
    EXPECT_EQ(read("System.Title", *makeFile("0")), u"0");
    EXPECT_EQ(extraction_.extractions, 1001);
}

TEST_F(DocumentReadersTest, ManyThreadsShareOneExtraction)
{
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i)
        threads.emplace_back([this] { EXPECT_EQ(read("System.Title", *makeFile("a.docx")), u"a.docx"); });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(extraction_.extractions, 1);
}

}  // namespace
}  // namespace kelvane
