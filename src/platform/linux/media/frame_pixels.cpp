#include "platform/linux/media/frame_pixels.h"

extern "C" {
#include <libavutil/pixdesc.h>
#include <libswscale/swscale.h>
}

#include <algorithm>
#include <array>
#include <cstddef>
#include <memory>

namespace kelvane::linux_os {
namespace {

struct FreeScaler {
    void operator()(SwsContext* scaler) const { sws_freeContext(scaler); }
};
using Scaler = std::unique_ptr<SwsContext, FreeScaler>;

constexpr std::size_t rgba = 4;

// Of which formulas the frame's colours are; where it does not say, always the same ones, since copies in other sizes
// do not say either.
void setColours(SwsContext& scaler, const AVFrame& frame)
{
    const bool stated = frame.colorspace != AVCOL_SPC_UNSPECIFIED && frame.colorspace != AVCOL_SPC_RGB;
    const int* from = sws_getCoefficients(stated ? int{frame.colorspace} : int{SWS_CS_DEFAULT});
    const int full = frame.color_range == AVCOL_RANGE_JPEG ? 1 : 0;
    constexpr int unchanged = 1 << 16;
    // An error means that the frame holds no such colours: grey, or red, green and blue.
    static_cast<void>(
        sws_setColorspaceDetails(&scaler, from, full, sws_getCoefficients(SWS_CS_DEFAULT), 1, 0, unchanged, unchanged));
}

Scaler makeScaler(const AVFrame& frame, PictureSize size)
{
    constexpr int flags = SWS_AREA | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INT | SWS_BITEXACT;
    Scaler scaler(sws_getContext(frame.width, frame.height, static_cast<AVPixelFormat>(frame.format),
                                 static_cast<int>(size.width), static_cast<int>(size.height), AV_PIX_FMT_RGBA, flags,
                                 nullptr, nullptr, nullptr));
    if (scaler)
        setColours(*scaler, frame);
    return scaler;
}

bool hasAlpha(const AVFrame& frame)
{
    const AVPixFmtDescriptor* format = av_pix_fmt_desc_get(static_cast<AVPixelFormat>(frame.format));
    return format != nullptr && (format->flags & (AV_PIX_FMT_FLAG_ALPHA | AV_PIX_FMT_FLAG_PAL)) != 0;
}

// Writers that know nothing of transparency leave nothing but zeros there.
bool allInvisible(std::span<const std::uint8_t> pixels)
{
    for (std::size_t i = rgba - 1; i < pixels.size(); i += rgba)
        if (pixels[i] != 0)
            return false;
    return true;
}

std::vector<std::uint8_t> onWhite(std::span<const std::uint8_t> pixels, bool transparent)
{
    std::vector<std::uint8_t> out;
    out.reserve(pixels.size() / rgba * 3);
    for (std::size_t i = 0; i + rgba <= pixels.size(); i += rgba) {
        const unsigned alpha = transparent ? pixels[i + 3] : 255;
        for (std::size_t channel = 0; channel < 3; ++channel)
            out.push_back(static_cast<std::uint8_t>((pixels[i + channel] * alpha + 255 * (255 - alpha) + 127) / 255));
    }
    return out;
}

}  // namespace

RgbPixels framePixels(const AVFrame& frame, PictureSize size)
{
    const Scaler scaler = makeScaler(frame, size);
    if (!scaler)
        return {};
    const std::size_t bytes = std::size_t{size.width} * size.height * rgba;
    // The library writes whole vectors.
    std::vector<std::uint8_t> pixels(bytes + 64);
    const std::array<std::uint8_t*, 4> planes{pixels.data()};
    const std::array<int, 4> lengths{static_cast<int>(rgba * size.width)};
    const int rows =
        sws_scale(scaler.get(), frame.data, frame.linesize, 0, frame.height, planes.data(), lengths.data());
    if (rows != static_cast<int>(size.height))
        return {};
    pixels.resize(bytes);
    const bool transparent = hasAlpha(frame) && !allInvisible(pixels);
    return {size.width, size.height, onWhite(pixels, transparent), double(size.width), double(size.height)};
}

}  // namespace kelvane::linux_os
