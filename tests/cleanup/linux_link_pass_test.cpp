// Links on volumes and with writers as Linux has them.
#include <cerrno>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "cleanup/pass_world.h"
#include "support/faulty_held_files.h"

namespace kelvane {
namespace {

namespace fs = std::filesystem;
using testing::PassWorld;

// A folder on another file system than the tree's.
struct SharedMemoryFolder {
    SharedMemoryFolder()
    {
        std::string name = "/dev/shm/kelvane-test-XXXXXX";
        path = ::mkdtemp(name.data()) != nullptr ? name : "";
    }
    ~SharedMemoryFolder() { fs::remove_all(path); }
    fs::path path;
};

// The real file system, but for which volumes are built in.
class DriveKinds final : public FileSystem {
public:
    explicit DriveKinds(FileSystem& real) : real_(real) {}
    Status enumerate(const fs::path& folder, Links links, const EntrySink& sink) override
    {
        return real_.enumerate(folder, links, sink);
    }
    Result<FileDetails> details(const fs::path& path, Links links) override { return real_.details(path, links); }
    Result<std::unique_ptr<ContentReader>> openForReading(const fs::path& path, ReadPattern pattern,
                                                          Links links) override
    {
        return real_.openForReading(path, pattern, links);
    }
    Result<std::vector<std::string>> streamNames(const fs::path& path) override { return real_.streamNames(path); }
    Result<std::vector<std::byte>> readStream(const fs::path& path, const std::string& name, std::size_t limit) override
    {
        return real_.readStream(path, name, limit);
    }
    Result<VolumeFacts> volumeFacts(const fs::path& path) override
    {
        VolumeFacts facts;
        facts.fixed = !path.native().starts_with("/dev/shm") || keptIsFixed;
        ++asked;
        return facts;
    }
    Result<std::u16string> ownerName(std::uint32_t ownerId) override { return real_.ownerName(ownerId); }

    bool keptIsFixed = false;
    int asked = 0;

private:
    FileSystem& real_;
};

TEST(LinkPass, AsksOnceBeforeItLinksToAnExternalDrive)
{
    const struct {
        ExternalLink answer;
        bool keptIsFixed;
        const char* told;
        std::size_t asked;
        std::uint64_t errors;
    } rows[] = {
        {ExternalLink::yes, false, "[kept] b:done symbolic>kept c:done symbolic>kept ", 1, 0},
        {ExternalLink::no, false, "[kept] b:declined c:declined ", 1, 2},
        {ExternalLink::cancel, false, "[kept] b:notReached c:notReached ", 1, 0},
        {ExternalLink::no, true, "[kept] b:done symbolic>kept c:done symbolic>kept ", 0, 0},
    };
    for (const auto& row : rows) {
        PassWorld world;
        const SharedMemoryFolder other;
        world.tree.symlink("external", other.path);
        if (other.path.empty() || !fs::exists(world.tree.path("external")))
            GTEST_SKIP() << "no second file system here";
        const fs::path kept = other.path / "kept";
        world.tree.write("kept", "same");
        fs::copy_file(world.tree.path("kept"), kept);
        FileInfo info = world.files->details(kept, Links::asThemselves).value();
        world.model.add(ShellItem::make(nullptr, kept.native(), info, ShellItem::Place::fileSystem), 1, false);
        world.ids["kept"] = world.model.order().back();
        for (const char* name : {"b", "c"}) {
            world.write(name);
            world.link(name, "kept", LinkKind::automatic).ways = link_way::hard | link_way::symbolic;
        }
        if (world.model.item(world.ids["b"]).file.item().info().identity.volume == info.identity.volume)
            GTEST_SKIP() << "no second file system here";
        DriveKinds drives(*world.files);
        drives.keptIsFixed = row.keptIsFixed;
        world.files = &drives;
        world.questions.external = row.answer;
        world.linkAll();
        EXPECT_EQ(world.told, row.told);
        ASSERT_EQ(world.questions.asked.size(), row.asked);
        if (row.asked > 0) {
            EXPECT_TRUE(world.questions.asked[0].starts_with(kept.native() + "\n\nThe link target is on an external"));
        }
        EXPECT_EQ(world.outcome.errors, row.errors);
        EXPECT_LE(drives.asked, 2) << "each volume is asked about once";
    }
}

struct OpenForWriting {
    explicit OpenForWriting(const fs::path& file) : handle(::open(file.c_str(), O_WRONLY | O_CLOEXEC)) {}
    ~OpenForWriting() { ::close(handle); }
    int handle;
};

TEST(LinkPass, LeavesAFileAloneThatSomebodyWritesTo)
{
    PassWorld world;
    for (const char* name : {"a", "b"})
        world.write(name);
    world.link("b", "a");
    {
        const OpenForWriting writer(world.tree.path("b"));
        world.linkAll();
        EXPECT_EQ(world.told, "[a] b:failed beingWritten ");
    }
    // Opened in the moment before its name goes to the link.
    for (const char* moment : {"exchange", "replace"}) {
        std::optional<OpenForWriting> writer;
        for (int at = 1; !writer; ++at) {
            PassWorld late;
            late.write("a");
            late.write("b");
            late.link("b", "a");
            testing::FaultPlan plan;
            plan.canExchange = moment == std::string_view("exchange");
            testing::FaultyHeldFiles watched(*late.held, plan);
            late.held = &watched;
            plan.fail(testing::Fault::witnessed, at);
            plan.onFault([&] {
                if (plan.struck() == moment)
                    writer.emplace(late.tree.path("b"));
            });
            late.linkAll();
            ASSERT_TRUE(plan.failed()) << moment << " never came";
            EXPECT_EQ(late.told, writer ? "[a] b:failed beingWritten " : "[a] b:done hard>a ");
            EXPECT_EQ(late.left(), "a,b,trash");
        }
    }
}

// A batch that runs out of handles goes with those items that it has, and the others come in the next one.
TEST(LinkPass, RunsWithFewHandles)
{
    int shortened = 0;
    for (int operation = 1; operation < 60; ++operation) {
        PassWorld world;
        world.write("a");
        for (const std::string name : {"f0", "f1", "f2", "f3", "f4", "f5"}) {
            world.write(name);
            world.link(name, "a");
        }
        testing::FaultPlan plan;
        testing::FaultyHeldFiles files(*world.held, plan);
        world.held = &files;
        plan.fail(testing::Fault::once, operation, {ErrorKind::tooManyOpen, EMFILE, "too many"});
        world.linkAll();
        const bool isLater = world.told.find("f0:done") != std::string::npos;
        if (plan.struck() != "open" || !isLater)
            continue;
        ++shortened;
        EXPECT_EQ(world.outcome.succeeded, 6u) << operation << ' ' << world.told;
    }
    EXPECT_GE(shortened, 5);
}

}  // namespace
}  // namespace kelvane
