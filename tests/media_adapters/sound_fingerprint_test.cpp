// From files to fingerprints: what one recording gives in all the forms in which people keep it.
#include <gtest/gtest.h>

#include "media_adapters/made_files.h"
#include "media_adapters/sound_samples.h"
#include "platform/linux/media/adapters.h"
#include "props/mp3_finger.h"
#include "support/bytes_file.h"

namespace kelvane {
namespace {

using testing::BytesFile;
using testing::doubled;
using testing::madeBy;
using testing::tune;
using testing::wavFile;

const SongOpening opening(14'900);

std::string recording(unsigned seed)
{
    return wavFile(doubled(tune(seed, 24)), {.rate = 44'100, .channels = 2});
}

std::string encoded(const std::string& wav, const std::string& options, std::string_view name)
{
    return madeBy("ffmpeg -nostdin -loglevel error -i IN " + options + " OUT", name, wav);
}

Ref<MP3Finger> fingerOf(const std::string& bytes, std::string_view name)
{
    BytesFile file(bytes);
    const auto sound = makeFfmpegSoundDecoding()->opening(file, name, std::chrono::milliseconds(opening.decodedMs()));
    MP3Finger::Lack lack{};
    return MP3Finger::make(sound.samples, opening, lack);
}

TEST(SoundFingerprint, IsNearlyTheSameInEveryEncoding)
{
    const std::string wav = recording(1);
    const auto plain = fingerOf(wav, "a.wav");
    ASSERT_TRUE(plain);
    struct Form {
        const char* options;
        const char* name;
        int least;
    };
    for (const Form& form : {Form{"", "a.flac", 100}, Form{"-b:a 320k", "a.mp3", 97}, Form{"-b:a 64k", "a.mp3", 95},
                             Form{"-write_xing 0", "a.mp3", 95}, Form{"-q:a 2", "a.ogg", 95}, Form{"", "a.m4a", 95},
                             Form{"", "a.opus", 95}, Form{"", "a.wma", 90}, Form{"-ar 22050 -ac 1", "a.flac", 95},
                             Form{"-af volume=-20dB", "a.mp3", 95}, Form{"-af adelay=1000:all=1", "a.mp3", 90}}) {
        const auto other = fingerOf(encoded(wav, form.options, form.name), form.name);
        ASSERT_TRUE(other) << form.name << " " << form.options;
        EXPECT_GE(compareFingers(*plain, *other), form.least) << form.name << " " << form.options;
    }
}

TEST(SoundFingerprint, TellsOtherSongsOfTheSameLengthApart)
{
    const auto plain = fingerOf(recording(1), "a.wav");
    for (unsigned seed = 2; seed < 4; ++seed)
        EXPECT_LT(compareFingers(*plain, *fingerOf(recording(seed), "a.wav")), 85) << seed;
}

TEST(SoundFingerprint, OfEncodedSilenceAndTonesThereIsNone)
{
    for (const char* source : {"anullsrc=r=44100:cl=stereo", "sine=frequency=440:sample_rate=44100"})
        for (const char* name : {"a.mp3", "a.ogg", "a.flac"})
            EXPECT_FALSE(fingerOf(
                madeBy(std::string("ffmpeg -nostdin -loglevel error -f lavfi -t 22 -i ") + source + " OUT", name),
                name))
                << source << " as " << name;
}

}  // namespace
}  // namespace kelvane
