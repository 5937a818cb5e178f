// Port: the inside of a worker process that decodes sound, films and pictures (see media_decoding.h).
#pragma once

#include <memory>

#include "base/result.h"
#include "platform/media_decoding.h"
#include "platform/worker_requests.h"

namespace kelvane {

// Already confined: no network, no writing, limited memory, no other programs.
class MediaWorkerPlatform {
public:
    virtual ~MediaWorkerPlatform() = default;
    virtual WorkerRequests& requests() = 0;
    virtual SoundDecoding& sounds() = 0;
    virtual PictureDecoding& pictures() = 0;
    virtual FilmDecoding& films() = 0;
    virtual FactReading& tags() = 0;          // titles, artists, albums of sounds and films
    virtual FactReading& streams() = 0;       // durations, rates, codecs, frame sizes of sounds and films
    virtual FactReading& pictureFacts() = 0;  // dimensions, and what cameras write down
};

// Makes sense of how the process was started and confines it; an error when it was not started by the program.
// Defined by the adapter that the worker is linked with.
[[nodiscard]] Result<std::unique_ptr<MediaWorkerPlatform>> makeMediaWorkerPlatform(int argumentCount, char** arguments);

}  // namespace kelvane
