#include "platform/linux/file_streams.h"

#include <algorithm>
#include <linux/limits.h>
#include <string_view>
#include <sys/xattr.h>

#include "platform/linux/anchored_path.h"
#include "platform/linux/growing_reads.h"

namespace kelvane::linux_os {
namespace {

constexpr std::string_view userPrefix = "user.";

// The names stand one after the other, each with a 0 behind it.
std::vector<std::string> userNames(std::string_view list)
{
    std::vector<std::string> names;
    while (!list.empty()) {
        const std::string_view name = list.substr(0, list.find('\0'));
        if (name.starts_with(userPrefix))
            names.emplace_back(name.substr(userPrefix.size()));
        list.remove_prefix(std::min(name.size() + 1, list.size()));
    }
    return names;
}

}  // namespace

Result<std::vector<std::string>> listStreams(const std::filesystem::path& path)
{
    const auto anchored = AnchoredPath::make(path);
    if (!anchored)
        return anchored.error();
    const std::filesystem::path file = anchored->standIn();
    const auto list = readGrowing<std::string>(
        XATTR_LIST_MAX, [&](char* buffer, std::size_t size) { return ::listxattr(file.c_str(), buffer, size); });
    if (list)
        return userNames(*list);
    if (list.error().kind == ErrorKind::notSupported)
        return std::vector<std::string>();
    return list.error();
}

Result<std::vector<std::byte>> readWholeStream(const std::filesystem::path& path, const std::string& name,
                                               std::size_t limit)
{
    const auto anchored = AnchoredPath::make(path);
    if (!anchored)
        return anchored.error();
    const std::filesystem::path file = anchored->standIn();
    const std::string attribute = std::string(userPrefix) + name;
    return readGrowing<std::vector<std::byte>>(limit, [&](std::byte* buffer, std::size_t size) {
        return ::getxattr(file.c_str(), attribute.c_str(), buffer, size);
    });
}

}  // namespace kelvane::linux_os
