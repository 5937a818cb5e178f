// Rich text.
#include "document_fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    kelvane::testing::tryDocument("text.rtf", data, size);
    return 0;
}
