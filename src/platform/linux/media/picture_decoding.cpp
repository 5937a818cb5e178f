#include <utility>

#include "platform/linux/media/adapters.h"
#include "platform/linux/media/bitmap_picture.h"
#include "platform/linux/media/picture_shrinking.h"
#include "platform/linux/media/raw_picture.h"
#include "platform/watched_file.h"

namespace kelvane {
namespace {

using linux_os::LoadedPicture;

DecodedPicture vipsPreview(RandomAccessFile& file, const PreviewBounds& bounds)
{
    if (!linux_os::startVips())
        return {{MediaOutcome::unknownFormat, {}, linux_os::takeVipsFault().detail}, 0, 0, {}};
    LoadedPicture picture = linux_os::loadPicture(file, bounds);
    if (!picture.image)
        return {std::move(picture.fault), 0, 0, {}};
    return linux_os::shrinkPicture(std::move(picture));
}

bool isUnknown(const DecodedPicture& picture)
{
    return picture.fault.outcome == MediaOutcome::unknownFormat;
}

class Pictures final : public PictureDecoding {
public:
    DecodedPicture preview(RandomAccessFile& file, std::string_view fileName, const PreviewBounds& bounds) override
    {
        WatchedFile watched(file);
        DecodedPicture picture = byKind(watched, fileName, bounds);
        if (picture.pixels.empty() && watched.failed())
            picture.fault.outcome = MediaOutcome::unreadable;
        return picture;
    }

private:
    static DecodedPicture byKind(RandomAccessFile& file, std::string_view fileName, const PreviewBounds& bounds)
    {
        // Whatever else reads such a file as TIFF finds but the small pictures that the camera put into it.
        if (linux_os::isNamedAsRaw(fileName))
            if (DecodedPicture raw = linux_os::rawPreview(file, bounds);
                !isUnknown(raw) || linux_os::looksLikeTiff(file))
                return raw;
        DecodedPicture picture = vipsPreview(file, bounds);
        if (!isUnknown(picture))
            return picture;
        DecodedPicture bitmap = linux_os::bitmapPreview(file, fileName, bounds);
        return isUnknown(bitmap) ? picture : bitmap;
    }
};

}  // namespace

std::unique_ptr<PictureDecoding> makeVipsPictureDecoding()
{
    return std::make_unique<Pictures>();
}

}  // namespace kelvane
