#include "platform/linux/media/film_picture.h"

extern "C" {
#include <libavutil/display.h>
}

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>

#include "platform/linux/media/frame_pixels.h"
#include "platform/linux/media/pixel_turning.h"

namespace kelvane::linux_os {
namespace {

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
    const RgbPixels pixels = framePixels(frame, roughSize(size, frame));
    if (pixels.samples.empty())
        return {{MediaOutcome::damaged, {}, {}}, 0, 0, {}};
    return turned(scaledPixels(pixels, size), orientation);
}

}  // namespace kelvane::linux_os
