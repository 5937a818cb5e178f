#include "platform/linux/media/picture_shrinking.h"

#include <algorithm>
#include <utility>

#include "platform/linux/media/pixel_scaling.h"
#include "platform/linux/media/pixel_turning.h"

namespace kelvane::linux_os {
namespace {

// A step of the library: from an image to the next, null where it fails.
template <class Call>
VipsImageHandle step(const VipsImageHandle& in, Call call)
{
    VipsImage* out = nullptr;
    if (!in || call(in.get(), &out) != 0)
        return nullptr;
    return VipsImageHandle(out);
}

// Transparent parts shine through onto white. In inks, white is nothing of any.
VipsImageHandle onWhite(VipsImageHandle image)
{
    if (!image || vips_image_hasalpha(image.get()) == 0)
        return image;
    const VipsInterpretation kind = vips_image_get_interpretation(image.get());
    const bool deep = kind == VIPS_INTERPRETATION_RGB16 || kind == VIPS_INTERPRETATION_GREY16;
    const bool floating = kind == VIPS_INTERPRETATION_scRGB;
    const double white = kind == VIPS_INTERPRETATION_CMYK ? 0 : deep ? 65535 : floating ? 1 : 255;
    return step(image, [&](VipsImage* in, VipsImage** out) {
        VipsArrayDouble* background = vips_array_double_newv(1, white);
        const int outcome = vips_flatten(in, out, "background", background, nullptr);
        vips_area_unref(VIPS_AREA(background));
        return outcome;
    });
}

// Averages whole blocks of pixels, as JPEG does while it decodes, so that all formats give the same.
VipsImageHandle averaged(VipsImageHandle image, int across, int down)
{
    if (across == 1 && down == 1)
        return image;
    return step(image, [&](VipsImage* in, VipsImage** out) {
        return vips_shrink(in, out, across, down, "ceil", TRUE, nullptr);
    });
}

// Colours last, when there are few pixels left. A profile that makes no sense is as good as none.
VipsImageHandle inScreenColours(VipsImageHandle image)
{
    if (image && vips_image_get_typeof(image.get(), VIPS_META_ICC_NAME) != 0) {
        VipsImageHandle managed = step(image, [](VipsImage* in, VipsImage** out) {
            return vips_icc_transform(in, out, "srgb", "embedded", TRUE, "depth", 8, nullptr);
        });
        if (managed)
            return managed;
        vips_error_clear();
    }
    return step(image, [](VipsImage* in, VipsImage** out) {
        return vips_colourspace(in, out, VIPS_INTERPRETATION_sRGB, nullptr);
    });
}

VipsImageHandle inBytes(const VipsImageHandle& image)
{
    return step(image, [](VipsImage* in, VipsImage** out) { return vips_cast_uchar(in, out, nullptr); });
}

// Grey stays one sample a pixel up to here.
std::vector<std::uint8_t> threeSamples(const std::uint8_t* samples, std::size_t pixels, std::size_t bands)
{
    std::vector<std::uint8_t> out(pixels * 3);
    for (std::size_t i = 0; i < pixels; ++i)
        for (std::size_t band = 0; band < 3; ++band)
            out[3 * i + band] = samples[bands * i + (bands >= 3 ? band : 0)];
    return out;
}

// Decodes the picture.
RgbPixels pixelsOf(const VipsImageHandle& image)
{
    std::size_t size = 0;
    const std::unique_ptr<void, decltype(&g_free)> samples(
        image ? vips_image_write_to_memory(image.get(), &size) : nullptr, &g_free);
    if (!samples)
        return {};
    RgbPixels pixels;
    pixels.width = static_cast<std::uint32_t>(image->Xsize);
    pixels.height = static_cast<std::uint32_t>(image->Ysize);
    pixels.samples = threeSamples(static_cast<const std::uint8_t*>(samples.get()),
                                  std::size_t{pixels.width} * pixels.height, static_cast<std::size_t>(image->Bands));
    return pixels;
}

// By how much a side of so many pixels can be averaged, so that at least twice the preview's is left.
int blockFor(double side, std::uint32_t preview)
{
    return std::max(1, static_cast<int>(side / (2 * preview)));
}

}  // namespace

DecodedPicture shrinkPicture(LoadedPicture picture)
{
    const int across = blockFor(picture.coveredWidth, picture.preview.width);
    const int down = blockFor(picture.coveredHeight, picture.preview.height);
    RgbPixels pixels = pixelsOf(inBytes(inScreenColours(averaged(onWhite(std::move(picture.image)), across, down))));
    if (pixels.samples.empty())
        return {takeVipsFault(), 0, 0, {}};
    pixels.coveredWidth = picture.coveredWidth / across;
    pixels.coveredHeight = picture.coveredHeight / down;
    return turned(scaledPixels(pixels, picture.preview), picture.orientation);
}

}  // namespace kelvane::linux_os
