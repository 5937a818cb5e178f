// The file of the cache between runs, and all that may become of it.
#include <csignal>
#include <filesystem>
#include <functional>
#include <random>
#include <sqlite3.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "platform/linux/adapters.h"
#include "platform/run_cache_contract.h"
#include "support/fakes.h"
#include "support/temp_tree.h"

namespace kelvane {
namespace {

using testing::cachedNoise;
using testing::cachedText;
using testing::CachedValue;
using testing::cacheKey;
using ::testing::HasSubstr;
using testing::RunCacheContract;
using testing::RunCacheKind;
using testing::TempTree;

constexpr std::uint64_t day = 24 * 60 * 60 * 1000;  // of the clock

class CacheWorld final : public testing::RunCacheWorld {
public:
    CacheWorld() { clock.milliseconds = 100 * day; }

    std::unique_ptr<RunCaches> caches() override { return makeSqliteRunCaches(file(), clock); }

    [[nodiscard]] std::filesystem::path file() const { return tree.path("cache/kelvane/descriptors.db"); }
    [[nodiscard]] std::filesystem::path folder() const { return file().parent_path(); }
    void write(std::string_view contents) const { tree.write("cache/kelvane/descriptors.db", contents); }
    [[nodiscard]] std::string contents() const { return tree.read("cache/kelvane/descriptors.db"); }

