// An owned file descriptor, and calls that go on where a signal interrupted them.
#pragma once

#include <cerrno>
#include <unistd.h>
#include <utility>

namespace kelvane::linux_os {

class FileHandle {
public:
    FileHandle() = default;
    explicit FileHandle(int descriptor) : descriptor_(descriptor) {}
    FileHandle(FileHandle&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
    FileHandle& operator=(FileHandle&& other) noexcept
    {
        std::swap(descriptor_, other.descriptor_);
        return *this;
    }
    ~FileHandle()
    {
        if (valid())
            ::close(descriptor_);
    }

    [[nodiscard]] bool valid() const { return descriptor_ >= 0; }
    [[nodiscard]] int get() const { return descriptor_; }
    [[nodiscard]] int release() { return std::exchange(descriptor_, -1); }

private:
    int descriptor_ = -1;
};

// Repeats a system call as long as signals interrupt it.
template <class Call>
[[nodiscard]] auto uninterrupted(Call call) -> decltype(call())
{
    for (;;) {
        const auto answer = call();
        if (answer != -1 || errno != EINTR)
            return answer;
    }
}

}  // namespace kelvane::linux_os
