// Properties that sounds, films and pictures carry.
#pragma once

#include <memory>

#include "media/described_media.h"
#include "platform/property_system.h"

namespace kelvane {

// Asks the describer for the facts of files whose names say that they hold sound, a film or a picture, and `next` for
// everything else, and where the file has no such value. A file is read once however many of its values are asked for,
// as long as it is among the last ones asked about. After a cancel nothing is read any more, and values are missing.
// cancel may be null. All outlive it. Thread-safe.
[[nodiscard]] std::unique_ptr<PropertyReaders> makeMediaReaders(MediaDescriber& describer, PropertyReaders& next,
                                                                const CancelFlag* cancel = nullptr);

}  // namespace kelvane
