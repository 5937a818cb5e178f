// Working criteria: a scan definition made ready for one scan.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/file_masks.h"
#include "base/result.h"
#include "engine/engine_options.h"
#include "engine/scan_node.h"
#include "props/property_catalogue.h"

namespace kelvane {

struct SizeRange {
    std::uint64_t smallest = 0;
    std::uint64_t largest = UINT64_MAX;
    [[nodiscard]] bool holds(std::uint64_t bytes) const { return bytes >= smallest && bytes <= largest; }
};

// Immutable while a scan runs. The catalogue must outlive it.
struct ScanCriteria {
    CScanNode definition;
    EngineOptions options;
    std::vector<PropRef> properties;  // what must match, in order
    PropRef primary;                  // what the candidates are sorted by; every candidate has a value for it
    bool primaryIsFirst = false;      // the primary property is the first listed one
    bool onlyPrimary = false;         // nothing but the primary property counts
    FileMasks masks;
    SizeRange sizes;
    bool skipOffline = false;
    std::int32_t similarity = 100;

    [[nodiscard]] bool has(std::uint32_t flag) const { return definition.has(flag); }
    [[nodiscard]] bool exact() const { return !has(scan_flag::fuzzy); }
    [[nodiscard]] bool exactContents() const { return has(scan_flag::contents) && exact(); }
    [[nodiscard]] bool similarContents() const { return has(scan_flag::contents) && !exact(); }
    [[nodiscard]] Category category() const { return definition.category(); }
};

// The masks that a scan goes by: the definition's own when they hold more than one character, else its category's;
// empty when every file is looked at.
[[nodiscard]] std::string masksInForce(const CScanNode& definition, const EngineOptions& options);

// `invalid` with a message for a definition that names unknown properties (the message offers the nearest known
// names), compares nothing at all, or has a malformed size range.
[[nodiscard]] Result<ScanCriteria> makeCriteria(const CScanNode& definition, const EngineOptions& options,
                                                const PropertyCatalogue& catalogue);

}  // namespace kelvane
