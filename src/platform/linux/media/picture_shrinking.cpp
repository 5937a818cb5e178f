#include "platform/linux/media/picture_shrinking.h"

#include <algorithm>
#include <cstring>
#include <utility>

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
VipsImageHandle averaged(VipsImageHandle image, PictureSize preview)
{
    if (!image)
        return image;
    const auto factor = [](int whole, std::uint32_t small) { return std::max(1, whole / static_cast<int>(2 * small)); };
    const int across = factor(image->Xsize, preview.width);
    const int down = factor(image->Ysize, preview.height);
    if (across == 1 && down == 1)
        return image;
    return step(image, [&](VipsImage* in, VipsImage** out) {
        return vips_shrink(in, out, across, down, "ceil", FALSE, nullptr);
    });
}

VipsImageHandle resized(const VipsImageHandle& image, PictureSize preview)
{
    return step(image, [&](VipsImage* in, VipsImage** out) {
        return vips_resize(in, out, double(preview.width) / in->Xsize, "vscale", double(preview.height) / in->Ysize,
                           "kernel", VIPS_KERNEL_CUBIC, nullptr);
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

VipsImageHandle turnedUpright(const VipsImageHandle& image)
{
    return step(image, [](VipsImage* in, VipsImage** out) { return vips_autorot(in, out, nullptr); });
}

VipsImageHandle asBytes(const VipsImageHandle& image)
{
    return step(image, [](VipsImage* in, VipsImage** out) { return vips_cast_uchar(in, out, nullptr); });
}

std::vector<std::byte> pixelsOf(const std::uint8_t* samples, std::size_t pixels, std::size_t bands)
{
    std::vector<std::byte> out(pixels * 4);
    for (std::size_t i = 0; i < pixels; ++i)
        for (std::size_t band = 0; band < 3; ++band)
            out[4 * i + 2 - band] = std::byte{samples[bands * i + (bands >= 3 ? band : 0)]};
    return out;
}

DecodedPicture decoded(const VipsImageHandle& image)
{
    std::size_t size = 0;
    const std::unique_ptr<void, decltype(&g_free)> samples(
        image ? vips_image_write_to_memory(image.get(), &size) : nullptr, &g_free);
    if (!samples)
        return {{MediaOutcome::damaged, {}, takeVipsError()}, 0, 0, {}};
    DecodedPicture picture;
    picture.width = static_cast<std::uint32_t>(image->Xsize);
    picture.height = static_cast<std::uint32_t>(image->Ysize);
    picture.pixels = pixelsOf(static_cast<const std::uint8_t*>(samples.get()),
                              std::size_t{picture.width} * picture.height, static_cast<std::size_t>(image->Bands));
    return picture;
}

}  // namespace

DecodedPicture shrinkPicture(LoadedPicture picture)
{
    VipsImageHandle image = averaged(onWhite(std::move(picture.image)), picture.preview);
    return decoded(asBytes(inScreenColours(turnedUpright(resized(image, picture.preview)))));
}

}  // namespace kelvane::linux_os
