#include "engine/folder_prefetch.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <new>
#include <thread>

#include "support/memory_file_system.h"
#include "support/paths.h"

namespace kelvane {
namespace {

// Every folder has the same number of children, made up when it is listed.
class EndlessShell final : public ShellNamespace {
public:
    Status enumerate(const Ref<const ShellItem>& folder, const ListingOptions&, const ItemSink& sink) override
    {
        ++begun;
        if (failing)
            throw std::bad_alloc();
        for (std::size_t i = 0; i < children; ++i) {
            ++given;
            if (!sink(ShellItem::make(folder, testing::native(std::to_string(i)), {}, ShellItem::Place::fileSystem)))
                return {};
        }
        return Error{ErrorKind::io, 5, "at the end"};
    }
    Result<Ref<ShellItem>> parse(NativeView name) override
    {
        return ShellItem::make(nullptr, name, {}, ShellItem::Place::fileSystem);
    }
    Result<std::unique_ptr<ContentReader>> open(const ShellItem&, ReadPattern) override { return Error{}; }
    Result<FileDetails> details(const ShellItem&) override { return Error{}; }
    FileSystem& files() override { return files_; }
    std::uint32_t typeCode(const ShellItem&) const override { return type_code::fileSystem; }
    std::u16string displayName(const ShellItem&) const override { return {}; }
    std::u16string itemType(const ShellItem&) const override { return {}; }
    std::u16string typeText(const ShellItem&) const override { return {}; }

    std::size_t children = 5'000;
    bool failing = false;
    std::atomic<std::size_t> given = 0;
    std::atomic<int> begun = 0;

private:
    testing::MemoryFileSystem files_;
};

class Prefetching : public ::testing::Test {
protected:
    Ref<ShellItem> folder(const std::string& name) { return shell.parse(testing::native(name)).value(); }
    // Until the number stands still, or for ten seconds.
    std::size_t settledCount()
    {
        std::size_t last = 0;
        for (int quiet = 0, rounds = 0; quiet < 10 && rounds < 500; ++rounds) {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            quiet = last == shell.given ? quiet + 1 : 0;
            last = shell.given;
        }
        return last;
    }

    EndlessShell shell;
    CancelFlag cancel;
};

TEST_F(Prefetching, WorkersPauseWhenEnoughIsWaiting)
{
    constexpr unsigned workers = 3;
    FolderPrefetch prefetch(shell, cancel, workers);
    for (int i = 0; i < 40; ++i)
        prefetch.push(folder(std::to_string(i)), {});
    const std::size_t ahead = settledCount();
    EXPECT_GE(ahead, FolderPrefetch::mostWaiting - shell.children);
    EXPECT_LE(ahead, FolderPrefetch::mostWaiting + workers * 512);
    // The folders begun last wait half listed; the owner gets all of everything nevertheless, the top first.
    for (int i = 39; !prefetch.empty(); --i) {
        EXPECT_EQ(testing::posix(prefetch.top()->fullName()), std::to_string(i));
        std::size_t next = 0;
        const auto listed = prefetch.listTop(
            [&](const Ref<ShellItem>& item) { ASSERT_EQ(testing::posix(item->name()), std::to_string(next++)); });
        EXPECT_EQ(next, shell.children);
        EXPECT_EQ(listed.error().systemCode, 5);
    }
    EXPECT_EQ(shell.given, 40 * shell.children);  // nothing was listed twice
}

TEST_F(Prefetching, CancelAndTheEndComeQuickly)
{
    shell.children = 50'000'000;
    const auto start = std::chrono::steady_clock::now();
    {
        FolderPrefetch prefetch(shell, cancel, 2);
        for (int i = 0; i < 4; ++i)
            prefetch.push(folder("x"), {});
        while (shell.begun < 2)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        std::size_t taken = 0;
        const auto listed = prefetch.listTop([&](const Ref<ShellItem>&) {
            if (++taken == 10'000)
                cancel.cancel();
        });
        EXPECT_EQ(taken, 10'000u);
        EXPECT_EQ(listed.error().kind, ErrorKind::cancelled);
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start,
              std::chrono::seconds(5));  // listing it all would take far longer
}

TEST_F(Prefetching, AWorkersExceptionReachesTheOwner)
{
    shell.failing = true;
    FolderPrefetch prefetch(shell, cancel, 1);
    prefetch.push(folder("x"), {});
    while (shell.begun == 0)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    EXPECT_THROW((void)prefetch.listTop([](auto&&) {}), std::bad_alloc);
}

}  // namespace
}  // namespace kelvane
