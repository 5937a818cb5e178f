// The promises of the file output on this system, and what replaceContents() makes of them.
#include "platform/file_output.h"

#include <atomic>
#include <thread>

#include "platform/platform.h"
#include "support/faulty_output.h"
#include "support/temp_tree.h"

namespace kelvane::testing {
namespace {

std::span<const std::byte> bytesOf(std::string_view text)
{
    return std::as_bytes(std::span(text));
}

class FileOutputTest : public ::testing::Test {
protected:
    TempTree tree_;
    std::unique_ptr<Platform> platform_ = makePlatform();
    FileOutput& output_ = platform_->output();

    [[nodiscard]] std::size_t entries() const
    {
        const std::filesystem::directory_iterator all(tree_.path());
        return static_cast<std::size_t>(std::distance(begin(all), end(all)));
    }
};

TEST_F(FileOutputTest, CreatesOnlyWhatIsNotThereAndAppends)
{
    const std::filesystem::path path = tree_.path("new");
    {
        Result<std::unique_ptr<OutputFile>> file = output_.create(path);
        ASSERT_TRUE(file);
        EXPECT_TRUE((*file)->write(bytesOf("one")));
        EXPECT_TRUE((*file)->flush());
        EXPECT_TRUE((*file)->close());
        EXPECT_FALSE((*file)->close());
    }
    const Result<std::unique_ptr<OutputFile>> again = output_.create(path);
    ASSERT_FALSE(again);
    EXPECT_EQ(again.error().kind, ErrorKind::exists);
    for (const char* name : {"new", "other"}) {
        Result<std::unique_ptr<OutputFile>> file = output_.append(tree_.path(name));
        ASSERT_TRUE(file);
        EXPECT_TRUE((*file)->write(bytesOf(" two")));
    }
    EXPECT_EQ(tree_.read("new"), "one two");
    EXPECT_EQ(tree_.read("other"), " two");
}

TEST_F(FileOutputTest, RemovesFilesAndMakesFolders)
{
    const std::filesystem::path folder = tree_.path("a") / "b" / "c";
    EXPECT_TRUE(output_.createFolders(folder));
    EXPECT_TRUE(output_.createFolders(folder));
    EXPECT_TRUE(std::filesystem::is_directory(folder));
    EXPECT_TRUE(output_.flushFolder(folder));
    EXPECT_FALSE(output_.remove(folder));

    const std::filesystem::path file = tree_.write("file", "x");
    EXPECT_FALSE(output_.createFolders(file));
    EXPECT_TRUE(output_.remove(file));
    const Status gone = output_.remove(file);
    ASSERT_FALSE(gone);
    EXPECT_EQ(gone.error().kind, ErrorKind::notFound);
}

TEST_F(FileOutputTest, LocksKeepOthersOutUntilTheyAreLetGo)
{
    const std::filesystem::path path = tree_.path("kelvane.ini");
    {
        const Result<std::unique_ptr<FileLock>> held = output_.lock(path, 0);
        ASSERT_TRUE(held);
        const Result<std::unique_ptr<FileLock>> second = output_.lock(path, 30);
        ASSERT_FALSE(second);
        EXPECT_EQ(second.error().kind, ErrorKind::tooManyOpen);
    }
    EXPECT_TRUE(output_.lock(path, 0));
    EXPECT_FALSE(output_.lock(tree_.path("absent") / "kelvane.ini", 0));
}

TEST_F(FileOutputTest, AtMostOneThreadHoldsALock)
{
    std::atomic<int> inside = 0;
    std::atomic<int> turns = 0;
    std::vector<std::jthread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int turn = 0; turn < 50; ++turn) {
                const Result<std::unique_ptr<FileLock>> held = output_.lock(tree_.path("x"), 20'000);
                ASSERT_TRUE(held);
                EXPECT_EQ(++inside, 1);
                ++turns;
                --inside;
            }
        });
    }
    threads.clear();
    EXPECT_EQ(turns, 200);
}

TEST_F(FileOutputTest, ReplacingPassesOverTakenTemporaryNames)
{
    const std::filesystem::path path = tree_.write("kelvane.ini", "old");
    tree_.write(temporaryBeside("kelvane.ini", 1).string(), "left behind");
    EXPECT_TRUE(replaceContents(output_, path, bytesOf("new")));
    EXPECT_EQ(tree_.read("kelvane.ini"), "new");
    EXPECT_EQ(tree_.read(temporaryBeside("kelvane.ini", 1).string()), "left behind");
    EXPECT_EQ(entries(), 2u);

    EXPECT_FALSE(replaceContents(output_, tree_.path("absent") / "file", bytesOf("new")));
    EXPECT_FALSE(replaceContents(output_, tree_.folder("folder"), bytesOf("new")));
    EXPECT_EQ(entries(), 3u);
}

TEST_F(FileOutputTest, AFailingOperationLeavesTheOldFileAndNothingElse)
{
    const std::filesystem::path path = tree_.write("kelvane.ini", "old");
    FaultyOutput faulty(output_);
    int operation = 0;
    do {
        faulty.fail(FaultyOutput::Fault::once, ++operation);
        const Status status = replaceContents(faulty, path, bytesOf("new"));
        EXPECT_EQ(status.ok(), !faulty.failed()) << operation;
        EXPECT_EQ(entries(), 1u) << operation;
        // Only the flush of the folder comes after the new file is in its place.
        if (!status && faulty.operations() != operation) {
            EXPECT_EQ(tree_.read("kelvane.ini"), "old") << operation;
        }
    } while (faulty.failed());
    EXPECT_GT(operation, 6);
    EXPECT_EQ(tree_.read("kelvane.ini"), "new");
}

TEST_F(FileOutputTest, AKilledOperationLeavesTheOldFileOrTheNewOne)
{
    FaultyOutput faulty(output_);
    int operation = 0;
    do {
        const std::filesystem::path path = tree_.write("kelvane.ini", "old");
        faulty.fail(FaultyOutput::Fault::killed, ++operation);
        const bool done = replaceContents(faulty, path, bytesOf("new")).ok();
        const std::string now = tree_.read("kelvane.ini");
        EXPECT_TRUE(now == "new" || (now == "old" && !done)) << operation << now;
    } while (faulty.failed());
}

}  // namespace
}  // namespace kelvane::testing
