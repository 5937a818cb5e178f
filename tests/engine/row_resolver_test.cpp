#include "engine/row_resolver.h"

#include <gtest/gtest.h>
#include <map>

#include "support/paths.h"
#include "support/scan_world.h"

namespace kelvane {
namespace {

using testing::native;
using testing::posix;

// Archives whose entries have contents of their path's length.
class CountedArchives final : public ArchiveFolders {
public:
    bool looksLikeArchive(NativeView fileName) const override { return fileName.ends_with(native(".zip")); }
    Status list(const std::filesystem::path& archive, const std::function<bool(const ArchiveEntry&)>& sink) override
    {
        ++lists;
        std::uint64_t ordinal = 0;
        for (const std::string& path : entries[posix(archive)])
            sink({path, FileKind::regular, FileSize{path.size()}, FileTime{7}, ordinal++});
        return {};
    }
    Result<std::unique_ptr<ContentReader>> open(const std::filesystem::path&, std::uint64_t) override
    {
        return Error{};
    }

    std::map<std::string, std::vector<std::string>> entries;
    int lists = 0;
};

class RowResolverTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (!testing::pathsArePosix)
            GTEST_SKIP() << "these rules are for systems whose paths are POSIX paths";
    }
    Ref<const ShellItem> parsed(const std::string& path) { return *world.shell->parse(native(path)); }
    void addRows(const std::vector<std::string>& paths)
    {
        for (const std::string& path : paths)
            rows.push_back({parsed(path), 1, false});
    }
    ItemBlock block() const { return *ItemBlock::check(*buildItemBlock(rows)); }
    std::vector<ResolvedRow> resolved(const ItemBlock& items) { return *resolveRows(items, *world.shell, cancel); }

    static std::string pathOf(const ResolvedRow& row) { return row.file ? posix(row.file->fullName()) : "missing"; }

    CountedArchives archives;
    testing::ScanWorld world{&archives};
    CancelFlag cancel;
    std::vector<StoredRow> rows;
};

// More archives than are kept listed, their rows in turns.
TEST_F(RowResolverTest, EntriesAreFoundAgainAndEveryArchiveIsListedOnce)
{
    constexpr int archiveCount = 20;
    for (int number = 0; number < archiveCount; ++number) {
        const std::string archive = "/data/" + std::to_string(number) + ".zip";
        world.files.addFile(archive, "zip");
        archives.entries[archive] = {"top", "in/a",
                                     "in/deeper/\xFF"
                                     "b",
                                     "in"};
    }
    for (const std::string entry : {"top", "in/a",
                                    "in/deeper/\xFF"
                                    "b"})
        for (int number = 0; number < archiveCount; ++number)
            addRows({"/data/" + std::to_string(number) + ".zip/" + entry});
    addRows({"/data/0.zip"});
    const ItemBlock items = block();
    // The archives are packed anew, in another order and without some.
    for (auto& [archive, entries] : archives.entries)
        entries = {"in/new", "in/a", "top"};
    for (int number = 0; number < archiveCount; ++number)
        world.files.setContents("/data/" + std::to_string(number) + ".zip", "changed");
    archives.lists = 0;

    const auto found = resolved(items);
    EXPECT_EQ(archives.lists, archiveCount);
    for (std::size_t row = 0; row < rows.size(); ++row) {
        const bool gone = row >= 2 * archiveCount && row < 3 * archiveCount;
        ASSERT_EQ(pathOf(found[row]), gone ? "missing" : posix(rows[row].file->fullName()));
        if (gone)
            continue;
        const FileInfo& info = found[row].file->info();
        EXPECT_EQ(info.size, rows[row].file->info().size);
        EXPECT_EQ(found[row].file->place(), rows[row].file->place());
        if (row < 2 * archiveCount) {
            EXPECT_EQ(info.identity.index, row < archiveCount ? 2u : 1u);
            EXPECT_EQ(found[row].file->enclosingArchive()->info().size, FileSize{3});
        }
    }
}

// A root may lead through a link and up again; what it was called is the only way to its files.
TEST_F(RowResolverTest, ADetourOnTheWayToARootIsKept)
{
    world.files.addFile("/real/file", "x");
    world.files.addFile("/apart/file", "x");
    world.files.addSymbolicLink("/way", "/real/sub");
    world.files.addFolder("/real/sub");
    rows.push_back({parsed("/apart/file"), 1, false});
    for (const std::string& root : {std::string("/way/.."), std::string("/apart")}) {
        const auto status = world.shell->enumerate(parsed(root), {}, [&](const Ref<ShellItem>& child) {
            if (!child->isFolder())
                rows.push_back({child, 1, true});
            return true;
        });
        ASSERT_TRUE(status);
        const auto found = resolved(block());
        for (std::size_t row = 0; row < rows.size(); ++row)
            EXPECT_EQ(pathOf(found[row]), posix(rows[row].file->fullName()));
        EXPECT_TRUE(found.back().approximate);
    }
    EXPECT_EQ(posix(rows[1].file->fullName()), "/way/../file");
}

// Thousands of folders that are nowhere cost one look-up and no depth of calls.
TEST_F(RowResolverTest, APathLongerThanOneItemIsPutTogetherAgain)
{
    Ref<const ShellItem> item = ShellItem::make(nullptr, native("/"), {FileKind::folder, 0, {}, {}, {}}, {});
    for (int depth = 0; depth < 3000; ++depth)
        item = ShellItem::make(item, native(std::string(100, 'd')), {FileKind::folder, 0, {}, {}, {}}, {});
    rows.push_back({ShellItem::make(item, native("file"), {FileKind::regular, 0, {5}, {}, {}}, {}), 1, true});
    world.files.addFile("/other", "x");
    addRows({"/other"});
    const ItemBlock items = block();
    EXPECT_EQ("/" + items.row(0).path, posix(rows[0].file->fullName()));
    EXPECT_EQ(items.row(0).item.info.size, FileSize{5});
    EXPECT_TRUE(items.row(0).approximate());
    const auto found = resolved(items);
    EXPECT_FALSE(found[0].file);
    EXPECT_TRUE(found[1].file);

    item = ShellItem::make(nullptr, native("/" + std::string(70'000, 'n')), {FileKind::regular, 0, {}, {}, {}}, {});
    rows.push_back({item, 1, false});
    EXPECT_EQ(buildItemBlock(rows).error().kind, ErrorKind::notSupported);
}

}  // namespace
}  // namespace kelvane
