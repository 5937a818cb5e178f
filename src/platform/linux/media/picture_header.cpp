#include "platform/linux/media/picture_header.h"

#include <string_view>

#include "platform/linux/media/vips_source.h"

namespace kelvane::linux_os {
namespace {

std::string blockOf(const VipsImageHandle& image, const char* name)
{
    const void* data = nullptr;
    std::size_t size = 0;
    if (vips_image_get_typeof(image.get(), name) == 0 || vips_image_get_blob(image.get(), name, &data, &size) != 0)
        return {};
    return {static_cast<const char*>(data), size};
}

// Where the file says nothing the library says one dot in a millimetre.
std::optional<double> dots(const VipsImageHandle& image, double inMillimetre)
{
    constexpr double millimetresOfInch = 25.4;
    if (vips_image_get_typeof(image.get(), "resolution-unit") == 0 || inMillimetre <= 0)
        return std::nullopt;
    return inMillimetre * millimetresOfInch;
}

bool storesIndexes(const VipsImageHandle& image)
{
    const char* loader = nullptr;
    return vips_image_get_typeof(image.get(), VIPS_META_LOADER) != 0 &&
           vips_image_get_string(image.get(), VIPS_META_LOADER, &loader) == 0 &&
           std::string_view(loader).starts_with("gif");
}

std::uint32_t bits(const VipsImageHandle& image)
{
    return static_cast<std::uint32_t>(vips_image_get_bands(image.get())) *
           static_cast<std::uint32_t>(vips_format_sizeof(vips_image_get_format(image.get()))) * 8;
}

}  // namespace

std::optional<PictureHeader> readPictureHeader(RandomAccessFile& file)
{
    if (!startVips())
        return std::nullopt;
    const VipsSourceHandle source = makeVipsSource(file);
    const VipsImageHandle image(
        vips_image_new_from_source(source.get(), "", "access", VIPS_ACCESS_SEQUENTIAL, nullptr));
    if (!image) {
        static_cast<void>(takeVipsFault());
        return std::nullopt;
    }
    PictureHeader header;
    header.width = static_cast<std::uint32_t>(vips_image_get_width(image.get()));
    header.height = static_cast<std::uint32_t>(vips_image_get_height(image.get()));
    header.bitDepth = bits(image);
    header.frames = static_cast<std::uint32_t>(vips_image_get_n_pages(image.get()));
    header.horizontalDots = dots(image, vips_image_get_xres(image.get()));
    header.verticalDots = dots(image, vips_image_get_yres(image.get()));
    header.palette = storesIndexes(image);
    header.exif = blockOf(image, VIPS_META_EXIF_NAME);
    header.xmp = blockOf(image, VIPS_META_XMP_NAME);
    header.iptc = blockOf(image, VIPS_META_IPTC_NAME);
    return header;
}

}  // namespace kelvane::linux_os
