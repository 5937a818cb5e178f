#include "engine/same_file.h"

#include <gtest/gtest.h>

#include "engine/known_files.h"
#include "support/paths.h"
#include "support/scan_world.h"

namespace kelvane {
namespace {

using Place = ShellItem::Place;

Ref<ShellItem> item(const std::string& path, FileIdentity identity, Place place = Place::fileSystem)
{
    FileInfo info;
    info.kind = FileKind::regular;
    info.identity = identity;
    return ShellItem::make(nullptr, testing::native(path), info, place);
}

TEST(SameFile, GoesByIdentityOrPath)
{
    const auto rules = makePosixPathRules();
    const auto same = [&](const Ref<ShellItem>& a, const Ref<ShellItem>& b) { return sameFile(*a, *b, *rules); };
    EXPECT_TRUE(same(item("/a", {1, 7}), item("/b", {1, 7})));
    EXPECT_FALSE(same(item("/a", {1, 7}), item("/b", {2, 7})));
    EXPECT_FALSE(same(item("/a", {}), item("/b", {}))) << "no identity is not an identity";
    EXPECT_TRUE(same(item("/a", {}), item("/a", {1, 7})));
    EXPECT_FALSE(same(item("/a", {}), item("/A", {})));
    EXPECT_FALSE(same(item("/z/1", {0, 7}, Place::insideArchive), item("/y/1", {0, 7}, Place::insideArchive)))
        << "the index of an entry is only its place in its archive";
}

TEST(KnownFiles, FindsEveryMemberOfALargeGroup)
{
    const auto rules = makePosixPathRules();
    KnownFiles known(*rules);
    for (int round = 0; round < 2; ++round) {
        EXPECT_TRUE(known.insert(*item("/none", {})));
        for (const bool fresh : {true, false})
            for (std::uint64_t i = 1; i <= 500; ++i)
                EXPECT_EQ(known.insert(*item(fresh ? "/first" : "/again", {1, i})), fresh);
        EXPECT_FALSE(known.insert(*item("/none", {})));
        EXPECT_TRUE(known.insert(*item("/other", {2, 1})));
        known.clear();
    }
}

}  // namespace
}  // namespace kelvane
