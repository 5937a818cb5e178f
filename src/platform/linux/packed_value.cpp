#include "platform/linux/packed_value.h"

#include <array>
#include <memory>
#include <new>
#include <zlib.h>
#include <zstd.h>
#include <zstd_errors.h>

namespace kelvane::linux_os {
namespace {

const Bytef* input(std::span<const std::byte> bytes)
{
    return reinterpret_cast<const Bytef*>(bytes.data());
}

// Damage may strike the columns of the key, or lead from the key to another row, as well as the value itself.
std::uint32_t digestOf(const RunCacheKey& key, std::uint64_t length, std::span<const std::byte> bytes)
{
    const std::array<std::uint64_t, 8> numbers = {static_cast<std::uint64_t>(key.kind),
                                                  key.identity.volume,
                                                  key.identity.index,
                                                  key.size.bytes,
                                                  static_cast<std::uint64_t>(key.modified.ticks),
                                                  static_cast<std::uint64_t>(key.changed.ticks),
                                                  key.shape,
                                                  length};
    const auto head = std::as_bytes(std::span(numbers));
    const uLong ofHead = ::crc32(::crc32(0, nullptr, 0), input(head), static_cast<uInt>(head.size()));
    // A null pointer would ask for the initial value.
    const bool isEmpty = bytes.empty();
    return static_cast<std::uint32_t>(isEmpty ? ofHead
                                              : ::crc32(ofHead, input(bytes), static_cast<uInt>(bytes.size())));
}

struct FreeContext {
    void operator()(::ZSTD_DCtx* context) const { ::ZSTD_freeDCtx(context); }
};

// Of this thread. It takes 160 KB, which would otherwise be fetched from the system and given back for each value.
::ZSTD_DCtx* unpacking()
{
    thread_local const std::unique_ptr<::ZSTD_DCtx, FreeContext> context(::ZSTD_createDCtx());
    if (!context)
        throw std::bad_alloc();
    return context.get();
}

}  // namespace

// A search that goes by the cache mostly unpacks: of what packs well enough, this unpacks fastest.
PackedValue packValue(const RunCacheKey& key, std::span<const std::byte> value)
{
    constexpr int level = 1;
    PackedValue packed;
    packed.length = value.size();
    if (!value.empty()) {
        packed.bytes.resize(::ZSTD_compressBound(value.size()));
        const std::size_t size =
            ::ZSTD_compress(packed.bytes.data(), packed.bytes.size(), value.data(), value.size(), level);
        if (::ZSTD_isError(size))
            throw std::bad_alloc();  // the only failure that is left
        packed.bytes.resize(size);
    }
    packed.digest = digestOf(key, packed.length, packed.bytes);
    return packed;
}

std::optional<std::vector<std::byte>> unpackValue(const RunCacheKey& key, const PackedValue& packed)
{
    if (packed.length > largestCachedValue || packed.digest != digestOf(key, packed.length, packed.bytes))
        return std::nullopt;
    std::vector<std::byte> value(packed.length);
    if (value.empty())
        return value;
    const std::size_t length =
        ::ZSTD_decompressDCtx(unpacking(), value.data(), value.size(), packed.bytes.data(), packed.bytes.size());
    if (::ZSTD_getErrorCode(length) == ZSTD_error_memory_allocation)
        throw std::bad_alloc();
    return !::ZSTD_isError(length) && length == value.size() ? std::optional(std::move(value)) : std::nullopt;
}

}  // namespace kelvane::linux_os
