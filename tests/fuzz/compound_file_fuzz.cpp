// Office documents before 2007: their container, and the properties in it.
#include "document_fuzz.h"

#include "text/compound_file.h"
#include "text/property_set.h"

namespace kelvane {
namespace {

void tryCompound(const std::string& bytes)
{
    testing::MemoryDocument file(bytes);
    auto compound = CompoundFile::open(file);
    if (!compound)
        return;
    for (const char* name : {"WordDocument", "Workbook", "Small"}) {
        const auto whole = compound->read(name, 10'000);
        const auto beginning = compound->read(name, 10);
        require(!whole || whole->size() <= 10'000);
        require(!whole || (beginning && std::equal(beginning->begin(), beginning->end(), whole->begin())));
    }
}

// The bytes as a stream of properties.
void tryProperties(const std::string& bytes)
{
    const ExtractionOptions options;
    DocumentSink sink(options);
    const testing::NarrowDecoding decoding;
    putSummary(std::as_bytes(std::span(bytes)), decoding, sink);
    putDocumentSummary(std::as_bytes(std::span(bytes)), decoding, sink);
    require(std::move(sink).take().text.empty());
}

}  // namespace
}  // namespace kelvane

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    kelvane::tryCompound(bytes);
    kelvane::tryProperties(bytes);
    return 0;
}
