#include <cstdint>
#include <cstdlib>

#include "platform/mo_catalogue.h"

// Whatever lies in a catalogue, its texts lie inside of it: every byte of them is read.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::size_t ends = 0;
    const auto bytes = std::as_bytes(std::span(data, size));
    const auto status = kelvane::readMoCatalogue(bytes, [&](const kelvane::MoEntry& entry) {
        for (const auto text : {entry.context, entry.original, entry.translation})
            for (const char character : text)
                ends += character == '\0';
    });
    if (ends > 0 || (status && size > kelvane::largestMoFile))
        std::abort();
    return 0;
}
