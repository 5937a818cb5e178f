#include "platform/windows/worker_pipe.h"

#include <algorithm>
#include <string>

#include "platform/windows/os_error.h"

namespace kelvane::windows_os {
namespace {

constexpr DWORD buffered = 64 * 1024;
constexpr std::size_t mostPiped = 1024 * 1024;

// Nobody guesses it before it is taken, and whoever did would make the pipe fail, not listen.
std::wstring pipeName()
{
    LARGE_INTEGER ticks{};
    ::QueryPerformanceCounter(&ticks);
    return L"\\\\.\\pipe\\kelvane-worker-" + std::to_wstring(::GetCurrentProcessId()) + L'-' +
           std::to_wstring(::GetCurrentThreadId()) + L'-' + std::to_wstring(ticks.QuadPart);
}

}  // namespace

Result<WorkerPipe::Ends> WorkerPipe::make()
{
    const std::wstring name = pipeName();
    Handle ours(::CreateNamedPipeW(name.c_str(),
                                   PIPE_ACCESS_DUPLEX | FILE_FLAG_OVERLAPPED | FILE_FLAG_FIRST_PIPE_INSTANCE,
                                   PIPE_TYPE_BYTE | PIPE_READMODE_BYTE | PIPE_WAIT | PIPE_REJECT_REMOTE_CLIENTS, 1,
                                   buffered, buffered, 0, nullptr));
    if (!ours.valid())
        return lastError();
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    Handle theirs(::CreateFileW(name.c_str(), GENERIC_READ | GENERIC_WRITE, 0, &inherited, OPEN_EXISTING, 0, nullptr));
    if (!theirs.valid())
        return lastError();
    Handle done(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
    if (!done.valid())
        return lastError();
    return Ends{WorkerPipe(std::move(ours), std::move(done)), std::move(theirs)};
}

// Waits for a transfer that was begun. One that takes too long is called off, since its buffer goes.
std::optional<WorkerEnd> WorkerPipe::finish(OVERLAPPED& transfer, const Patience& patience, DWORD& moved)
{
    while (::WaitForSingleObject(done_.get(), static_cast<DWORD>(patience.nextLook().count())) == WAIT_TIMEOUT) {
        if (const auto over = patience.over()) {
            ::CancelIoEx(pipe_.get(), &transfer);
            ::GetOverlappedResult(pipe_.get(), &transfer, &moved, TRUE);
            return over;
        }
    }
    if (::GetOverlappedResult(pipe_.get(), &transfer, &moved, FALSE) == FALSE || moved == 0)
        return WorkerEnd::died;
    return patience.over();
}

std::optional<WorkerEnd> WorkerPipe::send(std::span<const std::byte> bytes, const Patience& patience)
{
    while (!bytes.empty()) {
        OVERLAPPED transfer{};
        transfer.hEvent = done_.get();
        const auto wanted = static_cast<DWORD>(std::min(bytes.size(), mostPiped));
        if (::WriteFile(pipe_.get(), bytes.data(), wanted, nullptr, &transfer) == FALSE &&
            ::GetLastError() != ERROR_IO_PENDING)
            return WorkerEnd::died;
        DWORD moved = 0;
        if (const auto failure = finish(transfer, patience, moved))
            return failure;
        bytes = bytes.subspan(moved);
    }
    return std::nullopt;
}

std::optional<WorkerEnd> WorkerPipe::receive(std::span<std::byte> bytes, const Patience& patience)
{
    while (!bytes.empty()) {
        OVERLAPPED transfer{};
        transfer.hEvent = done_.get();
        const auto wanted = static_cast<DWORD>(std::min(bytes.size(), mostPiped));
        if (::ReadFile(pipe_.get(), bytes.data(), wanted, nullptr, &transfer) == FALSE &&
            ::GetLastError() != ERROR_IO_PENDING)
            return WorkerEnd::died;
        DWORD moved = 0;
        if (const auto failure = finish(transfer, patience, moved))
            return failure;
        bytes = bytes.subspan(moved);
    }
    return std::nullopt;
}

bool WorkerPipe::silent() const
{
    DWORD waiting = 0;
    return pipe_.valid() && ::PeekNamedPipe(pipe_.get(), nullptr, 0, nullptr, &waiting, nullptr) != FALSE &&
           waiting == 0;
}

}  // namespace kelvane::windows_os
