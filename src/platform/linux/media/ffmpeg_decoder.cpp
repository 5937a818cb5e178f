#include <algorithm>
#include <array>
#include <cstdio>
#include <new>
#include <utility>

#include "platform/linux/media/ffmpeg_input.h"

namespace kelvane::linux_os {
namespace {

// In a row: more than these, and nothing will come of the file.
constexpr int mostBadPackets = 500;
// Of one frame of sound.
constexpr std::int64_t mostSamples = 1 << 22;

constexpr std::array<std::uint32_t, 7> lockedTags = {
    MKTAG('e', 'n', 'c', 'a'), MKTAG('e', 'n', 'c', 'v'), MKTAG('e', 'n', 'c', 's'), MKTAG('d', 'r', 'm', 's'),
    MKTAG('d', 'r', 'm', 'i'), MKTAG('p', 'r', 'o', 't'), MKTAG('a', 'a', 'v', 'd'),
};

// The mark by which a container names what it holds: four letters, or a number; empty where it has none.
std::string markText(std::uint32_t mark)
{
    if (mark == 0)
        return {};
    std::string letters;
    for (int shift = 0; shift < 32; shift += 8)
        letters.push_back(static_cast<char>(mark >> shift & 0xFF));
    if (std::all_of(letters.begin(), letters.end(), [](char letter) { return letter >= ' ' && letter <= '~'; }))
        return letters;
    std::array<char, 16> number{};
    std::snprintf(number.data(), number.size(), "0x%04X", mark);
    return number.data();
}

std::string codecName(const AVCodecParameters& parameters)
{
    const AVCodecID codec = parameters.codec_id;
    return codec != AV_CODEC_ID_NONE ? avcodec_get_name(codec) : markText(parameters.codec_tag);
}

bool isEmptyResult(int error)
{
    return error == AVERROR(EAGAIN) || error == AVERROR_EOF;
}

// The library's own words. It borrows numbers of the system, whose words are about files and programs and would only
// mislead: "invalid argument", "permission denied".
std::string wordsFor(int error)
{
    constexpr int mostOfSystem = 4095;
    std::array<char, AV_ERROR_MAX_STRING_SIZE> text{};
    const bool known = AVUNERROR(error) > mostOfSystem && av_strerror(error, text.data(), text.size()) == 0;
    return known ? text.data() : "";
}

}  // namespace

MediaFault ffmpegFault(int error)
{
    MediaFault fault{MediaOutcome::damaged, {}, wordsFor(error)};
    if (error == AVERROR(ENOMEM))
        fault.outcome = MediaOutcome::tooMuchMemory;
    else if (error == AVERROR(EACCES))
        fault.outcome = MediaOutcome::encrypted;
    else if (error == unreadableError)
        fault.outcome = MediaOutcome::unreadable;
    else if (error == AVERROR_DECODER_NOT_FOUND || error == AVERROR_PATCHWELCOME || error == AVERROR(ENOSYS))
        fault.outcome = MediaOutcome::codecMissing;
    else if (error == AVERROR_DEMUXER_NOT_FOUND)
        fault.outcome = MediaOutcome::unknownFormat;
    else if (error == AVERROR_STREAM_NOT_FOUND)
        fault.outcome = MediaOutcome::nothingThere;
    return fault;
}

bool isEncrypted(const AVFormatContext& format, const AVStream& stream)
{
    if (av_stream_get_side_data(&stream, AV_PKT_DATA_ENCRYPTION_INIT_INFO, nullptr) != nullptr ||
        av_stream_get_side_data(&stream, AV_PKT_DATA_ENCRYPTION_INFO, nullptr) != nullptr)
        return true;
    if (av_dict_get(format.metadata, "ASF_Protection_Type", nullptr, 0) != nullptr)
        return true;
    return std::find(lockedTags.begin(), lockedTags.end(), stream.codecpar->codec_tag) != lockedTags.end();
}

FfmpegDecoder::FfmpegDecoder(FfmpegInput& input, AVStream& stream, Context context)
    : input_(input), stream_(stream), context_(std::move(context)), packet_(makePacket())
{
}

FfmpegDecoder::Opened FfmpegDecoder::open(FfmpegInput& input, AVStream& stream, std::int64_t mostPixels)
{
    if (isEncrypted(input.format(), stream))
        return {nullptr, {MediaOutcome::encrypted, {}, {}}};
    const AVCodec* codec = avcodec_find_decoder(stream.codecpar->codec_id);
    if (codec == nullptr)
        return {nullptr, {MediaOutcome::codecMissing, codecName(*stream.codecpar), {}}};
    Context context(avcodec_alloc_context3(codec));
    if (!context)
        throw std::bad_alloc();
    context->thread_count = 1;
    context->max_pixels = mostPixels;
    context->max_samples = mostSamples;
    int error = avcodec_parameters_to_context(context.get(), stream.codecpar);
    context->pkt_timebase = stream.time_base;
    if (error >= 0)
        error = avcodec_open2(context.get(), codec, nullptr);
    if (error < 0) {
        MediaFault fault = ffmpegFault(error);
        if (fault.outcome == MediaOutcome::codecMissing)
            fault.codec = codecName(*stream.codecpar);
        return {nullptr, std::move(fault)};
    }
    return {std::unique_ptr<FfmpegDecoder>(new FfmpegDecoder(input, stream, std::move(context))), {}};
}

// 0 when the decoder may have something now.
int FfmpegDecoder::feed()
{
    const int read = input_.read(stream_, *packet_);
    if (read == unreadableError)
        return read;
    if (read < 0) {
        ended_ = true;  // a file that breaks off ends where it breaks off
        avcodec_send_packet(context_.get(), nullptr);
        return 0;
    }
    // Without the key, some decoders make noise of it.
    if (av_packet_get_side_data(packet_.get(), AV_PKT_DATA_ENCRYPTION_INFO, nullptr) != nullptr)
        return AVERROR(EACCES);
    const int error = avcodec_send_packet(context_.get(), packet_.get());
    av_packet_unref(packet_.get());
    return passOver(error);
}

// 0 when it is worth going on after what a packet gave.
int FfmpegDecoder::passOver(int error)
{
    if (error >= 0 || isEmptyResult(error))
        return 0;
    damage_ = error;
    const bool tooMany = ++badPackets_ > mostBadPackets;
    return tooMany || error == AVERROR(ENOMEM) ? error : 0;
}

int FfmpegDecoder::next(AVFrame& frame)
{
    for (;;) {
        const int error = avcodec_receive_frame(context_.get(), &frame);
        if (error >= 0) {
            badPackets_ = 0;
            return 0;
        }
        if (ended_ && isEmptyResult(error))
            return AVERROR_EOF;
        if (const int hopeless = passOver(error); hopeless < 0)
            return hopeless;
        if (const int fed = ended_ ? 0 : feed(); fed < 0)
            return fed;
    }
}

void FfmpegDecoder::forget()
{
    avcodec_flush_buffers(context_.get());
    badPackets_ = 0;
    ended_ = false;
}

}  // namespace kelvane::linux_os
