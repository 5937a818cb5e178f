#include "platform/run_cache_key.h"

#include <string>
#define XXH_INLINE_ALL
#include <xxhash.h>

#include "base/utf.h"

namespace kelvane {

std::optional<RunCacheKey> runCacheKey(ShellNamespace& shell, const ShellItem& item, CachedKind kind,
                                       std::string_view settings)
{
    if (!item.inFileSystem())
        return std::nullopt;
    const auto details = shell.details(item);
    if (!details || !details->identity.known())
        return std::nullopt;
    const std::string shape = std::string(settings) + toUtf8(shell.itemType(item));
    return RunCacheKey{kind,
                       details->identity,
                       details->size,
                       details->modified,
                       details->changed,
                       XXH3_128bits(shape.data(), shape.size()).low64};
}

std::vector<std::byte> detailToKeep(std::string_view detail)
{
    constexpr std::size_t longest = 500;
    const auto bytes = std::as_bytes(std::span(detail));
    return bytes.size() <= longest ? std::vector(bytes.begin(), bytes.end()) : std::vector<std::byte>();
}

std::string keptDetail(std::span<const std::byte> bytes)
{
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

}  // namespace kelvane
