#include "platform/worker_frames.h"

#include <charconv>

#include "base/byte_stream.h"

namespace kelvane {
namespace {

constexpr std::uint32_t workerMagic = 0x4B57564B;  // "KVWK"
constexpr std::uint32_t workerVersion = 1;

constexpr std::string_view givenFile = "given-file";
constexpr std::string_view otherFiles = "other-files";

constexpr bool WorkerConfinement::*walls[] = {&WorkerConfinement::files, &WorkerConfinement::calls,
                                              &WorkerConfinement::signals, &WorkerConfinement::memory};

}  // namespace

std::vector<std::byte> frameWorkerMessage(std::uint32_t serial, std::span<const std::byte> message)
{
    ByteWriter out;
    out.number(workerMagic);
    out.number(serial);
    out.number(static_cast<std::uint32_t>(message.size()));
    out.bytes(message);
    return out.take();
}

std::optional<WorkerHeader> parseWorkerHeader(std::span<const std::byte, workerHeaderSize> bytes)
{
    ByteReader in(bytes);
    if (in.number<std::uint32_t>() != workerMagic)
        return std::nullopt;
    const auto serial = in.number<std::uint32_t>();
    return WorkerHeader{*serial, *in.number<std::uint32_t>()};
}

std::vector<std::byte> encodeGreeting(const WorkerConfinement& confinement)
{
    std::uint32_t bits = 0;
    for (std::size_t i = 0; i < std::size(walls); ++i)
        bits |= std::uint32_t{confinement.*walls[i]} << i;
    ByteWriter out;
    out.number(workerVersion);
    out.number(bits);
    return out.take();
}

std::optional<WorkerConfinement> decodeGreeting(std::span<const std::byte> message)
{
    ByteReader in(message);
    const auto spoken = in.number<std::uint32_t>();
    const auto bits = in.number<std::uint32_t>();
    if (spoken != workerVersion || !bits || !in.atEnd())
        return std::nullopt;
    WorkerConfinement confinement;
    for (std::size_t i = 0; i < std::size(walls); ++i)
        confinement.*walls[i] = (*bits >> i & 1) != 0;
    return confinement;
}

std::string_view workerProgramName(WorkerProgram program)
{
    return program == WorkerProgram::media ? "kelvane-media-worker" : "kelvane-worker";
}

std::array<std::string, 2> workerArguments(const WorkerLimits& limits)
{
    const std::string_view reach = limits.reach == WorkerReach::givenFile ? givenFile : otherFiles;
    return {std::string(reach), std::to_string(limits.memoryBytes)};
}

std::optional<WorkerLimits> parseWorkerArguments(int count, char** words)
{
    if (count != 3)
        return std::nullopt;
    const std::string_view reach = words[1], memory = words[2];
    WorkerLimits limits;
    const auto [end, error] = std::from_chars(memory.data(), memory.data() + memory.size(), limits.memoryBytes);
    if ((reach != givenFile && reach != otherFiles) || error != std::errc() || end != memory.data() + memory.size())
        return std::nullopt;
    limits.reach = reach == givenFile ? WorkerReach::givenFile : WorkerReach::otherFiles;
    return limits;
}

}  // namespace kelvane
