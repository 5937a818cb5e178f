#include "platform/linux/media/ffmpeg_input.h"

#include <chrono>
#include <gtest/gtest.h>
#include <random>

#include "media_adapters/made_files.h"
#include "media_adapters/sound_samples.h"
#include "platform/linux/media/adapters.h"
#include "support/bytes_file.h"
#include "support/temp_tree.h"

namespace kelvane {
namespace {

using linux_os::FfmpegInput;
using linux_os::FfmpegLimits;
using testing::BytesFile;
using testing::madeBy;
using testing::TempTree;
using testing::tone;
using testing::tune;
using testing::wavFile;
using testing::WavForm;

constexpr const char* ffmpeg = "ffmpeg -nostdin -loglevel error ";
constexpr std::chrono::milliseconds opening{19'817};

DecodedSound decoded(RandomAccessFile& file, std::string_view name)
{
    return makeFfmpegSoundDecoding()->opening(file, name, opening);
}

DecodedSound decoded(const std::string& bytes, std::string_view name)
{
    BytesFile file(bytes);
    return decoded(file, name);
}

MediaOutcome outcomeOf(const std::string& bytes, std::string_view name)
{
    return decoded(bytes, name).fault.outcome;
}

std::string sound(std::string_view fileName, const std::string& options = "")
{
    return madeBy(ffmpeg + std::string("-i IN ") + options + " OUT", fileName, wavFile(tune(1, 8), {.rate = 44'100}));
}

void patch(std::string& bytes, std::size_t at, const std::string& by)
{
    bytes.replace(at, by.size(), by);
}

std::string repeated(const std::string& bytes, std::size_t size)
{
    std::string all;
    while (all.size() < size)
        all += bytes;
    return all;
}

// A file that says it is as large as files can be, and repeats its bytes after the first ones for ever.
class EndlessFile final : public RandomAccessFile {
public:
    EndlessFile(std::string head, std::string rest) : head_(std::move(head)), rest_(std::move(rest)) {}
    std::uint64_t size() const override { return INT64_MAX; }
    Result<std::size_t> readAt(std::uint64_t position, std::span<std::byte> buffer) override
    {
        const std::size_t first = position < head_.size() ? head_.size() - static_cast<std::size_t>(position) : 0;
        const std::size_t count = std::min(first, buffer.size());
        std::copy_n(std::as_bytes(std::span(head_)).end() - static_cast<std::ptrdiff_t>(first), count, buffer.begin());
        for (std::size_t at = count; at < buffer.size(); at += rest_.size())
            std::copy_n(std::as_bytes(std::span(rest_)).begin(), std::min(rest_.size(), buffer.size() - at),
                        buffer.begin() + static_cast<std::ptrdiff_t>(at));
        read_ += buffer.size();
        return buffer.size();
    }
    [[nodiscard]] std::uint64_t bytesRead() const { return read_; }

private:
    std::string head_;
    std::string rest_;
    std::uint64_t read_ = 0;
};

class BreakingFile final : public BytesFile {
public:
    BreakingFile(std::string bytes, std::size_t readsUntilFault) : BytesFile(std::move(bytes)), left_(readsUntilFault)
    {
    }
    Result<std::size_t> readAt(std::uint64_t position, std::span<std::byte> buffer) override
    {
        if (left_ == 0)
            return Error{ErrorKind::io, 5, "broken"};
        --left_;
        return BytesFile::readAt(position, buffer.first(std::min<std::size_t>(buffer.size(), 4'096)));
    }

private:
    std::size_t left_;
};

TEST(FfmpegInput, OpensNoOtherFileWhateverAPlaylistNames)
{
    const TempTree tree;
    const std::string target = tree.write("target.wav", wavFile(tone(440, 25))).string();
    const std::string hls = "#EXTM3U\n#EXT-X-VERSION:3\n#EXT-X-TARGETDURATION:30\n#EXTINF:25,\n";
    const std::vector<std::string> lists = {
        "ffconcat version 1.0\nfile '" + target + "'\n",
        hls + target + "\n#EXT-X-ENDLIST\n",
        hls + "file://" + target + "\n",
        "v=0\no=- 0 0 IN IP4 127.0.0.1\ns=x\nt=0 0\nm=audio 9 RTP/AVP 0\n",
        "<?xml version=\"1.0\"?><MPD xmlns=\"urn:mpeg:dash:schema:mpd:2011\"><Period><AdaptationSet><Representation>"
        "<BaseURL>" +
            target + "</BaseURL></Representation></AdaptationSet></Period></MPD>",
        "[playlist]\nFile1=" + target + "\n",
        target + "\n"};
    for (const std::string& list : lists)
        for (const char* name : {"a.m3u8", "a.ffconcat", "a.mp3", "a.wav", "a.mpd", "a.sdp", "a.pls"}) {
            const DecodedSound sound = decoded(list, tree.path(name).string());
            EXPECT_TRUE(sound.samples.empty()) << name << "\n" << list;
            EXPECT_NE(sound.fault.outcome, MediaOutcome::made) << name << "\n" << list;
        }
}

TEST(FfmpegInput, GoesByTheContentWhateverTheName)
{
    const std::string flac = sound("a.flac");
    for (const char* name : {"a.mp3", "a.txt", "a", "http://example.org/a.wav", "concat:a|b"})
        EXPECT_EQ(outcomeOf(flac, name), MediaOutcome::made) << name;
}

TEST(FfmpegInput, SaysWhyThereIsNothing)
{
    const std::string picture = madeBy(ffmpeg + std::string("-f lavfi -i testsrc=s=64x64 -frames:v 1 OUT"), "c.png");
    const std::string film = madeBy(ffmpeg + std::string("-f lavfi -i testsrc=s=64x64 -t 1 -c:v mpeg4 OUT"), "f.mp4");
    EXPECT_EQ(outcomeOf("", "a.mp3"), MediaOutcome::damaged);
    EXPECT_EQ(outcomeOf("Only a few words.\n", "a.mp3"), MediaOutcome::damaged);
    EXPECT_EQ(outcomeOf("Only a few words.\n", "a.mid"), MediaOutcome::unknownFormat);
    EXPECT_EQ(outcomeOf(picture, "a.mp3"), MediaOutcome::unknownFormat);
    EXPECT_EQ(outcomeOf(film, "a.mp4"), MediaOutcome::nothingThere);
    EXPECT_EQ(outcomeOf(wavFile({}), "a.wav"), MediaOutcome::nothingThere);
    EXPECT_EQ(outcomeOf(std::string(200'000, 'x'), "a.ogg"), MediaOutcome::damaged);
}

TEST(FfmpegInput, NamesACodecThatIsMissing)
{
    DecodedSound sound = decoded(wavFile(tone(440, 20), {.coding = 0x7A21}), "a.wav");
    EXPECT_EQ(sound.fault.outcome, MediaOutcome::codecMissing);
    EXPECT_EQ(sound.fault.codec, "0x7A21");
    std::string m4a = ::kelvane::sound("a.m4a");
    patch(m4a, m4a.find("mp4a", m4a.find("stsd")), "qxyz");
    patch(m4a, m4a.find("esds"), "free");
    sound = decoded(m4a, "a.m4a");
    EXPECT_EQ(sound.fault.outcome, MediaOutcome::codecMissing);
    EXPECT_EQ(sound.fault.codec, "qxyz");
}

TEST(FfmpegInput, TellsLockedSoundFromDamage)
{
    const std::string locked =
        sound("a.mp4", "-encryption_scheme cenc-aes-ctr -encryption_key 0123456789abcdef0123456789abcdef "
                       "-encryption_kid a7e61c373e219033c21091fa607bf3b8");
    EXPECT_EQ(outcomeOf(locked, "a.m4a"), MediaOutcome::encrypted);
}

TEST(FfmpegInput, GivesWhatIsLeftOfAFileThatBreaksOff)
{
    for (const char* name : {"a.mp3", "a.flac", "a.ogg", "a.aac", "a.wav", "a.mka"}) {
        const std::string whole = sound(name);
        const DecodedSound half = decoded(whole.substr(0, whole.size() / 2), name);
        EXPECT_EQ(half.fault.outcome, MediaOutcome::made) << name;
        EXPECT_GT(half.samples.size(), 30'000u) << name;
        EXPECT_LT(half.samples.size(), 60'000u) << name;
    }
    const std::string m4a = sound("a.m4a");  // the table of contents comes last
    EXPECT_EQ(outcomeOf(m4a.substr(0, m4a.size() / 2), "a.m4a"), MediaOutcome::damaged);
}

TEST(FfmpegInput, SaysThatAFileCannotBeRead)
{
    const std::string bytes = wavFile(tone(440, 20));
    for (const std::size_t reads : {0u, 1u, 2u, 5u, 40u}) {
        BreakingFile file(bytes, reads);
        const DecodedSound sound = decoded(file, "a.wav");
        EXPECT_EQ(sound.fault.outcome, MediaOutcome::unreadable) << reads;
        EXPECT_TRUE(sound.samples.empty()) << reads;
    }
}

TEST(FfmpegInput, TakesNoRoomForWhatAHeaderClaims)
{
    std::string wav = wavFile(tone(440, 1));
    patch(wav, 40, "\xFF\xFF\xFF\x7F");  // the size of its samples
    EXPECT_EQ(decoded(wav, "a.wav").samples.size(), 11'025u);
    for (const char* claim : {"\xFF\xFF", "\xFF\x7F"}) {
        std::string many = wavFile(tone(440, 1));
        patch(many, 22, claim);  // channels
        EXPECT_LT(decoded(many, "a.wav").samples.size(), 20'000u);
    }
    std::string fast = wavFile(tone(440, 1));
    patch(fast, 24, "\xFF\xFF\xFF\x7F");  // samples a second
    EXPECT_LT(decoded(fast, "a.wav").samples.size(), 20'000u);
}

TEST(FfmpegInput, ReadsOnlySoMuchOfAnEndlessFile)
{
    const std::string mp3 = sound("a.mp3");
    const std::string ts = sound("a.ts", "-c:a mp2");
    const std::string wav = wavFile(tone(440, 1));
    const auto junk = [](const char* bytes) { return repeated(bytes, 64 * 1'024); };
    for (const auto& [head, rest] :
         std::vector<std::pair<std::string, std::string>>{{"", std::string(65'536, '\0')},
                                                          {mp3.substr(0, 5'000), std::string(65'536, '\0')},
                                                          {mp3.substr(0, 20'000), junk("\xFF")},
                                                          {ts.substr(0, 18'800), ts.substr(0, 18'800)},
                                                          {wav.substr(0, 1'000), junk("JUNK")}}) {
        EndlessFile file(head, rest);
        const auto opened = FfmpegInput::open(file, "a.mp3", FfmpegLimits{8 * 1'048'576, 5'000});
        AVStream* stream = opened.input ? opened.input->first(AVMEDIA_TYPE_AUDIO) : nullptr;
        const auto packet = linux_os::makePacket();
        int packets = 0;
        while (stream != nullptr && opened.input->read(*stream, *packet) >= 0)
            ++packets;
        EXPECT_LE(packets, 5'000);
        EXPECT_LE(file.bytesRead(), 9u * 1'048'576u) << head.size();
    }
}

TEST(FfmpegInput, EndsAnEndlessSoundWhereTheOpeningEnds)
{
    const std::string mp3 = sound("a.mp3");
    EndlessFile file(mp3, mp3);
    EXPECT_EQ(decoded(file, "a.mp3").samples.size(), 218'482u);
    EXPECT_LT(file.bytesRead(), 20u * 1'048'576u);
}

TEST(FfmpegInput, SurvivesBytesThatChangedAtRandom)
{
    std::mt19937 random(1);
    for (const char* name : {"a.mp3", "a.flac", "a.ogg", "a.m4a", "a.wma", "a.mka"}) {
        const std::string whole = sound(name);
        for (int round = 0; round < 15; ++round) {
            std::string bytes = whole;
            const std::size_t reach = round % 2 == 0 ? std::min<std::size_t>(2'000, bytes.size()) : bytes.size();
            for (int i = 0; i < 1 + round; ++i)
                bytes[random() % reach] = static_cast<char>(random());
            const DecodedSound sound = decoded(bytes, name);
            EXPECT_EQ(sound.samples.empty(), sound.fault.outcome != MediaOutcome::made) << name << " " << round;
            EXPECT_LE(sound.samples.size(), 218'482u);
            static_cast<void>(makeFfmpegFacts()->read(*std::make_unique<BytesFile>(bytes), name));
        }
    }
}

}  // namespace
}  // namespace kelvane
