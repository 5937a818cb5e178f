// What the program asks of a worker that decodes, and what comes back, as bytes. Neither trusts the other's bytes.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "media/media_reading.h"

namespace kelvane {

struct MediaRequest {
    std::string fileName;  // the last part, in UTF-8 as far as it is text
    MediaWish wish;
    std::int64_t songStartMs = 0;
};

[[nodiscard]] std::vector<std::byte> encodeRequest(const MediaRequest& request);
[[nodiscard]] std::optional<MediaRequest> decodeMediaRequest(std::span<const std::byte> bytes);

[[nodiscard]] std::vector<std::byte> encodeAnswer(const MediaAnswer& answer);
// Nothing for malformed bytes; a preview is within the bounds and has all of its pixels.
[[nodiscard]] std::optional<MediaAnswer> decodeMediaAnswer(std::span<const std::byte> bytes);

}  // namespace kelvane
