// Songs whose openings sound alike, whatever their encodings and tags.
#pragma once

#include <memory>

#include "engine/similar_content.h"
#include "media/described_media.h"
#include "props/property_source.h"

namespace kelvane {

// Supports Category::audio. Needs no random numbers: the score of two songs is always the same. All outlive it.
[[nodiscard]] std::unique_ptr<SimilarContent> makeSimilarMusic(const PropertySource& properties,
                                                               MediaDescriber& describer, unsigned threads);

}  // namespace kelvane
