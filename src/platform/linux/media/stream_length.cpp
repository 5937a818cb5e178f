#include "platform/linux/media/stream_length.h"

#include <algorithm>

namespace kelvane::linux_os {
namespace {

constexpr AVRational ticks = {1, 10'000'000};
// 4 seconds of an MP3 file. Encoders that vary the rate do so within that.
constexpr int packetsToJudge = 150;
// Below it, packets of one size may just be the silence in front of what comes at other rates.
constexpr std::int64_t leastSteadyRate = 96'000;
constexpr std::uint64_t largestCounted = 256u * 1'048'576u;

struct Packets {
    std::int64_t duration = 0;  // in the stream's unit
    bool even = true;           // all of the same size, but for a byte that evens out fractions
    bool ended = false;         // there are no more in the file
};

Packets countPackets(FfmpegInput& input, const AVStream& stream, bool judgeOnly)
{
    const FfmpegPacket packet = makePacket();
    Packets all;
    int smallest = 0;
    int largest = 0;
    for (int count = 0; !judgeOnly || count < packetsToJudge; ++count) {
        if (const int error = input.read(stream, *packet); error < 0) {
            all.ended = error == AVERROR_EOF && !input.limited();
            break;
        }
        smallest = count == 0 ? packet->size : std::min(smallest, packet->size);
        largest = std::max(largest, packet->size);
        all.even = largest - smallest <= 1;
        all.duration += std::clamp<std::int64_t>(packet->duration, 0, INT32_MAX);  // too few to overflow the sum
        if (!all.even && judgeOnly)
            break;
    }
    return all;
}

std::int64_t claimedLength(const AVFormatContext& format, const AVStream* onlySound)
{
    const bool ofStream = onlySound != nullptr && onlySound->duration != AV_NOPTS_VALUE && onlySound->duration > 0;
    const std::int64_t length = ofStream ? av_rescale_q(onlySound->duration, onlySound->time_base, ticks)
                                : format.duration == AV_NOPTS_VALUE
                                    ? 0
                                    : av_rescale_q(format.duration, {1, AV_TIME_BASE}, ticks);
    return std::max<std::int64_t>(length, 0);
}

// Of sound whose every sample takes the same room.
std::int64_t longestIn(std::uint64_t fileSize, const AVCodecParameters& sound)
{
    const int bits = av_get_exact_bits_per_sample(sound.codec_id);
    const std::int64_t perSecond = std::int64_t{bits} * sound.sample_rate * sound.ch_layout.nb_channels;
    const std::uint64_t most = std::min<std::uint64_t>(fileSize, INT64_MAX / 8);
    return perSecond <= 0 ? INT64_MAX : av_rescale(static_cast<std::int64_t>(most) * 8, ticks.den, perSecond);
}

StreamLength measureSound(FfmpegInput& input, const AVStream& sound, std::uint64_t fileSize)
{
    const AVFormatContext& format = input.format();
    StreamLength length{std::min(claimedLength(format, &sound), longestIn(fileSize, *sound.codecpar)), {}};
    const bool mp3 = sound.codecpar->codec_id == AV_CODEC_ID_MP3;
    const bool guessed = format.duration_estimation_method == AVFMT_DURATION_FROM_BITRATE || length.ticks == 0;
    if (!mp3 && !guessed)
        return length;
    // The first packets are taken off the input here, and counted again below by going on.
    const Packets first = countPackets(input, sound, true);
    if (mp3)
        length.variableRate = !first.even;
    const bool steady = mp3 && first.even && length.ticks > 0 && sound.codecpar->bit_rate >= leastSteadyRate;
    if (!guessed || steady || fileSize > largestCounted)
        return length;
    const Packets rest = first.ended ? Packets{0, true, true} : countPackets(input, sound, false);
    if (rest.ended)
        length.ticks = av_rescale_q(first.duration + rest.duration, sound.time_base, ticks);
    return length;
}

}  // namespace

StreamLength measureLength(FfmpegInput& input, std::uint64_t fileSize)
{
    const AVStream* sound = input.first(AVMEDIA_TYPE_AUDIO);
    if (sound != nullptr && input.first(AVMEDIA_TYPE_VIDEO) == nullptr)
        return measureSound(input, *sound, fileSize);
    return {claimedLength(input.format(), nullptr), {}};
}

}  // namespace kelvane::linux_os
