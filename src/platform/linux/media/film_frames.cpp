#include "platform/linux/media/film_frames.h"

#include <algorithm>
#include <utility>

namespace kelvane::linux_os {
namespace {

constexpr AVRational milliseconds{1, 1000};
// From where a film can be decoded to the frame that is wanted; films without such places end there.
constexpr int mostFrames = 3'000;
// This long before the frame that is wanted, every frame is decoded again: more than any decoder holds back.
constexpr int heldBack = 40;
constexpr std::int64_t leastRunUp = 1'000;
// Containers round the times of frames, some to whole milliseconds.
constexpr std::int64_t roundingOfTimes = 10;
// Some containers are searched by guessing, and end up behind the place.
constexpr std::int64_t secondRunUp = 15'000;

// Raw streams: FFmpeg divides their size by a guessed rate.
bool isGuessed(const AVFormatContext& format)
{
    return format.duration_estimation_method == AVFMT_DURATION_FROM_BITRATE;
}

std::int64_t startOf(const AVStream& stream)
{
    return stream.start_time == AV_NOPTS_VALUE ? 0 : std::max(stream.start_time, -INT64_MAX);
}

// Whatever a file claims; so that no sum of times is too large. In milliseconds.
constexpr std::int64_t longestFilm = std::int64_t{10} * 366 * 24 * 3'600 * 1'000;

std::int64_t believable(std::int64_t time)
{
    return std::clamp<std::int64_t>(time, 0, longestFilm);
}

std::int64_t sum(std::int64_t a, std::int64_t b)
{
    std::int64_t result = 0;
    return __builtin_add_overflow(a, b, &result) ? (a < 0 ? INT64_MIN : INT64_MAX) : result;
}

MediaFault faultOfStream(const AVStream& stream, std::uint64_t mostPixels)
{
    const auto side = [](int length) { return static_cast<std::uint64_t>(std::max(length, 0)); };
    if (side(stream.codecpar->width) * side(stream.codecpar->height) > mostPixels)
        return {MediaOutcome::tooLarge, {}, {}};
    return {};
}

}  // namespace

FilmFrames::FilmFrames(std::unique_ptr<FfmpegInput> input, AVStream& stream, std::unique_ptr<FfmpegDecoder> decoder)
    : input_(std::move(input)), stream_(stream), decoder_(std::move(decoder)), duration_(statedDuration())
{
    if (duration_ == 0)
        duration_ = measuredDuration();
}

FilmFrames::Opened FilmFrames::open(RandomAccessFile& file, std::string_view fileName, std::uint64_t mostPixels)
{
    auto opened = FfmpegInput::open(file, fileName);
    if (!opened.input)
        return {nullptr, std::move(opened.fault)};
    AVStream* stream = opened.input->first(AVMEDIA_TYPE_VIDEO);
    if (stream == nullptr)
        return {nullptr, {MediaOutcome::nothingThere, {}, {}}};
    if (MediaFault fault = faultOfStream(*stream, mostPixels); fault.outcome != MediaOutcome::made)
        return {nullptr, std::move(fault)};
    auto decoding = FfmpegDecoder::open(*opened.input, *stream, static_cast<std::int64_t>(mostPixels));
    if (!decoding.decoder)
        return {nullptr, std::move(decoding.fault)};
    return {std::unique_ptr<FilmFrames>(new FilmFrames(std::move(opened.input), *stream, std::move(decoding.decoder))),
            {}};
}

std::int64_t FilmFrames::statedDuration() const
{
    const AVFormatContext& format = input_->format();
    if (isGuessed(format))
        return 0;
    if (stream_.duration != AV_NOPTS_VALUE && stream_.duration > 0)
        return believable(av_rescale_q(stream_.duration, stream_.time_base, milliseconds));
    return format.duration == AV_NOPTS_VALUE ? 0 : believable(format.duration / 1000);
}

// Recordings that were never closed properly do not say. Reading on ends at the limits of the input.
std::int64_t FilmFrames::measuredDuration()
{
    const FfmpegPacket packet = makePacket();
    std::int64_t end = 0;
    while (input_->read(stream_, *packet) >= 0)
        if (packet->pts != AV_NOPTS_VALUE)
            end = std::max(end, sum(packet->pts, std::max<std::int64_t>(packet->duration, 0)));
    return believable(av_rescale_q(sum(end, -startOf(stream_)), stream_.time_base, milliseconds));
}

std::int64_t FilmFrames::stamp(std::int64_t time) const
{
    return sum(startOf(stream_), av_rescale_q(time, milliseconds, stream_.time_base));
}

bool FilmFrames::jump(std::int64_t time)
{
    decoder_->forget();
    return av_seek_frame(&input_->format(), stream_.index, stamp(time), AVSEEK_FLAG_BACKWARD) >= 0;
}

bool FilmFrames::startsLater(const AVFrame& frame, std::int64_t time) const
{
    return frame.best_effort_timestamp != AV_NOPTS_VALUE && frame.best_effort_timestamp > stamp(time + roundingOfTimes);
}

bool FilmFrames::isNear(std::int64_t at, std::int64_t time) const
{
    const AVRational rate = stream_.avg_frame_rate;
    const std::int64_t frames = rate.num > 0 && rate.den > 0 ? av_rescale(heldBack * 1000, rate.den, rate.num) : 5'000;
    return at >= stamp(time - std::max(frames, leastRunUp));
}

// A frame that starts later is handed out only where it is the first one.
FfmpegFrame FilmFrames::decodeUpTo(std::int64_t time, MediaFault& fault)
{
    FfmpegFrame shown;
    FfmpegFrame next = makeFrame();
    int error = 0;
    decoder_->hurry(!isNear(startOf(stream_), time));
    for (int count = 0; count < mostFrames; ++count) {
        error = decoder_->next(*next);
        if (error < 0 || (shown && startsLater(*next, time)))
            break;
        if (next->best_effort_timestamp == AV_NOPTS_VALUE || isNear(next->best_effort_timestamp, time))
            decoder_->hurry(false);
        if (!shown)
            shown = makeFrame();
        std::swap(shown, next);
        if (startsLater(*shown, time))
            break;
    }
    if (!shown)
        fault = error == AVERROR_EOF && decoder_->damage() == 0 ? MediaFault{MediaOutcome::nothingThere, {}, {}}
                : error == AVERROR_EOF                          ? ffmpegFault(decoder_->damage())
                                                                : ffmpegFault(error);
    return shown;
}

FfmpegFrame FilmFrames::frameAt(std::int64_t time, MediaFault& fault)
{
    const bool jumped = jump(time);
    FfmpegFrame frame = decodeUpTo(time, fault);
    if (jumped && time > 0 && (!frame || startsLater(*frame, time)) &&
        jump(std::max<std::int64_t>(time - secondRunUp, 0)))
        frame = decodeUpTo(time, fault);
    return frame;
}

}  // namespace kelvane::linux_os
