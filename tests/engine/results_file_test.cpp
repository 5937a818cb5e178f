#include "engine/results_file.h"

#include <gmock/gmock.h>

#include <fstream>
#include <map>

#include "base/filled_text.h"
#include "base/utf.h"
#include "engine/results_content.h"
#include "platform/native_text.h"
#include "platform/platform.h"
#include "support/faulty_output.h"
#include "support/real_files.h"
#include "support/small_catalogue.h"
#include "support/temp_tree.h"

namespace kelvane::testing {
namespace {

using ::testing::ElementsAreArray;
using ::testing::HasSubstr;

// Everything that a row keeps.
std::string described(const StoredRow& row)
{
    const ShellItem& file = *row.file;
    const FileInfo& info = file.info();
    std::ostringstream text;
    text << percentEncode(bytesFromNative(file.fullName())) << " group " << row.group << (row.approximate ? "~" : "")
         << " size " << info.size.bytes << " time " << info.modified.ticks << " attributes " << info.attributes
         << " id " << info.identity.volume << ":" << info.identity.index << " kind " << static_cast<int>(info.kind)
         << " place " << static_cast<int>(file.place()) << (file.parent() ? "" : " root");
    return text.str();
}

std::vector<std::string> described(const std::vector<StoredRow>& rows)
{
    std::vector<std::string> all;
    for (const StoredRow& row : rows)
        all.push_back(described(row));
    return all;
}

class ResultsFileTest : public ::testing::Test {
protected:
    // Every file below the folder, in the order of names.
    void gather(const Ref<const ShellItem>& folder, Links links = Links::followed)
    {
        std::map<NativeString, Ref<ShellItem>> children;
        const ListingOptions options{links, true, false};
        ASSERT_TRUE(shell_.enumerate(folder, options, [&](const Ref<ShellItem>& child) {
            children.emplace(child->name(), child);
            return true;
        }));
        for (const auto& [name, child] : children) {
            if (child->isFolder())
                gather(child, links);
            else
                addRow(child);
        }
    }
    void addRow(const Ref<const ShellItem>& file)
    {
        const auto number = static_cast<std::uint32_t>(results_.rows.size());
        results_.rows.push_back({file, number % 3 == 0 ? highestGroup : number / 2 + 1, number % 2 == 1});
    }
    Ref<const ShellItem> parsed(const std::filesystem::path& path) { return *shell_.parse(path.native()); }

    Result<LoadedResults> load() { return loadResults(file_, shell_, catalogue_, cancel_); }
    std::string loadFault()
    {
        const auto loaded = load();
        return loaded ? "" : loaded.error().detail;
    }
    LoadedResults saved()
    {
        const auto written = saveResults(file_, results_, platform_->output());
        EXPECT_TRUE(written && *written == std::filesystem::file_size(file_))
            << (written ? "" : written.error().detail);
        auto loaded = load();
        EXPECT_TRUE(loaded) << (loaded ? "" : loaded.error().detail);
        return loaded ? *loaded : LoadedResults();
    }

