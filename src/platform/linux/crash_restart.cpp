#include "platform/linux/crash_restart.h"

#include <algorithm>
#include <string_view>

namespace kelvane::linux_os {
namespace {

// The one object that a broken process and its watcher must both find without asking anybody.
RestartMemory& memoryOfProcess()
{
    static constinit RestartMemory memory;
    return memory;
}

}  // namespace

void rememberRestart(const std::vector<std::string>& arguments)
{
    RestartMemory& memory = memoryOfProcess();
    memory.wanted = 0;
    std::string bytes;
    for (const std::string& argument : arguments)
        bytes.append(argument).append(1, '\0');
    if (bytes.size() > memory.bytes.size())
        return;
    std::ranges::copy(bytes, memory.bytes.begin());
    memory.size = static_cast<std::uint32_t>(bytes.size());
    memory.wanted = 1;
}

const RestartMemory& restartMemory()
{
    return memoryOfProcess();
}

RestartWish restartWish(const RestartMemory& memory)
{
    if (memory.wanted != 1 || memory.size > memory.bytes.size())
        return {};
    RestartWish wish{true, {}};
    std::string_view rest(memory.bytes.data(), memory.size);
    while (!rest.empty()) {
        const std::size_t end = rest.find('\0');
        if (end == std::string_view::npos)
            return {};
        wish.arguments.emplace_back(rest.substr(0, end));
        rest.remove_prefix(end + 1);
    }
    return wish;
}

}  // namespace kelvane::linux_os
