// Pages on the web.
#include "document_fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    kelvane::testing::tryDocument("page.html", data, size);
    return 0;
}