    TempTree tree_;
    TempTree other_;
    std::unique_ptr<Platform> platform_ = makePlatform();
    ShellNamespace& shell_ = platform_->shell();
    SmallPropertySystem system_;
    PropertyCatalogue catalogue_{system_};
    CancelFlag cancel_;
    StoredResults results_;
    std::filesystem::path file_ = other_.path("saved.ikvs");
};

TEST_F(ResultsFileTest, KeepsEveryRowAsTheScanSawIt)
{
    for (const std::string& name : unusualNames()) {
        tree_.write("in/" + name, name);
        tree_.write("in/sub/of " + name.substr(0, 200) + "/x", "y");
    }
    if (TempTree::canLink())
        tree_.symlink("linked", tree_.write("target", "t"));
    gather(parsed(tree_.path()));
    ASSERT_GE(results_.rows.size(), 2 * unusualNames().size());
    addRow(parsed(other_.write("apart/a root", "of its own")));
    results_.columns = catalogue_.parseList("System.ItemFolderPathDisplay,Stock.GroupID,System.Size");
    results_.detailsView = false;
    results_.viewOption = true;

    for (const char* change : {"", "grown since"}) {
        const LoadedResults loaded = saved();
        EXPECT_THAT(described(loaded.results.rows), ElementsAreArray(described(results_.rows)));
        EXPECT_EQ(loaded.missing, 0u);
        EXPECT_EQ(loaded.results.columns, results_.columns);
        EXPECT_FALSE(loaded.results.detailsView);
        EXPECT_TRUE(loaded.results.viewOption);
        tree_.write("in/" + unusualNames().front(), change);
    }
}

TEST_F(ResultsFileTest, WhatIsNoLongerThatKindOfThingIsMissing)
{
    for (const char* name : {"stays", "deleted", "gone/with/its folder", "now a folder", "now a pipe", "now a link"})
        tree_.write(name, name);
    gather(parsed(tree_.path()), Links::asThemselves);
    static_cast<void>(saved());
    for (const char* name : {"deleted", "gone", "now a folder", "now a pipe", "now a link"})
        tree_.remove(name);
    tree_.folder("now a folder");
    static_cast<void>(makeNeitherFileNorFolder(tree_.path("now a pipe")));
    static_cast<void>(makeSymbolicLink(tree_.path("now a link"), tree_.path("stays")));
    const auto loaded = load();
    ASSERT_TRUE(loaded);
    EXPECT_EQ(loaded->missing, 5u);
    ASSERT_EQ(loaded->results.rows.size(), 1u);
    EXPECT_EQ(loaded->results.rows[0].file->path(), tree_.path("stays"));
    EXPECT_EQ(loaded->results.rows[0].group, results_.rows.back().group);

    tree_.remove("stays");
    EXPECT_EQ(loadFault(), filledText(TextId::noRowLocated, {"6"}));
}

TEST_F(ResultsFileTest, DefinitionAndFiguresAreKeptAsFarAsTheyFit)
{
    addRow(parsed(tree_.write("file", "")));
    EXPECT_FALSE(saved().results.definition || saved().results.figures);

    results_.definition.emplace().setName(u"of another name");
    results_.definition->roots = "/home/\xFF\n";
    results_.figures = ScanFigures{1, 2, 3, 4, 5, 6, UINT64_MAX, 8, 0.1, 1e300, 3.5, 0, true, {"/a\xFF", "", "/b"}};
    StoredResults loaded = saved().results;
    ASSERT_TRUE(loaded.definition);
    EXPECT_EQ(loaded.definition->name(), u"binLastScan");
    EXPECT_EQ(loaded.definition->roots, results_.definition->roots);
    EXPECT_EQ(loaded.figures, results_.figures);

    results_.figures->roots.front().assign(largestNodeBlob, 'r');
    loaded = saved().results;
    EXPECT_TRUE(loaded.definition);
    EXPECT_FALSE(loaded.figures);

    results_.definition->note.assign(largestNodeBlob, 'n');
    loaded = saved().results;
    EXPECT_FALSE(loaded.definition || loaded.figures);
    EXPECT_EQ(loaded.rows.size(), 1u);
}

TEST_F(ResultsFileTest, DamagedFiguresAreNotTaken)
{
    const StoredNode sound = storedNode(ScanFigures());
    for (std::size_t at = 0; at < sound.fields.size(); ++at) {
        for (const std::size_t length : {9, 8}) {  // too long; for seconds, no number
            StoredNode damaged = sound;
            damaged.fields[at].bytes.assign(length, std::byte{0xFF});
            EXPECT_EQ(scanFiguresOf(damaged).ok(), length == 8 && (at < 8 || at == 14)) << at;
        }
    }
}

TEST_F(ResultsFileTest, ASaveThatFailsLeavesTheOldFileOrTheNewOne)
{
    addRow(parsed(tree_.write("old", "")));
    FaultyOutput faulty(platform_->output());
    for (const auto fault : {FaultyOutput::Fault::once, FaultyOutput::Fault::killed}) {
        for (int operation = 1, failed = 1; failed != 0; ++operation) {
            for (unsigned attempt = 1; attempt <= 2; ++attempt)  // what a killed save leaves behind
                std::filesystem::remove(temporaryBeside(file_, attempt));
            results_.rows.resize(1);
            const auto before = saveResults(file_, results_, platform_->output());
            ASSERT_TRUE(before) << operation << ": " << before.error().detail;
            addRow(results_.rows.front().file);
            faulty.fail(fault, operation);
            const auto written = saveResults(file_, results_, faulty);
            failed = faulty.failed();
            EXPECT_EQ(written.ok(), failed == 0) << operation;
            const std::size_t rows = load().value().results.rows.size();
            EXPECT_TRUE(rows == 2 || (rows == 1 && failed != 0)) << operation << ": " << rows;
            EXPECT_TRUE(failed != 0 || operation > 6) << operation;
        }
    }
    EXPECT_FALSE(saveResults(other_.path("no folder/saved.ikvs"), results_, platform_->output()));
}

TEST_F(ResultsFileTest, ACancelledSaveLeavesTheFileAloneAndALoadCountsItsRows)
{
    addRow(parsed(tree_.write("one", "")));
    addRow(parsed(tree_.write("gone", "")));
    static_cast<void>(saved());
    results_.rows.resize(1);
    cancel_.cancel();
    EXPECT_EQ(saveResults(file_, results_, platform_->output(), &cancel_).error().kind, ErrorKind::cancelled);
    EXPECT_EQ(load().error().kind, ErrorKind::cancelled);
    cancel_.reset();
    std::filesystem::remove(tree_.path("gone"));
    WorkCount count;
    const auto loaded = loadResults(file_, shell_, catalogue_, cancel_, AllMissing::fails, &count);
    EXPECT_EQ(loaded.value().missing, 1u) << "of the first save";
    EXPECT_EQ(count.total, 2u);
    EXPECT_EQ(count.done, 2u);
}

TEST_F(ResultsFileTest, NoRowsOrMoreThanTheBlockHoldsMakeNoFile)
{
    EXPECT_EQ(saveResults(file_, results_, platform_->output()).value(), 0u);
    const auto file = parsed(tree_.write(std::string(200, 'n') + "/" + std::string(200, 'n') + "/x", ""));
    results_.rows.assign(largestItemBlock / 400, {file, 1, false});
    addRow(parsed(tree_.write("elsewhere", "")));
    const auto written = saveResults(file_, results_, platform_->output());
    ASSERT_FALSE(written);
    EXPECT_EQ(written.error().kind, ErrorKind::notSupported);
    EXPECT_THAT(written.error().detail, HasSubstr(std::to_string(results_.rows.size())));
    EXPECT_THAT(written.error().detail, HasSubstr("67108863"));
    EXPECT_FALSE(std::filesystem::exists(file_));
}

TEST_F(ResultsFileTest, OnlyARegularFileWithKnownColumnsIsLoaded)
{
    addRow(parsed(tree_.write("file", "")));
    results_.columns = catalogue_.parseList("System.Size");
    static_cast<void>(saved());
    std::string bytes = other_.read("saved.ikvs");
    bytes[8] = 'X';
    other_.write("saved.ikvs", bytes);
    EXPECT_THAT(loadFault(), HasSubstr("Xystem.Size"));
    results_.rows.front().group = 0;
    EXPECT_FALSE(saveResults(file_, results_, platform_->output()));

    std::filesystem::remove(file_);
    EXPECT_EQ(load().error().kind, ErrorKind::notFound);
    const bool made = makeNeitherFileNorFolder(file_);
    EXPECT_EQ(load().error().kind, made ? ErrorKind::wrongType : ErrorKind::notFound);
}

}  // namespace
}  // namespace kelvane::testing
