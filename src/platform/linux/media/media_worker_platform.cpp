#include "platform/media_worker_platform.h"

#include "platform/linux/adapters.h"
#include "platform/linux/media/adapters.h"
#include "platform/linux/worker_start.h"

namespace kelvane {
namespace linux_os {
namespace {

// Its libraries load plug-ins and read tables when they are first made.
class LinuxMediaWorkerPlatform final : public MediaWorkerPlatform {
public:
    WorkerRequests& requests() override { return requests_; }
    SoundDecoding& sounds() override { return *sounds_; }
    PictureDecoding& pictures() override { return *pictures_; }
    FilmDecoding& films() override { return *films_; }
    FactReading& tags() override { return *tags_; }
    FactReading& streams() override { return *streams_; }
    FactReading& pictureFacts() override { return *pictureFacts_; }

private:
    SocketRequests requests_;
    std::unique_ptr<XmlParsing> xml_ = makePugixmlParsing();
    std::unique_ptr<SoundDecoding> sounds_ = makeFfmpegSoundDecoding();
    std::unique_ptr<PictureDecoding> pictures_ = makeVipsPictureDecoding();
    std::unique_ptr<FilmDecoding> films_ = makeFfmpegFilmDecoding();
    std::unique_ptr<FactReading> tags_ = makeTaglibFacts();
    std::unique_ptr<FactReading> streams_ = makeFfmpegFacts();
    std::unique_ptr<FactReading> pictureFacts_ = makePictureFacts(*xml_);
};

}  // namespace
}  // namespace linux_os

Result<std::unique_ptr<MediaWorkerPlatform>> makeMediaWorkerPlatform(int argumentCount, char** arguments)
{
    std::unique_ptr<linux_os::LinuxMediaWorkerPlatform> platform;
    const Status status = linux_os::becomeWorker(WorkerProgram::media, argumentCount, arguments, [&] {
        platform = std::make_unique<linux_os::LinuxMediaWorkerPlatform>();
    });
    if (!status)
        return status.error();
    return std::unique_ptr<MediaWorkerPlatform>(std::move(platform));
}

}  // namespace kelvane
