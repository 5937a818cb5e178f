#include <algorithm>
#include <utility>

#include "platform/linux/media/adapters.h"
#include "platform/linux/media/ffmpeg_input.h"
#include "platform/linux/media/mono_sound.h"

namespace kelvane {
namespace {

using linux_os::FfmpegDecoder;
using linux_os::ffmpegFault;
using linux_os::FfmpegInput;
using linux_os::MonoSound;

constexpr int rate = SoundDecoding::rate;

// As many whole samples of four bytes as fit into the bytes of so long a sound, which are rounded to the nearest.
std::size_t samplesIn(std::chrono::milliseconds time)
{
    constexpr std::int64_t bytesPerSample = 4;
    const std::int64_t most = std::clamp<std::int64_t>(time.count(), 0, 3'600'000);
    return static_cast<std::size_t>((most * rate * bytesPerSample + 500) / 1000 / bytesPerSample);
}

// made, or why this sound is not compared.
MediaFault takeFrame(const AVFrame& frame, MonoSound& sound)
{
    if (frame.sample_rate < rate)
        return {MediaOutcome::lowRate, {}, std::to_string(frame.sample_rate) + " Hz"};
    const int error = sound.add(frame);
    return error < 0 ? ffmpegFault(error) : MediaFault{};
}

MediaFault decodeInto(MonoSound& sound, FfmpegDecoder& decoder)
{
    const auto frame = linux_os::makeFrame();
    while (!sound.full()) {
        const int error = decoder.next(*frame);
        if (error == AVERROR_EOF)
            break;
        if (error < 0)
            return ffmpegFault(error);
        if (const MediaFault fault = takeFrame(*frame, sound); fault.outcome != MediaOutcome::made)
            return fault;
    }
    const int error = sound.finish();
    return error < 0 ? ffmpegFault(error) : MediaFault{};
}

// Of a sound that ended without a single sample.
MediaFault emptySound(const FfmpegDecoder& decoder)
{
    return decoder.damage() < 0 ? ffmpegFault(decoder.damage()) : MediaFault{MediaOutcome::nothingThere, {}, {}};
}

// What was decoded before the rest turned out to be damaged is a sound all the same.
bool isWorthless(const MediaFault& fault)
{
    return fault.outcome != MediaOutcome::made && fault.outcome != MediaOutcome::damaged;
}

class FfmpegSoundDecoding final : public SoundDecoding {
public:
    DecodedSound opening(RandomAccessFile& file, std::string_view fileName, std::chrono::milliseconds longest) override
    {
        const auto opened = FfmpegInput::open(file, fileName);
        if (!opened.input)
            return {opened.fault, {}};
        AVStream* stream = opened.input->first(AVMEDIA_TYPE_AUDIO);
        if (stream == nullptr)
            return {{MediaOutcome::nothingThere, {}, {}}, {}};
        const auto decoding = FfmpegDecoder::open(*opened.input, *stream);
        if (!decoding.decoder)
            return {decoding.fault, {}};
        return decode(*decoding.decoder, longest);
    }

private:
    static DecodedSound decode(FfmpegDecoder& decoder, std::chrono::milliseconds longest)
    {
        MonoSound sound(rate, samplesIn(longest));
        MediaFault fault = decodeInto(sound, decoder);
        if (isWorthless(fault))
            return {std::move(fault), {}};
        std::vector<float> samples = sound.take();
        if (!samples.empty())
            return {{}, std::move(samples)};
        return {fault.outcome == MediaOutcome::made ? emptySound(decoder) : std::move(fault), {}};
    }
};

}  // namespace

std::unique_ptr<SoundDecoding> makeFfmpegSoundDecoding()
{
    return std::make_unique<FfmpegSoundDecoding>();
}

}  // namespace kelvane
