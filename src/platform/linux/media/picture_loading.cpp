#include "platform/linux/media/picture_loading.h"

#include <algorithm>
#include <string_view>

#include "platform/linux/media/picture_limits.h"
#include "platform/linux/media/pixel_turning.h"

namespace kelvane::linux_os {
namespace {

// How a reader makes pictures smaller while it decodes.
enum class Shrinking : std::uint8_t { none, jpeg, scaled };

struct Reader {
    std::string_view name;  // as the library's search for a reader answers
    const char* operation;
    Shrinking shrinking;
    // Bytes that it holds at once: of the picture's pixels where it cannot decode line by line, and of the file.
    std::uint32_t bytesPerPixel;
    bool wholeFile;
};

constexpr Reader readers[] = {
    {"VipsForeignLoadJpegSource", "jpegload_source", Shrinking::jpeg, 0, false},
    {"VipsForeignLoadPngSource", "pngload_source", Shrinking::none, 0, false},
    {"VipsForeignLoadNsgifSource", "gifload_source", Shrinking::none, 8, true},
    {"VipsForeignLoadWebpSource", "webpload_source", Shrinking::scaled, 4, true},
    {"VipsForeignLoadTiffSource", "tiffload_source", Shrinking::none, 0, false},
    {"VipsForeignLoadHeifSource", "heifload_source", Shrinking::none, 8, false},
    {"VipsForeignLoadJxlSource", "jxlload_source", Shrinking::none, 16, true},
    {"VipsForeignLoadSvgSource", "svgload_source", Shrinking::scaled, 0, true},
    {"VipsForeignLoadJp2kSource", "jp2kload_source", Shrinking::none, 12, true},
    {"VipsForeignLoadPpmSource", "ppmload_source", Shrinking::none, 0, false},
    {"VipsForeignLoadRadSource", "radload_source", Shrinking::none, 0, false},
};

// What is left to do by averaging after decoding evens out how differently formats are made smaller while decoding.
constexpr std::uint32_t leftAfterShrinking = 2;

const Reader* readerFor(VipsSource* source)
{
    const char* name = vips_foreign_find_load_source(source);
    const auto found = std::ranges::find(readers, std::string_view(name != nullptr ? name : ""), &Reader::name);
    return found == std::end(readers) ? nullptr : found;
}

VipsImageHandle open(const Reader& reader, VipsSource* source, std::uint32_t shrink)
{
    VipsImage* image = nullptr;
    const auto load = [&](auto... options) {
        return vips_call(reader.operation, source, &image, "access", VIPS_ACCESS_SEQUENTIAL, "fail_on",
                         VIPS_FAIL_ON_TRUNCATED, options..., nullptr);
    };
    int outcome = 0;
    if (shrink == 1)
        outcome = load();
    else if (reader.shrinking == Shrinking::jpeg)
        outcome = load("shrink", static_cast<int>(shrink));
    else
        outcome = load("scale", 1.0 / shrink);
    return VipsImageHandle(outcome == 0 ? image : nullptr);
}

PictureSize sizeOf(VipsImage* image)
{
    return {static_cast<std::uint32_t>(vips_image_get_width(image)),
            static_cast<std::uint32_t>(vips_image_get_height(image))};
}

// A power of two: the shrinking that JPEG knows.
std::uint32_t shrinkingFor(const Reader& reader, PictureSize whole, PictureSize preview)
{
    std::uint32_t shrink = 1;
    while (reader.shrinking != Shrinking::none && shrink < 8 &&
           whole.width / (2 * shrink) >= leftAfterShrinking * preview.width &&
           whole.height / (2 * shrink) >= leftAfterShrinking * preview.height)
        shrink *= 2;
    return shrink;
}

PictureSize swapped(PictureSize size)
{
    return {size.height, size.width};
}

// The bounds are those of the picture as it is seen.
PictureSize previewBeforeTurning(int orientation, PictureSize whole, const PreviewBounds& bounds)
{
    return swapsSides(orientation) ? swapped(previewSize(swapped(whole), bounds)) : previewSize(whole, bounds);
}

// Of pictures that are stored in several passes, from coarse to fine, all is held until the last one: JPEG as
// coefficients of two bytes, the others as they are.
std::uint32_t bytesPerPixel(const Reader& reader, VipsImage* image)
{
    if (vips_image_get_typeof(image, "interlaced") == 0)
        return reader.bytesPerPixel;
    const auto pixel = static_cast<std::uint32_t>(VIPS_IMAGE_SIZEOF_PEL(image));
    return std::max(reader.bytesPerPixel, reader.shrinking == Shrinking::jpeg ? 2 * pixel : pixel);
}

LoadedPicture failed(MediaFault fault)
{
    LoadedPicture picture;
    picture.fault = std::move(fault);
    return picture;
}

// JPEG rounds the sides up and fills the last pixels by repeating; everything else stretches the picture.
void noteCoverage(LoadedPicture& picture, const Reader& reader, PictureSize whole, std::uint32_t shrink)
{
    const PictureSize size = sizeOf(picture.image.get());
    const bool exact = reader.shrinking == Shrinking::jpeg;
    picture.coveredWidth = exact ? double(whole.width) / shrink : double(size.width);
    picture.coveredHeight = exact ? double(whole.height) / shrink : double(size.height);
}

LoadedPicture load(const Reader& reader, VipsSource* source, std::uint64_t fileSize, const PreviewBounds& bounds)
{
    LoadedPicture picture;
    const std::uint64_t held = reader.wholeFile ? fileSize : 0;
    if (held > mostPictureMemory)
        return failed({MediaOutcome::tooLarge, {}, {}});
    picture.image = open(reader, source, 1);
    if (!picture.image)
        return failed(takeVipsFault());
    const PictureSize whole = sizeOf(picture.image.get());
    if (isTooLarge(whole, bytesPerPixel(reader, picture.image.get()), held, bounds))
        return failed({MediaOutcome::tooLarge, {}, {}});
    picture.orientation = vips_image_get_orientation(picture.image.get());
    picture.preview = previewBeforeTurning(picture.orientation, whole, bounds);
    const std::uint32_t shrink = shrinkingFor(reader, whole, picture.preview);
    if (shrink != 1)
        picture.image = open(reader, source, shrink);
    if (!picture.image)
        return failed(takeVipsFault());
    noteCoverage(picture, reader, whole, shrink);
    return picture;
}

}  // namespace

bool looksLikeTiff(RandomAccessFile& file)
{
    using namespace std::string_view_literals;
    std::string head(4, 0);
    const auto count = file.readAt(0, std::as_writable_bytes(std::span(head)));
    return count && *count == head.size() && (head == "II*\0"sv || head == "MM\0*"sv);
}

LoadedPicture loadPicture(RandomAccessFile& file, const PreviewBounds& bounds)
{
    const VipsSourceHandle source = makeVipsSource(file);
    const Reader* reader = readerFor(source.get());
    vips_error_clear();
    if (reader == nullptr)
        // The list of what is in such a file may stand at its end, and be missing.
        return failed({looksLikeTiff(file) ? MediaOutcome::damaged : MediaOutcome::unknownFormat, {}, {}});
    return load(*reader, source.get(), file.size(), bounds);
}

}  // namespace kelvane::linux_os
