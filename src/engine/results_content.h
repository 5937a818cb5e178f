// The fields of a results file, as bytes and back; what the fields mean is for others to say.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "base/cancel.h"
#include "base/result.h"
#include "engine/item_block.h"
#include "platform/file_system.h"

namespace kelvane {

inline constexpr std::uint32_t highestGroup = 0x7FFFFFFF;

struct ResultsContent {
    std::u16string columns;  // canonical names, with commas between
    bool detailsView = true;
    bool viewOption = false;
    ItemBlock items;
    std::vector<std::uint32_t> groups;  // one a row, 1 to highestGroup
    std::vector<std::byte> definition;  // a stored node; empty when there is none, or none that can be read
};

// The definition has at most largestNodeBlob bytes.
[[nodiscard]] std::vector<std::byte> encodeResults(const ResultsContent& content);

// Everything is checked before anything is given, apart from the definition: that is left out when it is cut off or too
// long. `invalid`, with a detail that tells where the damage is; `cancelled`; or the reader's own failure. Reads in
// pieces, so that memory grows with what was read and not with what a length claims. What follows the definition is
// not read.
[[nodiscard]] Result<ResultsContent> decodeResults(ContentReader& reader, const CancelFlag& cancel);

}  // namespace kelvane
