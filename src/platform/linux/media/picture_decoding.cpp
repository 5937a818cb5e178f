#include "platform/linux/media/adapters.h"

namespace kelvane {
namespace {

class Nothing final : public PictureDecoding {
public:
    DecodedPicture preview(RandomAccessFile&, std::string_view, const PreviewBounds&) override
    {
        return {{MediaOutcome::unknownFormat, {}, {}}, 0, 0, {}};
    }
};

}  // namespace

std::unique_ptr<PictureDecoding> makeVipsPictureDecoding()
{
    return std::make_unique<Nothing>();
}

}  // namespace kelvane
