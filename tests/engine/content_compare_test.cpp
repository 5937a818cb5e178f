#include "engine/content_compare.h"

#include <gtest/gtest.h>

#include <atomic>

#include "support/paths.h"
#include "support/scan_world.h"

namespace kelvane {
namespace {

constexpr std::size_t kib = 1024;

class ContentCompare : public ::testing::Test {
protected:
    ContentCompare() { world.options.hugeFile = {1024 * kib}; }

    Ref<ShellItem> add(const std::string& path, std::string contents)
    {
        world.files.addFile(path, std::move(contents));
        return *world.shell->parse(testing::native(path));
    }
    ContentResult compare(const Ref<ShellItem>& a, const Ref<ShellItem>& b) { return comparer.compare(*a, *b); }

    // The operation with this number on file b fails.
    void failOnB(const std::string& operation, int number)
    {
        seen = 0;
        world.files.setHook([=, this](const std::string& done, const std::string& path) {
            const bool hit = done == operation && path == "/b" && ++seen == number;
            return hit ? std::optional(Error{ErrorKind::io, 5, "injected"}) : std::nullopt;
        });
    }

    testing::ScanWorld world;
    int seen = 0;
    CancelFlag cancel;
    ContentComparer comparer{*world.shell, world.options, cancel};
};

TEST_F(ContentCompare, ReadsToTheFirstDifferenceAndNoFurther)
{
    const std::string text(200'000, 'x');
    std::string late = text, early = text;
    late.back() = 'y';
    early.front() = 'y';
    const auto a = add("/a", text);
    EXPECT_EQ(compare(a, add("/same", text)), ContentResult::equal);
    EXPECT_EQ(comparer.bytesRead(), 400'000u);
    EXPECT_EQ(compare(a, add("/late", late)), ContentResult::different);
    EXPECT_EQ(comparer.bytesRead(), 800'000u);
    EXPECT_EQ(compare(a, add("/early", early)), ContentResult::different);
    EXPECT_EQ(comparer.bytesRead(), 800'000u + 2 * 64 * kib);
    EXPECT_EQ(compare(a, add("/longer", text + "x")), ContentResult::different);
}

TEST_F(ContentCompare, HugeFilesAreComparedOverHeadAndSamples)
{
    const std::string whole(1024 * kib + 102 * kib, 'x');  // not above eleven tenths of the limit
    std::string differs = whole;
    differs[1100 * kib] = 'y';
    EXPECT_EQ(compare(add("/w", whole), add("/d", differs)), ContentResult::different);
    EXPECT_FALSE(comparer.sampled());

    const std::string huge(3000 * kib, 'x');
    std::string between = huge, inSample = huge, inHead = huge;
    between[2000 * kib] = 'y';
    inSample[3000 * kib - 1] = 'y';
    inHead[1024 * kib - 1] = 'y';
    const auto a = add("/a", huge);
    EXPECT_EQ(compare(a, add("/between", between)), ContentResult::equal);
    EXPECT_TRUE(comparer.sampled());
    EXPECT_EQ(compare(a, add("/sample", inSample)), ContentResult::different);
    EXPECT_EQ(compare(a, add("/head", inHead)), ContentResult::different);
}

TEST_F(ContentCompare, FaultsHaveCodesOfTheirOwn)
{
    const auto a = add("/a", std::string(3000 * kib, 'x')), b = add("/b", std::string(3000 * kib, 'x'));
    failOnB("open", 1);
    EXPECT_EQ(compare(a, b), ContentResult::openFailed);
    failOnB("read", 1);
    EXPECT_EQ(compare(a, b), ContentResult::headReadFailed);
    failOnB("read", 16);
    EXPECT_EQ(compare(a, b), ContentResult::headReadFailed);
    failOnB("read", 17);
    EXPECT_EQ(compare(a, b), ContentResult::sampleReadFailed);
    failOnB("skip", 1);
    EXPECT_EQ(compare(a, b), ContentResult::sampleSeekFailed);
    failOnB("skip", 2);
    EXPECT_EQ(compare(a, b), ContentResult::equal);
}

TEST_F(ContentCompare, FilesThatChangeWhileReadDiffer)
{
    const auto a = add("/a", std::string(100'000, 'x')), b = add("/b", std::string(100'000, 'x'));
    world.files.setContents("/b", std::string(100'004, 'x'));  // a longer file now
    EXPECT_EQ(compare(a, b), ContentResult::different);
    world.files.setContents("/b", std::string(50'000, 'x'));  // ends before its time
    EXPECT_EQ(compare(a, b), ContentResult::different);
    world.files.setContents("/b", std::string(100'000, 'x'));  // the same again, but written to
    EXPECT_EQ(compare(a, b), ContentResult::different);
}

TEST_F(ContentCompare, OfflineFilesAndLargeEntriesOfArchivesAreNotOpened)
{
    const auto a = add("/a", "text");
    FileInfo info = a->info();
    info.attributes = attribute::offline;
    const auto offline = ShellItem::make(nullptr, testing::native("/a"), info, ShellItem::Place::fileSystem);
    EXPECT_EQ(compare(offline, a), ContentResult::openFailed);
    info = {};
    info.size = {world.options.largestVirtualStream.bytes + 1};
    const auto entry = ShellItem::make(*world.shell->parse(testing::native("/")), testing::native("entry"), info,
                                       ShellItem::Place::insideArchive);
    const auto opened = openForComparing(*world.shell, *entry, world.options);
    ASSERT_FALSE(opened.ok());
    EXPECT_EQ(opened.error().kind, ErrorKind::notSupported);
}

TEST_F(ContentCompare, CancelEndsBetweenChunks)
{
    const auto a = add("/a", std::string(3000 * kib, 'x')), b = add("/b", std::string(3000 * kib, 'x'));
    int reads = 0;
    world.files.setHook([&](const std::string& operation, const std::string&) -> std::optional<Error> {
        if (operation == "read" && ++reads == 5)
            cancel.cancel();
        return std::nullopt;
    });
    EXPECT_EQ(compare(a, b), ContentResult::cancelled);
    EXPECT_EQ(reads, 6);
}

}  // namespace
}  // namespace kelvane
