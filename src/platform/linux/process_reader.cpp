#include "platform/linux/process_reader.h"

#include <fcntl.h>
#include <unistd.h>

#include <charconv>
#include <filesystem>
#include <system_error>

namespace kelvane::linux_os {
namespace {

constexpr std::size_t mostThreads = 2'000;

// Reads with `readAt(offset, place, count)` until it gives no more.
template <class Read>
std::size_t readAll(std::byte* place, std::size_t size, Read readAt)
{
    std::size_t done = 0;
    while (done < size) {
        const ssize_t count = uninterrupted([&] { return readAt(done, place + done, size - done); });
        if (count <= 0)
            break;
        done += static_cast<std::size_t>(count);
    }
    return done;
}

}  // namespace

ProcessReader::ProcessReader(pid_t process)
    : process_(process), memory_(::open(path("mem").c_str(), O_RDONLY | O_CLOEXEC))
{
}

std::string ProcessReader::path(const char* name) const
{
    return "/proc/" + std::to_string(process_) + '/' + name;
}

std::vector<std::byte> ProcessReader::memory(std::uint64_t address, std::size_t size) const
{
    std::vector<std::byte> bytes(size);
    bytes.resize(readAll(bytes.data(), size, [&](std::size_t done, std::byte* place, std::size_t count) {
        return ::pread(memory_.get(), place, count, static_cast<off_t>(address + done));
    }));
    return bytes;
}

std::string ProcessReader::file(const char* name, std::size_t limit) const
{
    const FileHandle file(::open(path(name).c_str(), O_RDONLY | O_CLOEXEC));
    std::vector<std::byte> bytes(limit);
    const std::size_t size = readAll(bytes.data(), limit, [&](std::size_t, std::byte* place, std::size_t count) {
        return ::read(file.get(), place, count);
    });
    std::string text(size, '\0');
    std::memcpy(text.data(), bytes.data(), size);
    return text;
}

std::string ProcessReader::program() const
{
    std::error_code error;
    return std::filesystem::read_symlink(path("exe"), error).native();
}

std::vector<pid_t> ProcessReader::threads() const
{
    std::vector<pid_t> ids;
    std::error_code error;
    for (std::filesystem::directory_iterator at(path("task"), error), end; !error && at != end; at.increment(error)) {
        const std::string name = at->path().filename().native();
        pid_t id = 0;
        if (std::from_chars(name.data(), name.data() + name.size(), id).ec == std::errc() && ids.size() < mostThreads)
            ids.push_back(id);
    }
    return ids;
}

}  // namespace kelvane::linux_os
