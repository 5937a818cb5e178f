#include "media/media_maker.h"

#include "support/document_world.h"

namespace kelvane {
namespace {

using testing::MemoryDocument;

struct FakeSounds final : SoundDecoding {
    DecodedSound opening(RandomAccessFile&, std::string_view, std::chrono::milliseconds longest) override
    {
        asked = longest;
        return sound;
    }
    DecodedSound sound;
    std::chrono::milliseconds asked{0};
};

template <class Port>
struct FakePreviews final : Port {
    DecodedPicture preview(RandomAccessFile&, std::string_view, const PreviewBounds&) override { return picture; }
    DecodedPicture picture{{}, 2, 1, std::vector<std::byte>(8)};
};

struct FakeFacts final : FactReading {
    std::vector<NamedValue> read(RandomAccessFile&, std::string_view) override
    {
        ++reads;
        return facts;
    }
    std::vector<NamedValue> facts;
    int reads = 0;
};

NamedValue fact(std::string name, std::u16string text)
{
    return {std::move(name), RawValue::text(std::move(text))};
}

class MediaMakerTest : public ::testing::Test {
protected:
    MediaAnswer make(std::string fileName, const MediaWish& wish)
    {
        MemoryDocument file("content");
        return makeMediaAnswer(file, {std::move(fileName), wish, 5'000},
                               {sounds_, pictures_, films_, tags_, streams_, pictureFacts_});
    }
    std::string titles(std::string fileName)
    {
        std::string all;
        for (const NamedValue& value : make(std::move(fileName), {.facts = true}).facts)
            all += value.name + "=" + toUtf8(std::get<std::u16string>(value.value.data)) + ";";
        return all;
    }

    FakeSounds sounds_;
    FakePreviews<PictureDecoding> pictures_;
    FakePreviews<FilmDecoding> films_;
    FakeFacts tags_, streams_, pictureFacts_;
};

TEST_F(MediaMakerTest, OfTwoReadersTheFirstIsBelieved)
{
    tags_.facts = {fact("A", u"tag"), fact("B", u"tag")};
    streams_.facts = {fact("B", u"stream"), fact("C", u"stream")};
    pictureFacts_.facts = {fact("P", u"picture")};
    EXPECT_EQ(titles("song.mp3"), "A=tag;B=tag;C=stream;");
    EXPECT_EQ(titles("film.mkv"), "A=tag;B=tag;C=stream;");
    EXPECT_EQ(titles("photo.jpg"), "P=picture;");
}

TEST_F(MediaMakerTest, AWrongNameHidesNothing)
{
    streams_.facts = {fact("C", u"stream")};
    EXPECT_EQ(titles("song.jpg"), "C=stream;");
    streams_.facts.clear();
    pictureFacts_.facts = {fact("P", u"picture")};
    EXPECT_EQ(titles("photo.mp3"), "P=picture;");
}

TEST_F(MediaMakerTest, WhatIsNotWishedForIsNotMade)
{
    const MediaAnswer answer = make("song.mp3", {.preview = true});
    EXPECT_TRUE(answer.preview);
    EXPECT_FALSE(answer.fingerprint);
    EXPECT_EQ(tags_.reads + streams_.reads + pictureFacts_.reads, 0);
    EXPECT_EQ(sounds_.asked.count(), 0);
}

TEST_F(MediaMakerTest, TheOpeningIsDecodedAsFarAsItIsNeeded)
{
    const SongOpening opening(5'000);
    const auto outcome = [&] { return make("song.mp3", {.fingerprint = true}).fault.outcome; };
    sounds_.sound.samples.assign(opening.samples + 20'000, 0.0F);
    EXPECT_EQ(outcome(), MediaOutcome::featureless);
    EXPECT_EQ(sounds_.asked.count(), opening.decodedMs());
    sounds_.sound.samples.assign(10, 0.5F);
    EXPECT_EQ(outcome(), MediaOutcome::tooShort);
    sounds_.sound.fault = {MediaOutcome::codecMissing, "a codec", "why"};
    const MediaAnswer answer = make("song.mp3", {.fingerprint = true});
    EXPECT_EQ(answer.fault.codec, "a codec");
    EXPECT_FALSE(answer.fingerprint);
}

TEST_F(MediaMakerTest, APreviewComesFromTheRightDecoderAndIsChecked)
{
    films_.picture.width = 1;
    films_.picture.pixels.resize(4);
    EXPECT_EQ(make("f.mp4", {.preview = true, .previewOf = MediaKind::film}).preview->width(), 1u);
    EXPECT_EQ(make("p.png", {.preview = true}).preview->width(), 2u);
    pictures_.picture.pixels.resize(3);
    const MediaAnswer answer = make("p.png", {.preview = true});
    EXPECT_FALSE(answer.preview);
    EXPECT_EQ(answer.fault.outcome, MediaOutcome::damaged);
}

}  // namespace
}  // namespace kelvane
