#include "app/cleanup_bookkeeping.h"

#include <gtest/gtest.h>

#include "app/kept_scans.h"
#include "support/settings_world.h"

namespace kelvane {
namespace {

TEST(CleanupBookkeeping, CountsAtOnceWhereSettingsAreKeptAndNowhereElse)
{
    testing::SettingsComputer computer;
    const auto start = [&] {
        auto access = std::make_unique<CRegistryAccess>(computer.ports());
        access->chooseLocation({});
        access->load(computer.questions);
        return access;
    };
    const auto stored = [&] {
        CRegistryAccess access(computer.ports());
        access.chooseLocation({});
        access.loadForReading();
        return access.settings();
    };
    CScanNode definition;
    definition.setName(u"Bilder");
    definition.roots = "/pictures";
    CleanupReport report;
    report.removed = 5;

    const auto first = start();
    EXPECT_EQ(noteCleanup(*first, definition, report), SettingsCode::done);
    EXPECT_EQ(first->settings().deduped, 5u);
    EXPECT_EQ(stored().deduped, 0u) << "nothing is kept yet";

    ASSERT_EQ(addSavedScan(first->settings(), definition, computer.folding), KeptScanResult::done);
    rememberScan(first->settings(), definition, {1});
    ASSERT_EQ(first->save(), SettingsCode::done);
    const auto second = start();
    report.noticesOff = cleanup_notice::summary;
    EXPECT_EQ(noteCleanup(*second, definition, report), SettingsCode::done);
    EXPECT_EQ(stored().deduped, 10u);
    EXPECT_TRUE(stored().savedScans.empty());
    EXPECT_TRUE(second->settings().scanHistory.front().stale);
    EXPECT_TRUE(cleanupOptionsFrom(second->settings()).quietSummary);
    EXPECT_EQ(noteCleanup(*first, definition, report), SettingsCode::done);
    EXPECT_EQ(stored().deduped, 15u) << "the other process counted as well";
    report.removed = UINT64_MAX;
    EXPECT_EQ(noteCleanup(*first, definition, report), SettingsCode::done);
    EXPECT_EQ(first->settings().deduped, UINT32_MAX);
}

TEST(CleanupBookkeeping, ReadsOptionsFromTheirBits)
{
    Settings settings;
    const CleanupOptions plain = cleanupOptionsFrom(settings);
    EXPECT_FALSE(plain.writeLog || plain.expert || plain.noHardLinks || plain.noSymbolicLinks || plain.quietSummary);
    EXPECT_TRUE(plain.offerElevation && plain.compareInFull);
    settings.flags = 0x80000;
    settings.moreOptions = 0x4;
    settings.noticesOff = 0x100;
    const CleanupOptions some = cleanupOptionsFrom(settings);
    EXPECT_TRUE(some.writeLog && some.noHardLinks);
    EXPECT_FALSE(some.expert || some.noSymbolicLinks || some.quietSummary || some.offerElevation);
    settings.flags = 0x80000000;
    settings.moreOptions = 0x8;
    const CleanupOptions others = cleanupOptionsFrom(settings);
    EXPECT_TRUE(others.expert && others.noSymbolicLinks);
    EXPECT_FALSE(others.writeLog || others.noHardLinks);
}

}  // namespace
}  // namespace kelvane
