// Messages, with their headers and parts.
#include "document_fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    kelvane::testing::tryDocument("message.eml", data, size);
    return 0;
}
