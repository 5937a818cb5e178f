#include "platform/linux/packed_value.h"

#include <array>
#include <new>
#include <zlib.h>

namespace kelvane::linux_os {
namespace {

const Bytef* input(std::span<const std::byte> bytes)
{
    return reinterpret_cast<const Bytef*>(bytes.data());
}

Bytef* output(std::span<std::byte> bytes)
{
    return reinterpret_cast<Bytef*>(bytes.data());
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

}  // namespace

// The fastest level: the others make texts a tenth smaller at several times the cost.
PackedValue packValue(const RunCacheKey& key, std::span<const std::byte> value)
{
    PackedValue packed;
    packed.length = value.size();
    if (!value.empty()) {
        uLongf room = ::compressBound(static_cast<uLong>(value.size()));
        packed.bytes.resize(room);
        if (::compress2(output(packed.bytes), &room, input(value), static_cast<uLong>(value.size()), Z_BEST_SPEED) !=
            Z_OK)
            throw std::bad_alloc();  // the only failure that is left
        packed.bytes.resize(room);
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
    auto length = static_cast<uLongf>(value.size());
    const int code = ::uncompress(output(value), &length, input(packed.bytes), static_cast<uLong>(packed.bytes.size()));
    if (code == Z_MEM_ERROR)
        throw std::bad_alloc();
    return code == Z_OK && length == value.size() ? std::optional(std::move(value)) : std::nullopt;
}

}  // namespace kelvane::linux_os
