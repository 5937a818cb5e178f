// Whatever the reader of declarations accepts, the writer writes the same way again. The checksum, which no random
// input would have, is put right first.
#include <algorithm>
#include <cstdlib>
#include <vector>

#include "app/ignored_list.h"
#include "base/byte_stream.h"
#include "base/crc32.h"

namespace kelvane {
namespace {

void check(std::span<const std::byte> block)
{
    const auto group = ignoredOfBlock(block);
    if (!group)
        return;
    const auto again = blockOfIgnored(*group);
    if (!std::equal(again.begin(), again.end(), block.begin(), block.end()))
        std::abort();
}

}  // namespace
}  // namespace kelvane

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::span input(reinterpret_cast<const std::byte*>(data), size);
    kelvane::check(input);
    kelvane::ByteWriter writer;
    writer.bytes(input);
    writer.number(kelvane::crc32(input));
    kelvane::check(writer.written());
    return 0;
}
