// Where grouping hands its groups.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "base/result.h"
#include "engine/candidate.h"

namespace kelvane {

namespace add_flag {
inline constexpr std::uint32_t approximate = 0x400000;  // the group was compared approximately
}

// Called on the scan's thread, the members of one group one after the other, groups in ascending order of number.
class GroupSink {
public:
    virtual ~GroupSink() = default;
    // The file's group field holds its group number. score: in searches for similar contents, that against the file by
    // which this one joined its group; nothing for the one that the group began with. An error leaves that file out
    // and nothing else.
    [[nodiscard]] virtual Status add(const Candidate& file, std::uint32_t flags, std::optional<std::int32_t> score) = 0;
    // The file that a search for one file's duplicates was for is in the group just handed over.
    virtual void selectLast() {}
};

}  // namespace kelvane
