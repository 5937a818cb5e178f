#include "worker/media_tasks.h"

#include "media/media_maker.h"

namespace kelvane {

bool serveMediaRequests(MediaWorkerPlatform& platform)
{
    const MediaDecoders decoders{platform.sounds(), platform.pictures(), platform.films(),
                                 platform.tags(),   platform.streams(),  platform.pictureFacts()};
    while (const auto request = platform.requests().next()) {
        const auto wanted = decodeMediaRequest(request->message);
        if (!wanted || !platform.requests().answer(encodeAnswer(makeMediaAnswer(*request->file, *wanted, decoders))))
            return false;
    }
    return true;
}

}  // namespace kelvane
