#include "platform/linux/media/bitmap_picture.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <utility>

#include "base/words.h"
#include "platform/linux/media/ffmpeg_input.h"
#include "platform/linux/media/frame_pixels.h"
#include "platform/linux/media/picture_limits.h"

namespace kelvane::linux_os {
namespace {

// The frame, its copy with transparency, and that without.
constexpr std::uint32_t bitmapPixelBytes = 11;

using Head = std::array<std::uint8_t, 32>;

struct Bitmap {
    AVCodecID codec = AV_CODEC_ID_NONE;
    PictureSize size;
};

std::uint32_t number(const Head& head, std::size_t at, std::size_t bytes)
{
    std::uint32_t value = 0;
    for (std::size_t i = bytes; i-- > 0;)
        value = value << 8 | head[at + i];
    return value;
}

// Rows from top to bottom have a negative height.
std::uint32_t size32(const Head& head, std::size_t at)
{
    const auto value = static_cast<std::int32_t>(number(head, at, 4));
    return static_cast<std::uint32_t>(std::abs(std::int64_t{value}));
}

Bitmap windowsBitmap(const Head& head)
{
    constexpr std::uint32_t oldHeader = 12;
    if (number(head, 14, 4) == oldHeader)
        return {AV_CODEC_ID_BMP, {number(head, 18, 2), number(head, 20, 2)}};
    return {AV_CODEC_ID_BMP, {size32(head, 18), size32(head, 22)}};
}

Bitmap paintbrush(const Head& head)
{
    return {AV_CODEC_ID_PCX,
            {number(head, 8, 2) - number(head, 4, 2) + 1, number(head, 10, 2) - number(head, 6, 2) + 1}};
}

Bitmap recognise(const Head& head, std::string_view fileName)
{
    const std::string name = asciiLower(fileName);
    if (head[0] == 'B' && head[1] == 'M')
        return windowsBitmap(head);
    if (name.ends_with(".tga"))
        return {AV_CODEC_ID_TARGA, {number(head, 12, 2), number(head, 14, 2)}};
    if (head[0] == 0x0A && head[2] == 1 && name.ends_with(".pcx"))
        return paintbrush(head);
    return {};
}

struct FreeContext {
    void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }
};

// Null where memory is short or the file cannot be read.
FfmpegPacket wholeFile(RandomAccessFile& file)
{
    FfmpegPacket packet = makePacket();
    const auto size = static_cast<std::size_t>(file.size());
    if (av_new_packet(packet.get(), static_cast<int>(size)) < 0)
        return nullptr;
    const auto count = file.readAt(0, {reinterpret_cast<std::byte*>(packet->data), size});
    return count && *count == size ? std::move(packet) : nullptr;
}

// The one frame of the packet, or an error of FFmpeg's.
int decode(AVCodecID codec, const AVPacket& packet, const PreviewBounds& bounds, AVFrame& frame)
{
    const AVCodec* decoder = avcodec_find_decoder(codec);
    if (decoder == nullptr)
        return AVERROR_DECODER_NOT_FOUND;
    const std::unique_ptr<AVCodecContext, FreeContext> context(avcodec_alloc_context3(decoder));
    if (!context)
        return AVERROR(ENOMEM);
    context->thread_count = 1;
    context->max_pixels = static_cast<std::int64_t>(bounds.pixels);
    context->err_recognition = AV_EF_EXPLODE;  // a picture of which a part is missing is no picture
    int error = avcodec_open2(context.get(), decoder, nullptr);
    if (error >= 0)
        error = avcodec_send_packet(context.get(), &packet);
    if (error >= 0)
        error = avcodec_send_packet(context.get(), nullptr);
    return error < 0 ? error : avcodec_receive_frame(context.get(), &frame);
}

DecodedPicture nothing(MediaFault fault)
{
    return {std::move(fault), 0, 0, {}};
}

DecodedPicture decoded(const Bitmap& bitmap, RandomAccessFile& file, const PreviewBounds& bounds)
{
    const FfmpegPacket packet = wholeFile(file);
    if (!packet)
        return nothing({MediaOutcome::unreadable, {}, {}});
    const FfmpegFrame frame = makeFrame();
    if (const int error = decode(bitmap.codec, *packet, bounds, *frame); error < 0)
        return nothing(ffmpegFault(error));
    const PictureSize size{static_cast<std::uint32_t>(frame->width), static_cast<std::uint32_t>(frame->height)};
    const RgbPixels pixels = framePixels(*frame, size);
    if (pixels.samples.empty())
        return nothing({MediaOutcome::damaged, {}, {}});
    return scaledPixels(pixels, previewSize(size, bounds));
}

}  // namespace

DecodedPicture bitmapPreview(RandomAccessFile& file, std::string_view fileName, const PreviewBounds& bounds)
{
    Head head{};
    const auto count = file.readAt(0, std::as_writable_bytes(std::span(head)));
    if (!count)
        return nothing({MediaOutcome::unreadable, {}, {}});
    const Bitmap bitmap = *count == head.size() ? recognise(head, fileName) : Bitmap{};
    if (bitmap.codec == AV_CODEC_ID_NONE)
        return nothing({MediaOutcome::unknownFormat, {}, {}});
    if (isTooLarge(bitmap.size, bitmapPixelBytes, file.size(), bounds))
        return nothing({MediaOutcome::tooLarge, {}, {}});
    return decoded(bitmap, file, bounds);
}

}  // namespace kelvane::linux_os
