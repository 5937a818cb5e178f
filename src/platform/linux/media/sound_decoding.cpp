#include "platform/linux/media/adapters.h"

namespace kelvane {
namespace {

class Nothing final : public SoundDecoding {
public:
    DecodedSound opening(RandomAccessFile&, std::string_view, std::chrono::milliseconds) override
    {
        return {{MediaOutcome::unknownFormat, {}, {}}, {}};
    }
};

}  // namespace

std::unique_ptr<SoundDecoding> makeFfmpegSoundDecoding()
{
    return std::make_unique<Nothing>();
}

}  // namespace kelvane
