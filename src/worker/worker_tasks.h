// What a worker can be asked for.
#pragma once

#include "platform/worker_requests.h"

namespace kelvane {

// Serves requests until the program is gone; false when the program asks for what this worker does not know.
[[nodiscard]] bool serveRequests(WorkerPlatform& platform);

}  // namespace kelvane
