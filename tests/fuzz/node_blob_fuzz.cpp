// Whatever the reader of stored nodes accepts, the writer writes the same way again. The checksum, which no random
// input would have, is put right first.
#include <algorithm>
#include <vector>

#include "base/byte_stream.h"
#include "base/crc32.h"
#include "engine/node_blob.h"
#include "require.h"

namespace kelvane {
namespace {

void putChecksumRight(std::vector<std::byte>& blob)
{
    if (blob.size() < 4)
        return;
    ByteWriter writer;
    writer.number(crc32(std::span(blob).first(blob.size() - 4)));
    std::copy(writer.written().begin(), writer.written().end(), blob.end() - 4);
}

void check(const std::vector<std::byte>& blob)
{
    const auto node = decodeNode(blob);
    if (!node)
        return;
    require(encodeNode(*node) == blob);
    const auto scan = scanNodeOf(*node);
    if (!scan)
        return;
    const auto again = toBlob(*scan);
    if (again.empty())
        return;  // with the fields that were missing it became too long
    const auto same = scanNodeFromBlob(again, scan->name());
    require(same.ok() && toBlob(*same) == again);
}

}  // namespace
}  // namespace kelvane

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto* first = reinterpret_cast<const std::byte*>(data);
    std::vector<std::byte> blob(first, first + size);
    kelvane::check(blob);
    kelvane::putChecksumRight(blob);
    kelvane::check(blob);
    return 0;
}
