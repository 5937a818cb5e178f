#include "platform/linux/media/adapters.h"

namespace kelvane {
namespace {

class Nothing final : public FactReading {
public:
    std::vector<NamedValue> read(RandomAccessFile&, std::string_view) override { return {}; }
};

}  // namespace

std::unique_ptr<FactReading> makeFfmpegFacts()
{
    return std::make_unique<Nothing>();
}

}  // namespace kelvane
