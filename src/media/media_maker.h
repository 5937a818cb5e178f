// The inside of a worker: from an open file to everything that is wanted of it.
#pragma once

#include "media/media_task.h"
#include "platform/media_decoding.h"

namespace kelvane {

struct MediaDecoders {
    SoundDecoding& sounds;
    PictureDecoding& pictures;
    FilmDecoding& films;
    FactReading& tags;
    FactReading& streams;
    FactReading& pictureFacts;
};

[[nodiscard]] MediaAnswer makeMediaAnswer(RandomAccessFile& file, const MediaRequest& request,
                                          const MediaDecoders& decoders);

}  // namespace kelvane
