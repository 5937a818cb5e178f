#include "engine/similar_music.h"

#include <gmock/gmock.h>

#include <chrono>
#include <cmath>
#include <random>
#include <thread>

#include "engine/grouping_world.h"
#include "engine/scan_driver.h"
#include "media/media_readers.h"
#include "props/held_object.h"
#include "support/fake_media_reading.h"

namespace kelvane {
namespace {

using ::testing::ElementsAre;
using testing::exactContents;
using ::testing::IsEmpty;
using ::testing::Pair;
using ::testing::UnorderedElementsAre;
using Series = std::vector<float>;

constexpr std::size_t frames = 22;

Series standardised(Series values)
{
    const auto count = static_cast<float>(values.size());
    float mean = 0;
    for (const float value : values)
        mean += value / count;
    float variance = 0;
    for (const float value : values)
        variance += (value - mean) * (value - mean) / count;
    for (float& value : values)
        value = (value - mean) / std::sqrt(variance);
    return values;
}

// Songs by chance: the first of a family, and others that are more or less like it.
class MadeUpSongs {
public:
    explicit MadeUpSongs(unsigned seed) : random_(seed) {}

    Series anything() { return noisy(Series(frames, 0.0f), 1.0f); }
    Series noisy(Series values, float noise)
    {
        std::normal_distribution<float> by(0, noise);
        for (float& value : values)
            value += by(random_);
        return standardised(std::move(values));
    }
    unsigned below(unsigned limit) { return std::uniform_int_distribution<unsigned>(0, limit - 1)(random_); }

private:
    std::mt19937 random_;
};

class SimilarMusicTest : public ::testing::Test {
protected:
    // Writes down what took no part; may cancel while songs are listened to.
    class Observer final : public ScanObserver {
    public:
        void progress(const ScanProgress& progress) override
        {
            if (progress.phase == ScanPhase::describing && onDescribing)
                onDescribing();
        }
        void caption(std::u16string_view text) override { captions.emplace_back(text); }
        void undescribed(const SkippedItem& item) override { lines.push_back(item.error.detail); }
        std::vector<std::u16string> captions;
        std::vector<std::string> lines;
        std::function<void()> onDescribing;
    };

    SimilarMusicTest() { world.options.noticesSeen = notice_flag::firstScanShown; }

