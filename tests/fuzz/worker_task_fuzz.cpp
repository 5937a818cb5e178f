// What a worker answers, and what it is asked: the first byte chooses. Whatever is understood is written again as it
// came.
#include "require.h"
#include "text/worker_task.h"

using kelvane::equal;
using kelvane::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return 0;
    const auto bytes = std::as_bytes(std::span(data, size)).subspan(1);
    if (data[0] % 2 == 0) {
        const auto document = kelvane::decodeDocument(bytes);
        require(!document || equal(kelvane::encodeDocument(*document), bytes));
    } else {
        const auto request = kelvane::decodeExtractionRequest(bytes);
        require(!request || equal(kelvane::encodeRequest(*request), bytes));
    }
    return 0;
}
