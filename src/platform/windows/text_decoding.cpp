#include "platform/text_decoding.h"

#include "platform/missing_ports.h"

namespace kelvane {

std::unique_ptr<TextDecoding> makeTextDecoding()
{
    return makeMissingTextDecoding();
}

}  // namespace kelvane
