#include <array>
#include <string>

#include "base/utf.h"
#include "platform/bitmap_header.h"
#include "platform/bytes_in_memory.h"
#include "platform/exif_facts.h"
#include "platform/iptc_facts.h"
#include "platform/linux/media/adapters.h"
#include "platform/linux/media/picture_header.h"
#include "platform/linux/media/raw_facts.h"
#include "platform/linux/media/raw_picture.h"
#include "platform/linux/media/vips_source.h"
#include "platform/png_chunks.h"
#include "platform/property_table.h"
#include "platform/xmp_facts.h"

namespace kelvane {
namespace linux_os {
namespace {

constexpr std::uint16_t xmpTag = 0x02BC;
constexpr std::uint16_t iptcTag = 0x83BB;

// The blocks of a picture, wherever its format keeps them.
struct Blocks {
    const TiffTags& tags;
    std::string xmp;
    std::string iptc;
};

TiffTags tagsOfBlock(std::string_view block)
{
    constexpr std::string_view mark("Exif\0\0", 6);
    if (block.starts_with(mark))
        block.remove_prefix(mark.size());
    BytesInMemory bytes(std::as_bytes(std::span(block)));
    return readTiffTags(bytes);
}

std::string blockOf(const TiffTags& tags, std::uint16_t tag)
{
    const TiffField* field = tags.first(tag);
    return field != nullptr ? std::string(field->bytes()) : std::string();
}

std::string_view textOf(const std::vector<std::byte>& bytes)
{
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

// Bits of all samples of a pixel, as TIFF files say it.
std::uint32_t storedDepth(const TiffTags& tags)
{
    const TiffField* samples = tags.first(0x0102);
    std::int64_t depth = 0;
    for (std::size_t i = 0; samples != nullptr && i < std::min<std::size_t>(samples->count(), 16); ++i)
        depth += samples->whole(i).value_or(0);
    return depth > 0 && depth <= 1024 ? static_cast<std::uint32_t>(depth) : 0;
}

void addSize(std::uint32_t width, std::uint32_t height, FactList& facts)
{
    facts.number("System.Image.HorizontalSize", width);
    facts.number("System.Image.VerticalSize", height);
    facts.text("System.Image.Dimensions", toUtf16(std::to_string(width) + " x " + std::to_string(height)));
}

void addHeader(const PictureHeader& header, std::uint32_t depth, FactList& facts)
{
    addSize(header.width, header.height, facts);
    facts.number("System.Image.BitDepth", depth != 0 ? depth : header.palette ? 8 : header.bitDepth);
    if (header.horizontalDots && header.verticalDots) {
        facts.real("System.Image.HorizontalResolution", *header.horizontalDots);
        facts.real("System.Image.VerticalResolution", *header.verticalDots);
    }
    if (header.frames > 1)
        facts.number("System.Media.FrameCount", header.frames);
}

constexpr std::uint16_t dngVersion = 0xC612;

void addBitmap(const BitmapHeader& header, FactList& facts)
{
    addSize(header.width, header.height, facts);
    facts.number("System.Image.BitDepth", header.bitDepth);
    if (header.dotsPerMetre <= 0)
        return;
    constexpr double inch = 0.0254;
    facts.real("System.Image.HorizontalResolution", header.dotsPerMetre * inch);
    facts.real("System.Image.VerticalResolution", header.dotsPerMetre * inch);
}

class PictureFacts final : public FactReading {
public:
    // The library loads its plug-ins, which a process that is walled in cannot do any more.
    explicit PictureFacts(XmlParsing& xml) : xml_(xml) { (void)startVips(); }

    std::vector<NamedValue> read(RandomAccessFile& file, std::string_view fileName) override
    {
        FactList facts(*properties_);
        const TiffTags own = readTiffTags(file);
        if (isNamedAsRaw(fileName) || own.first(dngVersion) != nullptr)
            if (auto raw = rawFacts(file, own); !raw.empty())
                return raw;
        if (const auto header = readPictureHeader(file))
            addPicture(file, *header, own, facts);
        else if (const auto bitmap = readBitmapHeader(file, fileName))
            addBitmap(*bitmap, facts);
        else
            addBlocks({own, blockOf(own, xmpTag), blockOf(own, iptcTag)}, facts);
        return facts.take();
    }

private:
    // Other readers take the small picture in front of such a file for the whole.
    std::vector<NamedValue> rawFacts(RandomAccessFile& file, const TiffTags& own)
    {
        FactList facts(*properties_);
        addBlocks({own, blockOf(own, xmpTag), blockOf(own, iptcTag)}, facts);
        const RawSize size = addRawFacts(file, facts);
        if (size.width == 0)
            return {};
        addSize(size.width, size.height, facts);
        return facts.take();
    }

    void addPicture(RandomAccessFile& file, const PictureHeader& header, const TiffTags& own, FactList& facts)
    {
        const PngChunks png = readPngChunks(file);
        const bool tiff = !own.pictures.empty();
        addHeader(header, tiff ? storedDepth(own) : png.bitDepth, facts);
        TiffTags tags = tiff ? own : tagsOfBlock(textOf(png.exif));
        if (tags.pictures.empty())
            tags = tagsOfBlock(header.exif);
        addBlocks({tags, header.xmp, header.iptc}, facts);
    }

    // Cameras know best what they did; people's words are kept up in XMP first, by the programs of today.
    void addBlocks(const Blocks& blocks, FactList& facts)
    {
        addCameraFacts(blocks.tags, facts);
        addXmpFacts(std::as_bytes(std::span(blocks.xmp)), xml_, facts);
        addExifWords(blocks.tags, facts);
        addIptcFacts(blocks.iptc, facts);
    }

    std::unique_ptr<PropertySystem> properties_ = makePropertyTable();
    XmlParsing& xml_;
};

}  // namespace
}  // namespace linux_os

std::unique_ptr<FactReading> makePictureFacts(XmlParsing& xml)
{
    return std::make_unique<linux_os::PictureFacts>(xml);
}

}  // namespace kelvane
