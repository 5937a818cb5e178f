// Pictures and films whose previews look alike.
#pragma once

#include <memory>

#include "engine/pair_numbers.h"
#include "engine/similar_content.h"
#include "media/described_media.h"
#include "props/property_source.h"

namespace kelvane {

// Supports Category::images and Category::video. Pictures are ordered by the size of their previews and then so that
// alike ones stand next to one another; films keep the order of their durations. A pair that the second look speaks
// against is vetoed, unless EngineOptions::secondLook is off. All outlive it.
[[nodiscard]] std::unique_ptr<SimilarContent> makeSimilarPictures(const PropertySource& properties,
                                                                  MediaDescriber& describer, ProbeNumbers numbers,
                                                                  unsigned threads);

}  // namespace kelvane
