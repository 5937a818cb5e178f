#include "platform/linux/media/film_picture.h"

extern "C" {
#include <libavutil/display.h>
#include <libavutil/imgutils.h>
#include <libswscale/swscale.h>
}

#include <algorithm>
#include <array>
#include <cstring>

#include "platform/linux/media/pixel_scaling.h"
#include "platform/linux/media/pixel_turning.h"

namespace kelvane::linux_os {
namespace {

struct FreeScaler {
    void operator()(SwsContext* scaler) const { sws_freeContext(scaler); }
};
using Scaler = std::unique_ptr<SwsContext, FreeScaler>;

// As many entries of a display matrix as turn and mirror; where the picture goes lies in the others.
using Turning = std::array<std::int32_t, 9>;

// Orientation as Exif counts it. Only quarter turns are known; the matrix is described in libavutil/display.h.
int orientationOf(const Turning& matrix)
{
    const bool swaps = std::abs(std::int64_t{matrix[1]}) > std::abs(std::int64_t{matrix[0]});
    if (!swaps)
        return matrix[0] >= 0 ? (matrix[4] >= 0 ? 1 : 4) : (matrix[4] >= 0 ? 2 : 3);
    return matrix[1] >= 0 ? (matrix[3] >= 0 ? 5 : 6) : (matrix[3] >= 0 ? 8 : 7);
}

// The container's word goes before what is written into the frames.
int orientationOf(const AVStream& stream, const AVFrame& frame)
{
    Turning matrix{};
    std::size_t size = 0;
    if (const std::uint8_t* data = av_stream_get_side_data(&stream, AV_PKT_DATA_DISPLAYMATRIX, &size);
        data != nullptr && size >= sizeof(matrix)) {
        std::memcpy(matrix.data(), data, sizeof(matrix));
        return orientationOf(matrix);
    }
    const AVFrameSideData* data = av_frame_get_side_data(&frame, AV_FRAME_DATA_DISPLAYMATRIX);
    if (data == nullptr || data->size < sizeof(matrix))
        return 1;
    std::memcpy(matrix.data(), data->data, sizeof(matrix));
    return orientationOf(matrix);
}

// As large as it is shown. Shapes of pixels beyond all reason are no shapes.
PictureSize shownSize(FilmFrames& frames, AVFrame& frame)
{
    constexpr int mostStretching = 8;
    const auto width = static_cast<std::uint32_t>(frame.width);
    const auto height = static_cast<std::uint32_t>(frame.height);
    const AVRational shape = av_guess_sample_aspect_ratio(&frames.input().format(), &frames.stream(), &frame);
    if (shape.num <= 0 || shape.den <= 0 || shape.num / shape.den >= mostStretching ||
        shape.den / shape.num >= mostStretching)
        return {width, height};
    const auto stretched = [](std::uint32_t side, int by, int from) {
        return static_cast<std::uint32_t>(av_rescale(side, by, from));
    };
    return shape.num >= shape.den ? PictureSize{stretched(width, shape.num, shape.den), height}
                                  : PictureSize{width, stretched(height, shape.den, shape.num)};
}

// Of which formulas the frame's colours are; where it does not say, always the same ones, since copies in other sizes
// do not say either.
void setColours(SwsContext& scaler, const AVFrame& frame)
{
    const int known = frame.colorspace == AVCOL_SPC_UNSPECIFIED || frame.colorspace == AVCOL_SPC_RGB
                          ? int{SWS_CS_DEFAULT}
                          : int{frame.colorspace};
    const int full = frame.color_range == AVCOL_RANGE_JPEG ? 1 : 0;
    constexpr int unchanged = 1 << 16;
    // An error means that the frame holds no such colours: grey, or red, green and blue.
    static_cast<void>(sws_setColorspaceDetails(&scaler, sws_getCoefficients(known), full,
                                               sws_getCoefficients(SWS_CS_DEFAULT), 1, 0, unchanged, unchanged));
}

RgbPixels rgbOf(const AVFrame& frame, PictureSize size)
{
    constexpr int flags = SWS_AREA | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INT | SWS_BITEXACT;
    const auto width = static_cast<int>(size.width);
    const auto height = static_cast<int>(size.height);
    const Scaler scaler(sws_getContext(frame.width, frame.height, static_cast<AVPixelFormat>(frame.format), width,
                                       height, AV_PIX_FMT_RGB24, flags, nullptr, nullptr, nullptr));
    if (!scaler)
        return {};
    setColours(*scaler, frame);
    // Rows are padded, since the library writes whole vectors.
    const int rowBytes = FFALIGN(3 * width, 64);
    std::vector<std::uint8_t> padded(static_cast<std::size_t>(rowBytes) * size.height + 64);
    std::array<std::uint8_t*, 4> planes{padded.data()};
    const std::array<int, 4> lengths{rowBytes};
    if (sws_scale(scaler.get(), frame.data, frame.linesize, 0, frame.height, planes.data(), lengths.data()) != height)
        return {};
    RgbPixels pixels{size.width, size.height, {}, double(size.width), double(size.height)};
    for (std::size_t row = 0; row < size.height; ++row)
        pixels.samples.insert(pixels.samples.end(), &padded[row * rowBytes], &padded[row * rowBytes + 3 * size.width]);
    return pixels;
}

// What is left to the filter that pictures go through too. Not larger than the frame.
PictureSize roughSize(PictureSize preview, const AVFrame& frame)
{
    const auto side = [](std::uint32_t small, int whole) {
        return std::min(2 * small, static_cast<std::uint32_t>(whole));
    };
    return {side(preview.width, frame.width), side(preview.height, frame.height)};
}

PictureSize swapped(PictureSize size)
{
    return {size.height, size.width};
}

}  // namespace

DecodedPicture framePreview(FilmFrames& frames, AVFrame& frame, const PreviewBounds& bounds)
{
    const int orientation = orientationOf(frames.stream(), frame);
    const PictureSize shown = shownSize(frames, frame);
    const PictureSize size =
        swapsSides(orientation) ? swapped(previewSize(swapped(shown), bounds)) : previewSize(shown, bounds);
    const RgbPixels pixels = rgbOf(frame, roughSize(size, frame));
    if (pixels.samples.empty())
        return {{MediaOutcome::damaged, {}, {}}, 0, 0, {}};
    return turned(scaledPixels(pixels, size), orientation);
}

}  // namespace kelvane::linux_os
