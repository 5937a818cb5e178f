#include "media/described_media.h"

#include "media/media_readers.h"
#include "media/sample_media.h"
#include "platform/file_namespace.h"
#include "platform/property_table.h"
#include "support/fake_media_reading.h"
#include "support/fakes.h"
#include "support/memory_file_system.h"
#include "support/memory_run_cache.h"

namespace kelvane {
namespace {

// One describer a run: what earlier runs leave behind is in the cache alone.
class DescribedMediaTest : public ::testing::Test {
protected:
    DescribedMediaTest()
    {
        for (const auto* path : {"/d/song.mp3", "/d/film.mp4", "/d/photo.jpg", "/d/other.xyz"})
            files_.addFile(path, "content");
        reading_.addSong("/d/song.mp3", testing::sampleFinger(SongOpening(reading_.settings.songStartMs)), 200'000);
        reading_.addPreview("/d/film.mp4", testing::samplePreview());
        reading_.setDuration("/d/film.mp4", 5'000);
        reading_.addPreview("/d/photo.jpg", testing::samplePreview(30, 20, 3));
        nextRun();
    }

    void nextRun()
    {
        auto opened = caches_.open(1'000'000);
        cache_ = std::move(*opened);
        describer_ = std::make_unique<MediaDescriber>(*shell_, reading_, cache_.get());
        reading_.reads = 0;
    }
    Ref<ShellItem> item(const std::string& path) { return *shell_->parse(testing::native(path)); }
    SoundDescription sound() { return describer_->sound(*item("/d/song.mp3"), never_); }
    PreviewDescription photo() { return describer_->signature(*item("/d/photo.jpg"), MediaKind::picture, never_); }
    std::size_t factsOf(const std::string& path) { return describer_->facts(*item(path), never_).size(); }

    testing::MemoryFileSystem files_;
    testing::SimpleFolding folding_;
    std::unique_ptr<ShellNamespace> shell_ = makeFileNamespace(files_, nullptr, folding_);
    testing::FakeMediaReading reading_;
    testing::MemoryRunCaches caches_;
    std::unique_ptr<RunCache> cache_;
    std::unique_ptr<MediaDescriber> describer_;
    const CancelFlag never_;
};

TEST_F(DescribedMediaTest, ASongIsReadOnceForItsFingerprintAndItsFacts)
{
    const auto first = sound();
    ASSERT_TRUE(first.fingerprint);
    EXPECT_EQ(factsOf("/d/song.mp3"), 1u);
    EXPECT_EQ(reading_.reads, 1);
    nextRun();
    const auto second = sound();
    ASSERT_TRUE(second.fingerprint);
    EXPECT_EQ(second.fingerprint->packed(), first.fingerprint->packed());
    EXPECT_EQ(factsOf("/d/song.mp3"), 1u);
    EXPECT_EQ(reading_.reads, 0);
}

TEST_F(DescribedMediaTest, FactsThatAreKnownAreNotReadAgain)
{
    EXPECT_EQ(factsOf("/d/song.mp3"), 1u);
    static_cast<void>(sound());
    EXPECT_EQ(reading_.wishesFor("/d/song.mp3"),
              (std::vector<MediaWish>{{.facts = true}, {.facts = false, .fingerprint = true}}));
}

TEST_F(DescribedMediaTest, ALaterRunReadsSignaturesAlone)
{
    const auto first = photo();
    ASSERT_TRUE(first.signature && first.preview);
    nextRun();
    caches_.found = 0;
    const auto second = photo();
    EXPECT_EQ(second.signature, first.signature);
    EXPECT_FALSE(second.preview);
    EXPECT_EQ(caches_.found, 1);
    const auto preview = describer_->preview(*item("/d/photo.jpg"), MediaKind::picture, never_);
    ASSERT_TRUE(preview);
    EXPECT_EQ(preview->packed(), first.preview->packed());
    EXPECT_EQ(reading_.reads, 0);
}

TEST_F(DescribedMediaTest, AFilmAndAPictureOfOneFileAreTwoThings)
{
    static_cast<void>(describer_->signature(*item("/d/film.mp4"), MediaKind::film, never_));
    EXPECT_EQ(factsOf("/d/film.mp4"), 1u);
    EXPECT_EQ(reading_.reads, 1);
    static_cast<void>(describer_->signature(*item("/d/film.mp4"), MediaKind::picture, never_));
    EXPECT_EQ(reading_.reads, 2);
}

TEST_F(DescribedMediaTest, LastingFaultsAreKeptAndPassingOnesTriedAgain)
{
    const std::pair<MediaOutcome, int> cases[] = {{MediaOutcome::damaged, 0},      {MediaOutcome::featureless, 0},
                                                  {MediaOutcome::timedOut, 1},     {MediaOutcome::crashed, 1},
                                                  {MediaOutcome::codecMissing, 1}, {MediaOutcome::workerMissing, 1},
                                                  {MediaOutcome::unreadable, 1}};
    for (const auto& [outcome, readsAgain] : cases) {
        static_cast<void>(caches_.clear());
        nextRun();
        reading_.files["/d/song.mp3"].fingerprint = nullptr;
        reading_.files["/d/photo.jpg"].preview = nullptr;
        reading_.fail("/d/song.mp3", outcome);
        reading_.fail("/d/photo.jpg", outcome, "why");
        for (int run = 0; run < 2; ++run) {
            nextRun();
            EXPECT_EQ(sound().fault.outcome, outcome);
            const MediaFault fault = photo().fault;
            EXPECT_EQ(fault.outcome, outcome);
            EXPECT_EQ(fault.detail, "why") << "also where it comes from the cache";
        }
        EXPECT_EQ(reading_.reads, 2 * readsAgain) << static_cast<int>(outcome);
    }
}

// Settings that shape a value, and the file itself.
TEST_F(DescribedMediaTest, AnotherOpeningOrAnotherFileIsMadeAnew)
{
    static_cast<void>(sound());
    nextRun();
    reading_.settings.songStartMs = 20'000;
    static_cast<void>(sound());
    EXPECT_EQ(reading_.reads, 1);
    reading_.settings.songStartMs = 14'900;
    static_cast<void>(photo());
    files_.addFile("/d/photo.jpg", "other content");
    nextRun();
    static_cast<void>(photo());
    EXPECT_EQ(reading_.reads, 1);
}

TEST_F(DescribedMediaTest, AFileThatChangesWhileItIsReadIsNotKept)
{
    reading_.onRead = [&](const std::string& path) { files_.addFile(path, "changed meanwhile"); };
    static_cast<void>(photo());
    static_cast<void>(sound());
    EXPECT_TRUE(caches_.values.empty());
}

TEST_F(DescribedMediaTest, WhatTheCacheHoldsIsNotTrusted)
{
    static_cast<void>(sound());
    static_cast<void>(photo());
    for (auto& [file, kept] : caches_.values)
        kept.second.resize(kept.second.size() / 2);
    nextRun();
    EXPECT_TRUE(sound().fingerprint);
    EXPECT_TRUE(photo().signature);
    EXPECT_EQ(reading_.reads, 2);
    for (auto& [file, kept] : caches_.values)
        kept.second.assign(1, static_cast<std::byte>(MediaOutcome::crashed));
    nextRun();
    EXPECT_TRUE(sound().fingerprint);
    EXPECT_EQ(reading_.reads, 1);
}

TEST_F(DescribedMediaTest, AFileThatBreaksItsReaderIsAskedOnceARun)
{
    reading_.fail("/d/other.xyz", MediaOutcome::crashed);
    for (int run = 0; run < 2; ++run) {
        nextRun();
        for (int value = 0; value < 3; ++value)
            EXPECT_EQ(factsOf("/d/other.xyz"), 0u);
        EXPECT_EQ(reading_.reads, 1);
    }
    CancelFlag cancelled;
    cancelled.cancel();
    nextRun();
    EXPECT_TRUE(describer_->facts(*item("/d/song.mp3"), cancelled).empty());
    EXPECT_EQ(factsOf("/d/song.mp3"), 1u);
}

TEST_F(DescribedMediaTest, ReadersAskOnlyFilesThatMayCarryTheProperty)
{
    const auto table = makePropertyTable();
    testing::FakeReaders next;
    const auto readers = makeMediaReaders(*describer_, next);
    const auto read = [&](const char* property, const std::string& path) {
        return !readers->read(*table->byName(property), *item(path)).empty();
    };
    EXPECT_TRUE(read("System.Media.Duration", "/d/song.mp3"));
    EXPECT_TRUE(read("System.Media.Duration", "/d/film.mp4"));
    EXPECT_EQ(reading_.reads, 2);
    EXPECT_EQ(next.reads, 0);
    for (const auto& [property, path] :
         std::vector<std::pair<const char*, std::string>>{{"System.Size", "/d/song.mp3"},
                                                          {"System.Image.Dimensions", "/d/song.mp3"},
                                                          {"System.Music.AlbumTitle", "/d/photo.jpg"},
                                                          {"System.Media.Duration", "/d/other.xyz"},
                                                          {"System.Title", "/d"}})
        EXPECT_FALSE(read(property, path)) << property;
    EXPECT_EQ(reading_.reads, 2);
    EXPECT_EQ(next.reads, 5);
    EXPECT_FALSE(read("System.Music.AlbumTitle", "/d/song.mp3"));  // which has none: another reader may know
    EXPECT_EQ(next.reads, 6);
}

}  // namespace
}  // namespace kelvane
