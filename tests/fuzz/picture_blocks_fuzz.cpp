// What pictures carry beside their pixels: the tags of TIFF, records of agencies, XMP, chunks of PNG files, headers of
// bitmaps. The first byte chooses; it is no part of the input.
#include <memory>
#include <string_view>

#include "platform/bitmap_header.h"
#include "platform/bytes_in_memory.h"
#include "platform/exif_facts.h"
#include "platform/iptc_facts.h"
#include "platform/linux/adapters.h"
#include "platform/png_chunks.h"
#include "platform/property_table.h"
#include "platform/xmp_facts.h"
#include "require.h"

namespace kelvane {
namespace {

void addTiff(RandomAccessFile& file, FactList& facts)
{
    const TiffTags tags = readTiffTags(file);
    addCameraFacts(tags, facts);
    addExifWords(tags, facts);
}

void addBlock(std::uint8_t kind, std::span<const std::byte> block, FactList& facts)
{
    BytesInMemory file(block);
    switch (kind % 5) {
    case 0:
        return addTiff(file, facts);
    case 1:
        return addIptcFacts({reinterpret_cast<const char*>(block.data()), block.size()}, facts);
    case 2:
        return addXmpFacts(block, *makePugixmlParsing(), facts);
    case 3:
        return require(readPngChunks(file).exif.size() <= block.size());
    default:
        return require(readBitmapHeader(file, "a.tga").value_or(BitmapHeader()).width <= 1'000'000);
    }
}

void expectPublishedTypes(const PropertySystem& properties, const std::vector<NamedValue>& facts)
{
    require(facts.size() < 100);
    for (const NamedValue& fact : facts) {
        const PropertyInfo* property = properties.byName(fact.name);
        require(property != nullptr && property->type == fact.value.type && property->multiple == fact.value.isVector);
    }
}

}  // namespace
}  // namespace kelvane

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const auto properties = kelvane::makePropertyTable();
    if (size == 0)
        return 0;
    kelvane::FactList facts(*properties);
    kelvane::addBlock(data[0], std::as_bytes(std::span(data + 1, size - 1)), facts);
    kelvane::expectPublishedTypes(*properties, facts.take());
    return 0;
}
