// Port: processes of our own that take hostile files apart, so that one which crashes, hangs or eats memory costs one
// file and never the program.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <vector>

#include "base/cancel.h"
#include "base/result.h"
#include "platform/file_system.h"

namespace kelvane {

// What a worker may do beyond reading the one file that it is handed with each request.
enum class WorkerReach : std::uint8_t {
    givenFile,   // may read what programs need to run (libraries, data files), and start the tools that it knows
    otherFiles,  // may also read files by their names: plug-ins open theirs themselves
};

// Which of the programs beside this one.
enum class WorkerProgram : std::uint8_t {
    documents,  // kelvane-worker
    media,      // kelvane-media-worker; starts no tools
};

// 0 stands for no limit.
struct WorkerLimits {
    WorkerProgram program = WorkerProgram::documents;
    WorkerReach reach = WorkerReach::givenFile;
    std::uint64_t memoryBytes = 1'024u * 1'048'576u;  // address space of the worker and of each tool that it starts
    std::chrono::milliseconds perRequest{12'000};
    std::uint64_t answerBytes = 64u * 1'048'576u;  // a longer answer is a broken worker
};

// The file that goes with a request. The program opens it, so that the worker needs no rights of its own.
struct WorkerInput {
    std::filesystem::path path;  // empty: the bytes instead (an entry of an archive)
    std::span<const std::byte> bytes;
    Links links = Links::asThemselves;  // whether a path that ends in a link is followed
};

// Which walls a worker found on this system. What is missing is not made up for: it is told.
struct WorkerConfinement {
    bool files = false;    // files cannot be opened by name beyond WorkerReach, nor changed
    bool calls = false;    // no sockets, no other processes, nothing opened for writing
    bool signals = false;  // no process but its own tools can be signalled
    bool memory = false;   // the system itself refuses memory beyond the limit
};

// How a request ended. The worker is alive after the first two alone.
enum class WorkerEnd : std::uint8_t {
    answered,
    notOpened,  // the file could not be opened (the error tells why); the worker is as good as before
    timedOut,   // killed at the limit
    tooMuchMemory,
    died,       // crashed, or ended by itself
    cancelled,  // killed, since nobody waits for its answer
};

struct WorkerAnswer {
    WorkerEnd end = WorkerEnd::died;
    std::vector<std::byte> message;  // where it answered
    Error error;                     // of notOpened; what is known of the others
};

// One running worker; used by one thread at a time. Destroying it ends the process and waits for that.
class WorkerProcess {
public:
    virtual ~WorkerProcess() = default;
    // Hands over one request and waits for its answer. A worker that is not alive gives `died`.
    [[nodiscard]] virtual WorkerAnswer ask(std::span<const std::byte> request, const WorkerInput& input,
                                           const CancelFlag& cancel) = 0;
    // Whether it is there and silent, as one that waits for a request is.
    [[nodiscard]] virtual bool alive() const = 0;
    [[nodiscard]] virtual WorkerConfinement confinement() const = 0;
};

// Thread-safe.
class WorkerProcesses {
public:
    virtual ~WorkerProcesses() = default;
    // Returns when the worker is confined and waits. notFound when the worker's program is not installed beside this
    // one; invalid when it does not start as one of ours does, notSupported where the system has no such processes yet,
    // cancelled when nobody waits for it any more.
    [[nodiscard]] virtual Result<std::unique_ptr<WorkerProcess>> start(const WorkerLimits& limits,
                                                                       const CancelFlag& cancel) = 0;
    // The walls that this program knows how to raise on this system: one that is not found is worth telling.
    [[nodiscard]] virtual WorkerConfinement known() const { return {true, true, true, true}; }
};

}  // namespace kelvane
