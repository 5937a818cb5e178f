#include <algorithm>
#include <array>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <new>
#include <windows.h>

#include "base/byte_stream.h"
#include "platform/memory_file.h"
#include "platform/missing_ports.h"
#include "platform/windows/adapters.h"
#include "platform/windows/file_reader.h"
#include "platform/windows/os_error.h"
#include "platform/worker_frames.h"
#include "platform/worker_requests.h"

namespace kelvane {
namespace windows_os {
namespace {

constexpr std::size_t mostAtOnce = 1024 * 1024;
constexpr std::size_t prefixSize = 2 * sizeof(std::uint64_t);  // of a request: its file, and the bytes in place of one

class HandleFile final : public RandomAccessFile {
public:
    HandleFile(Handle file, std::uint64_t size) : file_(std::move(file)), size_(size) {}
    std::uint64_t size() const override { return size_; }
    Result<std::size_t> readAt(std::uint64_t position, std::span<std::byte> buffer) override
    {
        return windows_os::readAt(file_.get(), position, buffer);
    }

private:
    Handle file_;
    std::uint64_t size_;
};

class PipeRequests final : public WorkerRequests {
public:
    explicit PipeRequests(Handle pipe) : pipe_(std::move(pipe)) {}

    std::optional<WorkerRequest> next() override;
    Status answer(std::span<const std::byte> message) override { return send(serial_, message); }
    Status greet(const WorkerConfinement& confinement) { return send(0, encodeGreeting(confinement)); }

private:
    Status send(std::uint32_t serial, std::span<const std::byte> message);
    bool receive(std::span<std::byte> bytes);
    std::unique_ptr<RandomAccessFile> takeFile(std::uint64_t handle, std::uint64_t length);

    Handle pipe_;
    std::uint32_t serial_ = 0;
};

Status PipeRequests::send(std::uint32_t serial, std::span<const std::byte> message)
{
    const auto frame = frameWorkerMessage(serial, message);
    for (std::span<const std::byte> rest(frame); !rest.empty();) {
        DWORD sent = 0;
        const auto wanted = static_cast<DWORD>(std::min(rest.size(), mostAtOnce));
        if (::WriteFile(pipe_.get(), rest.data(), wanted, &sent, nullptr) == FALSE)
            return lastError();
        rest = rest.subspan(sent);
    }
    return {};
}

bool PipeRequests::receive(std::span<std::byte> bytes)
{
    while (!bytes.empty()) {
        DWORD got = 0;
        const auto wanted = static_cast<DWORD>(std::min(bytes.size(), mostAtOnce));
        if (::ReadFile(pipe_.get(), bytes.data(), wanted, &got, nullptr) == FALSE || got == 0)
            return false;
        bytes = bytes.subspan(got);
    }
    return true;
}

std::unique_ptr<RandomAccessFile> PipeRequests::takeFile(std::uint64_t handle, std::uint64_t length)
{
    if (handle != 0) {
        Handle file(reinterpret_cast<HANDLE>(static_cast<std::uintptr_t>(handle)));
        LARGE_INTEGER size{};
        if (::GetFileSizeEx(file.get(), &size) == FALSE)
            return nullptr;
        return std::make_unique<HandleFile>(std::move(file), static_cast<std::uint64_t>(size.QuadPart));
    }
    std::vector<std::byte> bytes(static_cast<std::size_t>(length));
    return receive(bytes) ? std::make_unique<MemoryFile>(std::move(bytes)) : nullptr;
}

std::optional<WorkerRequest> PipeRequests::next()
{
    std::array<std::byte, workerHeaderSize> head;
    if (!receive(head))
        return std::nullopt;
    const auto header = parseWorkerHeader(head);
    if (!header || header->length < prefixSize || header->length > longestWorkerRequest + prefixSize)
        return std::nullopt;
    std::array<std::byte, prefixSize> prefix;
    WorkerRequest request{std::vector<std::byte>(header->length - prefixSize), nullptr};
    if (!receive(prefix) || !receive(request.message))
        return std::nullopt;
    ByteReader numbers(prefix);
    const auto handle = numbers.number<std::uint64_t>();
    const auto length = numbers.number<std::uint64_t>();
    request.file = takeFile(*handle, *length);
    if (!request.file)
        return std::nullopt;
    serial_ = header->serial;
    return request;
}

class WindowsWorkerPlatform final : public WorkerPlatform {
public:
    explicit WindowsWorkerPlatform(Handle pipe) : requests_(std::move(pipe)) {}
    PipeRequests& requests() override { return requests_; }
    TextDecoding& decoding() override { return *decoding_; }
    XmlParsing& xml() override { return *xml_; }
    PackagedFiles& packages() override { return *packages_; }
    FilterPrograms& filters() override { return *filters_; }
    SharedLibraries& libraries() override { return *libraries_; }

private:
    PipeRequests requests_;
    std::unique_ptr<TextDecoding> decoding_ = makeTextDecoding();
    std::unique_ptr<XmlParsing> xml_ = makeMissingXmlParsing();
    std::unique_ptr<PackagedFiles> packages_ = makeMissingPackagedFiles();
    std::unique_ptr<FilterPrograms> filters_ = makeMissingFilterPrograms();
    std::unique_ptr<SharedLibraries> libraries_ = makeWindowsSharedLibraries();
};

Handle pipeOf(std::string_view word)
{
    std::uint64_t number = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
    const HANDLE handle = reinterpret_cast<HANDLE>(static_cast<std::uintptr_t>(number));
    if (error != std::errc() || end != word.data() + word.size() || ::GetFileType(handle) != FILE_TYPE_PIPE)
        return {};
    return Handle(handle);
}

// The program raised the walls before this process began. Files may still be opened by name for reading, and sockets
// opened: the system has no way to give that up that every edition of it knows.
WorkerConfinement wallsAround()
{
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION info{};
    WorkerConfinement walls;
    walls.memory =
        ::QueryInformationJobObject(nullptr, JobObjectExtendedLimitInformation, &info, sizeof info, nullptr) != FALSE &&
        (info.BasicLimitInformation.LimitFlags & JOB_OBJECT_LIMIT_PROCESS_MEMORY) != 0;
    return walls;
}

}  // namespace
}  // namespace windows_os

Result<std::unique_ptr<WorkerPlatform>> makeWorkerPlatform(int argumentCount, char** arguments)
{
    const Error refused{ErrorKind::invalid, 0, "only the program itself starts a worker"};
    if (argumentCount < 2 || !parseWorkerArguments(argumentCount - 1, arguments))
        return refused;
    windows_os::Handle pipe = windows_os::pipeOf(arguments[argumentCount - 1]);
    if (!pipe.valid())
        return refused;
    // Nobody is there to answer a question about a crash.
    ::SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX);
    std::set_new_handler([] { ::TerminateProcess(::GetCurrentProcess(), workerOutOfMemory); });
    auto platform = std::make_unique<windows_os::WindowsWorkerPlatform>(std::move(pipe));
    if (const Status status = platform->requests().greet(windows_os::wallsAround()); !status)
        return status.error();
    return std::unique_ptr<WorkerPlatform>(std::move(platform));
}

}  // namespace kelvane
