// Why a sound, a film or a picture has nothing to be compared by, in words.
#pragma once

#include "engine/similar_content.h"
#include "platform/media_decoding.h"

namespace kelvane {

// Of a file from which nothing was made; a song that could be decoded, but is too short for a fingerprint, has a fault
// of that outcome.
[[nodiscard]] NoDescriptorCause mediaCause(const MediaFault& fault);

}  // namespace kelvane