    void add(const std::string& path, const Series& centroid, const Series& spread, std::int64_t milliseconds = 180'000)
    {
        world.files.addFile(path, "song");
        reading.addSong(path, testing::fingerOf(centroid, spread), milliseconds);
    }
    ScanCriteria alike(std::int32_t similarity, std::uint32_t flags = 0) const
    {
        ScanCriteria by = world.criteria(exactContents | scan_flag::fuzzy | flags, "", Category::audio);
        by.similarity = similarity;
        by.masks = FileMasks();
        by.definition.roots = "/";
        by.options.threads = 3;
        return by;
    }
    ScanReport scan(const ScanCriteria& by)
    {
        sink = {};
        return runScan(by, {*world.shell, *world.paths, properties, world.clock, priority, observer, world.cancel, sink,
                            music.get()});
    }
    std::set<std::set<std::string>> groups() const
    {
        std::set<std::set<std::string>> all;
        for (const auto& group : sink.groups())
            all.emplace(group.begin(), group.end());
        return all;
    }

    testing::GroupingWorld world;
    testing::FakeMediaReading reading;
    MediaDescriber describer{*world.shell, reading, nullptr};
    std::unique_ptr<PropertyReaders> readers = makeMediaReaders(describer, world.readers);
    PropertySource properties{world.catalogue, *world.shell, *readers, world.folding, {}};
    std::unique_ptr<SimilarContent> music = makeSimilarMusic(properties, describer, 3);
    testing::FakePriority priority;
    testing::RecordingSink sink;
    Observer observer;
};

TEST_F(SimilarMusicTest, SongsTooShortOrWithoutAFingerprintTakeNoPart)
{
    MadeUpSongs songs(1);
    const Series centroid = songs.anything();
    const Series spread = songs.anything();
    add("/a.mp3", centroid, spread, 19'900);
    add("/b.mp3", centroid, spread, 19'817);
    add("/short.mp3", centroid, spread, 19'816);
    world.files.addFile("/silent.mp3", "x");
    reading.fail("/silent.mp3", MediaOutcome::featureless);
    world.files.addFile("/odd.mp3", "x");
    reading.fail("/odd.mp3", MediaOutcome::codecMissing, "sonic");
    world.files.addFile("/endless.mp3", "x");
    reading.files["/endless.mp3"].fingerprint = testing::fingerOf(centroid, spread);
    world.files.addFile("/unknown.none", "x");
    const ScanReport report = scan(alike(90));
    EXPECT_THAT(groups(), UnorderedElementsAre(std::set<std::string>{"/a.mp3", "/b.mp3"}));
    EXPECT_EQ(report.candidates, 2u);
    EXPECT_THAT(report.walk.undescribed, ElementsAre(Pair("silence, or one unchanging tone", 1), Pair("too short", 1),
                                                     Pair("what would decode it is not installed", 1)));
    EXPECT_THAT(observer.lines, UnorderedElementsAre("silence, or one unchanging tone", "too short",
                                                     "what would decode it is not installed (sonic)"));
    EXPECT_TRUE(report.walk.undescribedFailed) << "the codec may be there another time";
    EXPECT_EQ(report.walk.withoutValue, 2u) << "the hopeless one, and the one without a duration";
    EXPECT_EQ(observer.captions.at(1), u"phase 1: listening to music");
    EXPECT_EQ(reading.reads, 6) << "fingerprint and duration by one reading";
}

TEST_F(SimilarMusicTest, TheGroupsAreThoseOfThePlainWalk)
{
    MadeUpSongs songs(3);
    std::vector<std::pair<Series, Series>> families;
    for (int i = 0; i < 12; ++i)
        families.emplace_back(songs.anything(), songs.anything());
    for (unsigned i = 0; i < 200; ++i) {
        const auto& [centroid, spread] = families[songs.below(12)];
        const float noise = 0.1f * static_cast<float>(songs.below(12));
        add("/" + std::to_string(i) + (i % 3 == 0 ? ".ogg" : ".mp3"), songs.noisy(centroid, noise),
            songs.noisy(spread, noise), 60'000 + 1000 * static_cast<int>(songs.below(50)));
    }
    for (const std::int32_t similarity : {65, 75, 85, 90, 97}) {
        for (const std::uint32_t flags : {0u, scan_flag::sameType}) {
            ScanCriteria by = alike(similarity, flags);
            const ScanReport ahead = scan(by);
            const auto rows = sink.rows;
            by.options.classifyAhead = false;
            const ScanReport plain = scan(by);
            EXPECT_EQ(rows, sink.rows) << similarity << ' ' << flags;
            EXPECT_GT(ahead.grouping.groups, 0u);
            EXPECT_GT(ahead.grouping.comparisons, 0u);
            EXPECT_GT(plain.grouping.comparisons, 0u);
        }
    }
}

TEST_F(SimilarMusicTest, TheScoreIsThatOfTheFingerprintsAndLowOnesEndNothing)
{
    MadeUpSongs songs(5);
    const Series centroid = songs.anything();
    const Series spread = songs.anything();
    add("/a", centroid, spread, 100'000);
    add("/b", songs.noisy(centroid, 0.3f), songs.noisy(spread, 0.3f), 101'000);
    add("/c", songs.anything(), songs.anything(), 102'000);
    world.files.addFile("/none", "x");
    const ScanCriteria by = alike(85);
    const auto compare = [&](const std::string& a, const std::string& b) {
        Candidate first(*world.shell->parse(testing::native(a)));
        Candidate second(*world.shell->parse(testing::native(b)));
        return music->compare(by, first, second, world.cancel);
    };
    const ContentScore near = compare("/a", "/b");
    EXPECT_EQ(near.score, compareFingers(*reading.files["/a"].fingerprint, *reading.files["/b"].fingerprint));
    EXPECT_EQ(compare("/a", "/a").score, 100);
    EXPECT_FALSE(compare("/a", "/c").endsWalk);
    EXPECT_LT(compare("/a", "/c").score, 85);
    EXPECT_FALSE(compare("/a", "/none").comparable);
}

TEST_F(SimilarMusicTest, CancellingWhileSongsAreListenedToEndsAtOnce)
{
    reading.blocked = true;
    for (int i = 0; i < 20; ++i)
        world.files.addFile("/" + std::to_string(i) + ".mp3", "x");
    std::chrono::steady_clock::time_point cancelled;
    observer.onDescribing = [&] {
        cancelled = std::chrono::steady_clock::now();
        world.cancel.cancel();
    };
    std::jthread time([&](const std::stop_token& stop) {
        while (!stop.stop_requested())
            world.clock.milliseconds += 101;
    });
    EXPECT_EQ(scan(alike(90)).rows, -1);
    EXPECT_LT(std::chrono::steady_clock::now() - cancelled, std::chrono::seconds(2));
    EXPECT_LE(reading.reads, 16) << "nothing was begun after the cancel";
    EXPECT_THAT(sink.rows, IsEmpty());
}

}  // namespace
}  // namespace kelvane
