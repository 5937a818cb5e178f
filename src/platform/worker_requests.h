// Port: a worker's own end, inside its process (see worker_processes.h for the other one).
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "base/result.h"
#include "platform/filter_programs.h"
#include "platform/packaged_files.h"
#include "platform/random_access_file.h"
#include "platform/shared_libraries.h"
#include "platform/text_decoding.h"
#include "platform/worker_processes.h"
#include "platform/xml_parsing.h"

namespace kelvane {

struct WorkerRequest {
    std::vector<std::byte> message;
    std::unique_ptr<RandomAccessFile> file;
};

// Used by one thread.
class WorkerRequests {
public:
    virtual ~WorkerRequests() = default;
    // Waits for the next request; nothing when the program is gone, and the worker ends then.
    [[nodiscard]] virtual std::optional<WorkerRequest> next() = 0;
    [[nodiscard]] virtual Status answer(std::span<const std::byte> message) = 0;
};

// The ports of a worker process, already confined: no network, no writing, limited memory.
class WorkerPlatform {
public:
    virtual ~WorkerPlatform() = default;
    virtual WorkerRequests& requests() = 0;
    virtual TextDecoding& decoding() = 0;
    virtual XmlParsing& xml() = 0;
    virtual PackagedFiles& packages() = 0;
    virtual FilterPrograms& filters() = 0;
    virtual SharedLibraries& libraries() = 0;
};

// Makes sense of how the process was started and confines it; an error when it was not started by the program.
// Defined by the adapter that the worker is linked with.
[[nodiscard]] Result<std::unique_ptr<WorkerPlatform>> makeWorkerPlatform(int argumentCount, char** arguments);

}  // namespace kelvane
