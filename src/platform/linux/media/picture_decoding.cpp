#include "platform/linux/media/adapters.h"
#include "platform/linux/media/picture_shrinking.h"

namespace kelvane {
namespace {

class VipsPictures final : public PictureDecoding {
public:
    DecodedPicture preview(RandomAccessFile& file, std::string_view, const PreviewBounds& bounds) override
    {
        if (!linux_os::startVips())
            return {{MediaOutcome::unknownFormat, {}, linux_os::takeVipsError()}, 0, 0, {}};
        linux_os::LoadedPicture picture = linux_os::loadPicture(file, bounds);
        if (!picture.image)
            return {std::move(picture.fault), 0, 0, {}};
        return linux_os::shrinkPicture(std::move(picture));
    }
};

}  // namespace

std::unique_ptr<PictureDecoding> makeVipsPictureDecoding()
{
    return std::make_unique<VipsPictures>();
}

}  // namespace kelvane
