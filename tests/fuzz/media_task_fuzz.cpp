// What a worker that decodes answers, and what it is asked: the first byte chooses. Whatever is understood is written
// again as it came.
#include <algorithm>

#include "media/media_task.h"
#include "require.h"

using kelvane::equal;
using kelvane::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return 0;
    const auto bytes = std::as_bytes(std::span(data, size)).subspan(1);
    if (data[0] % 2 == 0) {
        const auto answer = kelvane::decodeMediaAnswer(bytes);
        require(!answer || equal(kelvane::encodeAnswer(*answer), bytes));
    } else {
        const auto request = kelvane::decodeMediaRequest(bytes);
        require(!request || equal(kelvane::encodeRequest(*request), bytes));
    }
    return 0;
}