    // Values of a few pages each, in a cache of its own connection.
    void fill(std::uint64_t first, std::uint64_t count)
    {
        const auto cache = open();
        for (std::uint64_t index = first; index < first + count; ++index)
            cache->put(cacheKey(index), cachedNoise(10'000, static_cast<std::uint32_t>(index)));
    }
    // How many of them are there; none may be another's.
    [[nodiscard]] std::uint64_t kept(RunCache& cache, std::uint64_t first, std::uint64_t count) const
    {
        std::uint64_t found = 0;
        for (std::uint64_t index = first; index < first + count; ++index) {
            const auto value = cache.find(cacheKey(index));
            found += value ? 1 : 0;
            EXPECT_TRUE(!value || *value == cachedNoise(10'000, static_cast<std::uint32_t>(index))) << index;
        }
        return found;
    }
    // By its own means, as another program would.
    void sql(const std::string& statements) const
    {
        sqlite3* database = nullptr;
        ASSERT_EQ(sqlite3_open(file().c_str(), &database), SQLITE_OK);
        EXPECT_EQ(sqlite3_exec(database, statements.c_str(), nullptr, nullptr, nullptr), SQLITE_OK);
        sqlite3_close(database);
    }

    TempTree tree;
    testing::FakeClock clock;
};

INSTANTIATE_TEST_SUITE_P(Sqlite, RunCacheContract,
                         ::testing::Values(RunCacheKind{"Sqlite", std::make_unique<CacheWorld>}));

// A child process that runs the work and leaves without cleaning up.
pid_t startChild(const std::function<bool()>& work)
{
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(work() ? 0 : 1);
    return child;
}

int statusOf(pid_t child)
{
    int status = 0;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    return status;
}

mode_t modeOf(const std::filesystem::path& path)
{
    struct stat info {};
    EXPECT_EQ(::stat(path.c_str(), &info), 0);
    return info.st_mode & 07777;
}

TEST(LinuxRunCache, IsPrivateAndALookMakesNothing)
{
    CacheWorld world;
    EXPECT_TRUE(world.caches()->figures());
    EXPECT_TRUE(world.caches()->clear());
    EXPECT_FALSE(std::filesystem::exists(world.tree.path("cache")));
    const auto cache = world.open();
    EXPECT_EQ(modeOf(world.folder()), 0700u);
    EXPECT_EQ(modeOf(world.file()), 0600u);

    std::filesystem::remove_all(world.tree.path("cache"));
    const mode_t before = ::umask(0);
    cache->put(cacheKey(1), cachedText("a"));
    cache->flush();
    ::umask(before);
    const std::uint64_t values = world.caches()->figures()->values;
    EXPECT_TRUE(values == 0 || modeOf(world.file()) == 0600u) << "a folder that went away meanwhile";
}

// Random bytes at random places: whatever is found is right, and the cache can be used afterwards.
TEST(LinuxRunCache, FlippedBytesAreNeverTrusted)
{
    CacheWorld world;
    constexpr std::uint64_t count = 40;
    world.fill(0, count);
    const std::string sound = world.contents();
    std::mt19937 random(1);
    std::uint64_t found = 0;
    for (int round = 0; round < 200; ++round) {
        SCOPED_TRACE(round);
        std::string damaged = sound;
        // Every other time where the pages of the table itself are, which are few.
        const std::size_t reach = round % 2 == 0 ? damaged.size() : std::min<std::size_t>(damaged.size(), 20'000);
        for (int flips = round % 5; flips >= 0; --flips)
            damaged[random() % reach] = static_cast<char>(random());
        world.write(damaged);
        const auto cache = world.open();
        ASSERT_NE(cache, nullptr);
        found += world.kept(*cache, 0, count);
        cache->put(cacheKey(count), cachedText("new"));
        cache->flush();
        EXPECT_EQ(cache->find(cacheKey(count)), cachedText("new"));
    }
    EXPECT_GT(found, 0u) << "the damage was always complete, which shows nothing";
    EXPECT_LT(found, 200 * count);
}

// A file that is sound as a database, and whose values are: they only belong elsewhere.
TEST(LinuxRunCache, AValueThatBelongsElsewhereIsNotTaken)
{
    for (const char* change :
         {"UPDATE value SET data = (SELECT data FROM value WHERE file = 2) WHERE file = 1",
          "DELETE FROM value WHERE file = 1; UPDATE value SET file = 1, size = 1001 WHERE file = 2",
          "UPDATE value SET length = 9999 WHERE file = 1"}) {
        SCOPED_TRACE(change);
        CacheWorld world;
        world.fill(0, 5);
        const auto cache = world.open();
        EXPECT_EQ(world.kept(*cache, 0, 5), 5u);
        world.sql(change);
        EXPECT_EQ(world.kept(*cache, 1, 1), 0u);
        EXPECT_EQ(world.caches()->figures()->values, 0u) << "begun anew";
        cache->put(cacheKey(1), cachedText("new"));
        EXPECT_EQ(cache->find(cacheKey(1)), cachedText("new"));
    }
}

TEST(LinuxRunCache, CutShortItIsBegunAnew)
{
    CacheWorld world;
    world.fill(0, 40);
    const std::string sound = world.contents();
    for (const std::size_t length : {std::size_t{0}, std::size_t{1}, std::size_t{99}, std::size_t{4096},
                                     std::size_t{20'000}, sound.size() / 2, sound.size() - 4096, sound.size() - 1}) {
        SCOPED_TRACE(length);
        world.write(sound.substr(0, length));
        auto cache = world.open();
        ASSERT_NE(cache, nullptr);
        (void)world.kept(*cache, 0, 40);
        cache.reset();
        world.fill(0, 40);
        EXPECT_EQ(world.kept(*world.open(), 0, 40), 40u);
    }
    // While it is in use.
    const auto cache = world.open();
    EXPECT_GT(world.kept(*cache, 0, 1), 0u);
    std::filesystem::resize_file(world.file(), 10'000);
    world.fill(50, 40);
    (void)world.kept(*cache, 0, 40);
    cache->put(cacheKey(1), cachedText("a"));
    cache->flush();
}

// What lies there in place of a cache of this program in this version.
const std::pair<const char*, std::function<void(const CacheWorld&)>> foreign[] = {
    {"text", [](const CacheWorld& world) { world.write("remember the milk\n"); }},
    {"another program's", [](const CacheWorld& world) { world.sql("PRAGMA application_id=7"); }},
    {"another version's", [](const CacheWorld& world) { world.sql("PRAGMA user_version=1000"); }},
    {"without its table", [](const CacheWorld& world) { world.sql("DROP TABLE value"); }},
    {"with a program inside",
     [](const CacheWorld& world) { world.sql("CREATE TRIGGER t AFTER INSERT ON value BEGIN DELETE FROM value; END"); }},
    {"a pipe",
     [](const CacheWorld& world) {
         std::filesystem::remove(world.file());
         ASSERT_EQ(::mkfifo(world.file().c_str(), 0600), 0);
     }},
    {"a link",
     [](const CacheWorld& world) {
         std::filesystem::remove(world.file());
         std::filesystem::create_symlink(world.tree.write("elsewhere", "untouched"), world.file());
     }},
    {"an empty folder",
     [](const CacheWorld& world) {
         std::filesystem::remove(world.file());
         std::filesystem::create_directory(world.file());
     }},
    {"the journal of an earlier file",
     [](const CacheWorld& world) {
         std::filesystem::remove(world.file());
         world.tree.write("cache/kelvane/descriptors.db-journal", "rubbish");
     }},
};

TEST(LinuxRunCache, WhatIsNotItsOwnGivesWay)
{
    for (const auto& [name, put] : foreign) {
        SCOPED_TRACE(name);
        CacheWorld world;
        world.fill(0, 3);
        put(world);
        EXPECT_EQ(world.caches()->figures()->values, 0u);
        EXPECT_EQ(world.kept(*world.open(), 0, 3), 0u);
        world.fill(0, 3);
        EXPECT_EQ(world.kept(*world.open(), 0, 3), 3u);
        EXPECT_TRUE(std::filesystem::is_regular_file(std::filesystem::symlink_status(world.file())));
        if (std::filesystem::exists(world.tree.path("elsewhere"))) {
            EXPECT_EQ(world.tree.read("elsewhere"), "untouched");
        }
    }
    CacheWorld world;
    world.tree.write("cache/kelvane/descriptors.db/precious", "a file");
    const auto opened = world.caches()->open(testing::roomyCache);
    ASSERT_FALSE(opened);
    EXPECT_THAT(opened.error().detail, HasSubstr(world.file().string()));
    EXPECT_EQ(world.tree.read("cache/kelvane/descriptors.db/precious"), "a file");
}

TEST(LinuxRunCache, AProcessThatIsKilledCostsNoMoreThanItsLastBatch)
{
    CacheWorld world;
    world.fill(0, 20);
    const auto putForever = [&] {
        const auto cache = world.open();
        for (std::uint64_t index = 100;; index = 100 + (index + 1) % 3000) {
            cache->put(cacheKey(index), cachedNoise(10'000, static_cast<std::uint32_t>(index)));
            if (index % 50 == 0)
                cache->flush();
        }
        return false;
    };
    for (const int milliseconds : {5, 15, 30, 50, 80, 120, 160, 250}) {
        const pid_t child = startChild(putForever);
        std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
        ::kill(child, SIGKILL);
        EXPECT_TRUE(WIFSIGNALED(statusOf(child)));
        EXPECT_EQ(world.kept(*world.open(), 0, 20), 20u) << milliseconds;
    }
    // The last one is given the time that some batches take on this computer.
    const auto arrived = [&] { return world.kept(*world.open(), 100, 3000); };
    const pid_t child = startChild(putForever);
    for (int look = 0; look < 1000 && arrived() <= 50; ++look)
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    ::kill(child, SIGKILL);
    EXPECT_TRUE(WIFSIGNALED(statusOf(child)));
    EXPECT_GT(arrived(), 50u);
}

TEST(LinuxRunCache, ProcessesWriteAtTheSameTime)
{
    CacheWorld world;
    const auto put = [&](std::uint64_t first) {
        world.fill(first, 600);
        const auto cache = world.open();
        return world.kept(*cache, first, 600) == 600;
    };
    const pid_t children[] = {startChild([&] { return put(0); }), startChild([&] { return put(1000); }),
                              startChild([&] { return put(2000); })};
    for (const pid_t child : children)
        EXPECT_EQ(statusOf(child), 0);
    EXPECT_EQ(world.caches()->figures()->values, 1800u);
}

TEST(LinuxRunCache, AFileThatStaysLockedIsDoneWithout)
{
    CacheWorld world;
    world.fill(0, 20);
    const auto cache = world.open();
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(world.file().c_str(), &other), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(other, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
    const auto start = std::chrono::steady_clock::now();
    for (int round = 0; round < 50; ++round)
        EXPECT_EQ(world.kept(*cache, 0, 20), 0u);
    cache->put(cacheKey(100), cachedText("waits"));
    cache->flush();
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(60)) << "1000 looks waited in full";
    EXPECT_FALSE(world.caches()->open(testing::roomyCache));
    EXPECT_FALSE(world.caches()->clear());
    sqlite3_close(other);
    EXPECT_EQ(world.kept(*cache, 0, 20), 20u);
    cache->flush();
    EXPECT_EQ(world.open()->find(cacheKey(100)), cachedText("waits"));
}

TEST(LinuxRunCache, AFullVolumeKeepsWhatThereIs)
{
    CacheWorld world;
    world.fill(0, 20);
    EXPECT_EQ(statusOf(startChild([&] {
                  const auto cache = world.open();
                  const rlimit small{300'000, 300'000};
                  ::signal(SIGXFSZ, SIG_IGN);
                  if (::setrlimit(RLIMIT_FSIZE, &small) != 0)
                      return false;
                  for (std::uint64_t index = 100; index < 2000; ++index)
                      cache->put(cacheKey(index), cachedNoise(10'000, 1));
                  cache->flush();
                  return world.kept(*cache, 0, 20) == 20;
              })),
              0);
    EXPECT_EQ(world.kept(*world.open(), 0, 20), 20u);
    // There is not even room for a new file.
    CacheWorld empty;
    EXPECT_EQ(statusOf(startChild([&] {
                  const rlimit none{100, 100};
                  ::signal(SIGXFSZ, SIG_IGN);
                  return ::setrlimit(RLIMIT_FSIZE, &none) == 0 && !empty.caches()->open(testing::roomyCache);
              })),
              0);
    EXPECT_NE(empty.open(), nullptr);
}

// The user nobody, whom permissions bind even where the tests run as root.
bool asNobody(const std::function<bool()>& work)
{
    constexpr uid_t nobody = 65534;
    return statusOf(startChild(
               [&] { return (::geteuid() != 0 || ::setresuid(nobody, nobody, nobody) == 0) && work(); })) == 0;
}

TEST(LinuxRunCache, RightsBindIt)
{
    CacheWorld world;
    // As the user who owns it.
    const bool isRoot = ::geteuid() == 0;
    world.tree.folder("cache/kelvane");
    for (const auto& folder : {world.tree.path(), world.tree.path("cache"), world.folder()}) {
        ASSERT_TRUE(!isRoot || ::chown(folder.c_str(), 65534, 65534) == 0);
        ::chmod(folder.c_str(), 0700);
    }
    EXPECT_TRUE(asNobody([&] {
        world.fill(0, 5);
        ::chmod(world.file().c_str(), 0444);
        ::chmod(world.folder().c_str(), 0555);
        const auto cache = world.open();
        if (!cache)
            return false;
        cache->put(cacheKey(9), cachedText("not kept"));
        cache->flush();
        return world.kept(*cache, 0, 5) == 5 && !world.open()->find(cacheKey(9)) && !world.caches()->clear();
    })) << "one that can only be read";
    EXPECT_TRUE(asNobody([&] {
        ::chmod(world.file().c_str(), 0);
        const auto opened = world.caches()->open(testing::roomyCache);
        return !opened && opened.error().detail.find(world.file().string()) != std::string::npos;
    })) << "one that cannot be read, in a folder that cannot be written to";
    EXPECT_TRUE(asNobody([&] {
        ::chmod(world.folder().c_str(), 0777);
        ::chmod(world.file().c_str(), 0600);
        return !world.caches()->open(testing::roomyCache) && !world.caches()->figures() && !world.caches()->clear();
    })) << "a folder where anybody may put a file";
    EXPECT_TRUE(asNobody([&] {
        ::chmod(world.folder().c_str(), 0700);
        return world.kept(*world.open(), 0, 5) == 5;
    }));
    if (isRoot) {
        EXPECT_FALSE(world.caches()->open(testing::roomyCache)) << "another user's";
    }
}

TEST(LinuxRunCache, LetsGoOfWhatWasNotUsedForLongest)
{
    CacheWorld world;
    constexpr std::uint64_t bound = 1'800'000;  // some 150 values
    world.fill(0, 100);
    world.clock.milliseconds += day;
    EXPECT_EQ(world.kept(*world.open(), 50, 50), 50u);
    world.clock.milliseconds += day;
    {
        const auto cache = world.open(bound);
        for (std::uint64_t index = 100; index < 180; ++index)
            cache->put(cacheKey(index), cachedNoise(10'000, static_cast<std::uint32_t>(index)));
        cache->flush();
        EXPECT_LE(std::filesystem::file_size(world.file()), bound);
    }
    const auto cache = world.open(bound);
    EXPECT_EQ(world.kept(*cache, 100, 80), 80u);
    EXPECT_EQ(world.kept(*cache, 50, 50), 50u) << "used the day before";
    EXPECT_LT(world.kept(*cache, 0, 50), 25u);

    // More than there is room for, twice in the same order: the second time some of it is found.
    world.clock.milliseconds += day;
    std::uint64_t found = 0;
    for (int round = 0; round < 2; ++round) {
        const auto scan = world.open(bound);
        for (std::uint64_t index = 1000; index < 1400; ++index) {
            found += world.kept(*scan, index, 1);
            scan->put(cacheKey(index), cachedNoise(10'000, static_cast<std::uint32_t>(index)));
        }
    }
    EXPECT_GT(found, 80u);
    EXPECT_LE(std::filesystem::file_size(world.file()), bound);

    world.open(400'000)->flush();
    EXPECT_LE(std::filesystem::file_size(world.file()), 400'000u);
    EXPECT_GT(world.caches()->figures()->values, 0u);
}

}  // namespace
}  // namespace kelvane
