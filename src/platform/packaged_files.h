// Port: documents that are archives of parts (zip).
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

#include "base/result.h"
#include "platform/random_access_file.h"

namespace kelvane {

// One part, while the walk is at it.
class PackagePart {
public:
    virtual ~PackagePart() = default;
    [[nodiscard]] virtual std::string_view name() const = 0;  // "word/document.xml"
    // At most `limit` bytes of its content, unpacked; the rest is left out, and `cut` says so where it is not null.
    [[nodiscard]] virtual Result<std::vector<std::byte>> read(std::uint64_t limit, bool* cut = nullptr) = 0;
};

// Thread-safe; a file belongs to the calling thread for the time of the call.
class PackagedFiles {
public:
    virtual ~PackagedFiles() = default;
    // Gives the parts in the package's order; the sink returning false ends the walk with success. `invalid` for what
    // is no package or is damaged, accessDenied for an encrypted one, notSupported where the system cannot read them
    // yet.
    using PartSink = std::function<bool(PackagePart&)>;
    [[nodiscard]] virtual Status walk(RandomAccessFile& file, const PartSink& sink) = 0;
};

}  // namespace kelvane
