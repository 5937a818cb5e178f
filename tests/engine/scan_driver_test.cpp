#include "engine/scan_driver.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/utf.h"
#include "engine/grouping_world.h"
#include "support/paths.h"

namespace kelvane {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// Writes down in which order the scan tells of itself; lets time pass when the comparing begins.
class Diary final : public ScanObserver {
public:
    void started() override { lines.emplace_back("started"); }
    void ended() override { lines.emplace_back("ended"); }
    void status(std::u16string_view text) override
    {
        if (text.find(u"found") != std::u16string_view::npos)
            lines.push_back(toUtf8(text));
    }
    void caption(std::u16string_view text) override
    {
        if (text.starts_with(u"phase 3") && onComparing)
            onComparing();
    }
    void notice(std::u16string_view) override { lines.emplace_back("notice"); }
    void sound(Sound) override { lines.emplace_back("sound"); }
    void nothingFound(std::u16string_view) override { lines.emplace_back("nothing"); }

    std::vector<std::string> lines;
    std::function<void()> onComparing;
};

class ScanDriver : public ::testing::Test {
protected:
    ScanDriver() { world.options.noticesSeen = notice_flag::firstScanShown; }

    ScanReport scan(const std::string& roots, const std::string& properties = "", Category category = Category::custom)
    {
        ScanCriteria criteria = world.criteria(testing::exactContents, properties, category);
        criteria.definition.roots = roots;
        return runScan(criteria, {*world.shell, *world.paths, world.properties, world.clock, priority, diary,
                                  world.cancel, sink, nullptr});
    }

    testing::GroupingWorld world;
    testing::FakePriority priority;
    testing::RecordingSink sink;
    Diary diary;
};

TEST_F(ScanDriver, WalksEveryRootOnceAndTellsWhatItFound)
{
    if (std::filesystem::path::preferred_separator != '/')
        GTEST_SKIP() << "these rules are for systems whose paths are POSIX paths";
    world.files.addFile("/one/a", "text");
    world.files.addFile("/one/deep/b", "text");
    world.files.addFile("/two/c", "text");
    world.files.addFile("/two/d", "other text");
    const ScanReport report = scan("/one|/two|/one/deep");
    EXPECT_EQ(report.rows, 3);
    EXPECT_EQ(report.candidates, 4u);
    EXPECT_EQ(report.candidateBytes, 22u);
    EXPECT_EQ(report.walk.folders, 3u);
    EXPECT_EQ(report.grouping.groups, 1u);
    // The rules of this world are those of POSIX; elsewhere they cannot tell that one root lies in another.
    if (testing::pathsArePosix) {
        EXPECT_THAT(report.roots.roots, ElementsAre("/one", "/two"));
    }
    EXPECT_THAT(diary.lines, ElementsAre("started", "ended", "3 duplicates found in 0:00 minutes"));
}

TEST_F(ScanDriver, LongScansEndWithASound)
{
    world.files.addFile("/r/a", "text");
    world.files.addFile("/r/b", "text");
    diary.onComparing = [&] { world.clock.milliseconds += 179'999; };
    scan("/r");
    EXPECT_THAT(diary.lines, ElementsAre("started", "ended", "2 duplicates found in 2:59 minutes"));
    diary.lines.clear();
    diary.onComparing = [&] { world.clock.milliseconds += 180'000; };
    scan("/r");
    EXPECT_THAT(diary.lines, ElementsAre("started", "ended", "2 duplicates found in 3:00 minutes", "sound"));
}

TEST_F(ScanDriver, SaysWhenNothingWasFound)
{
    world.files.addFile("/r/a", "text");
    world.options.noticesSeen = 0;
    EXPECT_EQ(scan("/missing|/r").rows, 0);
    EXPECT_THAT(diary.lines, ElementsAre("notice", "started", "ended", "nothing"));
}

TEST_F(ScanDriver, ACancelledScanIsSilentInEveryPhase)
{
    world.files.addFile("/r/a", "text");
    world.files.addFile("/r/b", "text");
    world.cancel.cancel();
    EXPECT_EQ(scan("/r").rows, -1);
    EXPECT_THAT(diary.lines, ElementsAre("started", "ended"));
    world.cancel.reset();
    diary.lines.clear();
    diary.onComparing = [&] {
        world.clock.milliseconds += 500'000;
        world.cancel.cancel();
    };
    EXPECT_EQ(scan("/r").rows, -1);
    EXPECT_THAT(diary.lines, ElementsAre("started", "ended"));
    EXPECT_THAT(sink.rows, IsEmpty());
}

TEST_F(ScanDriver, StepsBackWhenAskedTo)
{
    for (const std::uint32_t flag : {0u, option_flag::lowPriority}) {
        world.options.flags |= flag;
        scan("/");
        EXPECT_EQ(priority.lowered, flag != 0 ? 1 : 0);
    }
}

TEST_F(ScanDriver, ColumnsAreThePropertiesAndTheOneOfTheCategory)
{
    const auto names = [](const ScanReport& report) {
        std::vector<std::string> all;
        for (const PropRef& column : report.columns)
            all.emplace_back(column.info->name);
        return all;
    };
    world.options.extraColumns[0] = "System.Title";
    EXPECT_THAT(names(scan("/", "System.Media.Year", Category::audio)),
                ElementsAre("System.Media.Year", "System.Size", "System.Title"));
    EXPECT_THAT(names(scan("/", "System.Title", Category::audio)), ElementsAre("System.Title", "System.Size"));
    EXPECT_THAT(names(scan("/", "System.Title", Category::video)),
                ElementsAre("System.Title", "System.Size", "System.Media.Duration"))
        << "the one that it has unless it is told another one";
}

}  // namespace
}  // namespace kelvane
