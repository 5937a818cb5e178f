// The containers of sound and film that are read, and how a file is told to be one.
#pragma once

extern "C" {
#include <libavformat/avformat.h>
}

#include <string>

#include "platform/media_decoding.h"

namespace kelvane::linux_os {

struct MediaFormat {
    const AVInputFormat* format = nullptr;  // null: see the fault
    MediaFault fault;
};

// By the content; the name settles only what the content leaves open. Reads a bounded piece, which `io` keeps for the
// reader of the format.
[[nodiscard]] MediaFormat recogniseFormat(AVIOContext& io, const std::string& fileName);

}  // namespace kelvane::linux_os
