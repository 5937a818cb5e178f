// What a worker that decodes can be asked for.
#pragma once

#include "platform/media_worker_platform.h"

namespace kelvane {

// Serves requests until the program is gone; false when the program asks for what this worker does not know.
[[nodiscard]] bool serveMediaRequests(MediaWorkerPlatform& platform);

}  // namespace kelvane
