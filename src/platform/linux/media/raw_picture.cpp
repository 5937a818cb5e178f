#include "platform/linux/media/raw_picture.h"

#include <algorithm>
#include <memory>
#include <string>
#include <utility>

#include "base/words.h"
#include "platform/linux/media/picture_limits.h"
#include "platform/linux/media/pixel_scaling.h"
#include "platform/linux/media/raw_stream.h"

namespace kelvane::linux_os {
namespace {

constexpr std::string_view extensions[] = {"3fr", "arw", "cr2", "cr3", "crw", "dng", "erf", "kdc", "mos", "mrw", "nef",
                                           "nrw", "orf", "pef", "raf", "raw", "rw2", "sr2", "srf", "srw", "x3f"};

// Sensor values, four colours a pixel while they are worked on, and the finished picture.
constexpr std::uint32_t rawPixelBytes = 13;

struct FreeImage {
    void operator()(libraw_processed_image_t* image) const { LibRaw::dcraw_clear_mem(image); }
};
using RawImage = std::unique_ptr<libraw_processed_image_t, FreeImage>;

MediaFault faultOf(int error)
{
    const auto outcome = error == LIBRAW_FILE_UNSUPPORTED || error == LIBRAW_REQUEST_FOR_NONEXISTENT_IMAGE
                             ? MediaOutcome::unknownFormat
                         : error == LIBRAW_UNSUFFICIENT_MEMORY ? MediaOutcome::tooMuchMemory
                         : error == LIBRAW_TOO_BIG             ? MediaOutcome::tooLarge
                                                               : MediaOutcome::damaged;
    // Numbers above 0 are those of the system, whose words tell nothing of the picture.
    return {outcome, {}, error < 0 ? LibRaw::strerror(error) : ""};
}

DecodedPicture nothing(MediaFault fault)
{
    return {std::move(fault), 0, 0, {}};
}

void setChoices(LibRaw& raw, const PreviewBounds& bounds)
{
    auto& choices = raw.imgdata.params;
    const auto& sizes = raw.imgdata.sizes;
    choices.use_camera_wb = 1;
    choices.output_bps = 8;
    choices.half_size = sizes.width >= 4 * bounds.width && sizes.height >= 4 * bounds.height ? 1 : 0;
    choices.max_raw_memory_mb = static_cast<unsigned>(mostPictureMemory / 1'000'000);
}

RgbPixels pixelsOf(const libraw_processed_image_t& image)
{
    const std::size_t pixels = std::size_t{image.width} * image.height;
    if (image.type != LIBRAW_IMAGE_BITMAP || image.bits != 8 || (image.colors != 1 && image.colors != 3) ||
        image.data_size < pixels * image.colors)
        return {};
    RgbPixels out{image.width, image.height, {}, double(image.width), double(image.height)};
    out.samples.reserve(pixels * 3);
    for (std::size_t i = 0; i < pixels; ++i)
        for (std::size_t channel = 0; channel < 3; ++channel)
            out.samples.push_back(image.data[i * image.colors + (image.colors == 3 ? channel : 0)]);
    return out;
}

DecodedPicture developed(LibRaw& raw, const PreviewBounds& bounds)
{
    int error = raw.unpack();
    if (error == LIBRAW_SUCCESS)
        error = raw.dcraw_process();
    if (error != LIBRAW_SUCCESS)
        return nothing(faultOf(error));
    const RawImage image(raw.dcraw_make_mem_image(&error));
    const RgbPixels pixels = image ? pixelsOf(*image) : RgbPixels{};
    if (pixels.samples.empty())
        return nothing(faultOf(error == LIBRAW_SUCCESS ? LIBRAW_DATA_ERROR : error));
    return scaledPixels(pixels, previewSize({pixels.width, pixels.height}, bounds));
}

}  // namespace

bool isNamedAsRaw(std::string_view fileName)
{
    const std::string lower = asciiLower(fileName);
    return std::ranges::any_of(extensions, [&](std::string_view extension) {
        return lower.ends_with(extension) && lower.size() > extension.size() &&
               lower[lower.size() - extension.size() - 1] == '.';
    });
}

DecodedPicture rawPreview(RandomAccessFile& file, const PreviewBounds& bounds)
{
    // Hundreds of kilobytes, too much for a stack.
    const auto raw = std::make_unique<LibRaw>();
    raw->set_dataerror_handler(nullptr, nullptr);  // would write to standard error
    RawStream stream(file);
    if (const int error = raw->open_datastream(&stream); error != LIBRAW_SUCCESS)
        return nothing(faultOf(error));
    const auto& sizes = raw->imgdata.sizes;
    if (isTooLarge({sizes.raw_width, sizes.raw_height}, rawPixelBytes, 0, bounds))
        return nothing({MediaOutcome::tooLarge, {}, {}});
    setChoices(*raw, bounds);
    DecodedPicture picture = developed(*raw, bounds);
    raw->recycle();
    return picture;
}

}  // namespace kelvane::linux_os
