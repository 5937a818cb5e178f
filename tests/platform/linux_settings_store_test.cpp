#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <sqlite3.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "platform/linux/adapters.h"
#include "platform/settings_store_contract.h"
#include "support/fakes.h"
#include "support/temp_tree.h"

namespace kelvane {
namespace {

using ::testing::AnyOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using testing::SettingsBackEnd;
using testing::SettingsStoreContract;
using testing::SettingsWorld;
using testing::TempTree;

constexpr auto done = SettingsCode::done;
constexpr auto denied = SettingsCode::accessDenied;

// A registry file of its own, and processes that use it.
class RegistryWorld final : public SettingsWorld {
public:
    std::unique_ptr<SettingsStore> open() override { return makeSqliteSettingsStore(file(), folding_); }

    [[nodiscard]] std::filesystem::path file() const { return tree_.path("config/kelvane/registry.db"); }
    [[nodiscard]] std::filesystem::path beside(const std::string& suffix) const { return file().string() + suffix; }
    [[nodiscard]] const TempTree& tree() const { return tree_; }
    void put(std::string_view contents) const { tree_.write("config/kelvane/registry.db", contents); }
    [[nodiscard]] std::string contents() const { return tree_.read("config/kelvane/registry.db"); }

    // By its own means, as another program would.
    void sql(const std::string& statements) const
    {
        sqlite3* database = nullptr;
        ASSERT_EQ(sqlite3_open(file().c_str(), &database), SQLITE_OK);
        EXPECT_EQ(sqlite3_exec(database, statements.c_str(), nullptr, nullptr, nullptr), SQLITE_OK);
        sqlite3_close(database);
    }

private:
    TempTree tree_;
    testing::SimpleFolding folding_;
};

INSTANTIATE_TEST_SUITE_P(Sqlite, SettingsStoreContract,
                         ::testing::Values(SettingsBackEnd{.name = "Sqlite", .make = std::make_unique<RegistryWorld>}));

// A child process that runs the work and leaves without cleaning up.
pid_t startChild(const std::function<int()>& work)
{
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(work());
    return child;
}

int statusOf(pid_t child)
{
    int status = 0;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    return status;
}

std::uint32_t numberIn(SettingsStore& store, std::u16string_view name)
{
    std::uint32_t number = 0xABAD1DEA;
    if (const auto section = store.open(u"general", SettingsAccess::reading))
        (void)section->readNumber(name, number);
    return number;
}

SettingsCode put(SettingsStore& store, std::u16string_view name, std::uint32_t number)
{
    const auto section = store.open(u"general", SettingsAccess::writing);
    return section ? section->writeNumber(name, number) : denied;
}

TEST(RegistryFile, IsMadeByTheFirstWriteAndIsPrivate)
{
    RegistryWorld world;
    const auto store = world.open();
    EXPECT_EQ(numberIn(*store, u"n"), 0xABAD1DEA);
    EXPECT_EQ(store->deleteSection(u"general"), done);
    EXPECT_TRUE(store->isWritable());
    EXPECT_FALSE(std::filesystem::exists(world.tree().path("config")));

    ASSERT_EQ(put(*store, u"n", 1), done);
    struct stat folder {
    }, file{};
    ASSERT_EQ(::stat(world.file().parent_path().c_str(), &folder), 0);
    ASSERT_EQ(::stat(world.file().c_str(), &file), 0);
    EXPECT_EQ(folder.st_mode & 07777, 0700u);
    EXPECT_EQ(file.st_mode & 07777, 0600u);
}

TEST(RegistryFile, ProcessesWriteAtTheSameTime)
{
    RegistryWorld world;
    constexpr std::uint32_t rounds = 20;
    const auto count = [&](std::u16string_view name) {
        const auto store = world.open();
        for (std::uint32_t round = 1; round <= rounds; ++round) {
            if (store->begin() != done || put(*store, name, round) != done || store->commit() != done)
                return 1;
        }
        return 0;
    };
    const pid_t children[] = {startChild([&] { return count(u"a"); }), startChild([&] { return count(u"b"); }),
                              startChild([&] { return count(u"c"); })};
    for (const pid_t child : children)
        EXPECT_EQ(statusOf(child), 0);
    const auto store = world.open();
    for (const char16_t* name : {u"a", u"b", u"c"})
        EXPECT_EQ(numberIn(*store, name), rounds);
    EXPECT_EQ(store->complaint(), "");
}

TEST(RegistryFile, AProcessThatIsKilledLeavesOldOrNew)
{
    RegistryWorld world;
    // More than the library keeps in memory, so that the file itself is changed before the end.
    const std::vector<std::byte> big(3'000'000, std::byte{7});
    const auto saveForever = [&] {
        const auto store = world.open();
        for (std::uint32_t round = 1;; ++round) {
            const auto section = store->begin() == done ? store->open(u"general", SettingsAccess::writing) : nullptr;
            if (!section || section->writeNumber(u"first", round) != done || section->writeBlock(u"big", big) != done ||
                section->writeNumber(u"last", round) != done || store->commit() != done)
                return 1;
        }
    };
    for (const int milliseconds : {5, 20, 35, 50, 80, 120, 160, 200}) {
        const pid_t child = startChild(saveForever);
        std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
        ::kill(child, SIGKILL);
        EXPECT_TRUE(WIFSIGNALED(statusOf(child)));
        const auto store = world.open();
        EXPECT_EQ(numberIn(*store, u"first"), numberIn(*store, u"last")) << milliseconds;
        EXPECT_EQ(store->complaint(), "");
    }
}

TEST(RegistryFile, AnUnfinishedTransactionIsPlayedBack)
{
    RegistryWorld world;
    ASSERT_EQ(put(*world.open(), u"n", 1), done);
    const pid_t child = startChild([&]() -> int {
        const auto store = world.open();
        const std::vector<std::byte> big(10'000'000, std::byte{7});
        const bool ok = store->begin() == done && put(*store, u"n", 2) == done &&
                        store->open(u"general", SettingsAccess::writing)->writeBlock(u"big", big) == done;
        ::_exit(ok ? 0 : 1);  // in the middle of it
    });
    ASSERT_EQ(statusOf(child), 0);
    ASSERT_TRUE(std::filesystem::exists(world.beside("-journal")));
    EXPECT_EQ(numberIn(*world.open(), u"n"), 1u);
}

TEST(RegistryFile, ThreadsShareAStore)
{
    RegistryWorld world;
    const auto store = world.open();
    const auto work = [&](std::u16string name) {
        for (std::uint32_t round = 1; round <= 10; ++round)
            EXPECT_EQ(put(*store, name, round), done);
    };
    std::thread other(work, u"a");
    work(u"b");
    other.join();
    EXPECT_EQ(numberIn(*store, u"a") + numberIn(*store, u"b"), 20u);
}

// Each turns a sound file into one that must not be trusted.
const std::pair<const char*, std::function<void(const RegistryWorld&)>> damages[] = {
    {"text", [](const RegistryWorld& world) { world.put("[general]\nn=1\n"); }},
    {"cut short", [](const RegistryWorld& world) { world.put(world.contents().substr(0, 5000)); }},
    {"overwritten inside",
     [](const RegistryWorld& world) {
         std::string contents = world.contents();
         std::fill(contents.begin() + 4096, contents.end(), '\x5A');
         world.put(contents);
     }},
    {"another program's", [](const RegistryWorld& world) { world.sql("PRAGMA application_id=7"); }},
    {"without a table", [](const RegistryWorld& world) { world.sql("DROP TABLE value"); }},
    {"with a program inside",
     [](const RegistryWorld& world) {
         world.sql("CREATE TRIGGER t AFTER INSERT ON value BEGIN DELETE FROM value; END");
     }},
    {"a pipe",
     [](const RegistryWorld& world) {
         std::filesystem::remove(world.file());
         ASSERT_EQ(::mkfifo(world.file().c_str(), 0600), 0);
     }},
    {"a folder",
     [](const RegistryWorld& world) {
         std::filesystem::remove(world.file());
         std::filesystem::create_directory(world.file());
     }},
};

TEST(RegistryFile, ADamagedOneReadsAsEmptyAndIsKeptAside)
{
    for (const auto& [name, damage] : damages) {
        SCOPED_TRACE(name);
        RegistryWorld world;
        ASSERT_EQ(put(*world.open(), u"n", 1), done);
        damage(world);
        const auto status = std::filesystem::status(world.file());
        const std::string before = is_regular_file(status) ? world.contents() : "";
        world.tree().write("config/kelvane/registry.db.damaged", "from last time");

        const auto store = world.open();
        EXPECT_EQ(numberIn(*store, u"n"), 0xABAD1DEA);
        EXPECT_THAT(store->complaint(), HasSubstr(world.file().string()));
        EXPECT_FALSE(std::filesystem::exists(world.beside(".damaged-2")));  // reading moves nothing
        EXPECT_TRUE(store->isWritable());

        ASSERT_EQ(put(*store, u"n", 2), done);
        EXPECT_THAT(store->complaint(), HasSubstr("registry.db.damaged-2"));
        EXPECT_EQ(std::filesystem::status(world.beside(".damaged-2")).type(), status.type());
        if (is_regular_file(status)) {
            EXPECT_EQ(world.tree().read("config/kelvane/registry.db.damaged-2"), before);
        }
        EXPECT_EQ(world.tree().read("config/kelvane/registry.db.damaged"), "from last time");
        EXPECT_EQ(numberIn(*world.open(), u"n"), 2u);
    }
}

TEST(RegistryFile, OfTwoThatSawTheDamageOneReplacesTheFile)
{
    RegistryWorld world;
    world.put("rubbish");
    const auto one = world.open(), two = world.open();
    EXPECT_EQ(numberIn(*one, u"n"), numberIn(*two, u"n"));
    ASSERT_EQ(put(*one, u"a", 1), done);
    ASSERT_EQ(put(*two, u"b", 2), done);
    EXPECT_EQ(numberIn(*two, u"a"), 1u);
    EXPECT_EQ(numberIn(*one, u"b"), 2u);
    EXPECT_FALSE(std::filesystem::exists(world.beside(".damaged-2")));
}

TEST(RegistryFile, OneOfALaterVersionIsReadButNotChanged)
{
    RegistryWorld world;
    ASSERT_EQ(put(*world.open(), u"n", 1), done);
    world.sql("PRAGMA user_version=2");
    const auto store = world.open();
    EXPECT_EQ(numberIn(*store, u"n"), 1u);
    EXPECT_FALSE(store->isWritable());
    EXPECT_EQ(store->begin(), denied);
    EXPECT_EQ(put(*store, u"n", 2), denied);
    EXPECT_THAT(store->complaint(), HasSubstr("later version"));
    EXPECT_EQ(numberIn(*store, u"n"), 1u);

    world.sql("DROP TABLE value");
    EXPECT_EQ(numberIn(*store, u"n"), 0xABAD1DEA);
}

// Nobody of the system, whom permissions bind even where the tests run as root.
int asNobody(const std::function<int()>& work)
{
    constexpr uid_t nobody = 65534;
    return statusOf(startChild([&] {
        if (::geteuid() == 0 && ::setresuid(nobody, nobody, nobody) != 0)
            return 99;
        return work();
    }));
}

TEST(RegistryFile, PermissionsBindIt)
{
    RegistryWorld world;
    ASSERT_EQ(put(*world.open(), u"n", 1), done);
    for (const auto& folder : {world.tree().path(), world.tree().path("config"), world.file().parent_path()})
        ::chmod(folder.c_str(), 0555);
    ::chmod(world.file().c_str(), 0444);
    const int readable = asNobody([&] {
        const auto store = world.open();
        const bool ok = numberIn(*store, u"n") == 1 && !store->isWritable() && put(*store, u"n", 2) == denied &&
                        store->begin() == denied && store->complaint().empty();
        return ok ? 0 : 1;
    });
    ::chmod(world.file().c_str(), 0);
    const int unreadable = asNobody([&] {
        const auto store = world.open();
        const bool ok = numberIn(*store, u"n") == 0xABAD1DEA && !store->isWritable() &&
                        put(*store, u"n", 2) == denied &&
                        store->complaint().find("cannot be read") != std::string::npos;
        return ok ? 0 : 1;
    });
    for (const auto& folder : {world.tree().path(), world.tree().path("config"), world.file().parent_path()})
        ::chmod(folder.c_str(), 0700);
    EXPECT_EQ(readable, 0);
    EXPECT_EQ(unreadable, 0);
    EXPECT_TRUE(std::filesystem::exists(world.file()));
}

TEST(RegistryFile, AFullDiskFailsTheTransactionAndKeepsTheOldValues)
{
    RegistryWorld world;
    ASSERT_EQ(put(*world.open(), u"n", 1), done);
    const int status = statusOf(startChild([&] {
        const auto store = world.open();
        const rlimit small{100'000, 100'000};
        ::signal(SIGXFSZ, SIG_IGN);
        if (::setrlimit(RLIMIT_FSIZE, &small) != 0 || store->begin() != done || put(*store, u"n", 2) != done)
            return 99;
        const std::vector<std::byte> big(10'000'000, std::byte{7});
        const auto section = store->open(u"general", SettingsAccess::writing);
        const SettingsCode written = section->writeBlock(u"big", big);
        // What the library gave up must not be continued value by value.
        const SettingsCode later = section->writeNumber(u"n", 3);
        const bool failed = written != done || later != done;
        return failed && store->commit() != done && put(*store, u"m", 4) == done ? 0 : 1;
    }));
    EXPECT_EQ(status, 0);
    const auto store = world.open();
    EXPECT_EQ(numberIn(*store, u"n"), 1u);
    EXPECT_EQ(numberIn(*store, u"m"), 4u);
}

}  // namespace
}  // namespace kelvane
