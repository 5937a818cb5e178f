#include <array>
#include <cstdio>
#include <cstdlib>

#include "base/utf.h"
#include "platform/linux/media/adapters.h"
#include "platform/linux/media/ffmpeg_input.h"
#include "platform/linux/media/film_tags.h"
#include "platform/linux/media/stream_length.h"
#include "platform/property_table.h"

namespace kelvane {
namespace linux_os {
namespace {

// Sizes that decide nothing when they are unknown.
void addKnown(std::string_view name, std::int64_t value, FactList& facts)
{
    if (value > 0)
        facts.number(name, value);
}

void addCodec(std::string_view name, AVCodecID codec, FactList& facts)
{
    const AVCodecDescriptor* known = avcodec_descriptor_get(codec);
    if (known != nullptr)
        facts.text(name, toUtf16(known->long_name != nullptr ? known->long_name : known->name));
}

// The identifier of a kind of sound: the number that WAV files have for it, in the form that media frameworks of
// Windows give it (RFC 2361).
void addSoundFormat(AVCodecID codec, FactList& facts)
{
    const std::array tables = {avformat_get_riff_audio_tags(), static_cast<const AVCodecTag*>(nullptr)};
    const unsigned tag = av_codec_get_tag(tables.data(), codec);
    std::array<char, 40> text{};
    if (tag != 0 && std::snprintf(text.data(), text.size(), "{%08X-0000-0010-8000-00AA00389B71}", tag) > 0)
        facts.text("System.Audio.Format", toUtf16(text.data()));
}

std::int64_t bitsPerSample(const AVCodecParameters& sound)
{
    const int exact = av_get_exact_bits_per_sample(sound.codec_id);
    if (exact > 0)
        return exact;
    return sound.bits_per_raw_sample > 0 ? sound.bits_per_raw_sample : sound.bits_per_coded_sample;
}

void addTitle(std::string_view name, const AVStream& stream, FactList& facts)
{
    if (const AVDictionaryEntry* title = av_dict_get(stream.metadata, "title", nullptr, 0))
        facts.text(name, toUtf16(title->value));
}

// What the stream does not say is that of the whole file where there is nothing but this stream.
std::int64_t bitrateOf(const AVStream& stream, std::int64_t wholeFile)
{
    if (stream.codecpar->bit_rate > 0)
        return stream.codecpar->bit_rate;
    // As Matroska's writers note it.
    const AVDictionaryEntry* noted = av_dict_get(stream.metadata, "BPS", nullptr, AV_DICT_IGNORE_SUFFIX);
    const std::int64_t rate = noted == nullptr ? 0 : std::strtoll(noted->value, nullptr, 10);
    return rate > 0 ? rate : wholeFile;
}

void addSound(const AVStream& stream, std::int64_t wholeFile, FactList& facts)
{
    const AVCodecParameters& sound = *stream.codecpar;
    addKnown("System.Audio.EncodingBitrate", bitrateOf(stream, wholeFile), facts);
    addKnown("System.Audio.SampleRate", sound.sample_rate, facts);
    addKnown("System.Audio.SampleSize", bitsPerSample(sound), facts);
    addKnown("System.Audio.ChannelCount", sound.ch_layout.nb_channels, facts);
    addSoundFormat(sound.codec_id, facts);
    addCodec("System.Audio.Compression", sound.codec_id, facts);
    addTitle("System.Audio.StreamName", stream, facts);
}

// In frames a thousand seconds.
void addFrameRate(AVFormatContext& format, AVStream& stream, FactList& facts)
{
    const AVRational rate = av_guess_frame_rate(&format, &stream, nullptr);
    if (rate.num > 0 && rate.den > 0)
        addKnown("System.Video.FrameRate", av_rescale(rate.num, 1'000, rate.den), facts);
}

// Of a single pixel.
void addAspect(AVFormatContext& format, AVStream& stream, FactList& facts)
{
    const AVRational aspect = av_guess_sample_aspect_ratio(&format, &stream, nullptr);
    if (aspect.num <= 0 || aspect.den <= 0)
        return;
    facts.number("System.Video.HorizontalAspectRatio", aspect.num);
    facts.number("System.Video.VerticalAspectRatio", aspect.den);
}

void addFourCC(const AVCodecParameters& film, FactList& facts)
{
    const std::array tables = {avformat_get_riff_video_tags(), static_cast<const AVCodecTag*>(nullptr)};
    const unsigned tag = film.codec_tag != 0 ? film.codec_tag : av_codec_get_tag(tables.data(), film.codec_id);
    addKnown("System.Video.FourCC", tag, facts);
}

void addFilm(AVFormatContext& format, AVStream& stream, FactList& facts)
{
    const AVCodecParameters& film = *stream.codecpar;
    addKnown("System.Video.FrameWidth", film.width, facts);
    addKnown("System.Video.FrameHeight", film.height, facts);
    addFrameRate(format, stream, facts);
    addKnown("System.Video.EncodingBitrate", bitrateOf(stream, 0), facts);
    addKnown("System.Video.TotalBitrate", format.bit_rate, facts);
    addKnown("System.Video.SampleSize", film.bits_per_coded_sample, facts);
    addAspect(format, stream, facts);
    addFourCC(film, facts);
    addCodec("System.Video.Compression", film.codec_id, facts);
    addTitle("System.Video.StreamName", stream, facts);
}

void addStreams(FfmpegInput& input, std::uint64_t fileSize, FactList& facts)
{
    AVFormatContext& format = input.format();
    AVStream* film = input.first(AVMEDIA_TYPE_VIDEO);
    const AVStream* sound = input.first(AVMEDIA_TYPE_AUDIO);
    const StreamLength length = measureLength(input, fileSize);
    addKnown("System.Media.Duration", length.ticks, facts);
    if (length.variableRate)
        facts.number("System.Audio.IsVariableBitRate", *length.variableRate ? 1 : 0);
    if (sound != nullptr)
        addSound(*sound, film == nullptr ? format.bit_rate : 0, facts);
    if (film != nullptr)
        addFilm(format, *film, facts);
    if ((sound != nullptr && isEncrypted(format, *sound)) || (film != nullptr && isEncrypted(format, *film)))
        facts.number("System.DRM.IsProtected", 1);
}

class FfmpegFacts final : public FactReading {
public:
    std::vector<NamedValue> read(RandomAccessFile& file, std::string_view fileName) override
    {
        const auto opened = FfmpegInput::open(file, fileName);
        FactList facts(*properties_);
        if (!opened.input)
            return {};
        addStreams(*opened.input, file.size(), facts);
        addFilmTags(opened.input->format(), facts);
        return facts.take();
    }

private:
    std::unique_ptr<PropertySystem> properties_ = makePropertyTable();
};

}  // namespace
}  // namespace linux_os

std::unique_ptr<FactReading> makeFfmpegFacts()
{
    return std::make_unique<linux_os::FfmpegFacts>();
}

}  // namespace kelvane
