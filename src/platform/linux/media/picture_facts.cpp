#include <array>
#include <string>

#include "base/utf.h"
#include "platform/bytes_in_memory.h"
#include "platform/exif_facts.h"
#include "platform/iptc_facts.h"
#include "platform/linux/media/adapters.h"
#include "platform/linux/media/picture_header.h"
#include "platform/png_chunks.h"
#include "platform/property_table.h"
#include "platform/xmp_facts.h"

namespace kelvane {
namespace linux_os {
namespace {

// The blocks of a picture, wherever its format keeps them.
struct Blocks {
    TiffTags tags;
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

// The file itself is such a structure, or holds one.
TiffTags tagsOf(RandomAccessFile& file, std::string_view exif, const PngChunks& png)
{
    TiffTags tags = readTiffTags(file);
    if (tags.pictures.empty() && !png.exif.empty())
        tags = tagsOfBlock({reinterpret_cast<const char*>(png.exif.data()), png.exif.size()});
    return tags.pictures.empty() ? tagsOfBlock(exif) : tags;
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

class PictureFacts final : public FactReading {
public:
    explicit PictureFacts(XmlParsing& xml) : xml_(xml) {}

    std::vector<NamedValue> read(RandomAccessFile& file, std::string_view) override
    {
        FactList facts(*properties_);
        const auto header = readPictureHeader(file);
        const PngChunks png = readPngChunks(file);
        const bool tiff = !readTiffTags(file).pictures.empty();
        Blocks blocks{tagsOf(file, header ? header->exif : std::string(), png), {}, {}};
        blocks.xmp = header ? header->xmp : blockOf(blocks.tags, 0x02BC);
        blocks.iptc = header ? header->iptc : blockOf(blocks.tags, 0x83BB);
        if (header)
            addHeader(*header, tiff ? storedDepth(blocks.tags) : png.bitDepth, facts);
        addBlocks(blocks, facts);
        return facts.take();
    }

private:
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
