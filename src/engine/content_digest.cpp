#define XXH_INLINE_ALL
#include "engine/content_digest.h"

#include <xxhash.h>

#include <vector>

namespace kelvane {
namespace {

constexpr std::size_t digestChunkBytes = 262'144;

}  // namespace

Result<ContentDigest> digestOf(ContentReader& reader, const CancelFlag& cancel)
{
    XXH3_state_t state;
    XXH3_INITSTATE(&state);
    XXH3_128bits_reset(&state);
    std::vector<std::byte> chunk(digestChunkBytes);
    for (std::size_t count = chunk.size(); count == chunk.size();) {
        if (cancel.cancelled())
            return Error{ErrorKind::cancelled, 0, {}};
        const Result<std::size_t> read = reader.read(chunk);
        if (!read)
            return read.error();
        count = *read;
        XXH3_128bits_update(&state, chunk.data(), count);
    }
    const XXH128_hash_t hash = XXH3_128bits_digest(&state);
    return ContentDigest{hash.low64, hash.high64};
}

}  // namespace kelvane
